#include "production/grid/OutlineGrid.h"

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
    GridRow row;
    row.record = appendRecord(cells);
    m_rows.push_back(row);
}

void OutlineGrid::appendRow(const Recordset& records)
{
    GridRow row;
    row.record = appendRecord(records);
    m_rows.push_back(row);
}

qint32 OutlineGrid::appendRecord(const QList<QVariant>& cells)
{
    for (int c = 0; c < columnCount(); ++c)
        m_cells[c].append(c < cells.size() ? cells.at(c) : QVariant());
    return static_cast<qint32>(m_recordCount++);
}

qint32 OutlineGrid::appendRecord(const Recordset& records)
{
    for (int c = 0; c < columnCount(); ++c)
        m_cells[c].append(records, c);
    return static_cast<qint32>(m_recordCount++);
}

void OutlineGrid::keepRecords(const std::vector<qint32>& records)
{
    for (ColumnCells& cells : m_cells)
        cells.keep(records);
    m_recordCount = static_cast<qsizetype>(records.size());
    m_rows.clear();
    m_totalValues.clear();
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
