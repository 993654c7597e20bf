#include "production/pagination/PageBreakRules.h"

namespace tabulor {

bool breakAllowedBetween(RowKind previous, RowKind next, bool widowControl)
{
    if (!widowControl)
        return true;
    // A heading never ends a page and a closing row never starts one.
    return previous != RowKind::Opening && next != RowKind::Closing;
}

} // namespace tabulor
