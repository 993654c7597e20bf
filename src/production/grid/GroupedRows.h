#pragma once

#include "production/grid/Aggregate.h"
#include "production/grid/OutlineGrid.h"
#include "production/grid/RecordOrder.h"

#include <vector>

namespace tabulor {

// The outline level a group row holds: 0, 1, 2 ... for heading rows of levels 1, 2, 3 ...;
// -100, -99, -98 ... for closing rows.
qint16 outlineLevel(RowKind kind, int depth);

// Lays out records, given in report order, as the grid's body rows after its group plan:
// each group opens with its heading row and closes with its closing row, and a change of
// value in a group column closes the groups from that level inwards. Records stream in one at
// a time, so the rows can be written out while the data is still being read.
class GroupedRows
{
public:
    // grandTotals: per entry of the plan's totals, the column's total over all records (for
    // Percent).
    GroupedRows(OutlineGrid& grid, std::vector<double> grandTotals);

    void add(qint32 record);
    // Closes the groups still open.
    void finish();

    // The records the groups still open refer to: the last record added and the first record
    // of each open group. A grid that drops its other records keeps these.
    std::vector<qint32> retainedRecords() const;
    // After the grid kept only the records retainedRecords() gave, in that order.
    void renumber(const std::vector<qint32>& retained);

private:
    void open(int depth, qint32 record);
    void close(int depth);

    OutlineGrid& m_grid;
    const GroupPlan& m_plan;
    std::vector<double> m_grandTotals;
    QCollator m_collator;
    qint32 m_previous = -1;
    std::vector<qint32> m_firstRecord; // per level, of the open group
    // Per level and total: the innermost level collects the records, each closing level hands
    // its values on to the level around it.
    std::vector<std::vector<Accumulator>> m_accumulators;
};

} // namespace tabulor
