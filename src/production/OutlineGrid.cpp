#include "production/OutlineGrid.h"

namespace tabulor {

void OutlineGrid::clear()
{
    m_columns.clear();
    m_cells.clear();
    m_rowCount = 0;
}

void OutlineGrid::setColumns(const QList<GridColumn>& columns)
{
    m_columns = columns;
    m_cells = QList<QList<QVariant>>(columns.size());
    m_rowCount = 0;
}

void OutlineGrid::appendRow(const QList<QVariant>& cells)
{
    for (int c = 0; c < columnCount(); ++c)
        m_cells[c].append(c < cells.size() ? cells.at(c) : QVariant());
    ++m_rowCount;
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
