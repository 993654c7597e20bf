#pragma once

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
    qint16 aggregate; // 1 Sum ... 7 Std. Dev.
};

struct GroupPlan
{
    std::vector<GroupLevel> levels;
    std::vector<TotalColumn> totals; // shown on closing rows
    bool opening = false;            // heading rows above each group
    bool closing = false;            // closing rows with totals below each group
};

} // namespace tabulor
