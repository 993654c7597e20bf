#include "production/PageBreakRules.h"

namespace tabulor {

bool breakAllowedBefore(const std::vector<GridRow>& rows, size_t index, bool widowControl)
{
    if (!widowControl || index == 0 || index >= rows.size())
        return true;
    if (rows[index - 1].kind == RowKind::Opening)
        return false; // a heading never ends a page
    if (rows[index].kind == RowKind::Closing)
        return false; // a closing row never starts one
    return true;
}

size_t keepTogetherEnd(const std::vector<GridRow>& rows, size_t start, bool widowControl)
{
    size_t end = start + 1;
    while (end < rows.size() && !breakAllowedBefore(rows, end, widowControl))
        ++end;
    return end;
}

} // namespace tabulor
