#include "production/pdf/ShapedText.h"

#include "production/pdf/FontFace.h"

#include <QChar>

#include <hb-aat.h>
#include <hb-ot.h>
#include <hb.h>

#include <algorithm>
#include <unordered_set>

namespace tabulor {

namespace {

// The characters of numbers, dates, amounts and plain Latin words: those that are worth
// shaping without HarfBuzz when a face allows it. All are below kTableSize.
constexpr char16_t kTableSize = 0x2213;

std::vector<char16_t> contextFreeCandidates()
{
    std::vector<char16_t> list;
    for (char16_t c = 0x20; c < 0x7F; ++c)
        list.push_back(c);
    for (char16_t c = 0xA0; c <= 0xFF; ++c)
        list.push_back(c);
    for (char16_t c :
         {0x2009, 0x2013, 0x2014, 0x2018, 0x2019, 0x201C, 0x201D, 0x2026, 0x202F, 0x20AC, 0x2212})
        list.push_back(c);
    return list;
}

// Characters that belong with the one before them, whatever face that one was given.
bool joinsPrevious(char32_t c)
{
    switch (QChar::category(c)) {
    case QChar::Mark_NonSpacing:
    case QChar::Mark_SpacingCombining:
    case QChar::Mark_Enclosing:
        return true;
    default:
        return c == 0x200C || c == 0x200D; // zero-width non-joiner and joiner
    }
}

// The features HarfBuzz applies to Latin and common text unless told otherwise.
constexpr hb_tag_t kDefaultFeatures[] = {
    HB_TAG('r', 'v', 'r', 'n'), HB_TAG('c', 'c', 'm', 'p'), HB_TAG('l', 'o', 'c', 'l'),
    HB_TAG('r', 'l', 'i', 'g'), HB_TAG('c', 'a', 'l', 't'), HB_TAG('c', 'l', 'i', 'g'),
    HB_TAG('l', 'i', 'g', 'a'), HB_TAG('r', 'c', 'l', 't'), HB_TAG('k', 'e', 'r', 'n'),
    HB_TAG('m', 'a', 'r', 'k'), HB_TAG('m', 'k', 'm', 'k'), HB_TAG('c', 'u', 'r', 's'),
    HB_TAG('d', 'i', 's', 't'), HB_TAG('l', 't', 'r', 'a'), HB_TAG('l', 't', 'r', 'm'),
    HB_TAG('a', 'b', 'v', 'm'), HB_TAG('b', 'l', 'w', 'm'), HB_TAG_NONE};

// The lookup types of a GPOS table, extension lookups resolved; empty if it cannot be read.
std::vector<unsigned> positioningLookupTypes(hb_face_t* face)
{
    hb_blob_t* blob = hb_face_reference_table(face, HB_OT_TAG_GPOS);
    unsigned size = 0;
    const auto* data = reinterpret_cast<const unsigned char*>(hb_blob_get_data(blob, &size));
    auto u16 = [&](unsigned at) {
        return at + 2 <= size ? unsigned(data[at] << 8 | data[at + 1]) : 0u;
    };
    std::vector<unsigned> types;
    const unsigned list = u16(8);
    const unsigned count = list ? u16(list) : 0;
    for (unsigned i = 0; i < count; ++i) {
        const unsigned lookup = list + u16(list + 2 + 2 * i);
        unsigned type = u16(lookup);
        if (type == 9 && u16(lookup + 4) > 0) // extension: the real type is in the subtable
            type = u16(lookup + u16(lookup + 6) + 2);
        types.push_back(type);
    }
    hb_blob_destroy(blob);
    return types;
}

// Glyphs that a lookup of a default feature may substitute or move in context. Single and
// pair positioning are left out: they act on a glyph or a pair alone, which shaping the pairs
// measures.
std::unordered_set<unsigned> glyphsInContext(hb_face_t* face)
{
    const std::vector<unsigned> positioning = positioningLookupTypes(face);
    hb_set_t* touched = hb_set_create();
    hb_set_t* lookups = hb_set_create();
    for (hb_tag_t table : {HB_OT_TAG_GSUB, HB_OT_TAG_GPOS}) {
        hb_set_clear(lookups);
        hb_ot_layout_collect_lookups(face, table, nullptr, nullptr, kDefaultFeatures, lookups);
        hb_codepoint_t lookup = HB_SET_VALUE_INVALID;
        while (hb_set_next(lookups, &lookup)) {
            if (table == HB_OT_TAG_GPOS && lookup < positioning.size() &&
                (positioning[lookup] == 1 || positioning[lookup] == 2))
                continue;
            hb_ot_layout_lookup_collect_glyphs(face, table, lookup, touched, touched, touched,
                                               touched);
        }
    }
    std::unordered_set<unsigned> glyphs;
    hb_codepoint_t glyph = HB_SET_VALUE_INVALID;
    while (hb_set_next(touched, &glyph))
        glyphs.insert(glyph);
    hb_set_destroy(lookups);
    hb_set_destroy(touched);
    return glyphs;
}

} // namespace

struct TextShaper::ContextFree
{
    std::vector<qint16> index; // by UTF-16 unit below kTableSize: position in chars, or -1
    std::vector<char16_t> chars;
    std::vector<unsigned> glyphs;
    std::vector<int> advances;
    std::vector<bool> common; // of no script: digits, punctuation, symbols
    // Pair adjustments of the first advance, chars.size() squared. HarfBuzz shapes text with
    // letters in their script and text without any in the default script, where a face may
    // kern differently.
    std::vector<int> kerning;
    std::vector<int> commonKerning;
    bool learnt = false;

