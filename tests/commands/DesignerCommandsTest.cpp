#include "commands/DesignerCommands.h"
#include "commands/PrinterAccess.h"
#include "component/ReportSession.h"
#include "production/grid/ReportGridBuilder.h"
#include "production/pages/PageDocument.h"
#include "production/pages/PreviewNavigation.h"

#include "SampleCopy.h"
#include "ScriptedPrompt.h"
#include "TestSupport.h"

#include <QSignalSpy>

#include <QTemporaryDir>
#include <algorithm>

#include <gtest/gtest.h>

using namespace tabulor;
using namespace tabulor::test;

namespace {

// A printer that keeps what it was given.
class KeepingPrinter : public PrinterAccess
{
public:
    QString deviceName() const override { return QStringLiteral("Desk Printer"); }
    bool print(const PageDocument& document, QString*) override
    {
        printedPages += document.PageCount();
        return true;
    }
    bool setup(int index, PageSetup& page) override
    {
        setupIndexes.append(index);
        if (!acceptSetup)
            return false;
        page.orientation = 1;
        page.marginLeft = 720;
        page.marginTop = 360;
        return true;
    }

    int printedPages = 0;
    QList<int> setupIndexes;
    bool acceptSetup = true;
};

// The designer's commands over a copy of the sample report, which they may save.
class DesignerCommandsTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        report = copySampleReport(dir, session);
        ASSERT_FALSE(report.isEmpty());
        session.setAccessMode(zrUseModifyCreate);
        session.loadDesigner();
        (void)commands.Form_Load();
    }

    void open()
    {
        ASSERT_TRUE(session.OpenReportFile(report));
        session.definition().CurrentFileName = report;
    }

    // Prints and waits for the report laid out on its own thread.
    void printAndWait()
    {
        QSignalSpy finished(&commands, &DesignerCommands::stateChanged);
        commands.mPrint_Click();
        ASSERT_TRUE(commands.printing());
        while (commands.printing())
            ASSERT_TRUE(finished.wait(30000)) << "the report for the printer never finished";
    }

    QTemporaryDir dir;
    QString report;
    ScriptedPrompt prompt;
    ReportSession session{&prompt};
    KeepingPrinter printer;
    DesignerCommands commands{session, printer};
};

TEST_F(DesignerCommandsTest, UnsavedChangesAreSavedDroppedOrKept)
{
    open();
    session.definition().Dirty = true;
    const QByteArray before = readBytes(report);

    prompt.answers = {PromptAnswer::Cancel};
    EXPECT_FALSE(commands.OKtoDiscardChanges());
    EXPECT_EQ(prompt.messages.last(),
              QStringLiteral("Do you want to save the changes made to '%1'?").arg(report));
    prompt.answers = {PromptAnswer::No};
    EXPECT_TRUE(commands.OKtoDiscardChanges());
    EXPECT_EQ(readBytes(report), before);

    session.definition().global.ReportTitle = QStringLiteral("Saved on the way out");
    prompt.answers = {PromptAnswer::Yes};
    EXPECT_TRUE(commands.OKtoDiscardChanges());
    EXPECT_FALSE(session.definition().Dirty);
    EXPECT_TRUE(readBytes(report).contains("Saved on the way out"));

    // An untitled report whose Save As is cancelled is kept: the command is abandoned.
    session.definition().CurrentFileName.clear();
    session.definition().Dirty = true;
    prompt.answers = {PromptAnswer::Yes};
    EXPECT_FALSE(commands.OKtoDiscardChanges());
    EXPECT_TRUE(prompt.messages.last().contains(QStringLiteral("'Untitled'")));
    EXPECT_EQ(prompt.fileRequests.last().purpose, FileRequest::Save);

    // Who may only use reports is never asked.
    const qsizetype asked = prompt.messages.size();
    session.setAccessMode(zrUse);
    EXPECT_TRUE(commands.OKtoDiscardChanges());
    EXPECT_EQ(prompt.messages.size(), asked);
}

