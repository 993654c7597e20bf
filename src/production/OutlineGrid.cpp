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
    m_outlines.clear();
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

void OutlineGrid::resetRows()
{
    m_outlines.clear();
    m_rows.assign(static_cast<size_t>(m_recordCount), GridRow());
    for (qsizetype r = 0; r < m_recordCount; ++r)
        m_rows[static_cast<size_t>(r)].record = static_cast<qint32>(r);
}

} // namespace tabulor
