#pragma once

#include "production/Aggregate.h"
#include "production/OutlineGrid.h"
#include "production/RecordOrder.h"

#include <QString>

#include <vector>

namespace tabulor {

// How the report groups its records: one level per group column, outermost first.
struct GroupLevel
{
    int column;             // grid column
    QString openingCaption; // "%s": the group's value
    QString closingCaption; // "%s", or the field's title
};

struct TotalColumn
{
    int column;
    qint16 aggregate;
};

struct GroupPlan
{
    std::vector<GroupLevel> levels;
    std::vector<TotalColumn> totals; // shown on closing rows
    bool opening = false;            // heading rows above each group
    bool closing = false;            // closing rows with totals below each group
};

// The outline level a group row holds: 0, 1, 2 ... for heading rows of levels 1, 2, 3 ...;
// -100, -99, -98 ... for closing rows.
qint16 outlineLevel(RowKind kind, int depth);

// Lays out records, given in report order, as body rows: each group opens with its heading
// row and closes with its closing row, and a change of value in a group column closes the
// groups from that level inwards. Records stream in one at a time, so the rows can be written
// out while the data is still being read.
class GroupedRows
{
public:
    // grandTotals: per entry of plan.totals, the column's total over all records (for
    // Percent).
    GroupedRows(const OutlineGrid& grid, GroupPlan plan, std::vector<double> grandTotals,
                std::vector<GridRow>& rows, std::vector<OutlineEntry>& outlines);

    void add(qint32 record);
    // Closes the groups still open.
    void finish();

private:
    void open(int depth, qint32 record);
    void close(int depth);

    const OutlineGrid& m_grid;
    GroupPlan m_plan;
    std::vector<double> m_grandTotals;
    std::vector<GridRow>& m_rows;
    std::vector<OutlineEntry>& m_outlines;
    CellOrder m_groupOrder;
    qint32 m_previous = -1;
    std::vector<qint32> m_firstRecord;                    // per level, of the open group
    std::vector<std::vector<Accumulator>> m_accumulators; // per level, per total
};

} // namespace tabulor
