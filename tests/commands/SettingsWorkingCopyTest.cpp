#include "commands/SettingsWorkingCopy.h"
#include "commands/FieldSample.h"
#include "component/ReportSession.h"
#include "localisation/CaptionRegistry.h"

#include "ScriptedPrompt.h"
#include "TestSupport.h"

#include <QFile>
#include <QLocale>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace tabulor;
using namespace tabulor::test;

namespace {

// A window that keeps the captions it is given.
class KeptCaptions : public CaptionReceiver
{
public:
    void setCaption(const CaptionKey& key, const QString& text) override
    {
        texts.insert(QString::fromLatin1(key.control.data(), qsizetype(key.control.size())), text);
    }
    QStringList listEntries(const CaptionKey&) const override { return {}; }
    void setListEntries(const CaptionKey&, const QStringList&) override {}

    QHash<QString, QString> texts;
};

// The working copy over the sample report, opened and built.
class SettingsWorkingCopyTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(dir.isValid());
        copyInto(dir, samplePath(QStringLiteral("sample.sqlite")));
        const QString report = copyInto(dir, samplePath(QStringLiteral("sales_by_region.vrd")));
        session.strings().setFilePath(dir.filePath(QStringLiteral("none.str")));
        ASSERT_TRUE(session.OpenReportFile(report));
        copy.load();
    }

    void writeStrings(const QByteArray& text)
    {
        QFile file(dir.filePath(QStringLiteral("strings.str")));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
        session.strings().setFilePath(file.fileName());
    }

    QTemporaryDir dir;
    ScriptedPrompt prompt;
    ReportSession session{&prompt};
    SettingsWorkingCopy copy{session};
};

TEST_F(SettingsWorkingCopyTest, EditsReachTheReportOnlyWhenApplied)
{
    const ReportDefinition before = session.definition();
    copy.setTextParts(SettingsText::Header,
                      {QStringLiteral("left"), QString(), QStringLiteral("right")});
    copy.setSpacing(StyleDetailBody, u"4.5", u"-2");
    copy.fields()[6].Aggregate = 7;
    EXPECT_EQ(session.definition(), before);

    // Cancel: the copies go, the report stays as it was.
    copy.unload();
    EXPECT_EQ(session.definition(), before);
    EXPECT_FALSE(copy.loaded());

    copy.load();
    copy.setTextParts(SettingsText::Header,
                      {QStringLiteral("left"), QString(), QStringLiteral("right")});
    copy.setSpacing(StyleDetailBody, u"4.5", u"-2");
    copy.fields()[6].Aggregate = 7;
    QSignalSpy built(&session, &ReportSession::reportBuilt);
    copy.apply();
    EXPECT_EQ(built.count(), 1);
    const ReportDefinition& after = session.definition();
    EXPECT_EQ(after.global.Header, QStringLiteral("left||right"));
    EXPECT_EQ(after.styles[StyleDetailBody].Before, 90);
    EXPECT_EQ(after.styles[StyleDetailBody].After, 0);
    EXPECT_EQ(after.fields[6].Aggregate, 7);
    EXPECT_TRUE(after.Dirty);

    // One Undo takes the whole Apply back.
    ASSERT_EQ(session.history().stack().count(), 1);
    session.history().stack().undo();
    EXPECT_EQ(session.definition().global, before.global);
    EXPECT_EQ(session.definition().styles, before.styles);
    EXPECT_EQ(session.definition().fields, before.fields);
}

TEST_F(SettingsWorkingCopyTest, ApplyingWithoutEditsStillMarksAndRebuildsTheReport)
{
    QSignalSpy built(&session, &ReportSession::reportBuilt);
    copy.apply();
    copy.apply();
    EXPECT_EQ(built.count(), 2);
    EXPECT_TRUE(session.definition().Dirty);
    EXPECT_EQ(session.history().stack().count(), 0);
}

TEST_F(SettingsWorkingCopyTest, FieldsOfAnotherRecordSourceAreNotOverwritten)
{
    copy.fields()[0].Title = QStringLiteral("Area");
    copy.fields()[1].Title = QStringLiteral("Nation");
    session.definition().fields[1].ID = QStringLiteral("Elsewhere");
    session.definition().fields.resize(2);
    copy.apply();
    EXPECT_EQ(session.definition().fields.size(), 2);
    EXPECT_EQ(session.definition().fields[0].Title, QStringLiteral("Area"));
    EXPECT_EQ(session.definition().fields[1].ID, QStringLiteral("Elsewhere"));
    EXPECT_EQ(session.definition().fields[1].Title, QStringLiteral("Country"));
}

