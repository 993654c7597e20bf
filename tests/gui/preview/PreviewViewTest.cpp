#include "gui/preview/PreviewView.h"
#include "production/pages/PageDocument.h"
#include "production/pages/PreviewNavigation.h"

#include "KnownPages.h"

#include <QApplication>
#include <QScrollBar>
#include <QTest>
#include <QWheelEvent>

#include <gtest/gtest.h>

using namespace tabulor;
using namespace tabulor::test;

namespace {

class PreviewViewTest : public ::testing::Test
{
protected:
    void show(int pages, QSize size = {500, 400})
    {
        if (pages > 0)
            KnownPages::write(document, pages);
        view.documentRendered();
        view.resize(size);
        view.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&view));
        settle();
    }

    // Scroll bars show and hide after the events that changed their ranges.
    static void settle()
    {
        for (int n = 0; n < 3; ++n)
            QCoreApplication::processEvents();
    }

    QImage picture(qreal devicePixelRatio = 1)
    {
        QImage image(view.viewport()->size() * devicePixelRatio, QImage::Format_RGB32);
        image.setDevicePixelRatio(devicePixelRatio);
        view.viewport()->render(&image);
        return image;
    }

    QColor colorAt(QPoint pixel) { return QColor(picture().pixel(pixel)); }

    double pixelsPerTwip() const { return KnownPages::pixelsPerTwip() * navigation.zoom() / 100; }
    // The viewport's pixel that shows a point of the page (twips), and the other way round.
    QPoint onScreen(QPointF twips) const
    {
        return view.pageRect().topLeft() + (twips * pixelsPerTwip()).toPoint();
    }
    QPointF onPage(QPoint pixel) const
    {
        return QPointF(pixel - view.pageRect().topLeft()) / pixelsPerTwip();
    }

    void wheel(int delta, Qt::KeyboardModifiers modifiers, QPoint at = {100, 100})
    {
        QWheelEvent event(at, view.viewport()->mapToGlobal(at), QPoint(), QPoint(0, delta),
                          Qt::NoButton, modifiers, Qt::NoScrollPhase, false);
        QApplication::sendEvent(view.viewport(), &event);
        settle();
    }

    // The narrower of the gaps between the page and the viewport's sides.
    int tightestGap() const
    {
        const QRect page = view.pageRect();
        const QRect shown = view.viewport()->rect();
        return std::min({page.left(), shown.right() - page.right(), page.top(),
                         shown.bottom() - page.bottom()});
    }

    PageDocument document;
    PreviewNavigation navigation{document};
    PreviewView view{document, navigation};
};

TEST_F(PreviewViewTest, PaintsThePageFromItsDisplayList)
{
    show(2);
    const QImage image = picture();
    EXPECT_EQ(QColor(image.pixel(onScreen(KnownPages::kBlock.center()))), QColor(Qt::red));
    EXPECT_EQ(QColor(image.pixel(onScreen(QPointF(5000, 4000)))), QColor(Qt::white));
    const QRect text(onScreen(KnownPages::kText.topLeft()),
                     onScreen(KnownPages::kText.bottomRight()));
    EXPECT_GT(inkedPixels(image, text), 20) << "the page's line of text";
    EXPECT_EQ(image.pixel(2, 2), view.palette().color(QPalette::Dark).rgb()) << "the desk";
}

TEST_F(PreviewViewTest, RendersAtTheDevicePixelRatio)
{
    show(1);
    // The bar is half a pixel wide: on a screen of twice the pixels it fills one of them.
    const QPoint bar = onScreen(KnownPages::bar().center());
    const QImage sharp = picture(2);
    const QPoint barPixel(bar.x() * 2, bar.y() * 2);
    EXPECT_LT(qGray(sharp.pixel(barPixel)), 40);
    EXPECT_GT(qGray(sharp.pixel(barPixel - QPoint(1, 0))), 215);
    EXPECT_GT(qGray(sharp.pixel(barPixel + QPoint(1, 0))), 215);

    const int blurred = qGray(picture(1).pixel(bar));
    EXPECT_GT(blurred, 60) << "at a ratio of 1 the bar half covers its pixel";
    EXPECT_LT(blurred, 200);
}

