#pragma once

#include "production/pdf/FontFace.h"

#include <QHash>
#include <QString>

#include <memory>
#include <vector>

namespace tabulor {

class PdfOutput;

// One face as the document embeds it: a composite font of two-byte codes (Identity-H) over a
// subset of the face holding the glyphs the pages used, with their widths and the text each
// code stands for, so that the text can be extracted, selected and searched.
//
// A TrueType face gets codes of its own, handed out as glyphs are first used, and a map from
// code to glyph; a glyph drawn for different texts (a space for U+0020 and U+00A0, a letter
// shared between Latin and Greek) gets one code per text. A CFF face selects glyphs by CID,
// so its code is the glyph's CID and a glyph has one text; code() says when a use disagrees.
class PdfFont
{
public:
    PdfFont(std::unique_ptr<FontFace> face, int resource, int objectNumber);

    FontFace& face() { return *m_face; }
    int resource() const { return m_resource; } // the page resource name is /F<resource>
    int objectNumber() const { return m_object; }

    // The code that draws glyph for text. *exact becomes false when the code stands for
    // another text already.
    unsigned code(unsigned glyph, QStringView text, bool* exact);
    // The width the document gives a glyph, in 1/100000 em.
    qint64 width(unsigned glyph)
    {
        if (glyph >= m_widths.size())
            return 0;
        qint32& width = m_widths[glyph];
        if (width < 0)
            width = qint32(em(m_face->advance(glyph)));
        return width;
    }
    // Font units in 1/100000 em, rounded.
    qint64 em(qint64 units) const
    {
        const qint64 upem = m_face->unitsPerEm();
        return units >= 0 ? (units * 100000 + upem / 2) / upem
                          : -((-units * 100000 + upem / 2) / upem);
    }

    // Subsets the face and writes the font objects. The face can be used no more.
    [[nodiscard]] bool write(PdfOutput& out, QString* error);

private:
    struct Entry
    {
        unsigned code;
        unsigned glyph;
        QString text;
    };
    QByteArray subsetTag() const;

    std::unique_ptr<FontFace> m_face;
    int m_resource;
    int m_object;
    std::vector<Entry> m_entries;  // in the order of first use
    std::vector<qint32> m_byGlyph; // glyph -> its first entry, or -1
    std::vector<qint32> m_widths;  // glyph -> width(), or -1 before it is asked for
    QHash<std::pair<unsigned, QString>, int> m_variants; // a glyph's further texts -> entry
    int m_glyphsUsed = 0;
};

} // namespace tabulor
