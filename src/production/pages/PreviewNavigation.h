#pragma once

#include "production/base/Export.h"

#include <QObject>

namespace tabulor {

class PageDocument;

// How the zoom of a preview is chosen: a percentage the user sets, or one that fits the page
// into the view.
enum class ZoomMode
{
    Percent = 0,
    WholePage = 1,
    PageWidth = 2,
};

// The page a preview shows of a document and the zoom it shows it at: what a navigation bar
// reads and sets, and what the view that paints the pages follows. In a fitted zoom mode the
// view works the percentage out from its size and hands it in.
class TABULOR_EXPORT PreviewNavigation : public QObject
{
    Q_OBJECT

public:
    static constexpr int kMinimumZoom = 10;
    static constexpr int kMaximumZoom = 400;
    static constexpr int kZoomStep = 10;

    explicit PreviewNavigation(const PageDocument& document, QObject* parent = nullptr);

    // 1-based; 1 also for a document without pages.
    int page() const { return m_page; }
    int pageCount() const;
    // Kept within the document's pages.
    void setPage(int page);

    // In percent.
    double zoom() const { return m_zoom; }
    ZoomMode zoomMode() const { return m_zoomMode; }
    // The user's own zoom, kept within the minimum and maximum; it takes effect in the
    // percentage mode only.
    void setZoom(double percent);
    void setZoomMode(ZoomMode mode);
    // The zoom that the view worked out for a fitted mode.
    void setFittedZoom(double percent);

    // The document was rendered again: the page stays where it was if the document still has
    // it.
    void documentChanged();

Q_SIGNALS:
    void changed();

private:
    const PageDocument& m_document;
    int m_page = 1;
    double m_zoom = 100;
    double m_userZoom = 100;
    ZoomMode m_zoomMode = ZoomMode::Percent;
};

} // namespace tabulor
