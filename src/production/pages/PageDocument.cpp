#include "production/pages/PageDocument.h"

#include "production/pages/FontCatalog.h"
#include "production/pages/MissingGlyphs.h"
#include "production/pages/RichText.h"
#include "production/pages/TextMeasure.h"

#include <algorithm>
#include <cmath>

namespace tabulor {

PageDocument::PageDocument()
    : m_fonts(std::make_unique<FontCatalog>()), m_newPageHooks(std::make_shared<PageHooks>()),
      m_endDocHooks(std::make_shared<PageHooks>())
{
    m_setup.paper = PageSetup::localePaper();
    font.family = QStringLiteral("Tahoma");
}

PageDocument::~PageDocument() = default;

const TextMeasure& PageDocument::measure(const FontSpec& fontSpec) const
{
    for (const auto& [known, m] : m_measures) {
        if (known == fontSpec)
            return *m;
    }
    m_measures.emplace_back(fontSpec, std::make_unique<TextMeasure>(m_fonts->font(fontSpec)));
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
}

PageHook PageDocument::addNewPageHook(Hook hook)
{
    return m_newPageHooks->add(std::move(hook));
}

PageHook PageDocument::addEndDocHook(Hook hook)
{
    return m_endDocHooks->add(std::move(hook));
}

void PageDocument::beginPage()
{
    ++m_pageCount;
    m_current = PageDisplayList();
    m_current.size = m_setup.pageSize();
    // Pages of a report hold about as much as the one before.
    m_current.items.reserve(m_lastPageItems);
    m_currentY = m_setup.marginTop;
    m_newPageHooks->call(*this);
}

void PageDocument::finishPage()
{
    m_lastPageItems = m_current.items.size();
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
    m_endDocHooks->call(*this);
}

std::vector<DisplayItem>& PageDocument::target()
{
    return m_overlayPage > 0 ? m_overlay : m_current.items;
}

void PageDocument::draw(DisplayItem item)
{
    if (m_warn) {
        if (const auto* run = std::get_if<TextRun>(&item))
            checkFonts(*run);
    }
    target().push_back(std::move(item));
}

void PageDocument::checkFonts(const TextRun& run)
{
    if (!m_checkedFaces.contains(run.font.family)) {
        m_checkedFaces.insert(run.font.family);
        const QString used = m_fonts->family(run.font.family);
        if (used.compare(run.font.family, Qt::CaseInsensitive) != 0) {
            m_warn(QStringLiteral("the font '%1' is not installed; '%2' is used instead")
                       .arg(run.font.family, used));
        }
    }
    if (!m_missingGlyphs)
        m_missingGlyphs = std::make_unique<MissingGlyphs>();
    for (const QString& message : m_missingGlyphs->newlyMissing(run.text))
        m_warn(message);
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

namespace {

// One word (or blank, or tab) of rich text in its font.
struct Piece
{
    QString text;
    FontSpec font;
    QColor color;
    bool lineBreak = false;
};

constexpr double kTabStop = 720;

} // namespace

void PageDocument::TextRTF(const RichText& text)
{
    if (!m_open)
        return;
    const double width = m_setup.printableWidth();
    for (const RichTextParagraph& paragraph : text.paragraphs) {
        // Break the paragraph into words, blanks and line breaks, each in its run's font.
        std::vector<Piece> pieces;
        for (const RichTextRun& run : paragraph.runs) {
            const FontSpec fontSpec = run.format.font(font);
            const QColor colour = run.format.color.value_or(TextColor);
            QString word;
            const auto flush = [&] {
                if (!word.isEmpty())
                    pieces.push_back(Piece{word, fontSpec, colour});
                word.clear();
            };
            for (QChar c : run.text) {
                if (c == u'\n') {
                    flush();
                    pieces.push_back(Piece{QString(), fontSpec, colour, true});
                } else if (c == u' ' || c == u'\t') {
                    flush();
                    pieces.push_back(Piece{QString(c), fontSpec, colour});
                } else {
                    word.append(c);
                }
            }
            flush();
        }
        const FontSpec markFont = paragraph.mark.font(font);

        // Lay the pieces out line by line.
        size_t i = 0;
        do {
            std::vector<std::pair<const Piece*, double>> line; // piece and its x offset
            double x = 0;
            double height = measure(markFont).lineHeight();
            double ascent = measure(markFont).ascent();
            while (i < pieces.size()) {
                const Piece& piece = pieces[i];
                if (piece.lineBreak) {
                    ++i;
                    break;
                }
                const TextMeasure& m = measure(piece.font);
                const double advance =
                    piece.text == u"\t" ? kTabStop - std::fmod(x, kTabStop) : m.width(piece.text);
                if (x + advance > width && !line.empty())
                    break;
                line.emplace_back(&piece, x);
                x += advance;
                height = std::max(height, m.lineHeight());
                ascent = std::max(ascent, m.ascent());
                ++i;
            }
            // Blanks at the end of a line take no room.
            while (!line.empty() && line.back().first->text.trimmed().isEmpty()) {
                x = line.back().second;
                line.pop_back();
            }
            if (m_currentY + height > m_setup.printableBottom() && m_currentY > m_setup.marginTop)
                NewPage();
            double shift = m_setup.marginLeft;
            if (paragraph.alignment == RichTextAlignment::Centre)
                shift += (width - x) / 2;
            else if (paragraph.alignment == RichTextAlignment::Right)
                shift += width - x;
            for (const auto& [piece, offset] : line) {
                if (!piece->text.trimmed().isEmpty()) {
                    draw(TextRun{QPointF(shift + offset, m_currentY + ascent), piece->text,
                                 piece->font, piece->color});
                }
            }
            m_currentY += height;
        } while (i < pieces.size());
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

} // namespace tabulor
