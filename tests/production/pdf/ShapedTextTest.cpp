#include "production/pdf/ShapedText.h"
#include "production/fonts/FontMatcher.h"
#include "production/pdf/FontFace.h"

#include "QtPrinters.h"

#include <hb.h>

#include <gtest/gtest.h>

#include <algorithm>

using namespace tabulor;

namespace {

// The faces fontconfig gives a family, loaded as the PDF writer loads them.
class Faces : public ShapingFaces
{
public:
    explicit Faces(const QString& family) : m_match(FontMatcher().match(family, false, false))
    {
        if (m_match)
            load(m_match->file);
    }

    bool ok() const { return !m_faces.empty(); }
    int primaryFace() override { return 0; }
    int faceFor(char32_t c) override
    {
        if (m_faces[0]->glyph(c) != 0)
            return 0;
        const std::optional<FontFile> file = m_match->fileCovering(c);
        return file ? load(*file) : 0;
    }
    FontFace& face(int id) override { return *m_faces[size_t(id)]; }

private:
    int load(const FontFile& file)
    {
        for (size_t i = 0; i < m_faces.size(); ++i) {
            if (m_faces[i]->file() == file)
                return int(i);
        }
        QString error;
        auto face = FontFace::load(file, &error);
        EXPECT_TRUE(face) << error.toStdString();
        if (!face)
            return 0;
        m_faces.push_back(std::move(face));
        return int(m_faces.size()) - 1;
    }

    std::optional<FontMatch> m_match;
    std::vector<std::unique_ptr<FontFace>> m_faces;
};

// What HarfBuzz makes of the whole text with one face: glyph, advance, x and y offset.
std::vector<std::array<int, 4>> harfBuzz(FontFace& face, const QString& text)
{
    hb_buffer_t* buffer = hb_buffer_create();
    hb_buffer_add_utf16(buffer, reinterpret_cast<const uint16_t*>(text.utf16()), int(text.size()),
                        0, int(text.size()));
    hb_buffer_guess_segment_properties(buffer);
    hb_shape(face.hbFont(), buffer, nullptr, 0);
    unsigned length = 0;
    const hb_glyph_info_t* info = hb_buffer_get_glyph_infos(buffer, &length);
    const hb_glyph_position_t* pos = hb_buffer_get_glyph_positions(buffer, &length);
    std::vector<std::array<int, 4>> glyphs;
    for (unsigned i = 0; i < length; ++i)
        glyphs.push_back(
            {int(info[i].codepoint), pos[i].x_advance, pos[i].x_offset, pos[i].y_offset});
    hb_buffer_destroy(buffer);
    return glyphs;
}

std::vector<std::array<int, 4>> glyphsOf(const ShapedText& shaped)
{
    std::vector<std::array<int, 4>> glyphs;
    for (const ShapedGlyph& g : shaped.glyphs)
        glyphs.push_back({int(g.glyph), g.advance, g.xOffset, g.yOffset});
    return glyphs;
}

} // namespace

TEST(TextShaper, CellTextsShapeExactlyAsHarfBuzzShapesThem)
{
    // Numbers, dates, amounts and words with the usual kerning pairs and ligatures.
    QStringList texts{QStringLiteral("AVATAR"),           QStringLiteral("To Wa Ye P.O. Box 17"),
                      QStringLiteral("office fluffy"),    QStringLiteral("L'Yonne \"T\" V."),
                      QStringLiteral("Ärger über Öl"),    QStringLiteral("£1 234,50 € 7%"),
                      QStringLiteral("11/07/2024 23:59"), QStringLiteral("-0.75 (1,000)"),
                      QStringLiteral("soft\u00ADhyphen"), QStringLiteral("r.  7 – 8 … 9")};
    for (int i = 0; i < 40; ++i)
        texts.append(QString::number((i * 7919) % 100003 * 1.37 - 500, 'f', i % 3));
    for (const char* family :
         {"Tahoma", "DejaVu Sans", "DejaVu Serif", "Nimbus Sans", "Noto Sans CJK JP"}) {
        Faces faces{QString::fromLatin1(family)};
        ASSERT_TRUE(faces.ok()) << family;
        TextShaper shaper;
        ShapedText shaped;
        int simple = 0;
        for (const QString& text : texts) {
            shaper.shape(text, faces, shaped);
            simple += shaped.simple;
            EXPECT_EQ(glyphsOf(shaped), harfBuzz(faces.face(0), text))
                << family << ": " << text.toStdString();
        }
        if (QLatin1String(family) == QLatin1String("Tahoma")) {
            EXPECT_GE(simple, 40) << "numbers in the classic face shape without HarfBuzz";
        }
    }
}

TEST(TextShaper, EachCharacterBelongsToExactlyOneGlyph)
{
    const QStringList texts{
        QStringLiteral("baffled office"),      // ligatures: one glyph, several characters
        QStringLiteral("Cafe\u0301 a\u0308b"), // base letters with combining accents
        QStringLiteral("x😀y𝐀z"),               // outside the BMP: two UTF-16 units each
        QStringLiteral("مرحبا بالعالم"),       // right to left, joined letters
        QStringLiteral("Total 合計 ok 😀"),     // parts from fallback faces
    };
    Faces faces{QStringLiteral("DejaVu Sans")};
    ASSERT_TRUE(faces.ok());
    TextShaper shaper;
    ShapedText shaped;
    for (const QString& text : texts) {
        shaper.shape(text, faces, shaped);
        std::vector<std::pair<int, int>> spans;
        for (const ShapedGlyph& glyph : shaped.glyphs) {
            if (glyph.textLength > 0)
                spans.emplace_back(glyph.textStart, glyph.textLength);
        }
        std::sort(spans.begin(), spans.end());
        int covered = 0;
        for (const auto& [start, length] : spans) {
            EXPECT_EQ(start, covered) << text.toStdString();
            covered = start + length;
        }
        EXPECT_EQ(covered, text.size()) << text.toStdString();
    }
}

TEST(TextShaper, CharactersTheFaceLacksAreShapedWithFacesThatHaveThem)
{
    Faces faces{QStringLiteral("Tahoma")};
    ASSERT_TRUE(faces.ok());
    TextShaper shaper;
    ShapedText shaped;
    const QString text = QStringLiteral("Total 合計 😀");
    shaper.shape(text, faces, shaped);
    ASSERT_EQ(shaped.segments.size(), 4u); // Tahoma, CJK, Tahoma's space, the emoji's face
    EXPECT_EQ(shaped.segments[0].face, 0);
    EXPECT_NE(shaped.segments[1].face, 0);
    EXPECT_EQ(shaped.segments[2].face, 0);
    EXPECT_NE(shaped.segments[3].face, 0);
    EXPECT_NE(shaped.segments[3].face, shaped.segments[1].face);
    int glyphs = 0;
    for (const ShapedSegment& segment : shaped.segments) {
        EXPECT_EQ(segment.firstGlyph, glyphs);
        glyphs += segment.glyphCount;
        for (int i = segment.firstGlyph; i < segment.firstGlyph + segment.glyphCount; ++i)
            EXPECT_NE(shaped.glyphs[size_t(i)].glyph, 0u) << "a missing glyph in " << i;
    }
    EXPECT_EQ(glyphs, int(shaped.glyphs.size()));
}
