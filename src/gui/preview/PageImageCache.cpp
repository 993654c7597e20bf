#include "gui/preview/PageImageCache.h"

#include "production/pages/PagePainter.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace tabulor {

namespace {

// What a picture may take: a whole page of up to 8M device pixels (32 MB), or as many pixels
// as four views, which at a high zoom holds what is visible and a screenful to scroll around.
constexpr double kPictureBudget = 8 * 1024 * 1024;
constexpr double kViewsKept = 4;

// The part of a page of pageSize pixels to play back so that visible is shown and the view
// can scroll around it: the whole page when its picture stays within the budget, else a
// quarter of a view to the left and right of what is visible and half a view above and below.
QRect keptPart(QSize pageSize, QRect visible, qreal devicePixelRatio)
{
    const auto devicePixels = [devicePixelRatio](QSize size) {
        return double(size.width()) * size.height() * devicePixelRatio * devicePixelRatio;
    };
    const QRect page(QPoint(0, 0), pageSize);
    if (devicePixels(pageSize) <=
        std::max(kPictureBudget, kViewsKept * devicePixels(visible.size())))
        return page;
    const QSize size = visible.size()
                           .grownBy(QMargins(visible.width() / 4, visible.height() / 2,
                                             visible.width() / 4, visible.height() / 2))
                           .boundedTo(pageSize);
    // Centred on what is visible, and moved inside the page: the size, and so the image,
    // stays the same while the view scrolls.
    const QPoint topLeft(
        std::clamp(visible.center().x() - size.width() / 2, 0, pageSize.width() - size.width()),
        std::clamp(visible.center().y() - size.height() / 2, 0, pageSize.height() - size.height()));
    return QRect(topLeft, size);
}

} // namespace

QSize pagePixels(QSizeF pageTwips, double dotsPerInch)
{
    return QSize(static_cast<int>(std::lround(pageTwips.width() * dotsPerInch / 1440)),
                 static_cast<int>(std::lround(pageTwips.height() * dotsPerInch / 1440)));
}

const PageImageCache::Picture& PageImageCache::picture(const PageDisplayList& page, int pageNumber,
                                                       const FontCatalog& fonts, double dotsPerInch,
                                                       qreal devicePixelRatio, QRect visible)
{
    const QRect kept(m_picture.origin, m_picture.image.deviceIndependentSize().toSize());
    const bool sameScale = pageNumber == m_pageNumber && dotsPerInch == m_dotsPerInch &&
                           devicePixelRatio == m_devicePixelRatio;
    if (!m_picture.image.isNull() && sameScale && kept.contains(visible))
        return m_picture;

    const QRect part = keptPart(pagePixels(page.size, dotsPerInch), visible, devicePixelRatio);
    const QSize imageSize = (QSizeF(part.size()) * devicePixelRatio).toSize();
    // An image of the same size is painted over: fresh memory is slow to come by at the sizes
    // of a high zoom. Else the old one goes before the new one is made.
    if (m_picture.image.size() != imageSize || m_devicePixelRatio != devicePixelRatio) {
        m_picture.image = QImage();
        m_picture.image = QImage(imageSize, QImage::Format_RGB32);
        m_picture.image.setDevicePixelRatio(devicePixelRatio);
    }
    m_picture.image.fill(Qt::white);
    m_picture.origin = part.topLeft();
    QPainter painter(&m_picture.image);
    painter.translate(-part.topLeft());
    useTwips(painter, dotsPerInch);
    paintPage(painter, page, fonts);
    m_pageNumber = pageNumber;
    m_dotsPerInch = dotsPerInch;
    m_devicePixelRatio = devicePixelRatio;
    return m_picture;
}

} // namespace tabulor
