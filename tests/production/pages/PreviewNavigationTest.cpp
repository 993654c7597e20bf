#include "production/pages/PreviewNavigation.h"
#include "BlankPages.h"

#include <QSignalSpy>

#include <gtest/gtest.h>

using namespace tabulor;
using tabulor::test::writeBlankPages;

TEST(PreviewNavigation, PagesStayWithinTheDocumentAndZoomWithinItsBounds)
{
    PageDocument document;
    PreviewNavigation preview(document);
    QSignalSpy changed(&preview, &PreviewNavigation::changed);

    EXPECT_EQ(preview.page(), 1);
    preview.setPage(4);
    EXPECT_EQ(preview.page(), 1) << "a document without pages shows page 1";
    EXPECT_EQ(changed.count(), 0);

    writeBlankPages(document, 5);
    preview.setPage(4);
    EXPECT_EQ(preview.page(), 4);
    preview.setPage(9);
    EXPECT_EQ(preview.page(), 5);
    preview.setPage(-2);
    EXPECT_EQ(preview.page(), 1);

    preview.setZoom(1000);
    EXPECT_EQ(preview.zoom(), PreviewNavigation::kMaximumZoom);
    preview.setZoom(1);
    EXPECT_EQ(preview.zoom(), PreviewNavigation::kMinimumZoom);

    // A shorter document keeps the page only where it still exists.
    preview.setPage(5);
    writeBlankPages(document, 2);
    preview.documentChanged();
    EXPECT_EQ(preview.page(), 2);
}

TEST(PreviewNavigation, AFittedZoomComesFromTheViewAndTheUsersZoomComesBack)
{
    PageDocument document;
    PreviewNavigation preview(document);
    preview.setZoom(150);
    preview.setFittedZoom(60);
    EXPECT_EQ(preview.zoom(), 150) << "the view's fitted zoom counts only in a fitted mode";

    preview.setZoomMode(ZoomMode::WholePage);
    preview.setFittedZoom(60);
    EXPECT_EQ(preview.zoom(), 60);
    preview.setZoom(200); // remembered, not shown while the page is fitted
    EXPECT_EQ(preview.zoom(), 60);

    preview.setZoomMode(ZoomMode::Percent);
    EXPECT_EQ(preview.zoom(), 200);
}
