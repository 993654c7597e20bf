#include "production/OutlineGrid.h"

namespace tabulor {

void OutlineGrid::clear()
{
    setColumns({});
}

void OutlineGrid::setColumns(const QList<GridColumn>& columns)
{
    m_columns = columns;
    m_cells.assign(static_cast<size_t>(columns.size()), ColumnCells());
    m_recordCount = 0;
    m_reportColumns.clear();
    m_rows.clear();
    m_groupPlan = GroupPlan();
    m_totalValues.clear();
}

void OutlineGrid::appendRow(const QList<QVariant>& cells)
{
    for (int c = 0; c < columnCount(); ++c)
        m_cells[c].append(c < cells.size() ? cells.at(c) : QVariant());
    GridRow row;
    row.record = static_cast<qint32>(m_recordCount++);
    m_rows.push_back(row);
}

int OutlineGrid::FindGridColumn(const QString& name) const
{
    for (int c = 0; c < columnCount(); ++c) {
        if (m_columns.at(c).title == name)
            return c;
    }
    return -1;
}

} // namespace tabulor
