#include "production/pagination/GridPaginator.h"

#include "production/pagination/PageBreakRules.h"

#include <algorithm>

namespace tabulor {

namespace {

// Rule codes 1 thin, 2 medium, 3 thick.
double ruleWidth(qint16 code)
{
    return code <= 0 ? 0 : 15.0 * std::min<qint16>(code, 3);
}

constexpr qint32 kWhite = 0xFFFFFF;

} // namespace

GridPaginator::GridPaginator(PageDocument& document, const OutlineGrid& grid,
                             const GridLayout& layout, const ReportDefinition& definition)
    : m_document(document), m_layout(layout), m_definition(definition)
{
    m_columns = std::clamp(document.setup().columns, 1, kMostColumns);
    m_columnWidth = (document.setup().printableWidth() - (m_columns - 1) * kColumnGap) / m_columns;
    for (int column : grid.reportColumns())
        m_alignments.push_back(grid.column(column).alignment);
}

double GridPaginator::left() const
{
    return m_document.setup().marginLeft + m_column * (m_columnWidth + kColumnGap);
}

void GridPaginator::paintBorders()
{
    const PageSetup& setup = m_document.setup();
    const qint16 code = setup.pageBorder;
    if (code <= 0)
        return;
    const double l = setup.marginLeft;
    const double r = setup.pageSize().width() - setup.marginRight;
    const double t = setup.marginTop;
    const double b = setup.printableBottom();
    auto line = [&](double x1, double y1, double x2, double y2) {
        m_document.draw(Rule{QLineF(x1, y1, x2, y2), 15, Qt::black});
    };
    const bool top = code == 2 || code == 3 || code == 4 || code == 6 || code == 7;
    const bool bottom = code == 1 || code == 3 || code == 4 || code == 6 || code == 7;
    const bool sides = code == 4 || code == 7;
    const bool between = code == 5 || code == 6 || code == 7;
    if (top)
        line(l, t, r, t);
    if (bottom)
        line(l, b, r, b);
    if (sides) {
        line(l, t, l, b);
        line(r, t, r, b);
    }
    if (between) {
        for (int c = 1; c < m_columns; ++c) {
            const double x = l + c * (m_columnWidth + kColumnGap) - kColumnGap / 2;
            line(x, t, x, b);
        }
    }
}

void GridPaginator::startSegment(bool newPage)
{
    if (newPage) {
        m_document.NewPage();
        m_column = 0;
        m_segmentTop = m_document.setup().marginTop;
        paintBorders();
    } else {
        ++m_column;
    }
    m_y = m_segmentTop;
    m_segmentHasRows = false;

    // The column title row heads every page and column.
    const ReportStyle& title = m_definition.styles[StyleDetailTitle];
    const RowLines lines = m_layout.titleLines();
    const RowBox box{static_cast<double>(title.Before), m_layout.heightOf(lines, StyleDetailTitle),
                     static_cast<double>(title.After)};
    paintRow(StyleDetailTitle, lines, box);
}

void GridPaginator::paintRow(int style, const RowLines& lines, const RowBox& box)
{
    const ReportStyle& s = m_definition.styles[style];
    const TextMeasure& m = m_layout.measure(style);
    const FontSpec font = FontCatalog::fontSpec(s);
    const double top = m_y + box.before;
    const double width = std::min(m_layout.totalWidth(), m_columnWidth);
    const double x0 = left();
    if (s.Back != kWhite)
        m_document.draw(Fill{QRectF(x0, top, width, box.height), FontCatalog::colour(s.Back)});

    double x = x0;
    const QColor text = FontCatalog::colour(s.Text);
    qsizetype next = 0; // the first line of the cell
    for (qsizetype c = 0; c < lines.counts.size(); ++c) {
        const double cellWidth = m_layout.columnWidths()[static_cast<size_t>(c)];
        const double inner = cellWidth - 2 * GridLayout::kCellPadding;
        const qint16 alignment = m_alignments[static_cast<size_t>(c)];
        double y = top;
        for (qsizetype k = 0; k < lines.counts[c]; ++k) {
            const QString& line = lines.lines.at(next + k);
            if (!line.isEmpty()) {
                double lx = x + GridLayout::kCellPadding;
                const TextPlacement placement = placementOf(alignment);
                if (placement == TextPlacement::Centre)
                    lx += (inner - m.width(line)) / 2;
                else if (placement == TextPlacement::Right)
                    lx += inner - m.width(line);
                m_document.draw(TextRun{QPointF(lx, y + m.ascent()), line, font, text});
            }
            y += m.lineHeight();
        }
        next += lines.counts[c];
        x += cellWidth;
    }
    const QColor rule = FontCatalog::colour(s.Color);
    if (s.Top > 0)
        m_document.draw(Rule{QLineF(x0, top, x0 + width, top), ruleWidth(s.Top), rule});
    if (s.Bottom > 0) {
        const double bottom = top + box.height;
        m_document.draw(Rule{QLineF(x0, bottom, x0 + width, bottom), ruleWidth(s.Bottom), rule});
    }
    m_y += box.total();
}

void GridPaginator::begin()
{
    m_widowControl = !m_definition.global.WidowOK;
    m_bottom = m_document.setup().printableBottom();
    m_segmentRoom = m_bottom - m_document.setup().marginTop - m_layout.titleHeight();
    m_run.clear();
    m_runHeight = 0;
    m_column = 0;
    m_segmentTop = m_document.CurrentY();
    if (m_document.PageCount() == 1)
        paintBorders();
    m_column = -1;
    startSegment(false);
}

void GridPaginator::add(const BodyRow& row)
{
    if (!m_run.empty() && breakAllowedBetween(m_run.back().kind, row.kind, m_widowControl))
        layOutRun();
    RowLines lines = m_layout.linesOf(row.texts, row.style);
    const ReportStyle& s = m_definition.styles[row.style];
    const RowBox box{static_cast<double>(s.Before), m_layout.heightOf(lines, row.style),
                     static_cast<double>(s.After)};
    m_runHeight += box.total();
    m_run.push_back(LaidOut{row.kind, row.style, std::move(lines), box});
}

void GridPaginator::layOutRun()
{
    if (m_segmentHasRows && m_y + m_runHeight > m_bottom && m_runHeight <= m_segmentRoom)
        startSegment(m_column + 1 >= m_columns);
    for (const LaidOut& row : m_run) {
        if (m_document.stopped())
            break;
        if (m_segmentHasRows && m_y + row.box.total() > m_bottom)
            startSegment(m_column + 1 >= m_columns);
        paintRow(row.style, row.lines, row.box);
        m_segmentHasRows = true;
    }
    m_run.clear();
    m_runHeight = 0;
}

void GridPaginator::finish()
{
    if (!m_run.empty())
        layOutRun();
    m_document.setCurrentY(m_y);
}

} // namespace tabulor
