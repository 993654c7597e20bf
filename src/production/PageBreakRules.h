#pragma once

#include "production/OutlineGrid.h"

#include <vector>

namespace tabulor {

// Whether a page or newspaper column may end before body row `index`. Without widow control
// every break is allowed. With it, a group's heading rows stay with the rows that follow them
// and a group's closing rows stay with the rows they close.
bool breakAllowedBefore(const std::vector<GridRow>& rows, size_t index, bool widowControl);

// The end of the run of rows that must stay on one page with row `start`: the first index
// after it before which a break is allowed (or the end of the rows).
size_t keepTogetherEnd(const std::vector<GridRow>& rows, size_t start, bool widowControl);

} // namespace tabulor
