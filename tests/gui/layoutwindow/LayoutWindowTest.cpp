#include "gui/layoutwindow/LayoutWindow.h"
#include "commands/DesignerCommands.h"
#include "component/ReportSession.h"
#include "component/Tabulor.h"
#include "gui/main/DesignerWindow.h"
#include "gui/main/MainWindow.h"
#include "gui/models/FieldListModel.h"
#include "localisation/CaptionKeys.h"

#include "FieldDrops.h"
#include "SampleCopy.h"
#include "ScriptedPrompt.h"
#include "TestSupport.h"

#include <QAction>
#include <QComboBox>
#include <QLabel>
#include <QSignalSpy>
#include <QTest>
#include <QToolButton>

#include <gtest/gtest.h>

using namespace tabulor;
using namespace tabulor::test;

namespace {

// The layout window of a real designer over a copy of the sample report, shown from the View
// menu: Region and Country grouping; Customer, OrderID, OrderDate and Sales in the details.
class LayoutWindowTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        const QString report = copySampleReport(dir, session);
        ASSERT_FALSE(report.isEmpty());
        component.setAccessMode(zrUseModifyCreate);
        designer = dynamic_cast<DesignerWindow*>(component.Form());
        ASSERT_TRUE(designer);
        designer->show(false);
        ASSERT_TRUE(session.OpenReportFile(report));
        session.definition().CurrentFileName = report;
        designer->reportLoaded();
        window = &designer->layoutWindow();
        EXPECT_FALSE(window->isVisible());
        designer->window().findChild<QAction*>(QStringLiteral("mOutline"))->trigger();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(window));
    }

    void TearDown() override
    {
        session.definition().Dirty = false;
        designer->window().close();
    }

    QListView& list(int n) { return *find<QListView>(QStringLiteral("lstField%1").arg(n)); }
    QStringList shown(int n) { return static_cast<FieldListModel*>(list(n).model())->fields(); }
    QString current(int n) { return list(n).currentIndex().data().toString(); }
    template <typename T> T* find(const QString& name)
    {
        T* found = window->findChild<T*>(name);
        EXPECT_TRUE(found) << name.toStdString();
        return found;
    }
    void click(QListView& view, int row)
    {
        QTest::mouseClick(view.viewport(), Qt::LeftButton, {},
                          view.visualRect(view.model()->index(row, 0)).center());
    }

    QTemporaryDir dir;
    ScriptedPrompt prompt;
    Tabulor component{&prompt};
    ReportSession& session = component.session();
    DesignerWindow* designer = nullptr;
    LayoutWindow* window = nullptr;
};

} // namespace

TEST_F(LayoutWindowTest, ShowsTheRecordSourceAndTheReportsLists)
{
    EXPECT_EQ(window->objectName(), "frmStruct");
    EXPECT_EQ(window->windowTitle(), "Layout Window");
    EXPECT_EQ(find<QLabel>(QStringLiteral("lblHeadings"))->text(), "Groups");
    EXPECT_EQ(shown(1), QStringList({"Region", "Country"}));
    EXPECT_EQ(shown(2), QStringList({"Customer", "OrderID", "OrderDate", "Sales"}));
    EXPECT_EQ(shown(0), session.data().availableFields());
    auto* sources = find<QComboBox>(QStringLiteral("cmbRecordSet"));
    EXPECT_TRUE(sources->isVisible());
    EXPECT_TRUE(sources->isEnabled());
    EXPECT_EQ(sources->currentText(), "Sales by Region");

    // Who may not create reports may not choose another record source.
    component.setAccessMode(zrUse);
    designer->applyAccessMode(*actionsForAccessMode(zrUse));
    EXPECT_FALSE(sources->isEnabled());

    // A string file's captions reach the window.
    session.captions().apply(findCaptionKeys(u"lGroups").front(), QStringLiteral("Gruppen"));
    EXPECT_EQ(find<QLabel>(QStringLiteral("lblHeadings"))->text(), "Gruppen");
}

TEST_F(LayoutWindowTest, KeyboardCommandsMoveTheSelectedField)
{
    click(list(2), 0);
    QTest::keyClick(window, Qt::Key_G, Qt::AltModifier);
    EXPECT_EQ(shown(1), QStringList({"Region", "Country", "Customer"}));
    EXPECT_EQ(current(1), "Customer");
    EXPECT_TRUE(list(1).hasFocus());

    QTest::keyClick(window, Qt::Key_Up, Qt::ControlModifier);
    QTest::keyClick(window, Qt::Key_Up, Qt::ControlModifier);
    QTest::keyClick(window, Qt::Key_Up, Qt::ControlModifier); // already the first: nothing
    EXPECT_EQ(shown(1), QStringList({"Customer", "Region", "Country"}));
    QTest::keyClick(window, Qt::Key_Down, Qt::ControlModifier);
    EXPECT_EQ(shown(1), QStringList({"Region", "Customer", "Country"}));

    QTest::keyClick(window, Qt::Key_Delete);
    EXPECT_EQ(shown(0).last(), "Customer");
    EXPECT_EQ(current(0), "Customer");
    QTest::keyClick(window, Qt::Key_D, Qt::AltModifier);
    EXPECT_EQ(shown(2).last(), "Customer");
    EXPECT_TRUE(session.definition().Dirty);

    // Every move was one change to undo; the one that moved nothing was none.
    QUndoStack& history = session.history().stack();
    EXPECT_EQ(history.count(), 6);
    while (history.canUndo())
        designer->commands().mUndo_Click();
    EXPECT_EQ(shown(2), QStringList({"Customer", "OrderID", "OrderDate", "Sales"}));
    EXPECT_FALSE(session.definition().Dirty);
}

