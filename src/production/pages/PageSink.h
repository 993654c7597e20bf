#pragma once

#include "production/pages/DisplayList.h"

#include <vector>

namespace tabulor {

// Where a document's pages go as soon as they are laid out, so that a long report need not be
// held in memory: the overlays that need the final page count follow at the end.
class PageSink
{
public:
    virtual ~PageSink() = default;
    virtual void addPage(PageDisplayList&& page) = 0;
    // More items on a page already added (0-based).
    virtual void addOverlay(int page, std::vector<DisplayItem>&& items) = 0;
};

} // namespace tabulor
