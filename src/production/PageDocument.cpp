#include "production/PageDocument.h"

#include <algorithm>

namespace tabulor {

PageDocument::PageDocument()
{
    m_setup.paper = PageSetup::localePaper();
    font.family = QStringLiteral("Tahoma");
}

PageDocument::~PageDocument() = default;

const TextMeasure& PageDocument::measure(const FontSpec& spec) const
{
    for (const auto& [known, m] : m_measures) {
        if (known == spec)
            return *m;
    }
    m_measures.emplace_back(spec, std::make_unique<TextMeasure>(m_fonts.font(spec)));
    return *m_measures.back().second;
}

void PageDocument::StartDoc()
{
    KillDoc();
    m_open = true;
    beginPage();
}

void PageDocument::KillDoc()
{
    m_pages.clear();
    m_current = PageDisplayList();
    m_pageCount = 0;
    m_open = false;
    m_stopped = false;
    m_overlayPage = 0;
    m_overlay.clear();
    Error = 0;
    m_previewPage = 1;
}

void PageDocument::beginPage()
{
    ++m_pageCount;
    m_current = PageDisplayList();
    m_current.size = m_setup.pageSize();
    m_currentY = m_setup.marginTop;
    if (onNewPage)
        onNewPage(*this);
}

void PageDocument::finishPage()
{
    if (m_sink)
        m_sink->addPage(std::move(m_current));
    else
        m_pages.push_back(std::move(m_current));
    m_current = PageDisplayList();
}

void PageDocument::NewPage()
{
    if (!m_open || m_stopped)
        return;
    finishPage();
    beginPage();
}

void PageDocument::EndDoc()
{
    if (!m_open)
        return;
    finishPage();
    m_open = false;
    if (onEndDoc)
        onEndDoc(*this);
}

std::vector<DisplayItem>& PageDocument::target()
{
    return m_overlayPage > 0 ? m_overlay : m_current.items;
}

void PageDocument::draw(DisplayItem item)
{
    target().push_back(std::move(item));
}

void PageDocument::drawLines(const QStringList& lines, double left, double top, double width)
{
    const TextMeasure& m = measure(font);
    double y = top;
    for (const QString& line : lines) {
        double x = left;
        if (TextAlign == 1)
            x += (width - m.width(line)) / 2;
        else if (TextAlign == 2)
            x += width - m.width(line);
        if (!line.isEmpty())
            draw(TextRun{QPointF(x, y + m.ascent()), line, font, TextColor});
        y += m.lineHeight();
    }
}

void PageDocument::Paragraph(const QString& text)
{
    if (!m_open)
        return;
    const TextMeasure& m = measure(font);
    const double width = m_setup.printableWidth();
    const QStringList lines = m.lines(text, width, true, 1 << 20);
    for (const QString& line : lines) {
        if (m_currentY + m.lineHeight() > m_setup.printableBottom() &&
            m_currentY > m_setup.marginTop)
            NewPage();
        drawLines({line}, m_setup.marginLeft, m_currentY, width);
        m_currentY += m.lineHeight();
    }
}

void PageDocument::TextBox(const QString& text, double left, double top, double width,
                           double height)
{
    const TextMeasure& m = measure(font);
    QStringList lines = m.lines(text, width, true, 1 << 20);
    if (height > 0)
        lines = lines.mid(0, std::max(1, static_cast<int>(height / m.lineHeight())));
    drawLines(lines, left, top, width);
}

double PageDocument::TextHeight(const QString& text) const
{
    const TextMeasure& m = measure(font);
    return m.lineHeight() * static_cast<double>(std::max<qsizetype>(1, text.count(u'\n') + 1));
}

void PageDocument::StartOverlay(int page)
{
    if (page < 1 || page > m_pageCount)
        return;
    m_overlayPage = page;
    m_overlay.clear();
}

void PageDocument::EndOverlay()
{
    if (m_overlayPage == 0)
        return;
    if (m_sink) {
        m_sink->addOverlay(m_overlayPage - 1, std::move(m_overlay));
    } else {
        auto& items = m_pages[static_cast<size_t>(m_overlayPage - 1)].items;
        std::move(m_overlay.begin(), m_overlay.end(), std::back_inserter(items));
    }
    m_overlay.clear();
    m_overlayPage = 0;
}

void PageDocument::setPreviewPage(int page)
{
    m_previewPage = std::clamp(page, 1, std::max(1, m_pageCount));
}

void PageDocument::setZoom(int percent)
{
    m_zoom = std::clamp(percent, kMinZoom, kMaxZoom);
}

} // namespace tabulor