TEST_F(LayoutWindowTest, FieldsAreDraggedBetweenAndWithinTheLists)
{
    // Sales onto the upper part of Country: the second group.
    dropField(list(2), 3, list(1), aboveItem(list(1), 1));
    EXPECT_EQ(shown(1), QStringList({"Region", "Sales", "Country"}));
    EXPECT_EQ(current(1), "Sales");
    EXPECT_EQ(session.data().grid().groupPlan().levels.size(), 3u);

    // Below the last detail: the last column; within the details, before the first.
    dropField(list(1), 0, list(2), belowItems(list(2)));
    EXPECT_EQ(shown(2), QStringList({"Customer", "OrderID", "OrderDate", "Region"}));
    dropField(list(2), 2, list(2), aboveItem(list(2), 0));
    EXPECT_EQ(shown(2), QStringList({"OrderDate", "Customer", "OrderID", "Region"}));

    // Back into the fields, and fields dragged within the fields: nothing moves there.
    dropField(list(1), 0, list(0), aboveItem(list(0), 0));
    EXPECT_EQ(shown(0).last(), "Sales");
    const QStringList fields = shown(0);
    dropField(list(0), 0, list(0), belowItems(list(0)));
    EXPECT_EQ(shown(0), fields);
    const int changes = session.history().stack().count();
    dropField(list(2), 1, list(2), aboveItem(list(2), 1));
    EXPECT_EQ(session.history().stack().count(), changes);
}

TEST_F(LayoutWindowTest, DoubleClickAsksForTheFieldsProperties)
{
    QSignalSpy requests(&designer->commands(), &DesignerCommands::propertiesRequested);
    QListView& groups = list(1);
    const QPoint country = groups.visualRect(groups.model()->index(1, 0)).center();
    // The press of the first click tells the view which item the double-click is on.
    QTest::mouseClick(groups.viewport(), Qt::LeftButton, {}, country);
    QTest::mouseDClick(groups.viewport(), Qt::LeftButton, {}, country);
    ASSERT_EQ(requests.count(), 1);
    EXPECT_EQ(requests.at(0).at(0).toString(), "Fields");
    EXPECT_EQ(requests.at(0).at(1).toString(), "Country");
}

TEST_F(LayoutWindowTest, ThePinKeepsItOnTopUntilItIsClosed)
{
    auto* pin = find<QToolButton>(QStringLiteral("imgPin"));
    EXPECT_EQ(pin->toolTip(), "Always on Top");
    QTest::mouseClick(pin, Qt::LeftButton);
    EXPECT_TRUE(window->windowFlags().testFlag(Qt::WindowStaysOnTopHint));
    EXPECT_TRUE(window->isVisible());
    EXPECT_TRUE(pin->isChecked());
    ASSERT_TRUE(QTest::qWaitForWindowActive(window));

    click(list(2), 0);
    QTest::keyClick(window, Qt::Key_G, Qt::AltModifier);
    window->close();
    EXPECT_FALSE(window->isVisible());
    EXPECT_FALSE(window->windowFlags().testFlag(Qt::WindowStaysOnTopHint));
    EXPECT_FALSE(pin->isChecked());

    // Shown again: an ordinary window with its lists as they were.
    designer->commands().mOutline_Click();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(window));
    EXPECT_FALSE(window->alwaysOnTop());
    EXPECT_EQ(shown(1), QStringList({"Region", "Country", "Customer"}));
}

TEST_F(LayoutWindowTest, ChoosingAnotherRecordSourceStartsOverWithItsFields)
{
    auto* sources = find<QComboBox>(QStringLiteral("cmbRecordSet"));
    const int orders = sources->findText(QStringLiteral("Orders"));
    ASSERT_GE(orders, 0);
    sources->setFocus();
    while (sources->currentIndex() != orders)
        QTest::keyClick(sources, sources->currentIndex() < orders ? Qt::Key_Down : Qt::Key_Up);
    EXPECT_EQ(session.data().RecordSourceName(), "Orders");
    EXPECT_TRUE(shown(1).isEmpty());
    EXPECT_TRUE(shown(2).isEmpty());
    EXPECT_EQ(shown(0).size(), session.data().grid().columnCount());
    EXPECT_EQ(sources->currentText(), "Orders");
}
