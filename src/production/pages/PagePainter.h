#pragma once

#include "production/base/Export.h"
#include "production/pages/DisplayList.h"
#include "production/pages/FontCatalog.h"

#include <QPainter>

namespace tabulor {

// Plays a page's display list back on a painter whose unit is one twip (scale the painter by
// the device's dots per inch / 1440 first).
TABULOR_EXPORT void paintPage(QPainter& painter, const PageDisplayList& page,
                              const FontCatalog& fonts);

// Scales a painter on a device of the given resolution so that one unit is one twip.
TABULOR_EXPORT void useTwips(QPainter& painter, double dotsPerInch);

} // namespace tabulor
