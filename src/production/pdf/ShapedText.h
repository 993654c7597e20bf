#pragma once

#include <QStringView>

#include <memory>
#include <unordered_map>
#include <vector>

struct hb_buffer_t;

namespace tabulor {

class FontFace;

// One glyph placed by shaping, in the units of its face.
struct ShapedGlyph
{
    unsigned glyph = 0;
    int advance = 0;
    int xOffset = 0;
    int yOffset = 0;
    // The characters of the text the glyph stands for. A cluster of several glyphs (a letter
    // and its accents, a conjunct) gives its characters to its first glyph; the others get none.
    int textStart = 0;
    int textLength = 0;
};

// Consecutive glyphs drawn with one face.
struct ShapedSegment
{
    int face = 0; // as the ShapingFaces number it
    int firstGlyph = 0;
    int glyphCount = 0;
};

struct ShapedText
{
    std::vector<ShapedGlyph> glyphs;
    std::vector<ShapedSegment> segments;
    // Shaped character by character (see TextShaper): cheap to shape again, not worth keeping.
    bool simple = false;

    void clear()
    {
        glyphs.clear();
        segments.clear();
        simple = false;
    }
};

// The faces of one font request: the face asked for and faces for the characters it lacks.
class ShapingFaces
{
public:
    virtual ~ShapingFaces() = default;
    virtual int primaryFace() = 0;
    // The face that draws c: the primary face when it has c.
    virtual int faceFor(char32_t c) = 0;
    virtual FontFace& face(int id) = 0;
};

// Shapes text with HarfBuzz, so that kerning, ligatures and complex scripts come out as the
// font wants them.
//
// Report cells are mostly numbers and short words that differ from cell to cell, and full
// shaping costs microseconds per cell. Characters that no substitution or positioning lookup
// of a face touches shape the same alone as in any context, except for pair kerning from the
// old kerning table; for each face the writer learns once which characters those are and
// their pair adjustments, by shaping every pair of them in one buffer, and text made only of
// them is shaped from that table: the same result as HarfBuzz gives, at table-lookup speed.
class TextShaper
{
public:
    TextShaper();
    ~TextShaper();
    TextShaper(const TextShaper&) = delete;
    TextShaper& operator=(const TextShaper&) = delete;

    void shape(QStringView text, ShapingFaces& faces, ShapedText& out);
    // Shapes text from the table of the primary face when all its characters are in it, and
    // says whether it did; out is then marked simple.
    bool shapeFromTable(QStringView text, ShapingFaces& faces, ShapedText& out);

private:
    struct ContextFree;
    const ContextFree& contextFree(FontFace& face);
    bool shapeContextFree(QStringView text, int face, const ContextFree& table, ShapedText& out);
    void shapeSegment(QStringView text, int start, int end, int face, FontFace& font,
                      ShapedText& out);

    hb_buffer_t* m_buffer;
    std::unordered_map<const FontFace*, std::unique_ptr<ContextFree>> m_contextFree;
    const FontFace* m_lastFace = nullptr; // the face asked for last, and its table
    const ContextFree* m_lastTable = nullptr;
};

} // namespace tabulor
