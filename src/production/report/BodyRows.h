#pragma once

#include "production/pagination/ReportBody.h"

namespace tabulor {

// Where the body rows of a report come from: a built grid, or records streaming in.
class BodyRows
{
public:
    virtual ~BodyRows() = default;

    // Whether the report has no body rows at all.
    virtual bool empty() const = 0;
    // Hands every body row to body in report order, until the body is stopped.
    virtual void writeTo(ReportBody& body) = 0;
};

} // namespace tabulor