TEST_F(DesignerCommandsTest, PreviewNeedsRowsAndEscapeReturnsFromIt)
{
    QSignalSpy changed(&commands, &DesignerCommands::stateChanged);
    commands.mPreview_Click();
    EXPECT_EQ(commands.view(), DesignerView::Design) << "an empty grid has nothing to preview";
    EXPECT_GE(changed.count(), 1) << "the window is told to select the design tab again";

    open();
    commands.Form_KeyPress(27);
    EXPECT_EQ(commands.view(), DesignerView::Design) << "Esc in the design view does nothing";
    commands.zrtab_Click(2);
    EXPECT_EQ(commands.view(), DesignerView::Preview);
    EXPECT_GT(commands.document().PageCount(), 0);
    EXPECT_TRUE(commands.statusLine().contains(
        QStringLiteral("pages [%1]").arg(commands.document().PageCount())));

    // A change of the report while it is previewed renders it again.
    QSignalSpy rendered(&commands, &DesignerCommands::previewRendered);
    session.definition().global.ReportTitle = QStringLiteral("Title changed in the preview");
    session.rebuildReport();
    EXPECT_EQ(rendered.count(), 1);
    const auto& firstPage = commands.document().pages().front().items;
    EXPECT_TRUE(std::any_of(firstPage.begin(), firstPage.end(), [](const DisplayItem& item) {
        const auto* run = std::get_if<TextRun>(&item);
        return run && run->text.contains(QStringLiteral("Title changed"));
    }));

    commands.Form_KeyPress(27);
    EXPECT_EQ(commands.view(), DesignerView::Design);
    EXPECT_TRUE(commands.statusLine().contains(QStringLiteral("records [")));
}

TEST_F(DesignerCommandsTest, SaveAsOpenAndRecentFiles)
{
    open();
    const QString copy = dir.filePath(QStringLiteral("copy.vrd"));
    prompt.files = {copy};
    commands.mSaveAs_Click();
    EXPECT_EQ(session.definition().CurrentFileName, copy);
    EXPECT_EQ(commands.recentFiles().paths(), QStringList{copy});
    EXPECT_EQ(commands.caption(), QStringLiteral("Brintel Tabulor - ") + copy);
    EXPECT_EQ(readBytes(copy), readBytes(report));
    const FileRequest& asked = prompt.fileRequests.last();
    EXPECT_EQ(asked.filters.first(), QStringLiteral("Tabulor Files (*.vrd)"));
    EXPECT_EQ(asked.fileName, QStringLiteral(".vrd"));
    EXPECT_EQ(asked.folder, dir.path());

    // Opening starts in the folder of the current file; a file that is no definition is told
    // with its path and changes nothing.
    const QString broken = dir.filePath(QStringLiteral("broken.vrd"));
    writeBytes(broken, "not a definition");
    prompt.files = {broken};
    commands.mOpen_Click();
    EXPECT_EQ(prompt.messages.last(),
              QStringLiteral("'%1'\r\nInvalid Data File, please try another.").arg(broken));
    EXPECT_EQ(session.definition().CurrentFileName, copy);

    // The recent list opens its file; on closing it is written to the settings file.
    prompt.files = {report};
    commands.mOpen_Click();
    EXPECT_EQ(session.definition().CurrentFileName, report);
    commands.mMRU_Click(0);
    EXPECT_EQ(session.definition().CurrentFileName, copy);
    ASSERT_TRUE(commands.Form_Unload(WindowPlacement{2, QByteArray("place")}));
    const QString settings = QString::fromUtf8(readBytes(session.settingsPath()));
    EXPECT_TRUE(settings.contains(QStringLiteral("0file=") + copy)) << settings.toStdString();
    EXPECT_TRUE(settings.contains(QStringLiteral("State=2"))) << settings.toStdString();
    DesignerCommands again(session, printer);
    const WindowPlacement placement = again.Form_Load();
    EXPECT_EQ(placement.state, 2);
    EXPECT_EQ(placement.geometry, QByteArray("place"));
    EXPECT_EQ(again.recentFiles().paths(), QStringList{copy});
}

