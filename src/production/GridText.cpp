#include "production/GridText.h"

#include "production/Aggregate.h"

namespace tabulor {

GridText::GridText(const OutlineGrid& grid, FormatLocale locale)
    : m_grid(grid), m_locale(std::move(locale))
{
    m_formats.reserve(static_cast<size_t>(grid.columnCount()));
    for (int c = 0; c < grid.columnCount(); ++c)
        m_formats.emplace_back(grid.column(c).format);
}

QString GridText::format(const QVariant& value, int gridColumn) const
{
    return m_formats[static_cast<size_t>(gridColumn)].apply(value, m_locale);
}

QString GridText::cellText(const GridRow& row, int gridColumn) const
{
    if (!row.isGroupRow())
        return format(m_grid.value(row.record, gridColumn), gridColumn);

    const OutlineEntry& entry = m_grid.outlines().at(static_cast<size_t>(row.outline));
    const QList<int>& columns = m_grid.reportColumns();
    if (row.depth < columns.size() && columns.at(row.depth) == gridColumn) {
        QString caption = entry.caption;
        return caption.replace(QStringLiteral("%s"),
                               format(m_grid.value(row.record, gridColumn), gridColumn));
    }
    for (const OutlineEntry::Total& total : entry.totals) {
        if (total.column != gridColumn)
            continue;
        const QVariant value = m_grid.cells(gridColumn).toVariant(total.value);
        // A count is a number of values, whatever the column holds.
        return total.aggregate == AggregateCount ? valueText(value, m_locale)
                                                 : format(value, gridColumn);
    }
    return QString();
}

QStringList GridText::rowTexts(const GridRow& row) const
{
    QStringList texts;
    for (int column : m_grid.reportColumns())
        texts.append(cellText(row, column));
    return texts;
}

} // namespace tabulor
