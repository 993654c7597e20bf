#pragma once

#include "production/base/Export.h"

#include <QAbstractScrollArea>

#include <memory>
#include <optional>

namespace tabulor {

class PageDocument;
class PageImageCache;
class PreviewNavigation;
struct PageDisplayList;

// The print preview: the page of a document that a navigation shows, at its zoom, on a desk.
// Only the page shown is painted, from its display list, and its picture is kept for as long
// as the page and the zoom stay. In a fitted zoom mode the view works the zoom out from its
// size. Paging and zooming with the keys and the wheel go through the navigation, so whatever
// else follows it (a navigation bar) hears of them.
class TABULOR_EXPORT PreviewView : public QAbstractScrollArea
{
    Q_OBJECT

public:
    // Both must outlive the view; navigation is a navigation of document.
    PreviewView(const PageDocument& document, PreviewNavigation& navigation,
                QWidget* parent = nullptr);
    ~PreviewView() override;

    // Where the page shown lies in the viewport; empty when there is none.
    QRect pageRect() const;

public Q_SLOTS:
    // The document was written again: the view shows it as it is now.
    void documentRendered();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    // The page shown, or null when there is none or the document is being written.
    const PageDisplayList* shownPage() const;
    double dotsPerInch() const;
    // Hands the navigation the zoom of a fitted mode; true when that changed the zoom, and
    // the navigation's signal has brought the view up to date already.
    bool fitZoom();
    // Takes the page, zoom and document as the navigation has them now.
    void followNavigation();
    // Sizes the page for the zoom, and the scroll bars for the page and the viewport.
    void layOutPage();
    void updateScrollBars();
    // Goes to page, at its top or its bottom.
    void turnTo(int page, bool atBottom);
    // Sets a zoom of the user's own, keeping the page's point under anchor where it is.
    void zoomTo(double zoom, std::optional<QPointF> anchor = std::nullopt);
    void zoomBySteps(int steps, std::optional<QPointF> anchor = std::nullopt);
    // Ctrl with plus or equals zooms in, with minus out, with 0 to 100%; false for other keys.
    bool zoomKey(int key);
    // A wheel turn past the top or bottom of the page turns to the next or previous page.
    void wheelPastPage(int delta);

    const PageDocument& m_document;
    PreviewNavigation& m_navigation;
    std::unique_ptr<PageImageCache> m_cache;
    QSizeF m_pageTwips; // the page laid out; empty without one
    QSize m_pageSize;   // its size in the viewport
    double m_dotsPerInch = 0;
    int m_shownPage = 0;
    bool m_enterAtBottom = false;
    std::optional<QPointF> m_zoomAnchor;
    int m_wheelZoom = 0;
    int m_wheelPastPage = 0;
};

} // namespace tabulor