TEST_F(DesignerCommandsTest, NewAsksForADatabaseAndStartsWithTheDefaultLook)
{
    open();
    session.definition().global.ReportTitle = QStringLiteral("Changed");
    prompt.files = {dir.filePath(QStringLiteral("sample.sqlite"))};
    prompt.answers = {PromptAnswer::No}; // the changes are dropped
    session.definition().Dirty = true;
    commands.mNew_Click();
    const ReportDefinition& d = session.definition();
    EXPECT_TRUE(d.CurrentFileName.isEmpty());
    EXPECT_FALSE(d.Dirty);
    EXPECT_TRUE(d.groups.isEmpty() && d.details.isEmpty());
    EXPECT_EQ(d.global.ReportTitle, QStringLiteral("[<rs>] Report Generated at <tt> on <dd>"));
    EXPECT_EQ(prompt.fileRequests.last().selectedFilter, 1) << "the database filter";
    EXPECT_TRUE(session.data().CurrentDatabase());
    EXPECT_FALSE(session.data().recordSources().isEmpty());

    // A database that cannot be opened is told.
    prompt.files = {dir.filePath(QStringLiteral("missing.sqlite"))};
    commands.mOpenDatabase_Click();
    EXPECT_TRUE(prompt.messages.last().startsWith(QStringLiteral("Could not open the database.")));
}

TEST_F(DesignerCommandsTest, PrintLaysTheReportOutAsksAndPrints)
{
    open();
    prompt.answers = {PromptAnswer::Ok};
    QStringList statuses;
    QObject::connect(&commands, &DesignerCommands::statusChanged,
                     [&](const QString& line) { statuses.append(line); });
    printAndWait();
    ASSERT_GT(printer.printedPages, 1);
    EXPECT_EQ(prompt.messages.last(),
              QStringLiteral("Ready to print. %1 page(s) on Desk Printer\r\nPlease press OK to "
                             "proceed.")
                  .arg(printer.printedPages));
    EXPECT_TRUE(statuses.contains(QStringLiteral("Generating full report...")));
    EXPECT_TRUE(statuses.contains(QStringLiteral("Generating page 1...")));
    EXPECT_EQ(session.data().LoadedRowCount(), 250) << "the design view keeps its partial data";

    // Cancelled at the question, or while the report is laid out, nothing is printed.
    printer.printedPages = 0;
    prompt.answers = {PromptAnswer::Cancel};
    printAndWait();
    commands.mPrint_Click();
    commands.cancelPrint();
    while (commands.printing())
        QSignalSpy(&commands, &DesignerCommands::stateChanged).wait(1000);
    EXPECT_EQ(printer.printedPages, 0);
}

TEST_F(DesignerCommandsTest, FitToPageNarrowsATooWideReportAndSetupCopiesThePageBack)
{
    open();
    // Customer, the first detail column, is far the widest.
    ReportDefinition& d = session.definition();
    for (ReportField& field : d.fields)
        field.Width = field.ID == u"Customer" ? 9000 : 1500;
    session.reloadData();
    commands.mAutoFit_Click();
    EXPECT_TRUE(d.Dirty);
    double total = 0;
    for (const QString& name : d.groups + d.details)
        total += d.fields[FindField(d.fields, name)].Width;
    PageSetup page = commands.document().setup();
    EXPECT_LE(total, page.pageSize().width() - d.global.Left - d.global.Right);

    d.Dirty = false;
    commands.mPrintSetup_Click(1);
    EXPECT_EQ(printer.setupIndexes, QList<int>{1});
    EXPECT_EQ(d.global.Orientation, 1);
    EXPECT_EQ(d.global.Left, 720);
    EXPECT_EQ(d.global.Top, 360);
    EXPECT_TRUE(d.Dirty);
    printer.acceptSetup = false;
    d.Dirty = false;
    commands.mPrintSetup_Click(0);
    EXPECT_FALSE(d.Dirty) << "a cancelled dialog changes nothing";
}

} // namespace