    int size() const { return int(chars.size()); }
    int at(char16_t c) const { return c < kTableSize ? index[c] : -1; }

    void setChars(FontFace& face, std::vector<char16_t> list)
    {
        chars = std::move(list);
        index.assign(kTableSize, -1);
        glyphs.clear();
        advances.clear();
        common.clear();
        hb_unicode_funcs_t* unicode = hb_unicode_funcs_get_default();
        for (size_t i = 0; i < chars.size(); ++i) {
            index[chars[i]] = qint16(i);
            glyphs.push_back(face.glyph(chars[i]));
            advances.push_back(face.advance(glyphs.back()));
            const hb_script_t script = hb_unicode_script(unicode, chars[i]);
            common.push_back(script == HB_SCRIPT_COMMON || script == HB_SCRIPT_INHERITED);
        }
        kerning.assign(chars.size() * chars.size(), 0);
        commonKerning.assign(chars.size() * chars.size(), 0);
    }

    // Learns the kerning of all pairs, and of the pairs of characters of no script alone.
    // Returns the characters that did not come out as their own glyph with a plain advance:
    // they are not context free after all.
    std::vector<char16_t> learn(FontFace& face, hb_buffer_t* buffer)
    {
        std::vector<int> all(chars.size());
        std::vector<int> noScript;
        for (int i = 0; i < size(); ++i) {
            all[size_t(i)] = i;
            if (common[size_t(i)])
                noScript.push_back(i);
        }
        std::vector<char16_t> failed;
        learnPairs(face, buffer, all, kerning, failed);
        learnPairs(face, buffer, noScript, commonKerning, failed);
        learnt = failed.empty();
        return failed;
    }

