#include "gui/preview/PreviewView.h"

#include "gui/preview/PageImageCache.h"
#include "gui/preview/PreviewZoom.h"
#include "production/pages/PageDocument.h"
#include "production/pages/PreviewNavigation.h"

#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace tabulor {

namespace {

constexpr int kDeskMargin = 16;
constexpr int kShadowOffset = 4;
constexpr int kScrollStep = 20;
// What one notch of a mouse wheel turns, in the units of QWheelEvent::angleDelta.
constexpr int kWheelNotch = 120;

// Where a page of the given length starts along one side of a viewport scrolled by offset:
// centred when it fits with its margins, else after its margin less the scrolling.
int pageStart(int page, int viewport, int offset)
{
    return page + 2 * kDeskMargin <= viewport ? (viewport - page) / 2 : kDeskMargin - offset;
}

} // namespace

PreviewView::PreviewView(const PageDocument& document, PreviewNavigation& navigation,
                         QWidget* parent)
    : QAbstractScrollArea(parent), m_document(document), m_navigation(navigation),
      m_cache(std::make_unique<PageImageCache>())
{
    setObjectName(QStringLiteral("vp"));
    setFocusPolicy(Qt::StrongFocus);
    viewport()->setAttribute(Qt::WA_OpaquePaintEvent);
    horizontalScrollBar()->setSingleStep(kScrollStep);
    verticalScrollBar()->setSingleStep(kScrollStep);
    connect(&m_navigation, &PreviewNavigation::changed, this, &PreviewView::followNavigation);
    followNavigation();
}

PreviewView::~PreviewView() = default;

QRect PreviewView::pageRect() const
{
    if (m_pageSize.isEmpty())
        return {};
    const QPoint topLeft(
        pageStart(m_pageSize.width(), viewport()->width(), horizontalScrollBar()->value()),
        pageStart(m_pageSize.height(), viewport()->height(), verticalScrollBar()->value()));
    return QRect(topLeft, m_pageSize);
}

void PreviewView::documentRendered()
{
    m_cache->invalidate();
    m_navigation.documentChanged();
}

const PageDisplayList* PreviewView::shownPage() const
{
    const std::vector<PageDisplayList>& pages = m_document.pages();
    const int page = m_navigation.page();
    if (m_document.inDocument() || page > static_cast<int>(pages.size()))
        return nullptr;
    return &pages[static_cast<size_t>(page - 1)];
}

double PreviewView::dotsPerInch() const
{
    return logicalDpiX() * m_navigation.zoom() / 100;
}

bool PreviewView::fitZoom()
{
    if (m_navigation.zoomMode() == ZoomMode::Percent || m_pageTwips.isEmpty())
        return false;
    const QSizeF pageAt100 = m_pageTwips * (logicalDpiX() / 1440.0);
    const QSizeF area = maximumViewportSize();
    const double fitted =
        m_navigation.zoomMode() == ZoomMode::WholePage
            ? wholePageZoom(pageAt100, area, kDeskMargin)
            : pageWidthZoom(pageAt100, area, kDeskMargin, verticalScrollBar()->sizeHint().width());
    const double before = m_navigation.zoom();
    m_navigation.setFittedZoom(fitted);
    return m_navigation.zoom() != before;
}

void PreviewView::followNavigation()
{
    // While the document is being written the view keeps the page it has.
    if (!m_document.inDocument()) {
        const PageDisplayList* page = shownPage();
        m_pageTwips = page ? page->size : QSizeF();
    }
    if (fitZoom())
        return;
    const QRect before = pageRect();
    const QPointF anchor = m_zoomAnchor.value_or(QRectF(viewport()->rect()).center());
    const QPointF anchorOnPage((anchor.x() - before.x()) / std::max(1, before.width()),
                               (anchor.y() - before.y()) / std::max(1, before.height()));
    const bool zoomed = dotsPerInch() != m_dotsPerInch;
    layOutPage();
    if (m_navigation.page() != m_shownPage) {
        verticalScrollBar()->setValue(m_enterAtBottom ? verticalScrollBar()->maximum() : 0);
    } else if (zoomed && !before.isEmpty()) {
        horizontalScrollBar()->setValue(static_cast<int>(
            std::lround(kDeskMargin + anchorOnPage.x() * m_pageSize.width() - anchor.x())));
        verticalScrollBar()->setValue(static_cast<int>(
            std::lround(kDeskMargin + anchorOnPage.y() * m_pageSize.height() - anchor.y())));
    }
    m_shownPage = m_navigation.page();
    m_enterAtBottom = false;
    viewport()->update();
}

void PreviewView::layOutPage()
{
    m_dotsPerInch = dotsPerInch();
    m_pageSize = m_pageTwips.isEmpty() ? QSize() : pagePixels(m_pageTwips, m_dotsPerInch);
    updateScrollBars();
}

void PreviewView::updateScrollBars()
{
    const QSize desk =
        m_pageSize.isEmpty() ? QSize(0, 0) : m_pageSize + QSize(2 * kDeskMargin, 2 * kDeskMargin);
    const QSize shown = viewport()->size();
    horizontalScrollBar()->setRange(0, std::max(0, desk.width() - shown.width()));
    horizontalScrollBar()->setPageStep(shown.width());
    verticalScrollBar()->setRange(0, std::max(0, desk.height() - shown.height()));
    verticalScrollBar()->setPageStep(shown.height());
}

