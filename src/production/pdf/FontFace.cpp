#include "production/pdf/FontFace.h"

#include <hb-ot.h>
#include <hb.h>

#include <cmath>
#include <optional>

namespace tabulor {

namespace {

constexpr hb_tag_t kCffTag = HB_TAG('C', 'F', 'F', ' ');
constexpr hb_tag_t kGlyfTag = HB_TAG('g', 'l', 'y', 'f');
constexpr hb_tag_t kHeadTag = HB_TAG('h', 'e', 'a', 'd');

// A table of the face, kept alive for as long as this object.
class Table
{
public:
    Table(hb_face_t* face, hb_tag_t tag) : m_blob(hb_face_reference_table(face, tag)) {}
    ~Table() { hb_blob_destroy(m_blob); }
    Table(const Table&) = delete;
    Table& operator=(const Table&) = delete;

    QByteArrayView bytes() const
    {
        unsigned length = 0;
        const char* data = hb_blob_get_data(m_blob, &length);
        return {data, qsizetype(length)};
    }

private:
    hb_blob_t* m_blob;
};

// Big-endian reads that fail rather than run past the end.
class Reader
{
public:
    explicit Reader(QByteArrayView bytes) : m_bytes(bytes) {}

    bool has(qsizetype at, qsizetype length) const
    {
        return at >= 0 && length >= 0 && at + length <= m_bytes.size();
    }
    unsigned u8(qsizetype at) const { return static_cast<unsigned char>(m_bytes[at]); }
    unsigned u16(qsizetype at) const { return u8(at) << 8 | u8(at + 1); }
    int s16(qsizetype at) const { return static_cast<qint16>(u16(at)); }
    unsigned offset(qsizetype at, unsigned size) const
    {
        unsigned value = 0;
        for (unsigned i = 0; i < size; ++i)
            value = value << 8 | u8(at + i);
        return value;
    }

private:
    QByteArrayView m_bytes;
};

// A CFF INDEX: count, offset size, offsets, then the data of its entries.
struct CffIndex
{
    unsigned count = 0;
    qsizetype dataStart = 0; // the byte before the first entry, as offsets count from 1
    qsizetype end = 0;
    unsigned offSize = 0;
    qsizetype offsets = 0;
};

std::optional<CffIndex> readIndex(const Reader& in, qsizetype at)
{
    if (!in.has(at, 2))
        return std::nullopt;
    CffIndex index;
    index.count = in.u16(at);
    if (index.count == 0) {
        index.end = at + 2;
        return index;
    }
    if (!in.has(at + 2, 1))
        return std::nullopt;
    index.offSize = in.u8(at + 2);
    index.offsets = at + 3;
    if (index.offSize < 1 || index.offSize > 4 ||
        !in.has(index.offsets, qsizetype(index.count + 1) * index.offSize))
        return std::nullopt;
    index.dataStart = index.offsets + qsizetype(index.count + 1) * index.offSize - 1;
    index.end =
        index.dataStart + in.offset(index.offsets + index.count * index.offSize, index.offSize);
    return index;
}

// The operands of the Top DICT that matter here.
struct TopDict
{
    bool cidKeyed = false;
    qsizetype charset = 0;
    qsizetype charStrings = -1;
};

std::optional<TopDict> readTopDict(const Reader& in, qsizetype at, qsizetype end)
{
    TopDict dict;
    std::vector<qint64> operands;
    while (at < end) {
        const unsigned b0 = in.u8(at);
        if (b0 <= 21) { // an operator
            unsigned op = b0;
            if (b0 == 12) {
                if (!in.has(at + 1, 1))
                    return std::nullopt;
                op = 1200 + in.u8(++at);
            }
            ++at;
            if (op == 1230) // ROS
                dict.cidKeyed = true;
            else if (op == 15 && !operands.empty())
                dict.charset = operands.back();
            else if (op == 17 && !operands.empty())
                dict.charStrings = operands.back();
            operands.clear();
        } else if (b0 == 28 && in.has(at, 3)) {
            operands.push_back(in.s16(at + 1));
            at += 3;
        } else if (b0 == 29 && in.has(at, 5)) {
            operands.push_back(static_cast<qint32>(in.offset(at + 1, 4)));
            at += 5;
        } else if (b0 == 30) { // a real: nibbles up to the end marker 0xf
            ++at;
            while (at < end && (in.u8(at) & 0x0F) != 0x0F && (in.u8(at) & 0xF0) != 0xF0)
                ++at;
            ++at;
            operands.push_back(0);
        } else if (b0 >= 32 && b0 <= 246) {
            operands.push_back(qint64(b0) - 139);
            at += 1;
        } else if (b0 >= 247 && b0 <= 250 && in.has(at, 2)) {
            operands.push_back((qint64(b0) - 247) * 256 + in.u8(at + 1) + 108);
            at += 2;
        } else if (b0 >= 251 && b0 <= 254 && in.has(at, 2)) {
            operands.push_back(-(qint64(b0) - 251) * 256 - in.u8(at + 1) - 108);
            at += 2;
        } else {
            return std::nullopt;
        }
    }
    return dict;
}

QByteArray readPostScriptName(hb_face_t* face)
{
    char name[128];
    unsigned size = sizeof name;
    hb_ot_name_get_utf8(face, HB_OT_NAME_ID_POSTSCRIPT_NAME, HB_LANGUAGE_INVALID, &size, name);
    QByteArray clean;
    for (unsigned i = 0; i < size && clean.size() < 56; ++i) {
        const char c = name[i];
        if ((c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') ||
            c == '-' || c == '_' || c == '.')
            clean.append(c);
    }
    return clean.isEmpty() ? QByteArrayLiteral("Font") : clean;
}

FontFaceMetrics readMetrics(hb_face_t* face, hb_font_t* font)
{
    FontFaceMetrics m;
    auto position = [font](hb_ot_metrics_tag_t tag) {
        hb_position_t value = 0;
        hb_ot_metrics_get_position_with_fallback(font, tag, &value);
        return int(value);
    };
    m.ascent = position(HB_OT_METRICS_TAG_HORIZONTAL_ASCENDER);
    m.descent = position(HB_OT_METRICS_TAG_HORIZONTAL_DESCENDER);
    m.capHeight = position(HB_OT_METRICS_TAG_CAP_HEIGHT);
    m.underlineOffset = position(HB_OT_METRICS_TAG_UNDERLINE_OFFSET);
    m.underlineSize = position(HB_OT_METRICS_TAG_UNDERLINE_SIZE);
    m.strikeoutOffset = position(HB_OT_METRICS_TAG_STRIKEOUT_OFFSET);
    m.strikeoutSize = position(HB_OT_METRICS_TAG_STRIKEOUT_SIZE);
    m.italicAngle = hb_style_get_value(font, HB_STYLE_TAG_SLANT_ANGLE);
    const Table head(face, kHeadTag);
    const Reader in(head.bytes());
    if (in.has(36, 8)) {
        for (int i = 0; i < 4; ++i)
            m.bbox[i] = in.s16(36 + 2 * i);
    }
    return m;
}

} // namespace

std::vector<quint16> cffCharsetCids(QByteArrayView cff)
{
    const Reader in(cff);
    if (!in.has(0, 4))
        return {};
    const auto names = readIndex(in, in.u8(2));
    const auto topDicts = names ? readIndex(in, names->end) : std::nullopt;
    if (!topDicts || topDicts->count == 0)
        return {};
    const qsizetype dictStart =
        topDicts->dataStart + in.offset(topDicts->offsets, topDicts->offSize);
    const qsizetype dictEnd =
        topDicts->dataStart + in.offset(topDicts->offsets + topDicts->offSize, topDicts->offSize);
    if (!in.has(dictStart, dictEnd - dictStart))
        return {};
    const auto dict = readTopDict(in, dictStart, dictEnd);
    if (!dict || !dict->cidKeyed || dict->charStrings < 0 || dict->charset <= 2)
        return {};
    const auto charStrings = readIndex(in, dict->charStrings);
    if (!charStrings)
        return {};

    std::vector<quint16> cids(charStrings->count, 0);
    qsizetype at = dict->charset;
    if (!in.has(at, 1))
        return {};
    const unsigned format = in.u8(at++);
    size_t glyph = 1;
    if (format == 0) {
        for (; glyph < cids.size() && in.has(at, 2); ++glyph, at += 2)
            cids[glyph] = quint16(in.u16(at));
    } else if (format == 1 || format == 2) {
        const qsizetype rangeSize = format == 1 ? 3 : 4;
        while (glyph < cids.size() && in.has(at, rangeSize)) {
            const unsigned first = in.u16(at);
            const unsigned left = format == 1 ? in.u8(at + 2) : in.u16(at + 2);
            for (unsigned i = 0; i <= left && glyph < cids.size(); ++i)
                cids[glyph++] = quint16(first + i);
            at += rangeSize;
        }
    } else {
        return {};
    }
    return glyph == cids.size() ? cids : std::vector<quint16>{};
}

std::unique_ptr<FontFace> FontFace::load(const FontFile& file, QString* error)
{
    std::unique_ptr<FontFace> face(new FontFace);
    face->m_file = file;
    face->m_blob = hb_blob_create_from_file_or_fail(file.path.constData());
    if (face->m_blob)
        face->m_face = hb_face_create(face->m_blob, unsigned(file.index));
    if (!face->m_face || hb_face_get_glyph_count(face->m_face) == 0) {
        *error = QStringLiteral("The font file \"%1\" cannot be read.")
                     .arg(QString::fromLocal8Bit(file.path));
        return nullptr;
    }
    const Table cff(face->m_face, kCffTag);
    const Table glyf(face->m_face, kGlyfTag);
    face->m_cff = !cff.bytes().isEmpty();
    if (!face->m_cff && glyf.bytes().isEmpty()) {
        *error = QStringLiteral("The font file \"%1\" has outlines of a kind that cannot be "
                                "embedded.")
                     .arg(QString::fromLocal8Bit(file.path));
        return nullptr;
    }
    face->m_font = hb_font_create(face->m_face);
    face->m_upem = hb_face_get_upem(face->m_face);
    face->m_glyphCount = hb_face_get_glyph_count(face->m_face);
    if (face->m_cff)
        face->m_cids = cffCharsetCids(cff.bytes());
    face->m_metrics = readMetrics(face->m_face, face->m_font);
    face->m_postScriptName = readPostScriptName(face->m_face);
    return face;
}

FontFace::~FontFace()
{
    hb_font_destroy(m_font);
    hb_face_destroy(m_face);
    hb_blob_destroy(m_blob);
}

unsigned FontFace::glyph(char32_t c) const
{
    hb_codepoint_t glyph = 0;
    return hb_font_get_nominal_glyph(m_font, c, &glyph) ? glyph : 0;
}

int FontFace::advance(unsigned glyph) const
{
    return hb_font_get_glyph_h_advance(m_font, glyph);
}

unsigned FontFace::cid(unsigned glyph) const
{
    return glyph < m_cids.size() ? m_cids[glyph] : glyph;
}

} // namespace tabulor
