#pragma once

#include "production/fonts/FontMatcher.h"

#include <QByteArray>
#include <QString>

#include <memory>
#include <vector>

struct hb_blob_t;
struct hb_face_t;
struct hb_font_t;

namespace tabulor {

// What a page needs to know about a face besides its glyphs, in font units (y up).
struct FontFaceMetrics
{
    int ascent = 0;
    int descent = 0; // negative below the baseline
    int capHeight = 0;
    int bbox[4] = {0, 0, 0, 0};
    double italicAngle = 0;
    int underlineOffset = 0; // centre of the line, negative below the baseline
    int underlineSize = 0;
    int strikeoutOffset = 0;
    int strikeoutSize = 0;
};

// One loaded face: its file mapped into memory, HarfBuzz's face and font over it (at the
// font's own units), and what embedding needs.
class FontFace
{
public:
    // nullptr with *error when the file cannot be read as a font.
    static std::unique_ptr<FontFace> load(const FontFile& file, QString* error);
    ~FontFace();
    FontFace(const FontFace&) = delete;
    FontFace& operator=(const FontFace&) = delete;

    const FontFile& file() const { return m_file; }
    hb_face_t* hbFace() const { return m_face; }
    hb_font_t* hbFont() const { return m_font; }
    unsigned unitsPerEm() const { return m_upem; }
    unsigned glyphCount() const { return m_glyphCount; }
    // Outlines in a CFF table (OpenType) rather than TrueType glyphs.
    bool isCff() const { return m_cff; }
    const FontFaceMetrics& metrics() const { return m_metrics; }
    // The PostScript name, usable as a PDF name.
    const QByteArray& postScriptName() const { return m_postScriptName; }

    // The glyph for a character, or 0 (the missing glyph).
    unsigned glyph(char32_t c) const;
    int advance(unsigned glyph) const;
    // The character identifier a CFF face gives a glyph: a CID-keyed face numbers its glyphs
    // in its charset, others by glyph index.
    unsigned cid(unsigned glyph) const;
    bool isCidKeyed() const { return !m_cids.empty(); }

private:
    FontFace() = default;

    FontFile m_file;
    hb_blob_t* m_blob = nullptr;
    hb_face_t* m_face = nullptr;
    hb_font_t* m_font = nullptr;
    unsigned m_upem = 1000;
    unsigned m_glyphCount = 0;
    bool m_cff = false;
    std::vector<quint16> m_cids; // empty: CID = glyph index
    FontFaceMetrics m_metrics;
    QByteArray m_postScriptName;
};

// The glyph index -> CID map of a CID-keyed CFF table, or empty for a name-keyed one.
std::vector<quint16> cffCharsetCids(QByteArrayView cff);

} // namespace tabulor
