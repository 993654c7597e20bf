#include "gui/preview/PreviewZoom.h"

#include "production/pages/PreviewNavigation.h"

#include <algorithm>
#include <cmath>

namespace tabulor {

double wholePageZoom(QSizeF pageAt100, QSizeF area, double margin)
{
    return 100 * std::min((area.width() - 2 * margin) / pageAt100.width(),
                          (area.height() - 2 * margin) / pageAt100.height());
}

double pageWidthZoom(QSizeF pageAt100, QSizeF area, double margin, double scrollBarExtent)
{
    const double zoom = 100 * (area.width() - 2 * margin) / pageAt100.width();
    if (pageAt100.height() * zoom / 100 + 2 * margin <= area.height())
        return zoom;
    return 100 * (area.width() - scrollBarExtent - 2 * margin) / pageAt100.width();
}

double steppedZoom(double zoom, int steps)
{
    constexpr double step = PreviewNavigation::kZoomStep;
    // A zoom a hair off a step (from a division) counts as on it.
    const double onStep = std::round(zoom / step);
    const double steppedFrom = std::abs(zoom / step - onStep) < 1e-9 ? onStep
                               : steps > 0                           ? std::floor(zoom / step)
                                                                     : std::ceil(zoom / step);
    return (steppedFrom + steps) * step;
}

} // namespace tabulor
