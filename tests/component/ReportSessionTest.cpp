#include "component/ReportSession.h"
#include "component/MissingObjects.h"
#include "production/grid/ReportGridBuilder.h"

#include "MemoryRecordset.h"
#include "ScriptedPrompt.h"
#include "TestSupport.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>

#include <numeric>

#include <gtest/gtest.h>

using namespace tabulor;
using namespace tabulor::test;

namespace {

// A session over a copy of a real database, with a definition of its invoices beside it.
class ReportSessionTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(dir.isValid());
        copyInto(dir, sharedDataPath(QStringLiteral("sqlite_Chinook.sqlite")));
        session.setSettingsPath(dir.filePath(QStringLiteral("settings.ini")));
        session.loadDesigner();
        definitionPath = writeDefinition(invoices());
    }

    static ReportDefinition invoices()
    {
        ReportDefinition d;
        ApplyBuiltInStyles(d, {QStringLiteral("Invoices"), QStringLiteral("<p>"), QString()});
        d.DataBaseName = QStringLiteral("sqlite_Chinook.sqlite");
        d.RecordSource = QStringLiteral("Invoice");
        d.global.SubtotalPosition = 1;
        d.styles[StyleDetailBody].FontItalic = true;
        d.fields = {{QStringLiteral("BillingCountry"), QStringLiteral("Country"), 1, 9, {}, 0, 0},
                    {QStringLiteral("Total"), QStringLiteral("Total"), 0, 6, QStringLiteral("0.00"),
                     1, 900}};
        d.groups = {QStringLiteral("BillingCountry")};
        d.details = {QStringLiteral("InvoiceDate"), QStringLiteral("Total")};
        return d;
    }

    QString writeDefinition(const ReportDefinition& d,
                            const QString& name = QStringLiteral("invoices.vrd"))
    {
        const QString path = dir.filePath(name);
        QString error;
        EXPECT_TRUE(WriteReportFile(d, path, &error)) << error.toStdString();
        return path;
    }

    QTemporaryDir dir;
    ScriptedPrompt prompt;
    ReportSession session{&prompt};
    QString definitionPath;
};

} // namespace

TEST_F(ReportSessionTest, OpeningADefinitionLoadsItsLookAndItsData)
{
    ASSERT_TRUE(session.OpenReportFile(definitionPath));
    const ReportDefinition& d = session.definition();
    EXPECT_EQ(d.RecordSource, QStringLiteral("Invoice"));
    EXPECT_EQ(d.global.ReportTitle, QStringLiteral("Invoices"));
    EXPECT_EQ(d.global.SubtotalPosition, 1);
    EXPECT_TRUE(d.styles[StyleDetailBody].FontItalic);
    EXPECT_EQ(d.styles[StyleDetailBody].name, QStringLiteral("Detail Body"));
    EXPECT_EQ(d.fields, invoices().fields);
    EXPECT_EQ(d.groups, invoices().groups);
    EXPECT_EQ(d.details, invoices().details);

    const ReportData& data = session.data();
    EXPECT_TRUE(data.RecordSourceOpen());
    EXPECT_EQ(data.DatabaseShortName(), QStringLiteral("sqlite_Chinook.sqlite"));
    EXPECT_EQ(data.selectedRecordSource(), 5); // Album, Artist, Customer, Employee, Genre, Invoice
    // Placed fields leave the list of available ones.
    EXPECT_FALSE(data.availableFields().contains(QStringLiteral("BillingCountry")));
    EXPECT_FALSE(data.availableFields().contains(QStringLiteral("Total")));
    EXPECT_TRUE(data.availableFields().contains(QStringLiteral("BillingCity")));
    EXPECT_TRUE(prompt.messages.isEmpty());
}

TEST_F(ReportSessionTest, TheWorkingViewHoldsTheTitleRowAnd249Records)
{
    ASSERT_TRUE(session.OpenReportFile(definitionPath));
    ReportData& data = session.data();
    EXPECT_EQ(data.grid().recordCount(), 249);
    EXPECT_EQ(data.LoadedRowCount(), 250);
    EXPECT_EQ(data.TotalRowCount(), 413); // 412 invoices and the title row

    data.setUnlimitedRows(true);
    data.LoadRowsIntoGrid();
    EXPECT_EQ(data.grid().recordCount(), 412);
    EXPECT_EQ(data.LoadedRowCount(), 413);
    EXPECT_EQ(data.TotalRowCount(), 413);
    const int total = data.grid().FindGridColumn(QStringLiteral("Total"));
    ASSERT_GE(total, 0);
    EXPECT_EQ(data.grid().column(total).alignment, AlignRightTop);
}

