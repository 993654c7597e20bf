#pragma once

#include <QSizeF>

namespace tabulor {

// The zoom, in percent, at which a page whose size at 100% is pageAt100 (pixels) shows whole
// in area, with margin pixels of desk around it on every side.
double wholePageZoom(QSizeF pageAt100, QSizeF area, double margin);

// The zoom at which the page's width fills area less its margins. When the page then runs
// taller than the area, a vertical scroll bar of scrollBarExtent pixels will take part of the
// width, and the page is fitted to what it leaves.
double pageWidthZoom(QSizeF pageAt100, QSizeF area, double margin, double scrollBarExtent);

// The zoom steps of PreviewNavigation::kZoomStep away from zoom (negative steps zoom out). A
// zoom between two steps, as a fitted one is, moves to the next step in that direction.
double steppedZoom(double zoom, int steps);

} // namespace tabulor
