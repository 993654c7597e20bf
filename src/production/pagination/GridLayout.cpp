#include "production/pagination/GridLayout.h"

#include "production/grid/ReportGridBuilder.h"
#include "production/pagination/WidestRows.h"

#include <algorithm>
#include <numeric>

namespace tabulor {

GridLayout::GridLayout(const OutlineGrid& grid, const std::vector<BodyRow>& fitRows,
                       const ReportDefinition& definition, const FontCatalog& fonts)
    : m_grid(grid), m_definition(definition)
{
    for (int s = 0; s < kStyleCount; ++s)
        m_measures[static_cast<size_t>(s)] =
            std::make_unique<TextMeasure>(fonts.font(definition.styles[s]));

    const QList<int>& columns = grid.reportColumns();
    const QStringList titleTexts = titles();
    m_widths.assign(static_cast<size_t>(columns.size()), 0.0);
    for (int i = 0; i < columns.size(); ++i) {
        const float stored = grid.column(columns.at(i)).width;
        if (stored > 0) {
            m_widths[static_cast<size_t>(i)] = stored;
            continue;
        }
        double widest = measure(StyleDetailTitle).width(titleTexts.at(i));
        for (const BodyRow& row : fitRows)
            widest = std::max(widest, measure(row.style).width(row.texts.at(i)));
        m_widths[static_cast<size_t>(i)] = std::min(widest + 2 * kCellPadding, kMaxFitWidth);
    }
}

std::vector<BodyRow> GridLayout::rowsToFit(const OutlineGrid& grid, const GridText& text,
                                           const StyleTable& styles)
{
    std::vector<BodyRow> rows;
    const size_t first = std::min(grid.rows().size(), static_cast<size_t>(kFitRows));
    for (size_t r = 0; r < first; ++r) {
        const GridRow& row = grid.rows()[r];
        rows.push_back(BodyRow{row.kind, paintStyle(row), text.rowTexts(row)});
    }
    WidestRows widest(grid);
    widest.addAll(grid);
    for (BodyRow& row : widest.rows(text, styles))
        rows.push_back(std::move(row));
    return rows;
}

double GridLayout::totalWidth() const
{
    return std::accumulate(m_widths.begin(), m_widths.end(), 0.0);
}

QStringList GridLayout::titles() const
{
    QStringList result;
    for (int column : m_grid.reportColumns()) {
        const QString& id = m_grid.column(column).title;
        const int f = FindField(m_definition.fields, id);
        result.append(f >= 0 && !m_definition.fields.at(f).Title.isEmpty()
                          ? m_definition.fields.at(f).Title
                          : id);
    }
    return result;
}

QStringList RowLines::cell(qsizetype c) const
{
    qsizetype first = 0;
    for (qsizetype k = 0; k < c; ++k)
        first += counts[k];
    return lines.mid(first, counts[c]);
}

qsizetype RowLines::most() const
{
    qsizetype most = 1;
    for (qsizetype count : counts)
        most = std::max(most, count);
    return most;
}

RowLines GridLayout::linesOf(const QStringList& texts, int style) const
{
    const GlobalSettings& g = m_definition.global;
    const TextMeasure& m = measure(style);
    const int maxLines =
        g.MaxHeight > 0 ? std::max(1, static_cast<int>(g.MaxHeight / m.lineHeight())) : 1 << 20;
    RowLines result;
    result.lines.reserve(texts.size());
    for (int i = 0; i < texts.size(); ++i) {
        const double inner = std::max(0.0, m_widths[static_cast<size_t>(i)] - 2 * kCellPadding);
        result.counts.append(m.appendLines(texts.at(i), inner, g.WordWrap, maxLines, result.lines));
    }
    return result;
}

double GridLayout::heightOf(const RowLines& lines, int style) const
{
    return static_cast<double>(lines.most()) * measure(style).lineHeight();
}

RowLines GridLayout::titleLines() const
{
    return linesOf(titles(), StyleDetailTitle);
}

double GridLayout::titleHeight() const
{
    return heightOf(titleLines(), StyleDetailTitle);
}

} // namespace tabulor