TEST(HostRecordsetCounts, CountRecordsNotGridRows)
{
    ReportData data;
    MemoryRecordset big = MemoryRecordset::numbered(300);
    data.setHostRecordset(&big);
    data.OpenDataSource(QString(), QString());
    EXPECT_TRUE(data.RecordSourceOpen());
    EXPECT_EQ(data.grid().recordCount(), 250);
    EXPECT_EQ(data.LoadedRowCount(), 250);
    EXPECT_EQ(data.TotalRowCount(), 300);

    // A recordset that has not counted its records yet reports fewer than it holds.
    big.reportedCount = 1;
    data.LoadRowsIntoGrid();
    EXPECT_EQ(data.TotalRowCount(), 250);

    MemoryRecordset small = MemoryRecordset::numbered(40);
    small.reportedCount = 1000;
    data.setHostRecordset(&small);
    data.LoadRowsIntoGrid();
    EXPECT_EQ(data.TotalRowCount(), 40);

    data.setHostRecordset(&big);
    data.setUnlimitedRows(true);
    data.LoadRowsIntoGrid();
    EXPECT_EQ(data.grid().recordCount(), 300);
}

TEST_F(ReportSessionTest, ADatabaseIsFoundBesideTheDefinition)
{
    ReportDefinition d = invoices();
    d.DataBaseName = QStringLiteral("C:\\Reports\\Data\\sqlite_Chinook.sqlite");
    ASSERT_TRUE(session.OpenReportFile(writeDefinition(d, QStringLiteral("windows.vrd"))));
    EXPECT_TRUE(session.data().RecordSourceOpen());
    // The definition keeps the name it was given.
    EXPECT_EQ(session.definition().DataBaseName, d.DataBaseName);
}

TEST_F(ReportSessionTest, AMissingDatabaseIsReportedAndTheDefinitionStaysAsItWas)
{
    ReportDefinition d = invoices();
    d.DataBaseName = QStringLiteral("nowhere.sqlite");
    const QString path = writeDefinition(d, QStringLiteral("nowhere.vrd"));
    const ReportDefinition before = session.definition();
    EXPECT_FALSE(session.OpenReportFile(path));
    EXPECT_EQ(session.definition(), before);
    ASSERT_EQ(prompt.messages.size(), 1);
    EXPECT_TRUE(prompt.messages.first().startsWith(
        QStringLiteral("Could not open the database.\r\n'nowhere.sqlite'")));
}

TEST_F(ReportSessionTest, AFileWithOnlyAVersionFailsWithoutChangingTheDefinition)
{
    const QString path = dir.filePath(QStringLiteral("version-only.vrd"));
    writeBytes(path, "[General]\r\nVersion = 6\r\n");
    const ReportDefinition before = session.definition();

    // Without a host recordset the empty database name fails the database check.
    EXPECT_FALSE(session.OpenReportFile(path));
    EXPECT_EQ(prompt.messages.size(), 1);
    EXPECT_FALSE(session.lastReadError());
    EXPECT_EQ(session.definition(), before);

    // With one, the database is not checked and the first required key stops the read.
    MemoryRecordset host = MemoryRecordset::numbered(3);
    session.data().setHostRecordset(&host);
    EXPECT_FALSE(session.OpenReportFile(path));
    ASSERT_TRUE(session.lastReadError());
    EXPECT_EQ(session.lastReadError()->key, QStringLiteral("SubtotalPosition"));
    EXPECT_EQ(session.definition(), before);
}

TEST_F(ReportSessionTest, FilesThatAreNoDefinitionsFail)
{
    writeBytes(dir.filePath(QStringLiteral("empty.vrd")), QByteArray());
    writeBytes(dir.filePath(QStringLiteral("no-version.vrd")), "[General]\r\nVersion =\r\n");
    const QByteArray good = readBytes(definitionPath);
    writeBytes(dir.filePath(QStringLiteral("binary.vrd")), QByteArray(2048, '\xFF'));
    writeBytes(dir.filePath(QStringLiteral("bad-width.vrd")),
               QByteArray(good).replace("Width =  900 ", "Width = wide"));
    const ReportDefinition before = session.definition();
    for (const char* name :
         {"missing.vrd", "empty.vrd", "no-version.vrd", "binary.vrd", "bad-width.vrd"}) {
        EXPECT_FALSE(session.OpenReportFile(dir.filePath(QString::fromLatin1(name)))) << name;
        EXPECT_EQ(session.definition(), before) << name;
    }
    EXPECT_EQ(session.lastReadError()->key, QStringLiteral("Width"));
    EXPECT_FALSE(session.lastFileError());
    // A folder is no file either, and what could not be read at all is told apart from what
    // is no definition.
    EXPECT_FALSE(session.OpenReportFile(dir.path()));
    EXPECT_EQ(session.lastFileError(),
              QStringLiteral("'%1' is a folder, not a file").arg(dir.path()));
    EXPECT_FALSE(session.OpenReportFile(dir.filePath(QStringLiteral("missing.vrd"))));
    EXPECT_TRUE(session.lastFileError()->endsWith(QStringLiteral("does not exist")));
    EXPECT_FALSE(session.lastReadError());
}

