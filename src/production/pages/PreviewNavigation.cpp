#include "production/pages/PreviewNavigation.h"

#include "production/pages/PageDocument.h"

#include <algorithm>

namespace tabulor {

PreviewNavigation::PreviewNavigation(const PageDocument& document, QObject* parent)
    : QObject(parent), m_document(document)
{
}

int PreviewNavigation::pageCount() const
{
    return m_document.PageCount();
}

void PreviewNavigation::setPage(int page)
{
    const int kept = std::clamp(page, 1, std::max(1, pageCount()));
    if (kept == m_page)
        return;
    m_page = kept;
    Q_EMIT changed();
}

void PreviewNavigation::setZoom(double percent)
{
    m_userZoom = std::clamp(percent, double(kMinimumZoom), double(kMaximumZoom));
    if (m_zoomMode != ZoomMode::Percent || m_zoom == m_userZoom)
        return;
    m_zoom = m_userZoom;
    Q_EMIT changed();
}

void PreviewNavigation::setZoomMode(ZoomMode mode)
{
    if (mode == m_zoomMode)
        return;
    m_zoomMode = mode;
    if (mode == ZoomMode::Percent)
        m_zoom = m_userZoom;
    Q_EMIT changed();
}

void PreviewNavigation::setFittedZoom(double percent)
{
    const double fitted = std::clamp(percent, double(kMinimumZoom), double(kMaximumZoom));
    if (m_zoomMode == ZoomMode::Percent || fitted == m_zoom)
        return;
    m_zoom = fitted;
    Q_EMIT changed();
}

void PreviewNavigation::documentChanged()
{
    m_page = std::clamp(m_page, 1, std::max(1, pageCount()));
    Q_EMIT changed();
}

} // namespace tabulor