TEST_F(SettingsWorkingCopyTest, TextsStylesAndGeneralValues)
{
    copy.global().ReportTitle = QStringLiteral("Sales");
    EXPECT_EQ(copy.textParts(SettingsText::Title)[0], QStringLiteral("Sales"));
    const TextParts header = copy.textParts(SettingsText::Header);
    EXPECT_EQ(header[0], QStringLiteral("<db>"));
    EXPECT_EQ(header[2], QStringLiteral("Page <p> of <n>"));
    copy.setTextParts(SettingsText::Title, {QStringLiteral("Only"), QStringLiteral("ignored")});
    EXPECT_EQ(copy.global().ReportTitle, QStringLiteral("Only"));

    EXPECT_EQ(SettingsWorkingCopy::styleOf(SettingsText::Footer), StyleFooters);
    session.definition().groups = {QStringLiteral("Region"), QStringLiteral("Country")};
    EXPECT_EQ(copy.styleOfField(QStringLiteral("Country")), StyleHeading2Top);
    EXPECT_EQ(copy.styleOfField(QStringLiteral("Sales")), StyleDetailBody);

    copy.setWidowControl(true);
    EXPECT_FALSE(copy.global().WidowOK);
    copy.setWidowControl(false);
    EXPECT_TRUE(copy.global().WidowOK);
    copy.setColumnsEntry(3);
    EXPECT_EQ(copy.global().Columns, QStringLiteral("4"));
    EXPECT_EQ(copy.columnsEntry(), 3);
    copy.global().Columns = QStringLiteral("many");
    EXPECT_EQ(copy.columnsEntry(), 0);
    copy.setMaximumRowHeight(u"2.25");
    EXPECT_EQ(copy.global().MaxHeight, 3240);

    // A page setup made meanwhile survives the next apply; the copy's other edits too.
    session.definition().global.Left = 360;
    session.definition().global.Orientation = 1;
    copy.takePageSetup();
    copy.apply();
    EXPECT_EQ(session.definition().global.Left, 360);
    EXPECT_EQ(session.definition().global.Orientation, 1);
    EXPECT_EQ(session.definition().global.MaxHeight, 3240);
}

TEST_F(SettingsWorkingCopyTest, SamplesExpandTheTokensOfTheFirstPage)
{
    copy.setTextParts(SettingsText::Header,
                      {QStringLiteral("<rs>"), QString(), QStringLiteral("Page <p> of <n>")});
    const TextParts header = copy.sampleText(SettingsText::Header);
    EXPECT_EQ(header[0], QStringLiteral("Sales by Region"));
    EXPECT_EQ(header[2], QStringLiteral("Page 1 of 1"));
    copy.global().ReportTitle = QStringLiteral("Orders<line>by region");
    copy.global().Align = 1;
    const TextParts title = copy.sampleText(SettingsText::Title);
    EXPECT_TRUE(title[0].isEmpty());
    EXPECT_EQ(title[1], QStringLiteral("Orders\nby region"));
}

TEST_F(SettingsWorkingCopyTest, ActivationLoadsOnlyDroppedCopies)
{
    copy.global().ReportTitle = QStringLiteral("edited");
    EXPECT_FALSE(copy.activate());
    EXPECT_EQ(copy.global().ReportTitle, QStringLiteral("edited"));
    copy.unload();
    EXPECT_TRUE(copy.activate());
    EXPECT_EQ(copy.global().ReportTitle, session.definition().global.ReportTitle);
}

TEST_F(SettingsWorkingCopyTest, LoadingReadsTheStringFileWithCaptions)
{
    KeptCaptions dialog;
    session.captions().attach(CaptionWindow::Settings, dialog);
    writeStrings("*sCaption\nEinstellungen\n*UNTITLED\nOhne Titel\n*REPORT\n");
    copy.load();
    EXPECT_EQ(dialog.texts.value(QStringLiteral("frmSettings")), QStringLiteral("Einstellungen"));
    EXPECT_EQ(session.strings().text(Message::UNTITLED), QStringLiteral("Ohne Titel"));
    // The key without a value stops the reading, and the user is told where.
    ASSERT_EQ(prompt.messages.size(), 1);
    EXPECT_TRUE(prompt.messages[0].contains(QStringLiteral("REPORT")));
    EXPECT_TRUE(copy.loaded());
    session.captions().detach(CaptionWindow::Settings, dialog);
}

TEST_F(SettingsWorkingCopyTest, FieldSamplesShowTheFirstValueFormattedAndPlaced)
{
    const FormatLocale locale = FormatLocale::fromQLocale(QLocale::c());
    const OutlineGrid& grid = session.data().grid();
    ReportField sales = copy.fields()[6];
    sales.Format = QStringLiteral("#,##0.00");
    sales.Align = 9;
    const FieldSample sample = fieldSample(grid, sales, locale);
    EXPECT_TRUE(sample.text.contains(u'.'));
    EXPECT_EQ(sample.placement, TextPlacement::Right);

    ReportField region = copy.fields()[0];
    region.Align = 9;
    EXPECT_EQ(fieldSample(grid, region, locale).placement, TextPlacement::Left);
    region.Align = 3;
    EXPECT_EQ(fieldSample(grid, region, locale).placement, TextPlacement::Centre);
    EXPECT_FALSE(fieldSample(grid, region, locale).text.isEmpty());

    ReportField missing;
    missing.ID = QStringLiteral("NoSuchField");
    missing.Format = QStringLiteral("0.0");
    missing.Align = 9;
    const FieldSample standIn = fieldSample(grid, missing, locale);
    EXPECT_EQ(standIn.text, QStringLiteral("1234.5"));
    EXPECT_EQ(standIn.placement, TextPlacement::Right);
}

} // namespace
