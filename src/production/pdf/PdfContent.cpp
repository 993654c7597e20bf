#include "production/pdf/PdfContent.h"

#include "production/pdf/PdfText.h"

#include <algorithm>
#include <cmath>

namespace tabulor {

namespace {

// Twips to 1/1000 point. Lengths beyond any page are cut, and what is no number counts as 0.
qint64 milli(double twips)
{
    return std::isfinite(twips) ? std::llround(std::clamp(twips, -1e9, 1e9) * 50) : 0;
}

// The slant of text drawn italic from an upright face.
constexpr const char* kSlant = "0.2";

} // namespace

PdfContent::PdfContent(PdfText& text) : m_text(text)
{
    m_out.reserve(1 << 16);
}

qint64 PdfContent::x(double twips) const
{
    return milli(twips);
}

qint64 PdfContent::y(double twips) const
{
    return m_height - milli(twips);
}

QByteArrayView PdfContent::write(const PageDisplayList& page)
{
    m_out.clear();
    m_height = milli(page.size.height());
    m_fill = m_stroke = m_lineWidth = -1;
    m_renderMode = 0;
    m_font = 0;
    m_inText = false;
    m_path = Path::None;
    m_out << "q\n";
    for (const DisplayItem& item : page.items)
        std::visit([this](const auto& value) { add(value); }, item);
    endText();
    flushPath();
    m_out << "Q\n";
    return m_out.bytes();
}

void PdfContent::setFill(QRgb color)
{
    if (m_fill == qint64(color & 0xFFFFFF))
        return;
    m_fill = color & 0xFFFFFF;
    if (qRed(color) == qGreen(color) && qGreen(color) == qBlue(color)) {
        m_out.unit(qRed(color)) << " g\n";
    } else {
        m_out.unit(qRed(color)) << ' ';
        m_out.unit(qGreen(color)) << ' ';
        m_out.unit(qBlue(color)) << " rg\n";
    }
}

void PdfContent::setStroke(QRgb color, qint64 width)
{
    if (m_lineWidth != width) {
        m_lineWidth = width;
        m_out.milli(width) << " w\n";
    }
    if (m_stroke == qint64(color & 0xFFFFFF))
        return;
    m_stroke = color & 0xFFFFFF;
    if (qRed(color) == qGreen(color) && qGreen(color) == qBlue(color)) {
        m_out.unit(qRed(color)) << " G\n";
    } else {
        m_out.unit(qRed(color)) << ' ';
        m_out.unit(qGreen(color)) << ' ';
        m_out.unit(qBlue(color)) << " RG\n";
    }
}

void PdfContent::setRenderMode(int mode)
{
    if (m_renderMode != mode) {
        m_renderMode = mode;
        m_out << mode << " Tr\n";
    }
}

void PdfContent::flushPath()
{
    if (m_path == Path::Stroke)
        m_out << "S\n";
    else if (m_path == Path::Fill)
        m_out << "f\n";
    m_path = Path::None;
}

void PdfContent::beginText()
{
    if (m_inText)
        return;
    flushPath();
    m_out << "BT\n";
    m_inText = true;
    m_lineX = m_lineY = 0;
    m_slanted = false;
}

void PdfContent::endText()
{
    if (m_inText) {
        m_out << "ET\n";
        m_inText = false;
    }
}

void PdfContent::add(const Fill& fill)
{
    const QRgb color = fill.color.rgba();
    const QRectF rect = fill.rect.normalized();
    if (qAlpha(color) == 0 || rect.isEmpty())
        return;
    endText();
    if (m_path != Path::Fill || m_fill != qint64(color & 0xFFFFFF))
        flushPath();
    setFill(color);
    m_out.milli(x(rect.left())) << ' ';
    m_out.milli(y(rect.bottom())) << ' ';
    m_out.milli(milli(rect.width())) << ' ';
    m_out.milli(milli(rect.height())) << " re\n";
    m_path = Path::Fill;
}

void PdfContent::line(qint64 x1, qint64 y1, qint64 x2, qint64 y2, qint64 width, QRgb color)
{
    endText();
    if (m_path != Path::Stroke || m_stroke != qint64(color & 0xFFFFFF) || m_lineWidth != width)
        flushPath();
    setStroke(color, width);
    m_out.milli(x1) << ' ';
    m_out.milli(y1) << " m ";
    m_out.milli(x2) << ' ';
    m_out.milli(y2) << " l\n";
    m_path = Path::Stroke;
}

void PdfContent::add(const Rule& rule)
{
    const QRgb color = rule.color.rgba();
    if (qAlpha(color) == 0)
        return;
    line(x(rule.line.x1()), y(rule.line.y1()), x(rule.line.x2()), y(rule.line.y2()),
         milli(rule.width), color);
}

void PdfContent::add(const TextRun& run)
{
    const QRgb color = run.color.rgba();
    if (run.text.isEmpty() || qAlpha(color) == 0)
        return;
    if (m_lastRequest == -2 || !(run.font == m_lastFont)) {
        m_lastFont = run.font;
        m_lastRequest = m_text.request(run.font);
    }
    if (m_lastRequest < 0)
        return; // no font at all: the writer reports it
    const PdfTextStyle& style = m_text.style(m_lastRequest);
    const EncodedRun& encoded = m_text.encode(m_lastRequest, run.text);

    beginText();
    setFill(color);
    if (style.syntheticBold) {
        setStroke(color, std::llround(double(style.size) * kSyntheticBoldStroke));
        setRenderMode(2);
    } else {
        setRenderMode(0);
    }
    if (encoded.firstFont != m_font || style.size != m_fontSize) {
        m_out << "/F" << encoded.firstFont << ' ';
        m_out.milli(style.size) << " Tf\n";
    }
    const qint64 left = x(run.origin.x());
    const qint64 baseline = y(run.origin.y());
    if (style.syntheticItalic || m_slanted) {
        // A slanted line matrix would slant relative moves too: place the line absolutely.
        m_out << "1 0 " << (style.syntheticItalic ? kSlant : "0") << " 1 ";
        m_out.milli(left) << ' ';
        m_out.milli(baseline) << " Tm\n";
        m_slanted = style.syntheticItalic;
    } else {
        m_out.milli(left - m_lineX) << ' ';
        m_out.milli(baseline - m_lineY) << " Td\n";
    }
    m_lineX = left;
    m_lineY = baseline;
    m_out << encoded.ops.bytes() << '\n';
    m_font = encoded.lastFont;
    m_fontSize = style.size;

    const qint64 right = left + encoded.width;
    if (run.font.underline) {
        const qint64 at = baseline + style.underlineOffset;
        line(left, at, right, at, style.underlineSize, color);
    }
    if (run.font.strikeOut) {
        const qint64 at = baseline + style.strikeoutOffset;
        line(left, at, right, at, style.strikeoutSize, color);
    }
}

} // namespace tabulor
