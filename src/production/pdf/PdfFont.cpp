#include "production/pdf/PdfFont.h"

#include "production/pdf/PdfOutput.h"

#include <hb-subset.h>
#include <hb.h>

#include <algorithm>

namespace tabulor {

namespace {

constexpr unsigned kMaxCode = 0xFFFF;

// Tables that page descriptions never read: layout, which shaping has already used, and
// vertical and colour data.
constexpr hb_tag_t kDroppedTables[] = {
    HB_TAG('G', 'S', 'U', 'B'), HB_TAG('G', 'P', 'O', 'S'), HB_TAG('G', 'D', 'E', 'F'),
    HB_TAG('B', 'A', 'S', 'E'), HB_TAG('J', 'S', 'T', 'F'), HB_TAG('M', 'A', 'T', 'H'),
    HB_TAG('k', 'e', 'r', 'n'), HB_TAG('m', 'o', 'r', 'x'), HB_TAG('k', 'e', 'r', 'x'),
    HB_TAG('t', 'r', 'a', 'k'), HB_TAG('v', 'h', 'e', 'a'), HB_TAG('v', 'm', 't', 'x'),
    HB_TAG('V', 'O', 'R', 'G'), HB_TAG('C', 'O', 'L', 'R'), HB_TAG('C', 'P', 'A', 'L'),
    HB_TAG('S', 'V', 'G', ' '), HB_TAG('D', 'S', 'I', 'G'), HB_TAG('h', 'd', 'm', 'x'),
    HB_TAG('L', 'T', 'S', 'H'), HB_TAG('V', 'D', 'M', 'X')};

// The subset of a face, and which glyph each original glyph became.
class Subset
{
public:
    Subset(hb_face_t* face, const std::vector<unsigned>& glyphs, bool retainGlyphIds)
    {
        hb_subset_input_t* input = hb_subset_input_create_or_fail();
        if (!input)
            return;
        hb_set_t* glyphSet = hb_subset_input_glyph_set(input);
        for (unsigned glyph : glyphs)
            hb_set_add(glyphSet, glyph);
        hb_set_t* dropped = hb_subset_input_set(input, HB_SUBSET_SETS_DROP_TABLE_TAG);
        for (hb_tag_t tag : kDroppedTables)
            hb_set_add(dropped, tag);
        if (retainGlyphIds)
            hb_subset_input_set_flags(input, HB_SUBSET_FLAGS_RETAIN_GIDS);
        m_plan = hb_subset_plan_create_or_fail(face, input);
        hb_subset_input_destroy(input);
        if (m_plan)
            m_face = hb_subset_plan_execute_or_fail(m_plan);
        if (m_face)
            m_blob = hb_face_reference_blob(m_face);
    }
    ~Subset()
    {
        hb_blob_destroy(m_cff);
        hb_blob_destroy(m_blob);
        hb_face_destroy(m_face);
        hb_subset_plan_destroy(m_plan);
    }
    Subset(const Subset&) = delete;
    Subset& operator=(const Subset&) = delete;

