#include "gui/main/MainWindow.h"
#include "commands/DesignerCommands.h"
#include "component/ReportSession.h"
#include "component/Tabulor.h"
#include "gui/main/DesignerWindow.h"
#include "production/grid/ReportGridBuilder.h"
#include "production/pages/PageDocument.h"

#include "SampleCopy.h"
#include "ScriptedPrompt.h"
#include "TestSupport.h"

#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QScrollBar>
#include <QTabBar>
#include <QTest>
#include <QTimer>
#include <QToolBar>
#include <QToolButton>

#include <gtest/gtest.h>

using namespace tabulor;
using namespace tabulor::test;

namespace {

// The real designer window over a copy of the sample report, its questions and file choices
// answered by the test.
class MainWindowTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        report = copySampleReport(dir, component.session());
        ASSERT_FALSE(report.isEmpty());
        component.setAccessMode(zrUseModifyCreate);
        designer = dynamic_cast<DesignerWindow*>(component.Form());
        ASSERT_TRUE(designer) << "the windows register their provider as they are linked";
        window = &designer->window();
        window->show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(window));
    }

    void TearDown() override
    {
        component.session().definition().Dirty = false;
        window->close();
    }

    void open()
    {
        ASSERT_TRUE(component.session().OpenReportFile(report));
        component.session().definition().CurrentFileName = report;
        designer->reportLoaded();
    }

    template <typename T = QAction> T* find(const char* name)
    {
        T* found = window->findChild<T*>(QString::fromLatin1(name));
        EXPECT_TRUE(found) << name;
        return found;
    }

    QTemporaryDir dir;
    QString report;
    ScriptedPrompt prompt;
    Tabulor component{&prompt};
    DesignerWindow* designer = nullptr;
    MainWindow* window = nullptr;
};

TEST_F(MainWindowTest, TheAccessModeDecidesTheMenusAndToolbarButtons)
{
    const auto visible = [&](const char* name) { return find(name)->isVisible(); };
    component.setAccessMode(zrUse);
    for (const char* name : {"mNew", "mOpen", "mSave", "mSaveAs", "mOpenDatabase", "tbNew",
                             "tbOpen", "tbSave", "tbSeparator5"})
        EXPECT_FALSE(visible(name)) << name;
    EXPECT_TRUE(visible("mPrint"));

    component.setAccessMode(zrUseModify);
    EXPECT_FALSE(visible("mNew"));
    EXPECT_TRUE(visible("mOpen") && visible("mSave") && visible("tbOpen") && visible("tbSave"));
    EXPECT_FALSE(visible("mOpenDatabase"));

    // A value that is no mode changes nothing visible but reads back as given.
    component.setAccessMode(3);
    EXPECT_EQ(component.AccessMode(), 3);
    EXPECT_FALSE(visible("mNew"));
    EXPECT_TRUE(visible("mOpen"));

    component.setAccessMode(zrUseModifyCreate);
    EXPECT_TRUE(visible("mNew") && visible("tbNew") && visible("mOpenDatabase"));

    // The toolbar: the host may take it away, menu entry and all.
    QToolBar* toolbar = find<QToolBar>("Toolbar");
    EXPECT_TRUE(toolbar->isVisible());
    find("mToolbar")->trigger();
    EXPECT_FALSE(toolbar->isVisible());
    EXPECT_FALSE(find("mToolbar")->isChecked());
    component.setAllowToolBar(false);
    EXPECT_FALSE(toolbar->isVisible());
    EXPECT_FALSE(visible("mToolbar"));
}

