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

    const GroupPlan& plan = m_grid.groupPlan();
    const GroupLevel& level = plan.levels[row.depth];
    if (level.column == gridColumn) {
        QString caption =
            row.kind == RowKind::Opening ? level.openingCaption : level.closingCaption;
        return caption.replace(QStringLiteral("%s"),
                               format(m_grid.value(row.record, gridColumn), gridColumn));
    }
    if (row.kind != RowKind::Closing)
        return QString();
    for (size_t t = 0; t < plan.totals.size(); ++t) {
        if (plan.totals[t].column != gridColumn)
            continue;
        const QVariant value = m_grid.cells(gridColumn).toVariant(m_grid.total(row, t));
        // A count is a number of values, whatever the column holds.
        return plan.totals[t].aggregate == AggregateCount ? valueText(value, m_locale)
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
