#include "gui/preview/PreviewControl.h"
#include "production/pages/PageDocument.h"
#include "production/pages/PreviewNavigation.h"

#include "KnownPages.h"

#include <QApplication>
#include <QLineEdit>
#include <QScrollBar>
#include <QTest>
#include <QToolButton>
#include <QVBoxLayout>

#include <gtest/gtest.h>

using namespace tabulor;
using tabulor::test::KnownPages;

namespace {

// A bar bound to the navigation of a document, above a widget that stands for the view.
class PreviewControlTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        auto* layout = new QVBoxLayout(&window);
        layout->addWidget(&control);
        layout->addWidget(&view);
        view.setFocusPolicy(Qt::StrongFocus);
    }

    void bind(int pages)
    {
        if (pages > 0)
            KnownPages::write(document, pages);
        else
            document.KillDoc();
        navigation.documentChanged();
        control.setPrinterControl(&navigation, &view);
    }

    void showActive()
    {
        window.show();
        QApplication::setActiveWindow(&window);
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    }

    template <typename Widget> Widget* child(const QString& name)
    {
        auto* widget = control.findChild<Widget*>(name);
        EXPECT_NE(widget, nullptr) << name.toStdString();
        return widget;
    }
    QToolButton* button(int n) { return child<QToolButton>(QStringLiteral("cmdPage%1").arg(n)); }
    QLineEdit* pageBox() { return child<QLineEdit>(QStringLiteral("txtPage")); }
    QScrollBar* zoomBar() { return child<QScrollBar>(QStringLiteral("scrlZoom")); }

    // Which of first, previous, next, last, the page box and the zoom bar are enabled.
    std::vector<bool> enabled()
    {
        return {button(0)->isEnabled(), button(1)->isEnabled(), button(2)->isEnabled(),
                button(3)->isEnabled(), pageBox()->isEnabled(), zoomBar()->isEnabled()};
    }

    PageDocument document;
    PreviewNavigation navigation{document};
    QWidget window;
    PreviewControl control{&window};
    QWidget view{&window};
};

TEST_F(PreviewControlTest, EnablesOnlyWhatLeadsToAnotherPage)
{
    const std::vector<bool> none(6, false);
    EXPECT_EQ(enabled(), none) << "unbound";
    bind(0);
    EXPECT_EQ(enabled(), none) << "no pages: nothing to zoom either";
    bind(1);
    EXPECT_EQ(enabled(), (std::vector<bool>{false, false, false, false, false, true}));
    EXPECT_EQ(pageBox()->text(), QStringLiteral("1"));

    bind(5);
    EXPECT_EQ(enabled(), (std::vector<bool>{false, false, true, true, true, true})) << "1 of 5";
    navigation.setPage(5); // by the view, say: the bar follows
    EXPECT_EQ(enabled(), (std::vector<bool>{true, true, false, false, true, true})) << "5 of 5";
    EXPECT_EQ(pageBox()->text(), QStringLiteral("5"));

    control.setPrinterControl(nullptr, nullptr);
    EXPECT_EQ(enabled(), none);
    navigation.setPage(1);
    EXPECT_TRUE(pageBox()->text().isEmpty()) << "an unbound bar follows nothing";
}

TEST_F(PreviewControlTest, ButtonsAndThePageBoxMoveThePage)
{
    bind(5);
    showActive();
    const std::pair<int, int> clicks[] = {{3, 5}, {1, 4}, {1, 3}, {0, 1}, {2, 2}};
    for (const auto& [n, expected] : clicks) {
        QTest::mouseClick(button(n), Qt::LeftButton);
        EXPECT_EQ(navigation.page(), expected) << "button " << n;
        EXPECT_EQ(pageBox()->text(), QString::number(expected));
        EXPECT_EQ(QApplication::focusWidget(), &view) << "the keys page in the view again";
    }

    pageBox()->setFocus();
    pageBox()->selectAll();
    QTest::keyClick(pageBox(), Qt::Key_4);
    EXPECT_EQ(navigation.page(), 4) << "a typed number is the page at once";
    QTest::keyClick(pageBox(), Qt::Key_2);
    EXPECT_EQ(navigation.page(), 5) << "42 is past the end: the navigation keeps the last page";
    EXPECT_EQ(pageBox()->text(), QStringLiteral("5"));

    QTest::keyClick(pageBox(), Qt::Key_Backspace);
    QTest::keyClicks(pageBox(), QStringLiteral("x"));
    EXPECT_TRUE(pageBox()->text().isEmpty()) << "emptied to type another number; no letters";
    EXPECT_EQ(navigation.page(), 5);
    QTest::keyClick(pageBox(), Qt::Key_Return);
    EXPECT_EQ(pageBox()->text(), QStringLiteral("5")) << "leaving the box shows the page again";
    EXPECT_EQ(QApplication::focusWidget(), &view);
}

TEST_F(PreviewControlTest, TheZoomBarSetsOnlyAZoomOfTheUsersOwn)
{
    bind(3);
    showActive();
    QScrollBar* zoom = zoomBar();
    EXPECT_EQ(
        std::vector<int>({zoom->minimum(), zoom->maximum(), zoom->pageStep(), zoom->singleStep(),
                          zoom->value()}),
        std::vector<int>({PreviewNavigation::kMinimumZoom, PreviewNavigation::kMaximumZoom,
                          PreviewNavigation::kZoomStep, PreviewNavigation::kZoomStep / 2, 100}));
    zoom->triggerAction(QAbstractSlider::SliderPageStepAdd);
    zoom->triggerAction(QAbstractSlider::SliderSingleStepSub);
    EXPECT_EQ(navigation.zoom(), 105);

    navigation.setZoomMode(ZoomMode::WholePage);
    navigation.setFittedZoom(63.7);
    EXPECT_EQ(zoom->value(), 63) << "the fitted zoom, truncated";
    zoom->triggerAction(QAbstractSlider::SliderPageStepAdd);
    EXPECT_EQ(navigation.zoom(), 63.7) << "a fitted zoom is not the bar's to change";
    EXPECT_EQ(zoom->value(), 63);

    zoom->setFocus(Qt::TabFocusReason);
    EXPECT_EQ(QApplication::focusWidget(), &view) << "the bar passes the focus on";
}

} // namespace
