#include "production/pdf/PdfText.h"

#include "production/pdf/PdfOutput.h"

#include <cmath>

namespace tabulor {

namespace {

// Encoded runs kept per font request. Numbers rarely repeat, so the cache fills with them in
// long reports; it is emptied when full rather than allowed to grow with the report.
constexpr qsizetype kMaxCachedRuns = 16384;

} // namespace

struct PdfText::Request final : ShapingFaces
{
    PdfText* owner = nullptr;
    FontMatch match;
    int primary = 0;
    PdfTextStyle style;
    QHash<char32_t, int> fallbacks; // character -> font, for characters the primary lacks
    QHash<QString, EncodedRun> runs;

    int primaryFace() override { return primary; }
    FontFace& face(int id) override { return owner->m_fonts[size_t(id)]->face(); }
    int faceFor(char32_t c) override
    {
        if (face(primary).glyph(c) != 0)
            return primary;
        const auto known = fallbacks.constFind(c);
        if (known != fallbacks.cend())
            return *known;
        int font = primary; // drawn as the missing glyph, but still extracted as its text
        if (const std::optional<FontFile> file = match.fileCovering(c)) {
            const int found = owner->fontFor(*file);
            if (found >= 0)
                font = found;
        }
        fallbacks.insert(c, font);
        return font;
    }
};

PdfText::PdfText(PdfOutput& out) : m_out(out) {}

PdfText::~PdfText() = default;

int PdfText::fontFor(const FontFile& file)
{
    for (size_t i = 0; i < m_fonts.size(); ++i) {
        if (m_fonts[i]->face().file() == file)
            return int(i);
    }
    QString error;
    std::unique_ptr<FontFace> face = FontFace::load(file, &error);
    if (!face) {
        if (m_error.isEmpty())
            m_error = error;
        return -1;
    }
    const int resource = int(m_fonts.size()) + 1;
    m_fonts.push_back(std::make_unique<PdfFont>(std::move(face), resource, m_out.reserve()));
    return resource - 1;
}

int PdfText::request(const FontSpec& font)
{
    const qint64 size = std::llround((font.pointSize > 0 ? font.pointSize : 8.25) * 1000);
    const QString key = QStringLiteral("%1|%2|%3|%4")
                            .arg(font.family)
                            .arg(int(font.bold))
                            .arg(int(font.italic))
                            .arg(size);
    const auto known = m_requestIds.constFind(key);
    if (known != m_requestIds.cend())
        return *known;

    int id = -1;
    std::optional<FontMatch> match = m_matcher.match(font.family, font.bold, font.italic);
    const int primary = match ? fontFor(match->file) : -1;
    if (!match && m_error.isEmpty())
        m_error = QStringLiteral("No font is installed to draw the text in %1.").arg(font.family);
    if (primary >= 0) {
        auto request = std::make_unique<Request>();
        request->owner = this;
        request->match = std::move(*match);
        request->primary = primary;
        const FontFace& face = m_fonts[size_t(primary)]->face();
        const FontFaceMetrics& metrics = face.metrics();
        auto scaled = [&](int value) { return qint64(value) * size / face.unitsPerEm(); };
        PdfTextStyle& style = request->style;
        style.size = size;
        style.syntheticBold = request->match.syntheticBold;
        style.syntheticItalic = request->match.syntheticItalic;
        style.underlineOffset = scaled(metrics.underlineOffset);
        style.underlineSize = std::max<qint64>(scaled(metrics.underlineSize), size / 20);
        style.strikeoutOffset = scaled(metrics.strikeoutOffset);
        style.strikeoutSize = std::max<qint64>(scaled(metrics.strikeoutSize), size / 20);
        id = int(m_requests.size());
        m_requests.push_back(std::move(request));
    }
    m_requestIds.insert(key, id);
    return id;
}

const PdfTextStyle& PdfText::style(int request) const
{
    return m_requests[size_t(request)]->style;
}

const EncodedRun& PdfText::encode(int requestId, const QString& text)
{
    Request& request = *m_requests[size_t(requestId)];
    // Text the table shapes is encoded again each time: that is cheaper than looking it up.
    if (!m_shaper.shapeFromTable(text, request, m_shaped)) {
        const auto cached = request.runs.constFind(text);
        if (cached != request.runs.cend())
            return *cached;
        m_shaper.shape(text, request, m_shaped);
    }
    EncodedRun& run = m_scratch;
    PdfBuffer& ops = run.ops;
    ops.clear();
    run.firstFont = request.primary + 1;
    run.lastFont = run.firstFont;
    run.width = 0;
    const qint64 size = request.style.size;
    qint64 rise = 0;
    bool exact = true;
    // Where HarfBuzz puts the pen, and where the glyph widths of the font have put it, both in
    // 1/100000 em; TJ adjustments bring the second to the first. Advances are rounded as the
    // widths are, so that a glyph HarfBuzz does not move needs no adjustment.
    qint64 pen = 0;
    qint64 pdfPen = 0;
    for (const ShapedSegment& segment : m_shaped.segments) {
        PdfFont& font = *m_fonts[size_t(segment.face)];
        const qint64 upem = font.face().unitsPerEm();
        if (font.resource() != run.lastFont) {
            ops << '/' << 'F' << font.resource() << ' ';
            ops.milli(size) << " Tf";
            run.lastFont = font.resource();
        }
        // The pen restarts at 0 in each segment.
        pen = 0;
        pdfPen = 0;
        int pieces = 0; // strings and numbers inside [ ]
        bool adjusted = false;
        qsizetype arrayStart = ops.size();
        ops << '[';
        bool inString = false;
        auto flushCodes = [&] {
            if (inString) {
                ops << ')';
                inString = false;
                ++pieces;
            }
        };
        auto closeArray = [&] {
            flushCodes();
            if (adjusted || pieces != 1) {
                ops << "]TJ";
            } else { // a single string: the shorter Tj
                ops.remove(arrayStart);
                ops << "Tj";
            }
        };
        const int end = segment.firstGlyph + segment.glyphCount;
        for (int i = segment.firstGlyph; i < end; ++i) {
            const ShapedGlyph& glyph = m_shaped.glyphs[size_t(i)];
            const qint64 glyphRise = glyph.yOffset == 0 ? 0 : glyph.yOffset * size / qint64(upem);
            if (glyphRise != rise) {
                closeArray();
                ops << ' ';
                ops.milli(glyphRise) << " Ts[";
                arrayStart = ops.size() - 1;
                rise = glyphRise;
                pieces = 0;
                adjusted = false;
            }
            const qint64 target = glyph.xOffset == 0 ? pen : pen + font.em(glyph.xOffset);
            if (target != pdfPen) {
                flushCodes();
                ops.centi(pdfPen - target) << ' ';
                adjusted = true;
                pdfPen = target;
            }
            const unsigned code = font.code(
                glyph.glyph, QStringView(text).mid(glyph.textStart, glyph.textLength), &exact);
            if (!inString) {
                ops << '(';
                inString = true;
            }
            ops.stringByte(char(code >> 8)).stringByte(char(code & 0xFF));
            pdfPen += font.width(glyph.glyph);
            pen += font.em(glyph.advance);
        }
        const qint64 target = pen;
        if (target != pdfPen) {
            flushCodes();
            ops.centi(pdfPen - target);
            adjusted = true;
        }
        closeArray();
        run.width += pen * size / 100000;
    }
    if (rise != 0)
        ops << " 0 Ts";
    if (!exact) {
        // A glyph of a CFF face stands for another text elsewhere: the whole run says what it
        // reads as.
        PdfBuffer wrapped;
        wrapped << "/Span<</ActualText";
        wrapped.textString(text) << ">>BDC " << ops.bytes() << " EMC";
        ops = std::move(wrapped);
    }
    if (m_shaped.simple)
        return run;
    if (request.runs.size() >= kMaxCachedRuns)
        request.runs.clear();
    return *request.runs.insert(text, run);
}

void PdfText::writeFontResources(PdfBuffer& out) const
{
    for (const auto& font : m_fonts)
        out << "/F" << font->resource() << ' ' << font->objectNumber() << " 0 R";
}

bool PdfText::writeFonts(QString* error)
{
    for (const auto& font : m_fonts) {
        if (!font->write(m_out, error))
            return false;
    }
    return true;
}

} // namespace tabulor