TEST_F(PreviewViewTest, AtAHighZoomEveryPartOfThePageIsPaintedWhereItBelongs)
{
    show(1);
    navigation.setZoom(PreviewNavigation::kMaximumZoom);
    settle();
    // The block's top left and bottom right corners, 4 pixels inside, each scrolled to the
    // view's middle: what is kept of a page this large is played back where it is shown.
    for (const auto& [corner, outward] :
         {std::pair(KnownPages::kBlock.topLeft() + QPointF(15, 15), QPoint(-8, -8)),
          std::pair(KnownPages::kBlock.bottomRight() - QPointF(15, 15), QPoint(8, 8))}) {
        const QPoint shift = onScreen(corner) - view.viewport()->rect().center();
        view.horizontalScrollBar()->setValue(view.horizontalScrollBar()->value() + shift.x());
        view.verticalScrollBar()->setValue(view.verticalScrollBar()->value() + shift.y());
        EXPECT_EQ(colorAt(onScreen(corner)), QColor(Qt::red));
        EXPECT_EQ(colorAt(onScreen(corner) + outward), QColor(Qt::white));
    }
}

TEST_F(PreviewViewTest, KeepsItsPictureWhileTheDocumentIsWrittenAgain)
{
    show(2);
    navigation.setPage(2);
    const QPoint block = onScreen(KnownPages::kBlock.center());
    document.StartDoc();
    document.Paragraph(QStringLiteral("Written again, without the block"));
    EXPECT_EQ(colorAt(block), QColor(Qt::red)) << "a half-written document is not shown";

    document.EndDoc();
    view.documentRendered();
    EXPECT_EQ(navigation.page(), 1) << "the document has one page now";
    EXPECT_EQ(colorAt(block), QColor(Qt::white));
}

TEST_F(PreviewViewTest, ADocumentWithoutPagesIsABareDesk)
{
    show(0);
    QTest::keyClick(&view, Qt::Key_End);
    wheel(-120, Qt::NoModifier);
    EXPECT_EQ(navigation.page(), 1);
    EXPECT_TRUE(view.pageRect().isEmpty());
    const QImage image = picture();
    const QRect shown = view.viewport()->rect();
    for (const QPoint at : {shown.topLeft(), shown.center(), shown.bottomRight()})
        EXPECT_EQ(image.pixel(at), view.palette().color(QPalette::Dark).rgb());
}

TEST_F(PreviewViewTest, PageKeysScrollThroughAPageBeforeTurningIt)
{
    show(3);
    QScrollBar* bar = view.verticalScrollBar();
    int scrolled = 0;
    for (; navigation.page() == 1 && scrolled < 10; ++scrolled)
        QTest::keyClick(&view, Qt::Key_PageDown);
    EXPECT_GT(scrolled, 2) << "a page taller than the view is scrolled through first";
    EXPECT_EQ(bar->value(), 0) << "the next page shows from its top";

    QTest::keyClick(&view, Qt::Key_PageUp);
    EXPECT_EQ(navigation.page(), 1);
    EXPECT_EQ(bar->value(), bar->maximum()) << "going back shows the previous page's end";

    QTest::keyClick(&view, Qt::Key_End);
    EXPECT_EQ(navigation.page(), 3);
    QTest::keyClick(&view, Qt::Key_PageDown);
    QTest::keyClick(&view, Qt::Key_Home);
    EXPECT_EQ(navigation.page(), 1);
    EXPECT_EQ(bar->value(), 0);
}

