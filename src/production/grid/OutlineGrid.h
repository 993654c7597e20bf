#pragma once

#include "production/base/FieldType.h"
#include "production/grid/CellValue.h"
#include "production/grid/ColumnCells.h"
#include "production/grid/GroupPlan.h"

#include <QList>
#include <QString>
#include <QVariant>

#include <vector>

namespace tabulor {

struct GridColumn
{
    QString title; // the field name, shown in the title row
    qint16 type = FieldText;
    qint16 alignment = AlignLeftTop; // 0 left, 3 centre, 6 right (top-aligned codes)
    QString format;                  // display format; empty shows the value's own text
    qint16 sort = 0;                 // 0 none, 1 ascending, 2 descending
    float width = 0;                 // twips; 0 fits the content
};

enum class RowKind : quint8
{
    Data,    // one record
    Opening, // a group's heading row, above the group
    Closing, // a group's closing row with its totals, below the group
};

// One row of the report body (the title row is not among them).
struct GridRow
{
    qint32 record = -1;  // the record shown; for group rows the group's first record
    qint32 outline = -1; // closing rows: the number of their block of totals
    qint16 level = 0;    // group rows: the outline level (0, 1, 2 opening; -100, -99, -98 closing)
    qint16 style = 5;    // index into the style table
    RowKind kind = RowKind::Data;
    quint8 depth = 0; // group rows: the group level, 0 for the outermost

    bool isGroupRow() const { return kind != RowKind::Data; }
};

// The report grid: the columns and records of the record source, and the report laid out
// over them: which columns show in which order, and the body rows (records in report order
// with the group rows between them).
class OutlineGrid
{
public:
    // No columns, no records, no report.
    void clear();

    void setColumns(const QList<GridColumn>& columns);
    int columnCount() const { return static_cast<int>(m_columns.size()); }
    const GridColumn& column(int index) const { return m_columns.at(index); }
    GridColumn& column(int index) { return m_columns[index]; }

    // Appends one record and a body row showing it; missing cells are empty.
    void appendRow(const QList<QVariant>& cells);
    // Appends the current record of records, whose fields are the grid's columns, and a body
    // row showing it.
    void appendRow(const Recordset& records);
    // Appends one record without a body row; returns its number.
    qint32 appendRecord(const QList<QVariant>& cells);
    qint32 appendRecord(const Recordset& records);
    // Keeps only these records, numbered anew in this order, and drops the body rows and their
    // totals: a report that streams its records keeps just what its open groups refer to.
    void keepRecords(const std::vector<qint32>& records);
    qsizetype recordCount() const { return m_recordCount; }
    const CellValue& cell(qsizetype record, int column) const { return m_cells[column].at(record); }
    QVariant value(qsizetype record, int column) const { return m_cells[column].value(record); }
    const ColumnCells& cells(int column) const { return m_cells[column]; }

    // The first column whose title equals name exactly, or -1.
    int FindGridColumn(const QString& name) const;

    // The report: grid columns in the order they show, and the body rows.
    const QList<int>& reportColumns() const { return m_reportColumns; }
    void setReportColumns(const QList<int>& columns) { m_reportColumns = columns; }
    std::vector<GridRow>& rows() { return m_rows; }
    const std::vector<GridRow>& rows() const { return m_rows; }
    // How the rows are grouped, with the captions of group rows and the columns with totals.
    const GroupPlan& groupPlan() const { return m_groupPlan; }
    void setGroupPlan(GroupPlan plan) { m_groupPlan = std::move(plan); }
    // The totals of the closing rows, one block of groupPlan().totals.size() values per row.
    std::vector<CellValue>& totalValues() { return m_totalValues; }
    // A closing row's total for entry t of groupPlan().totals.
    const CellValue& total(const GridRow& row, size_t t) const
    {
        return m_totalValues[static_cast<size_t>(row.outline) * m_groupPlan.totals.size() + t];
    }

private:
    QList<GridColumn> m_columns;
    std::vector<ColumnCells> m_cells; // per column
    qsizetype m_recordCount = 0;
    QList<int> m_reportColumns;
    std::vector<GridRow> m_rows;
    GroupPlan m_groupPlan;
    std::vector<CellValue> m_totalValues;
};

} // namespace tabulor
