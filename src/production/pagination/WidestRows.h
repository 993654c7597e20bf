#pragma once

#include "definition/ReportStyle.h"
#include "production/grid/Aggregate.h"
#include "production/grid/GridText.h"
#include "production/grid/OutlineGrid.h"
#include "production/pagination/BodyRow.h"

#include <vector>

namespace tabulor {

// The widest texts a report's columns will show beyond its first rows, told from its records
// before they are grouped, so that the widths of the columns can be fixed before the rows are
// laid out:
// - a column's smallest and largest values are its widest numbers, dates and times;
// - a group's caption is widest with the longest value of the group's column;
// - a group's sum, or its percentage, stays within the sum of the values' magnitudes, and its
//   count within the number of values;
// - its average, maximum, minimum and deviation are measured by the totals over all records
//   and the range of the values.
// Whether the records stream in or were loaded, the same records give the same rows, and so
// the same widths.
class WidestRows
{
public:
    // report gives the report columns and the group plan.
    explicit WidestRows(const OutlineGrid& report);

    // Takes in one record of grid, whose columns are those of the report.
    void add(const OutlineGrid& grid, qint32 record);
    // Takes in every record of grid.
    void addAll(const OutlineGrid& grid);

    // The plain sum over all records for entry t of the plan's totals.
    double sum(size_t t) const { return m_all[t].sum(); }

    // Rows with those texts: two detail rows with each column's smallest and largest value,
    // then at each group level a heading row and closing rows with the widest caption and
    // totals, painted in the styles that the definition gives them.
    std::vector<BodyRow> rows(const GridText& text, const StyleTable& styles) const;

private:
    std::vector<BodyRow> groupRows(const GridText& text, const StyleTable& styles) const;

    QList<int> m_columns;
    GroupPlan m_plan;
    std::vector<Accumulator> m_values;            // per report column
    std::vector<Accumulator> m_all;               // per entry of the plan's totals
    std::vector<Accumulator> m_magnitudes;        // per entry of the plan's totals
    std::vector<QVariant> m_longestGroupValues;   // per group level
    std::vector<qsizetype> m_longestGroupLengths; // of their texts
};

} // namespace tabulor
