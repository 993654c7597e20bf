#pragma once

#include "production/pagination/ReportBody.h"

#include <vector>

namespace tabulor {

// Where the body rows of a report come from: a built grid, or records streaming in.
class BodyRows
{
public:
    virtual ~BodyRows() = default;

    // Whether the report has no body rows at all.
    virtual bool empty() const = 0;
    // Rows after the first GridLayout::kFitRows that the widths of the columns must hold as
    // well: closing rows, whose totals are often the widest texts of their columns.
    virtual std::vector<BodyRow> laterRowsToFit() const = 0;
    // Hands every body row to body in report order, until the body is stopped.
    virtual void writeTo(ReportBody& body) = 0;
};

} // namespace tabulor
