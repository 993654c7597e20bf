#pragma once

#include "production/pages/DisplayList.h"

#include <QImage>
#include <QRect>

namespace tabulor {

class FontCatalog;

// The size in pixels of a page of pageTwips shown at dotsPerInch.
QSize pagePixels(QSizeF pageTwips, double dotsPerInch);

// The picture of the page a preview shows, played back from its display list once for a zoom
// and a device pixel ratio and kept until either changes, so that scrolling and repainting
// only copy pixels. A page that would take too much memory at a high zoom is kept in part:
// what is shown, with a screenful of room to scroll around it, played back again once the
// view scrolls past it.
class PageImageCache
{
public:
    struct Picture
    {
        QImage image;
        QPoint origin; // where the image's top left corner lies on the page, in pixels
    };

    // A picture of at least the part visible (pixels from the page's top left corner) of page
    // number pageNumber at dotsPerInch, with devicePixelRatio device pixels to each pixel.
    const Picture& picture(const PageDisplayList& page, int pageNumber, const FontCatalog& fonts,
                           double dotsPerInch, qreal devicePixelRatio, QRect visible);
    // The picture kept, whatever it shows; a null image when there is none.
    const Picture& last() const { return m_picture; }
    // The document was written again: the picture kept is played back again when it is next
    // asked for (into the same memory when it has the same size).
    void invalidate() { m_pageNumber = 0; }

private:
    Picture m_picture;
    int m_pageNumber = 0;
    double m_dotsPerInch = 0;
    qreal m_devicePixelRatio = 0;
};

} // namespace tabulor
