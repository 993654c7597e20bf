#pragma once

#include "production/FieldType.h"

#include <QList>
#include <QString>
#include <QVariant>

namespace tabulor {

struct GridColumn
{
    QString title; // the field name, shown in the title row
    qint16 type = FieldText;
    qint16 alignment = AlignLeftTop;
};

// The report grid: the columns of the record source and the rows loaded from it, stored
// column by column.
class OutlineGrid
{
public:
    // No columns and no rows: only the (empty) title row.
    void clear();

    void setColumns(const QList<GridColumn>& columns);
    int columnCount() const { return static_cast<int>(m_columns.size()); }
    const GridColumn& column(int index) const { return m_columns.at(index); }
    GridColumn& column(int index) { return m_columns[index]; }

    // Appends one row; missing cells are empty.
    void appendRow(const QList<QVariant>& cells);
    qsizetype rowCount() const { return m_rowCount; }
    const QVariant& cell(qsizetype row, int column) const { return m_cells.at(column).at(row); }

    // The first column whose title equals name exactly, or -1.
    int FindGridColumn(const QString& name) const;

private:
    QList<GridColumn> m_columns;
    QList<QList<QVariant>> m_cells; // per column
    qsizetype m_rowCount = 0;
};

} // namespace tabulor