void PreviewView::paintEvent(QPaintEvent* event)
{
    QPainter painter(viewport());
    painter.fillRect(event->rect(), palette().color(QPalette::Dark));
    const QRect page = pageRect();
    if (page.isEmpty())
        return;
    painter.fillRect(page.translated(kShadowOffset, kShadowOffset), QColor(0, 0, 0, 96));
    // The device pixels to a pixel of the viewport where the painter paints now: the screen's
    // ratio, or that of an image or another device the view is rendered into.
    const QTransform toDevice = painter.deviceTransform();
    const qreal devicePixelRatio = std::hypot(toDevice.m11(), toDevice.m12());
    const PageDisplayList* shown = shownPage();
    const QRect visible = page.intersected(viewport()->rect()).translated(-page.topLeft());
    const PageImageCache::Picture& picture =
        shown ? m_cache->picture(*shown, m_navigation.page(), m_document.fonts(), m_dotsPerInch,
                                 devicePixelRatio, visible)
              : m_cache->last();
    painter.fillRect(page, Qt::white);
    painter.drawImage(page.topLeft() + picture.origin, picture.image);
}

void PreviewView::resizeEvent(QResizeEvent* event)
{
    QAbstractScrollArea::resizeEvent(event);
    if (!fitZoom())
        updateScrollBars();
}

void PreviewView::keyPressEvent(QKeyEvent* event)
{
    const bool control = event->modifiers() & Qt::ControlModifier;
    const int page = m_navigation.page();
    QScrollBar* bar = verticalScrollBar();
    switch (event->key()) {
    case Qt::Key_PageDown:
        if (bar->value() < bar->maximum())
            bar->triggerAction(QAbstractSlider::SliderPageStepAdd);
        else if (page < m_navigation.pageCount())
            turnTo(page + 1, false);
        return;
    case Qt::Key_PageUp:
        if (bar->value() > bar->minimum())
            bar->triggerAction(QAbstractSlider::SliderPageStepSub);
        else if (page > 1)
            turnTo(page - 1, true);
        return;
    case Qt::Key_Home:
        turnTo(1, false);
        return;
    case Qt::Key_End:
        turnTo(std::max(1, m_navigation.pageCount()), false);
        return;
    default:
        break;
    }
    if (control && zoomKey(event->key()))
        return;
    QAbstractScrollArea::keyPressEvent(event);
}

bool PreviewView::zoomKey(int key)
{
    if (key == Qt::Key_Plus || key == Qt::Key_Equal)
        zoomBySteps(1);
    else if (key == Qt::Key_Minus)
        zoomBySteps(-1);
    else if (key == Qt::Key_0)
        zoomTo(100);
    else
        return false;
    return true;
}

void PreviewView::wheelEvent(QWheelEvent* event)
{
    const QPoint delta = event->angleDelta();
    if (event->modifiers() & Qt::ControlModifier) {
        m_wheelZoom += delta.y();
        const int steps = m_wheelZoom / kWheelNotch;
        m_wheelZoom -= steps * kWheelNotch;
        if (steps != 0)
            zoomBySteps(steps, event->position());
        event->accept();
        return;
    }
    const QScrollBar* bar = verticalScrollBar();
    const bool pastPage =
        event->modifiers() == Qt::NoModifier && std::abs(delta.y()) > std::abs(delta.x()) &&
        (delta.y() < 0 ? bar->value() == bar->maximum() : bar->value() == bar->minimum());
    if (!pastPage) {
        m_wheelPastPage = 0;
        QAbstractScrollArea::wheelEvent(event);
        return;
    }
    wheelPastPage(delta.y());
    event->accept();
}

void PreviewView::wheelPastPage(int delta)
{
    // A touchpad sends many small turns: a page turns only for a whole notch, so that it
    // does not fly through the pages.
    if ((m_wheelPastPage > 0) != (delta > 0))
        m_wheelPastPage = 0;
    m_wheelPastPage += delta;
    const int page = m_navigation.page();
    if (m_wheelPastPage <= -kWheelNotch && page < m_navigation.pageCount()) {
        m_wheelPastPage = 0;
        turnTo(page + 1, false);
    } else if (m_wheelPastPage >= kWheelNotch && page > 1) {
        m_wheelPastPage = 0;
        turnTo(page - 1, true);
    }
}

void PreviewView::turnTo(int page, bool atBottom)
{
    if (page == m_navigation.page()) {
        verticalScrollBar()->setValue(atBottom ? verticalScrollBar()->maximum() : 0);
        return;
    }
    m_enterAtBottom = atBottom;
    m_navigation.setPage(page);
    m_enterAtBottom = false;
}

void PreviewView::zoomTo(double zoom, std::optional<QPointF> anchor)
{
    m_zoomAnchor = anchor;
    // The zoom is set before the mode, so that leaving a fitted mode changes it only once.
    m_navigation.setZoom(zoom);
    m_navigation.setZoomMode(ZoomMode::Percent);
    m_zoomAnchor.reset();
}

void PreviewView::zoomBySteps(int steps, std::optional<QPointF> anchor)
{
    zoomTo(steppedZoom(m_navigation.zoom(), steps), anchor);
}

} // namespace tabulor
