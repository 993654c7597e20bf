#pragma once

#include "production/grid/OutlineGrid.h"

namespace tabulor {

// Whether a page or newspaper column may end between two body rows of these kinds. Without
// widow control every break is allowed. With it, a group's heading rows stay with the rows
// that follow them and a group's closing rows stay with the rows they close.
bool breakAllowedBetween(RowKind previous, RowKind next, bool widowControl);

} // namespace tabulor