TEST(PlacingFields, TakesTheExactNameAndKeepsUnknownOnes)
{
    ReportSession session;
    MemoryRecordset host(
        {{QStringLiteral("Name"), 10}, {QStringLiteral("name"), 10}, {QStringLiteral("Total"), 5}},
        {});
    session.data().setHostRecordset(&host);
    QTemporaryDir dir;
    ReportDefinition d;
    ApplyBuiltInStyles(d, {});
    d.groups = {QStringLiteral("name"), QStringLiteral("Missing")};
    d.details = {QStringLiteral("TOTAL")};
    const QString path = dir.filePath(QStringLiteral("host.vrd"));
    QString error;
    ASSERT_TRUE(WriteReportFile(d, path, &error));

    ASSERT_TRUE(session.OpenReportFile(path));
    EXPECT_EQ(session.definition().groups, d.groups);
    EXPECT_EQ(session.definition().details, d.details);
    EXPECT_EQ(session.data().availableFields(),
              (QStringList{QStringLiteral("Name"), QStringLiteral("Total")}));
}

TEST_F(ReportSessionTest, TheDefaultLookIsKeptInTheSettingsFileBesideOtherKeys)
{
    writeBytes(session.settingsPath(), "[mru]\r\n0file=/reports/a.vrd\r\n");
    session.definition().styles[StyleDetailBody].FontName = QStringLiteral("DejaVu Serif");
    session.definition().global.Columns = QStringLiteral("3");
    ASSERT_TRUE(session.SaveDefaultStyle());

    ReportSession other;
    other.setSettingsPath(session.settingsPath());
    other.applyDefaultLook();
    EXPECT_EQ(other.definition().styles[StyleDetailBody].FontName, QStringLiteral("DejaVu Serif"));
    EXPECT_EQ(other.definition().global.Columns, QStringLiteral("3"));
    EXPECT_TRUE(readBytes(session.settingsPath()).startsWith("[mru]\r\n0file=/reports/a.vrd\r\n"));
}

// The designer opens a definition whose record source or fields are gone and shows what is
// left (nothing, without the source); what is missing is named for whoever wants to refuse it.
TEST_F(ReportSessionTest, ADefinitionWithMissingObjectsOpensAndNamesThem)
{
    ReportDefinition d = invoices();
    d.groups = {QStringLiteral("Region")};
    ASSERT_TRUE(session.OpenReportFile(writeDefinition(d, QStringLiteral("region.vrd"))));
    EXPECT_EQ(missingObjects(session),
              QStringList{QStringLiteral("Groups names the field 'Region', which the record "
                                         "source 'Invoice' does not have")});
    EXPECT_GT(session.data().grid().recordCount(), 0);

    d.RecordSource = QStringLiteral("Invoices");
    ASSERT_TRUE(session.OpenReportFile(writeDefinition(d, QStringLiteral("invoices2.vrd"))));
    EXPECT_EQ(session.data().grid().recordCount(), 0);
    const QStringList missing = missingObjects(session);
    ASSERT_EQ(missing.size(), 1);
    EXPECT_TRUE(missing.first().startsWith(QStringLiteral(
        "the record source 'Invoices' cannot be opened in 'sqlite_Chinook.sqlite': ")))
        << missing.first().toStdString();

    ASSERT_TRUE(session.OpenReportFile(definitionPath));
    EXPECT_TRUE(missingObjects(session).isEmpty());
}

// A settings file that is there but cannot be read (here a folder) is told, and saving the
// default style does not put a file of nothing but the style in its place.
TEST_F(ReportSessionTest, AnUnreadableSettingsFileIsToldAndNotReplaced)
{
    ASSERT_TRUE(QDir().mkdir(session.settingsPath()));
    prompt.messages.clear();
    session.applyDefaultLook();
    ASSERT_EQ(prompt.messages.size(), 1);
    EXPECT_EQ(prompt.messages.first(),
              QStringLiteral("'%1' is a folder, not a file; the built-in style is used.")
                  .arg(session.settingsPath()));
    EXPECT_FALSE(session.SaveDefaultStyle());
    EXPECT_TRUE(QFileInfo(session.settingsPath()).isDir());
}