    // Shapes every ordered pair of the characters in one buffer and reads their kerning.
    void learnPairs(FontFace& face, hb_buffer_t* buffer, const std::vector<int>& subset,
                    std::vector<int>& table, std::vector<char16_t>& failed)
    {
        if (subset.empty())
            return;
        // Every ordered pair side by side exactly once (a de Bruijn sequence): each character
        // alone and followed by each later one, in turn, and the first again at the end.
        std::vector<quint32> text;
        text.reserve(subset.size() * subset.size() + 1);
        for (size_t a = 0; a < subset.size(); ++a) {
            text.push_back(chars[size_t(subset[a])]);
            for (size_t b = a + 1; b < subset.size(); ++b) {
                text.push_back(chars[size_t(subset[a])]);
                text.push_back(chars[size_t(subset[b])]);
            }
        }
        text.push_back(chars[size_t(subset.front())]);
        hb_buffer_clear_contents(buffer);
        hb_buffer_add_utf32(buffer, text.data(), int(text.size()), 0, int(text.size()));
        hb_buffer_guess_segment_properties(buffer);
        hb_shape(face.hbFont(), buffer, nullptr, 0);
        unsigned length = 0;
        const hb_glyph_info_t* info = hb_buffer_get_glyph_infos(buffer, &length);
        const hb_glyph_position_t* pos = hb_buffer_get_glyph_positions(buffer, &length);
        if (length != text.size()) { // characters merged or split: give up on the face
            failed = chars;
            return;
        }
        const int n = size();
        for (size_t i = 0; i < length; ++i) {
            const int a = index[text[i]];
            const int b = i + 1 < length ? index[text[i + 1]] : -1;
            const int kern = pos[i].x_advance - advances[size_t(a)];
            const bool fits = info[i].codepoint == glyphs[size_t(a)] && pos[i].y_advance == 0 &&
                              pos[i].x_offset == 0 && pos[i].y_offset == 0 && (b >= 0 || kern == 0);
            if (!fits)
                failed.push_back(chars[size_t(a)]);
            else if (b >= 0)
                table[size_t(a * n + b)] = kern;
        }
    }
};

TextShaper::TextShaper() : m_buffer(hb_buffer_create()) {}

TextShaper::~TextShaper()
{
    hb_buffer_destroy(m_buffer);
}

const TextShaper::ContextFree& TextShaper::contextFree(FontFace& face)
{
    if (&face == m_lastFace)
        return *m_lastTable;
    auto& table = m_contextFree[&face];
    m_lastFace = &face;
    if (table) {
        m_lastTable = table.get();
        return *table;
    }
    table = std::make_unique<ContextFree>();
    m_lastTable = table.get();
    hb_face_t* hbFace = face.hbFace();
    if (hb_aat_layout_has_substitution(hbFace) || hb_aat_layout_has_positioning(hbFace) ||
        hb_aat_layout_has_tracking(hbFace))
        return *table;
    const std::unordered_set<unsigned> touched = glyphsInContext(hbFace);
    std::vector<char16_t> chars;
    for (char16_t c : contextFreeCandidates()) {
        // Marks are left out too: positioning may look past them.
        const unsigned glyph = face.glyph(c);
        if (glyph != 0 && !touched.contains(glyph) &&
            hb_ot_layout_get_glyph_class(hbFace, glyph) != HB_OT_LAYOUT_GLYPH_CLASS_MARK)
            chars.push_back(c);
    }
    // A character that shapes unexpectedly is dropped and the rest learnt again; a face that
    // keeps surprising is shaped in full.
    for (int attempt = 0; attempt < 3 && !chars.empty(); ++attempt) {
        table->setChars(face, chars);
        std::vector<char16_t> failed = table->learn(face, m_buffer);
        if (failed.empty())
            break;
        std::erase_if(chars, [&failed](char16_t c) {
            return std::find(failed.begin(), failed.end(), c) != failed.end();
        });
    }
    return *table;
}

bool TextShaper::shapeContextFree(QStringView text, int face, const ContextFree& table,
                                  ShapedText& out)
{
    if (!table.learnt)
        return false;
    bool letters = false;
    for (QChar c : text) {
        const int at = table.at(c.unicode());
        if (at < 0)
            return false;
        letters = letters || !table.common[size_t(at)];
    }
    const std::vector<int>& kerning = letters ? table.kerning : table.commonKerning;
    const int n = table.size();
    int previous = -1;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const int current = table.at(text[i].unicode());
        if (previous >= 0)
            out.glyphs.back().advance += kerning[size_t(previous * n + current)];
        ShapedGlyph& glyph = out.glyphs.emplace_back();
        glyph.glyph = table.glyphs[size_t(current)];
        glyph.advance = table.advances[size_t(current)];
        glyph.textStart = int(i);
        glyph.textLength = 1;
        previous = current;
    }
    out.segments.push_back({face, 0, int(out.glyphs.size())});
    out.simple = true;
    return true;
}