    bool ok() const { return m_blob && hb_blob_get_length(m_blob) > 0; }
    QByteArrayView bytes() const
    {
        unsigned length = 0;
        const char* data = hb_blob_get_data(m_blob, &length);
        return {data, qsizetype(length)};
    }
    unsigned newGlyph(unsigned glyph) const
    {
        return hb_map_get(hb_subset_plan_old_to_new_glyph_mapping(m_plan), glyph);
    }
    // The CFF table alone, kept alive by the subset.
    QByteArrayView cffTable()
    {
        if (!m_cff)
            m_cff = hb_face_reference_table(m_face, HB_TAG('C', 'F', 'F', ' '));
        unsigned length = 0;
        const char* data = hb_blob_get_data(m_cff, &length);
        return {data, qsizetype(length)};
    }

private:
    hb_subset_plan_t* m_plan = nullptr;
    hb_face_t* m_face = nullptr;
    hb_blob_t* m_blob = nullptr;
    hb_blob_t* m_cff = nullptr;
};

// A font unit given in thousandths of an em, as PDF font dictionaries measure.
int perMille(int value, unsigned upem)
{
    return int(std::lround(value * 1000.0 / upem));
}

} // namespace

PdfFont::PdfFont(std::unique_ptr<FontFace> face, int resource, int objectNumber)
    : m_face(std::move(face)), m_resource(resource), m_object(objectNumber),
      m_byGlyph(m_face->glyphCount(), -1), m_widths(m_face->glyphCount(), -1)
{
}

unsigned PdfFont::code(unsigned glyph, QStringView text, bool* exact)
{
    if (glyph >= m_byGlyph.size())
        glyph = 0;
    const qint32 first = m_byGlyph[glyph];
    if (first >= 0) {
        // Mostly one character for one glyph, and the same one as the first time.
        const Entry& known = m_entries[size_t(first)];
        if (text.size() == 1 ? known.text.size() == 1 && known.text.front() == text.front()
                             : known.text == text)
            return known.code;
        const std::pair<unsigned, QString> key(glyph, text.toString());
        const auto variant = m_variants.constFind(key);
        if (variant != m_variants.cend())
            return m_entries[size_t(*variant)].code;
        // Every glyph not used yet must still find a code.
        const bool room =
            m_entries.size() + 1 + (m_face->glyphCount() - unsigned(m_glyphsUsed)) <= kMaxCode;
        if (m_face->isCff() || !room) {
            *exact = false;
            return m_entries[size_t(first)].code;
        }
        m_variants.insert(key, int(m_entries.size()));
    } else {
        m_byGlyph[glyph] = qint32(m_entries.size());
        ++m_glyphsUsed;
    }
    const unsigned code = m_face->isCff() ? m_face->cid(glyph) : unsigned(m_entries.size()) + 1;
    m_entries.push_back({code, glyph, text.toString()});
    return code;
}

QByteArray PdfFont::subsetTag() const
{
    // Six capital letters that differ between subsets of the same face.
    quint64 hash = 1469598103934665603ULL;
    auto mix = [&hash](quint64 value) { hash = (hash ^ value) * 1099511628211ULL; };
    for (char c : m_face->postScriptName())
        mix(quint64(quint8(c)));
    mix(quint64(m_resource));
    for (const Entry& entry : m_entries)
        mix(entry.glyph);
    QByteArray tag(6, 'A');
    for (char& c : tag) {
        c = char('A' + hash % 26);
        hash /= 26;
    }
    return tag;
}

bool PdfFont::write(PdfOutput& out, QString* error)
{
    // A CID-keyed CFF face is embedded as its bare CFF table, which readers address by CID.
    // A name-keyed one has no CIDs: readers take the code for the glyph index, so its subset
    // keeps the indexes and is embedded whole.
    const bool cff = m_face->isCff();
    const bool cidKeyed = cff && m_face->isCidKeyed();
    std::vector<unsigned> glyphs{0};
    for (const Entry& entry : m_entries)
        glyphs.push_back(entry.glyph);
    Subset subset(m_face->hbFace(), glyphs, cff && !cidKeyed);
    const QString fontName = QString::fromLatin1(m_face->postScriptName());
    if (!subset.ok()) {
        *error = QStringLiteral("The font %1 cannot be subset for embedding.").arg(fontName);
        return false;
    }
    const QByteArrayView program = cidKeyed ? subset.cffTable() : subset.bytes();
    if (cidKeyed) {
        const std::vector<quint16> cids = cffCharsetCids(program);
        for (const Entry& entry : m_entries) {
            const unsigned glyph = subset.newGlyph(entry.glyph);
            if (glyph >= cids.size() || cids[glyph] != entry.code) {
                *error = QStringLiteral("The subset of the font %1 numbers its glyphs "
                                        "differently.")
                             .arg(fontName);
                return false;
            }
        }
    }

    std::vector<const Entry*> byCode;
    for (const Entry& entry : m_entries)
        byCode.push_back(&entry);
    std::sort(byCode.begin(), byCode.end(),
              [](const Entry* a, const Entry* b) { return a->code < b->code; });

    const QByteArray baseFont = subsetTag() + '+' + m_face->postScriptName();
    const int descendant = out.reserve();
    const int descriptor = out.reserve();
    const int fontFile = out.reserve();
    const int toUnicode = out.reserve();
    const int cidToGid = cff ? 0 : out.reserve();
    const FontFaceMetrics& metrics = m_face->metrics();
    const unsigned upem = m_face->unitsPerEm();

    PdfBuffer& type0 = out.beginObject(m_object);
    type0 << "<</Type/Font/Subtype/Type0/BaseFont";
    type0.name(baseFont) << "/Encoding/Identity-H/DescendantFonts[" << descendant
                         << " 0 R]/ToUnicode " << toUnicode << " 0 R>>";
    out.endObject();

    PdfBuffer& cid = out.beginObject(descendant);
    cid << "<</Type/Font/Subtype/" << (cff ? "CIDFontType0" : "CIDFontType2") << "/BaseFont";
    cid.name(baseFont) << "/CIDSystemInfo<</Registry(Adobe)/Ordering(Identity)/Supplement 0>>"
                       << "/FontDescriptor " << descriptor << " 0 R/W[";
    for (size_t i = 0; i < byCode.size();) {
        size_t end = i + 1;
        while (end < byCode.size() && byCode[end]->code == byCode[end - 1]->code + 1)
            ++end;
        cid << byCode[i]->code << '[';
        for (size_t k = i; k < end; ++k)
            cid.centi(width(byCode[k]->glyph)) << (k + 1 < end ? " " : "");
        cid << ']';
        i = end;
    }
    cid << ']';
    if (!cff)
        cid << "/CIDToGIDMap " << cidToGid << " 0 R";
    cid << ">>";
    out.endObject();

    PdfBuffer& desc = out.beginObject(descriptor);
    const bool italic = metrics.italicAngle != 0;
    desc << "<</Type/FontDescriptor/FontName";
    desc.name(baseFont) << "/Flags " << (italic ? 4 + 64 : 4) << "/FontBBox["
                        << perMille(metrics.bbox[0], upem) << ' ' << perMille(metrics.bbox[1], upem)
                        << ' ' << perMille(metrics.bbox[2], upem) << ' '
                        << perMille(metrics.bbox[3], upem) << "]/ItalicAngle ";
    desc.real(metrics.italicAngle)
        << "/Ascent " << perMille(metrics.ascent, upem) << "/Descent "
        << perMille(metrics.descent, upem) << "/CapHeight " << perMille(metrics.capHeight, upem)
        << "/StemV 80" << (cff ? "/FontFile3 " : "/FontFile2 ") << fontFile << " 0 R>>";
    out.endObject();

    PdfBuffer entries;
    if (cff)
        entries << (cidKeyed ? "/Subtype/CIDFontType0C" : "/Subtype/OpenType");
    else
        entries << "/Length1 " << qint64(program.size());
    out.writeStream(fontFile, program, entries.bytes());

    PdfBuffer cmap;
    cmap << "/CIDInit/ProcSet findresource begin\n12 dict begin\nbegincmap\n"
            "/CIDSystemInfo<</Registry(Adobe)/Ordering(UCS)/Supplement 0>>def\n"
            "/CMapName/Adobe-Identity-UCS def\n/CMapType 2 def\n"
            "1 begincodespacerange\n<0000><FFFF>\nendcodespacerange\n";
    std::vector<const Entry*> mapped;
    for (const Entry* entry : byCode) {
        if (!entry->text.isEmpty())
            mapped.push_back(entry);
    }
    for (size_t i = 0; i < mapped.size(); i += 100) {
        const size_t end = std::min(mapped.size(), i + 100);
        cmap << qint64(end - i) << " beginbfchar\n";
        for (size_t k = i; k < end; ++k) {
            cmap << '<';
            cmap.hex16(mapped[k]->code) << "><";
            cmap.hexUtf16(mapped[k]->text) << ">\n";
        }
        cmap << "endbfchar\n";
    }
    cmap << "endcmap\nCMapName currentdict/CMap defineresource pop\nend\nend\n";
    out.writeStream(toUnicode, cmap.bytes());

    if (!cff) {
        QByteArray map(qsizetype(byCode.empty() ? 2 : 2 * (byCode.back()->code + 1)), '\0');
        for (const Entry* entry : byCode) {
            const unsigned glyph = subset.newGlyph(entry->glyph);
            map[2 * entry->code] = char(glyph >> 8);
            map[2 * entry->code + 1] = char(glyph & 0xFF);
        }
        out.writeStream(cidToGid, map);
    }
    return true;
}

} // namespace tabulor