TEST_F(MainWindowTest, PreviewNeedsAReportAndEscapeReturns)
{
    QTabBar* tabs = find<QTabBar>("zrtab");
    QTest::mouseClick(tabs, Qt::LeftButton, {}, tabs->tabRect(1).center());
    EXPECT_EQ(tabs->currentIndex(), 0) << "nothing to preview: the design tab stays";

    open();
    QTest::mouseClick(tabs, Qt::LeftButton, {}, tabs->tabRect(1).center());
    EXPECT_EQ(tabs->currentIndex(), 1);
    QWidget* preview = find<QWidget>("vp");
    EXPECT_TRUE(preview->isVisible());
    EXPECT_FALSE(find<QWidget>("fa")->isVisible());
    EXPECT_TRUE(find("mPreview")->isChecked());
    EXPECT_TRUE(find<QLabel>("lblStatus")->text().contains(QStringLiteral("pages [")));

    // The navigation bar follows the document: page 1 of several.
    EXPECT_FALSE(find<QToolButton>("cmdPage0")->isEnabled());
    EXPECT_TRUE(find<QToolButton>("cmdPage2")->isEnabled());
    QTest::keyClick(preview, Qt::Key_End);
    EXPECT_EQ(find<QLineEdit>("txtPage")->text(),
              QString::number(designer->commands().document().PageCount()));
    EXPECT_FALSE(find<QToolButton>("cmdPage3")->isEnabled());

    QTest::keyClick(window, Qt::Key_Escape);
    EXPECT_EQ(tabs->currentIndex(), 0);
    EXPECT_TRUE(find<QWidget>("fa")->isVisible());
    QTest::keyClick(window, Qt::Key_Escape);
    EXPECT_EQ(tabs->currentIndex(), 0) << "Esc in the design view does nothing";
}

TEST_F(MainWindowTest, RecentFilesAreListedAndOpened)
{
    open();
    QAction* first = find("mMRU0");
    EXPECT_TRUE(first->isVisible());
    EXPECT_EQ(first->text(), QStringLiteral("&1 ") + report);
    EXPECT_FALSE(find("mMRU1")->isVisible());
    EXPECT_TRUE(find("mSepMRU")->isVisible());
    EXPECT_EQ(window->windowTitle(), designer->commands().caption());
    EXPECT_TRUE(window->windowTitle().endsWith(report));

    const QString copy = dir.filePath(QStringLiteral("copy.vrd"));
    prompt.files = {copy};
    find("mSaveAs")->trigger();
    EXPECT_EQ(find("mMRU0")->text(), QStringLiteral("&1 ") + copy);
    EXPECT_EQ(find("mMRU1")->text(), QStringLiteral("&2 ") + report);
    find("mMRU1")->trigger();
    EXPECT_EQ(component.session().definition().CurrentFileName, report);
}

TEST_F(MainWindowTest, ClosingAsksAboutUnsavedChangesAndCancelKeepsTheWindow)
{
    open();
    component.session().definition().Dirty = true;
    prompt.answers = {PromptAnswer::Cancel};
    window->close();
    EXPECT_TRUE(window->isVisible());
    EXPECT_TRUE(prompt.messages.last().startsWith(QStringLiteral("Do you want to save")));
    EXPECT_TRUE(readBytes(component.session().settingsPath()).contains("0file="))
        << "the recent files are written before the question";

    prompt.answers = {PromptAnswer::No};
    window->close();
    EXPECT_FALSE(window->isVisible());
}

TEST_F(MainWindowTest, FitToPageFromTheToolbar)
{
    open();
    ReportDefinition& d = component.session().definition();
    for (ReportField& field : d.fields)
        field.Width = field.ID == u"Customer" ? 9000 : 1500;
    component.session().reloadData();
    QToolBar* toolbar = find<QToolBar>("Toolbar");
    QTest::mouseClick(toolbar->widgetForAction(find("tbFitToPage")), Qt::LeftButton);
    EXPECT_LT(d.fields[FindField(d.fields, QStringLiteral("Customer"))].Width, 9000);
    EXPECT_TRUE(d.Dirty);
}

TEST(Designer, DoReportShowsTheDesignerAndReturnsWhenItIsClosed)
{
    QTemporaryDir dir;
    ScriptedPrompt prompt;
    Tabulor component(&prompt);
    component.session().setSettingsPath(dir.filePath(QStringLiteral("settings.ini")));
    component.setShowLayoutWindow(false);
    PageDocument host;
    bool shownWhileWaiting = false;
    QTimer::singleShot(200, [&] {
        QWidget* window = nullptr;
        for (QWidget* top : QApplication::topLevelWidgets()) {
            if (top->objectName() == u"frmMain" && top->isVisible())
                window = top;
        }
        shownWhileWaiting = window != nullptr;
        if (window)
            window->close();
    });
    ASSERT_TRUE(component.DoReport(samplePath(QStringLiteral("sales_by_region.vrd")), &host));
    EXPECT_TRUE(shownWhileWaiting);
    // Closing left the host's document showing the report as last designed, every record.
    EXPECT_GT(host.PageCount(), 1);
    EXPECT_TRUE(
        readBytes(component.session().settingsPath())
            .contains("0file=" + samplePath(QStringLiteral("sales_by_region.vrd")).toUtf8()));
}

} // namespace