TEST_F(PreviewViewTest, TheWheelScrollsAndTurnsThePageAtItsEnds)
{
    show(3);
    QScrollBar* bar = view.verticalScrollBar();
    for (int n = 0; n < 100 && bar->value() < bar->maximum(); ++n)
        wheel(-120, Qt::NoModifier);
    EXPECT_EQ(navigation.page(), 1) << "the wheel scrolled to the end of the page";
    wheel(-60, Qt::NoModifier);
    EXPECT_EQ(navigation.page(), 1) << "half a notch past the end turns no page";
    wheel(-60, Qt::NoModifier);
    EXPECT_EQ(navigation.page(), 2);
    EXPECT_EQ(bar->value(), 0);

    wheel(120, Qt::NoModifier);
    EXPECT_EQ(navigation.page(), 1);
    EXPECT_EQ(bar->value(), bar->maximum());
}

TEST_F(PreviewViewTest, ControlZoomsByStepsToAZoomOfTheUsersOwn)
{
    show(1);
    // The point of the page under the mouse stays there.
    const QPoint mouse(200, 150);
    const QPointF under = onPage(mouse);
    wheel(240, Qt::ControlModifier, mouse);
    ASSERT_EQ(navigation.zoom(), 120);
    EXPECT_NEAR(onPage(mouse).x(), under.x(), 1 / pixelsPerTwip());
    EXPECT_NEAR(onPage(mouse).y(), under.y(), 1 / pixelsPerTwip());

    navigation.setZoomMode(ZoomMode::WholePage);
    settle();
    const double nextStep = std::ceil(navigation.zoom() / 10) * 10;
    ASSERT_NE(nextStep, navigation.zoom());
    wheel(120, Qt::ControlModifier);
    EXPECT_EQ(navigation.zoomMode(), ZoomMode::Percent);
    EXPECT_EQ(navigation.zoom(), nextStep) << "a fitted zoom goes to the next step";
    wheel(-60, Qt::ControlModifier);
    wheel(-60, Qt::ControlModifier);
    EXPECT_EQ(navigation.zoom(), nextStep - 10) << "two half notches";

    QTest::keyClick(&view, Qt::Key_0, Qt::ControlModifier);
    EXPECT_EQ(navigation.zoom(), 100);
    QTest::keyClick(&view, Qt::Key_Equal, Qt::ControlModifier);
    EXPECT_EQ(navigation.zoom(), 110);
    QTest::keyClick(&view, Qt::Key_Minus, Qt::ControlModifier);
    QTest::keyClick(&view, Qt::Key_Minus, Qt::ControlModifier);
    EXPECT_EQ(navigation.zoom(), 90);
}

TEST_F(PreviewViewTest, AFittedZoomFollowsTheViewsSize)
{
    show(2, {500, 400});
    navigation.setZoomMode(ZoomMode::WholePage);
    settle();
    const int margin = tightestGap();
    const double small = navigation.zoom();
    EXPECT_EQ(view.verticalScrollBar()->maximum(), 0);
    EXPECT_EQ(view.horizontalScrollBar()->maximum(), 0);

    view.resize(700, 900);
    settle();
    EXPECT_GT(navigation.zoom(), small);
    EXPECT_EQ(tightestGap(), margin) << "the page fills the view less its margin";
    EXPECT_TRUE(view.viewport()->rect().contains(view.pageRect()));

    navigation.setZoomMode(ZoomMode::PageWidth);
    view.resize(800, 500);
    settle();
    EXPECT_EQ(view.pageRect().left(), margin);
    EXPECT_NEAR(view.viewport()->width() - 1 - view.pageRect().right(), margin, 1);
    EXPECT_EQ(view.horizontalScrollBar()->maximum(), 0);
    EXPECT_GT(view.verticalScrollBar()->maximum(), 0) << "beside the scroll bar for its length";

    const double narrow = navigation.zoom();
    view.resize(1000, 500);
    settle();
    EXPECT_GT(navigation.zoom(), narrow);
    EXPECT_EQ(view.pageRect().left(), margin);
}

} // namespace
