#include "production/grid/GridText.h"

#include "production/grid/Aggregate.h"

namespace tabulor {

GridText::GridText(const OutlineGrid& grid, FormatLocale locale)
    : m_grid(grid), m_locale(std::move(locale))
{
    m_formats.reserve(static_cast<size_t>(grid.columnCount()));
    for (int c = 0; c < grid.columnCount(); ++c)
        m_formats.emplace_back(grid.column(c).format);
    m_formattedTexts.resize(m_formats.size());
    m_textNumbering.resize(m_formats.size());
}

QString GridText::formattedValue(const QVariant& value, int gridColumn) const
{
    return m_formats[static_cast<size_t>(gridColumn)].apply(value, m_locale);
}

QString GridText::recordText(qint32 record, int gridColumn) const
{
    const CellValue& cell = m_grid.cell(record, gridColumn);
    if (cell.kind != CellValue::Text)
        return formattedValue(m_grid.value(record, gridColumn), gridColumn);
    std::vector<QString>& cache = m_formattedTexts[static_cast<size_t>(gridColumn)];
    const ColumnCells& cells = m_grid.cells(gridColumn);
    if (m_textNumbering[static_cast<size_t>(gridColumn)] != cells.textNumbering()) {
        m_textNumbering[static_cast<size_t>(gridColumn)] = cells.textNumbering();
        cache.clear();
    }
    if (cache.size() <= cell.textId)
        cache.resize(static_cast<size_t>(cells.texts().size()));
    QString& text = cache[cell.textId];
    if (text.isNull()) {
        text = formattedValue(m_grid.value(record, gridColumn), gridColumn);
        // An empty result is kept as an empty, not a null, text so that it counts as done.
        if (text.isNull())
            text = QLatin1String("");
    }
    return text;
}

QString GridText::cellText(const GridRow& row, int gridColumn) const
{
    if (!row.isGroupRow())
        return recordText(row.record, gridColumn);

    const GroupPlan& plan = m_grid.groupPlan();
    const GroupLevel& level = plan.levels[row.depth];
    if (level.column == gridColumn)
        return caption(row, recordText(row.record, gridColumn));
    if (row.kind != RowKind::Closing)
        return QString();
    for (size_t t = 0; t < plan.totals.size(); ++t) {
        if (plan.totals[t].column == gridColumn)
            return totalText(t, m_grid.total(row, t));
    }
    return QString();
}

QString GridText::formattedValue(const CellValue& value, int gridColumn) const
{
    return formattedValue(m_grid.cells(gridColumn).toVariant(value), gridColumn);
}

QString GridText::caption(const GridRow& row, const QString& valueText) const
{
    const GroupLevel& level = m_grid.groupPlan().levels[row.depth];
    QString caption = row.kind == RowKind::Opening ? level.openingCaption : level.closingCaption;
    return caption.replace(QStringLiteral("%s"), valueText);
}

QString GridText::totalText(size_t t, const CellValue& total) const
{
    const TotalColumn& entry = m_grid.groupPlan().totals[t];
    // A count is a number of values, whatever the column holds.
    if (entry.aggregate == AggregateCount)
        return valueText(m_grid.cells(entry.column).toVariant(total), m_locale);
    return formattedValue(total, entry.column);
}

QStringList GridText::rowTexts(const GridRow& row) const
{
    QStringList texts;
    for (int column : m_grid.reportColumns())
        texts.append(cellText(row, column));
    return texts;
}

} // namespace tabulor