void TextShaper::shapeSegment(QStringView text, int start, int end, int face, FontFace& font,
                              ShapedText& out)
{
    hb_buffer_clear_contents(m_buffer);
    hb_buffer_add_utf16(m_buffer, reinterpret_cast<const uint16_t*>(text.utf16()), int(text.size()),
                        unsigned(start), end - start);
    hb_buffer_guess_segment_properties(m_buffer);
    hb_shape(font.hbFont(), m_buffer, nullptr, 0);
    unsigned length = 0;
    const hb_glyph_info_t* info = hb_buffer_get_glyph_infos(m_buffer, &length);
    const hb_glyph_position_t* pos = hb_buffer_get_glyph_positions(m_buffer, &length);
    const int first = int(out.glyphs.size());
    for (unsigned i = 0; i < length; ++i) {
        ShapedGlyph& glyph = out.glyphs.emplace_back();
        glyph.glyph = info[i].codepoint;
        glyph.advance = pos[i].x_advance;
        glyph.xOffset = pos[i].x_offset;
        glyph.yOffset = pos[i].y_offset;
        glyph.textStart = int(info[i].cluster);
    }
    // Clusters grow in logical order, which is the glyph order reversed for right-to-left
    // text. Each cluster's characters run up to the next cluster's start.
    const bool backward = HB_DIRECTION_IS_BACKWARD(hb_buffer_get_direction(m_buffer));
    int next = end;
    for (int k = 0; k < int(length); ++k) {
        const int i = first + (backward ? k : int(length) - 1 - k);
        ShapedGlyph& glyph = out.glyphs[size_t(i)];
        const bool startsCluster =
            backward
                ? (k + 1 == int(length) || out.glyphs[size_t(i + 1)].textStart != glyph.textStart)
                : (i == first || out.glyphs[size_t(i - 1)].textStart != glyph.textStart);
        if (startsCluster) {
            glyph.textLength = next - glyph.textStart;
            next = glyph.textStart;
        }
    }
    out.segments.push_back({face, first, int(length)});
}

bool TextShaper::shapeFromTable(QStringView text, ShapingFaces& faces, ShapedText& out)
{
    out.clear();
    const int primary = faces.primaryFace();
    const bool latinLike =
        std::all_of(text.begin(), text.end(), [](QChar c) { return c.unicode() < kTableSize; });
    if (latinLike && shapeContextFree(text, primary, contextFree(faces.face(primary)), out))
        return true;
    out.clear();
    return false;
}

void TextShaper::shape(QStringView text, ShapingFaces& faces, ShapedText& out)
{
    out.clear();
    if (text.isEmpty() || shapeFromTable(text, faces, out))
        return;
    int start = 0;
    int face = -1;
    for (qsizetype i = 0; i < text.size();) {
        char32_t c = text[i].unicode();
        qsizetype units = 1;
        if (text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate()) {
            c = QChar::surrogateToUcs4(text[i], text[i + 1]);
            units = 2;
        }
        const int wanted = face >= 0 && joinsPrevious(c) ? face : faces.faceFor(c);
        if (wanted != face) {
            if (face >= 0)
                shapeSegment(text, start, int(i), face, faces.face(face), out);
            start = int(i);
            face = wanted;
        }
        i += units;
    }
    shapeSegment(text, start, int(text.size()), face, faces.face(face), out);
}

} // namespace tabulor