TEST_F(ReportSessionTest, FittedColumnsTakeNoMoreThanThePrintableWidthAndAreStored)
{
    ReportDefinition d = invoices();
    d.details = {QStringLiteral("InvoiceDate"), QStringLiteral("BillingAddress"),
                 QStringLiteral("BillingCity"), QStringLiteral("Total")};
    d.fields.append(
        {QStringLiteral("BillingAddress"), QStringLiteral("Address"), 1, 9, {}, 0, 5000});
    ASSERT_TRUE(session.OpenReportFile(writeDefinition(d, QStringLiteral("wide.vrd"))));
    PageDocument document;
    const auto total = [&] {
        const std::vector<double> widths = session.columnWidths(document.fonts());
        return std::accumulate(widths.begin(), widths.end(), 0.0);
    };
    const double printable = session.printableWidth(document.setup());
    ASSERT_GT(total(), printable);

    ASSERT_TRUE(session.fitColumns(document.setup(), document.fonts()));
    EXPECT_LE(total(), printable);
    EXPECT_LT(session.definition().fields[2].Width, 5000);
    EXPECT_TRUE(session.definition().Dirty);
    // Columns that fit are left alone.
    EXPECT_FALSE(session.fitColumns(document.setup(), document.fonts()));
}

TEST_F(ReportSessionTest, RequestsDuringARebuildGiveExactlyOneMorePass)
{
    ASSERT_TRUE(session.OpenReportFile(definitionPath));
    int passes = 0;
    QObject::connect(&session, &ReportSession::reportBuilt, [&] { ++passes; });

    // Three layout changes arrive while the pass lets events through after building.
    int pumps = 0;
    session.setEventPump([&] {
        if (++pumps == 2) {
            for (int i = 0; i < 3; ++i)
                session.rebuildReport();
            EXPECT_TRUE(session.RebuildRequested());
        }
    });
    session.rebuildReport();
    EXPECT_EQ(passes, 2);
    EXPECT_FALSE(session.Building());

    // A full report lets no events through, so nothing can interrupt it.
    passes = pumps = 0;
    session.data().setUnlimitedRows(true);
    session.rebuildReport();
    EXPECT_EQ(pumps, 0);
    EXPECT_EQ(passes, 1);

    // Without an open record source there is nothing to build.
    session.data().reset();
    session.rebuildReport();
    EXPECT_EQ(passes, 1);
}

TEST_F(ReportSessionTest, ChoosingARecordSourceStartsTheFieldsAfresh)
{
    ASSERT_TRUE(session.OpenReportFile(definitionPath));
    session.selectRecordSource(QStringLiteral("Track"));
    const ReportDefinition& d = session.definition();
    EXPECT_TRUE(d.Dirty);
    EXPECT_TRUE(d.groups.isEmpty());
    EXPECT_TRUE(d.details.isEmpty());
    ASSERT_EQ(d.fields.size(), 9);
    EXPECT_EQ(d.fields[0].ID, QStringLiteral("TrackId"));
    EXPECT_EQ(d.fields[0].Title, QStringLiteral("TrackId"));
    EXPECT_EQ(d.fields[0].Sort, 1);
    EXPECT_EQ(d.fields[0].Align, AlignRightTop);
    EXPECT_EQ(d.fields[1].Align, AlignLeftTop);
    const int price = FindField(d.fields, QStringLiteral("UnitPrice"));
    ASSERT_GE(price, 0);
    EXPECT_EQ(d.fields[price].Format, QStringLiteral("#.##")); // declared NUMERIC(10,2)
    EXPECT_EQ(session.data().availableFields().size(), 9);

    // Choosing the same source again changes nothing.
    session.definition().details = {QStringLiteral("Name")};
    session.selectRecordSource(QStringLiteral("Track"));
    EXPECT_EQ(session.definition().details, QStringList{QStringLiteral("Name")});
}

TEST_F(ReportSessionTest, ResizingAColumnStoresItsWidth)
{
    ASSERT_TRUE(session.OpenReportFile(definitionPath));
    const int total = session.data().grid().FindGridColumn(QStringLiteral("Total"));
    session.resizeColumn(total, 1234.5f);
    EXPECT_EQ(session.definition().fields[1].Width, 1234.5f);
    EXPECT_TRUE(session.definition().Dirty);
    session.definition().Dirty = false;
    session.resizeColumn(total, 0);
    EXPECT_EQ(session.definition().fields[1].Width, 1234.5f);
    EXPECT_TRUE(session.definition().Dirty);
}
