#include "definition/DefinitionFile.h"

#include "DamagedFiles.h"
#include "SqliteFixture.h"
#include "TestSupport.h"

#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace tabulor;
using namespace tabulor::test;

namespace {

struct ToolRun
{
    int status = -1;
    QString out;
    QString err;
};

class CommandLineTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        copyInto(dir, sharedDataPath(QStringLiteral("sqlite_Chinook.sqlite")));
        ReportDefinition d =
            definitionOver(QStringLiteral("sqlite_Chinook.sqlite"), QStringLiteral("Track"),
                           {QStringLiteral("Name"), QStringLiteral("Milliseconds")});
        d.fields = {{QStringLiteral("Composer"),
                     QString::fromUtf8("Compositeur \xC3\xA9"),
                     1,
                     9,
                     {},
                     0,
                     0}};
        d.groups = {QStringLiteral("Composer")};
        definition = write(d, QStringLiteral("tracks.vrd"));
    }

    // A report titled "Tracks" listing the details of a record source.
    static ReportDefinition definitionOver(const QString& database, const QString& source,
                                           const QStringList& details)
    {
        ReportDefinition d;
        ApplyBuiltInStyles(d, {QStringLiteral("Tracks"), QStringLiteral("<p>"), QString()});
        d.DataBaseName = database;
        d.RecordSource = source;
        d.details = details;
        return d;
    }

    // Writes a definition into the test's folder; its path.
    QString write(const ReportDefinition& d, const QString& fileName)
    {
        const QString path = dir.filePath(fileName);
        QString error;
        EXPECT_TRUE(WriteReportFile(d, path, &error)) << error.toStdString();
        return path;
    }

    ToolRun run(const QStringList& arguments,
                QProcessEnvironment environment = QProcessEnvironment::systemEnvironment())
    {
        QProcess process;
        environment.insert(QStringLiteral("TABULOR_SETTINGS"),
                           dir.filePath(QStringLiteral("settings.ini")));
        process.setProcessEnvironment(environment);
        process.start(toolPath(), arguments);
        EXPECT_TRUE(process.waitForFinished(60000));
        return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
                QString::fromUtf8(process.readAllStandardOutput()),
                QString::fromUtf8(process.readAllStandardError())};
    }

    QTemporaryDir dir;
    QString definition;
};

} // namespace

TEST_F(CommandLineTest, InfoPrintsTheDefinitionAsJsonUnderTheFileKeys)
{
    const ToolRun r = run({QStringLiteral("info"), definition, QStringLiteral("--json")});
    ASSERT_EQ(r.status, 0) << r.err.toStdString();
    const QJsonObject json = QJsonDocument::fromJson(r.out.toUtf8()).object();
    EXPECT_EQ(json[QStringLiteral("RecordSource")].toString(), QStringLiteral("Track"));
    EXPECT_EQ(json[QStringLiteral("GlobalInfo")][QStringLiteral("ReportTitle")].toString(),
              QStringLiteral("Tracks"));
    EXPECT_EQ(json[QStringLiteral("GlobalInfo")][QStringLiteral("Right")].toInt(), 720);
    const QJsonArray styles = json[QStringLiteral("Styles")].toArray();
    ASSERT_EQ(styles.size(), 11);
    EXPECT_EQ(styles[8][QStringLiteral("Name")].toString(), QStringLiteral("Heading 1 Bottom"));
    EXPECT_EQ(styles[8][QStringLiteral("Level")].toInt(), -100);
    EXPECT_EQ(styles[5][QStringLiteral("FontSize")].toDouble(), 8.25);
    EXPECT_EQ(json[QStringLiteral("Fields")][0][QStringLiteral("Title")].toString(),
              QString::fromUtf8("Compositeur \xC3\xA9"));
    EXPECT_EQ(json[QStringLiteral("Details")].toArray().size(), 2);

    const ToolRun text = run({QStringLiteral("info"), definition});
    ASSERT_EQ(text.status, 0);
    EXPECT_TRUE(text.out.contains(QStringLiteral("Groups:           Composer")));
}

TEST_F(CommandLineTest, SaveWritesTheDefinitionBackAndCanPointItElsewhere)
{
    const QString copy = dir.filePath(QStringLiteral("copy.vrd"));
    ASSERT_EQ(run({QStringLiteral("save"), definition, QStringLiteral("-o"), copy}).status, 0);
    EXPECT_EQ(readBytes(copy), readBytes(definition));

    QTemporaryDir other;
    const QString moved = copyInto(other, sharedDataPath(QStringLiteral("sqlite_Chinook.sqlite")));
    const QString repointed = dir.filePath(QStringLiteral("repointed.vrd"));
    ASSERT_EQ(run({QStringLiteral("save"), definition, QStringLiteral("-o"), repointed,
                   QStringLiteral("--database"), moved})
                  .status,
              0);
    EXPECT_TRUE(readBytes(repointed).contains(("DataBaseName = " + moved + "\r\n").toUtf8()));

    const ToolRun missing =
        run({QStringLiteral("save"), definition, QStringLiteral("-o"), repointed,
             QStringLiteral("--database"), dir.filePath(QStringLiteral("gone.db"))});
    EXPECT_EQ(missing.status, 1);
    // The earlier file is untouched by the failed save.
    EXPECT_TRUE(readBytes(repointed).contains(moved.toUtf8()));
}

TEST_F(CommandLineTest, ABrokenDefinitionExitsWithTheMessageAndThePath)
{
    const QString broken = dir.filePath(QStringLiteral("broken.vrd"));
    writeBytes(broken, "[General]\r\nVersion = 6\r\n");
    const ToolRun r = run({QStringLiteral("info"), broken});
    EXPECT_EQ(r.status, 1);
    EXPECT_TRUE(r.err.contains(QStringLiteral("Invalid Data File, please try another.\n'") +
                               broken + u'\''))
        << r.err.toStdString();

    const QString target = dir.filePath(QStringLiteral("target.vrd"));
    EXPECT_EQ(run({QStringLiteral("save"), broken, QStringLiteral("-o"), target}).status, 1);
    EXPECT_FALSE(QFile::exists(target));
}

// A definition that cannot be read at all says why at once: a device is not read until the
// memory runs out, and a missing file is not called invalid.
TEST_F(CommandLineTest, AnUnreadableDefinitionSaysWhyAtOnce)
{
    const QString missing = dir.filePath(QStringLiteral("missing.vrd"));
    const std::pair<QString, QString> cases[] = {
        {missing, QStringLiteral("tabulor: '%1' does not exist\n").arg(missing)},
        {QStringLiteral("/dev/zero"),
         QStringLiteral("tabulor: '/dev/zero' is not a regular file (it is a device, pipe or "
                        "socket)\n")},
        {dir.path(), QStringLiteral("tabulor: '%1' is a folder, not a file\n").arg(dir.path())},
    };
    for (const auto& [path, message] : cases) {
        const ToolRun r = run({QStringLiteral("info"), path});
        EXPECT_EQ(r.status, 1);
        EXPECT_EQ(r.err, message);
    }
}

// A definition whose record source or fields are gone is not rendered or printed (the file
// at -o stays as it was, the printer is not asked for), and info warns of it.
TEST_F(CommandLineTest, MissingSourcesAndFieldsStopTheReportAndInfoWarns)
{
    const QByteArray original = readBytes(definition);
    const QString noSource = dir.filePath(QStringLiteral("no-source.vrd"));
    writeBytes(noSource,
               QByteArray(original).replace("RecordSource = Track", "RecordSource = Gone"));
    const QString noField = dir.filePath(QStringLiteral("no-field.vrd"));
    writeBytes(noField, QByteArray(original).replace("Milliseconds", "Seconds"));
    const QString pdf = dir.filePath(QStringLiteral("kept.pdf"));
    writeBytes(pdf, "an earlier report");

    const ToolRun source = run({QStringLiteral("render"), noSource, QStringLiteral("-o"), pdf});
    EXPECT_EQ(source.status, 1);
    EXPECT_TRUE(source.err.startsWith(
        QStringLiteral("tabulor: no-source.vrd: the record source 'Gone' cannot be opened in "
                       "'sqlite_Chinook.sqlite'")))
        << source.err.toStdString();

    const ToolRun field = run({QStringLiteral("render"), noField, QStringLiteral("-o"), pdf});
    EXPECT_EQ(field.status, 1);
    EXPECT_EQ(field.err, QStringLiteral("tabulor: no-field.vrd: Details names the field "
                                        "'Seconds', which the record source 'Track' does not "
                                        "have\n"));
    EXPECT_EQ(readBytes(pdf), QByteArray("an earlier report"));

    QProcessEnvironment noServer = QProcessEnvironment::systemEnvironment();
    noServer.insert(QStringLiteral("CUPS_SERVER"), dir.filePath(QStringLiteral("no-cups.sock")));
    const ToolRun printed = run({QStringLiteral("print"), noField}, noServer);
    EXPECT_EQ(printed.status, 1);
    EXPECT_EQ(printed.err, field.err);

    const ToolRun info = run({QStringLiteral("info"), noField});
    EXPECT_EQ(info.status, 0);
    EXPECT_TRUE(info.err.startsWith(
        QStringLiteral("tabulor: warning: no-field.vrd: Details names the field 'Seconds'")));
    EXPECT_TRUE(info.out.contains(QStringLiteral("Details:          Name, Seconds")));
}

// A database that cannot be read to the end gives no report, whether the damage is met while
// the engine sorts the records (SQLite) or while they are loaded for the layout (Jet).
TEST_F(CommandLineTest, ADamagedDatabaseStopsTheReportAndLeavesTheFileAsItWas)
{
    const QString lines = dir.filePath(QStringLiteral("lines.sqlite"));
    createDatabase(lines, "PRAGMA page_size = 4096;"
                          "CREATE TABLE Lines (Id INTEGER PRIMARY KEY, Text TEXT);"
                          "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n"
                          " WHERE i < 4000) INSERT INTO Lines SELECT i, printf('%0100d', i)"
                          " FROM n;");
    damageMiddlePage(lines);
    const QString linesReport =
        write(definitionOver(QStringLiteral("lines.sqlite"), QStringLiteral("Lines"),
                             {QStringLiteral("Id"), QStringLiteral("Text")}),
              QStringLiteral("lines.vrd"));
    ASSERT_GT(damageJetTables(copyInto(dir, sharedDataPath(QStringLiteral("jet4_Northwind.mdb")))),
              0);
    const QString ordersReport =
        write(definitionOver(QStringLiteral("jet4_Northwind.mdb"), QStringLiteral("Order Details"),
                             {QStringLiteral("OrderID"), QStringLiteral("Quantity")}),
              QStringLiteral("orders.vrd"));
    const QString pdf = dir.filePath(QStringLiteral("kept.pdf"));
    writeBytes(pdf, "an earlier report");

    for (const QString& report : {linesReport, ordersReport}) {
        const ToolRun r = run({QStringLiteral("render"), report, QStringLiteral("-o"), pdf});
        EXPECT_EQ(r.status, 1) << report.toStdString();
        EXPECT_TRUE(r.err.contains(QStringLiteral("is damaged"))) << r.err.toStdString();
        EXPECT_EQ(readBytes(pdf), QByteArray("an earlier report"));
    }

    // info shows the rows read before the damage, and says why there are no more.
    const ToolRun info = run({QStringLiteral("info"), linesReport, QStringLiteral("--rows"),
                              QStringLiteral("5"), QStringLiteral("--all")});
    EXPECT_EQ(info.status, 0);
    EXPECT_TRUE(info.err.startsWith(QStringLiteral("tabulor: warning: lines.vrd: The database '")))
        << info.err.toStdString();
    EXPECT_TRUE(info.out.contains(QStringLiteral("0000000004"))) << info.out.toStdString();
}

TEST_F(CommandLineTest, ValuesThatCannotBeLaidOutAreRenderedWithAWarning)
{
    writeBytes(definition, readBytes(definition).replace("Left =  1440 ", "Left = -100"));
    const ToolRun r = run({QStringLiteral("render"), definition, QStringLiteral("-o"),
                           dir.filePath(QStringLiteral("report.pdf"))});
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.err, QStringLiteral("tabulor: warning: tracks.vrd: [GlobalInfo] Left = -100 "
                                    "cannot be laid out; 0 is used\n"));
}

// A face that is not installed and characters no font has are told once each, however often
// they are drawn.
TEST_F(CommandLineTest, MissingFontsAndCharactersAreToldOnce)
{
    QByteArray bytes = readBytes(definition);
    bytes.replace("FontName = Tahoma", "FontName = No Such Face 1234");
    bytes.replace("ReportTitle = Tracks", "ReportTitle = Tracks \xF0\x92\x80\x80");
    writeBytes(definition, bytes);
    const ToolRun r = run({QStringLiteral("render"), definition, QStringLiteral("-o"),
                           dir.filePath(QStringLiteral("report.pdf")), QStringLiteral("--fit")});
    EXPECT_EQ(r.status, 0);
    const QStringList lines = r.err.split(u'\n', Qt::SkipEmptyParts);
    ASSERT_EQ(lines.size(), 2) << r.err.toStdString();
    EXPECT_TRUE(lines[0].startsWith(QStringLiteral(
        "tabulor: warning: tracks.vrd: the font 'No Such Face 1234' is not installed; '")));
    EXPECT_TRUE(lines[1].startsWith(
        QStringLiteral("tabulor: warning: tracks.vrd: no installed font has U+12000")));
}

// The tracks' long names make columns wider than the page: render says so and names the
// option that fits them, which then leaves nothing to say.
TEST_F(CommandLineTest, ColumnsWiderThanThePageAreToldAndFitted)
{
    const QString pdf = dir.filePath(QStringLiteral("report.pdf"));
    const ToolRun wide = run({QStringLiteral("render"), definition, QStringLiteral("-o"), pdf});
    EXPECT_EQ(wide.status, 0);
    EXPECT_TRUE(QRegularExpression(QStringLiteral("^tabulor: warning: tracks.vrd: the columns "
                                                  "are [0-9.]+ inches wide and the page prints "
                                                  "[0-9.]+ inches across; --fit narrows them to "
                                                  "the page\n$"))
                    .match(wide.err)
                    .hasMatch())
        << wide.err.toStdString();

    const ToolRun fitted = run(
        {QStringLiteral("render"), definition, QStringLiteral("-o"), pdf, QStringLiteral("--fit")});
    EXPECT_EQ(fitted.status, 0);
    EXPECT_TRUE(fitted.err.isEmpty()) << fitted.err.toStdString();
}

TEST_F(CommandLineTest, SourcesListsTablesWithTheirKind)
{
    const ToolRun r =
        run({QStringLiteral("sources"), dir.filePath(QStringLiteral("sqlite_Chinook.sqlite")),
             QStringLiteral("--kind")});
    ASSERT_EQ(r.status, 0);
    const QStringList lines = r.out.split(u'\n', Qt::SkipEmptyParts);
    ASSERT_EQ(lines.size(), 11);
    EXPECT_EQ(lines.first(), QStringLiteral("table\tAlbum"));

    const ToolRun bad = run({QStringLiteral("sources"), definition});
    EXPECT_EQ(bad.status, 1);
    EXPECT_FALSE(bad.err.isEmpty());
}

TEST_F(CommandLineTest, BadArgumentsPrintUsage)
{
    for (const QStringList& arguments :
         {QStringList{}, QStringList{QStringLiteral("frobnicate")},
          QStringList{QStringLiteral("info")},
          QStringList{QStringLiteral("info"), definition, QStringLiteral("--bogus")},
          QStringList{QStringLiteral("save"), definition},
          QStringList{QStringLiteral("info"), definition, QStringLiteral("--rows"),
                      QStringLiteral("-1")},
          QStringList{QStringLiteral("render"), definition, QStringLiteral("-o"),
                      QStringLiteral("p.png"), QStringLiteral("--pages"), QStringLiteral("3-2")},
          QStringList{QStringLiteral("print"), definition, QStringLiteral("-P"), QString()}}) {
        const ToolRun r = run(arguments);
        EXPECT_EQ(r.status, 2) << arguments.join(u' ').toStdString();
        EXPECT_TRUE(r.err.contains(QStringLiteral("Usage:")));
    }
    const ToolRun help = run({QStringLiteral("--help")});
    EXPECT_EQ(help.status, 0);
    EXPECT_TRUE(help.out.contains(QStringLiteral("tabulor info FILE.vrd")));
    const ToolRun version = run({QStringLiteral("--version")});
    EXPECT_EQ(version.status, 0);
    EXPECT_TRUE(QRegularExpression(QStringLiteral("^tabulor \\d+\\.\\d+\\.\\d+\n$"))
                    .match(version.out)
                    .hasMatch())
        << version.out.toStdString();
}

// Pages beyond the report's end are only known once it is laid out; they are refused as a
// wrong argument and no image is written.
TEST_F(CommandLineTest, PagesBeyondTheReportAreRefused)
{
    const QString pattern = dir.filePath(QStringLiteral("page-%d.png"));
    const ToolRun r = run({QStringLiteral("render"), definition, QStringLiteral("-o"), pattern,
                           QStringLiteral("--pages"), QStringLiteral("1-5000")});
    EXPECT_EQ(r.status, 2);
    EXPECT_TRUE(r.err.contains(QStringLiteral("page 5000 was asked for, and the report has ")))
        << r.err.toStdString();
    EXPECT_FALSE(QFile::exists(dir.filePath(QStringLiteral("page-1.png"))));
}

TEST_F(CommandLineTest, NoPrintServerIsToldAsSuch)
{
    QProcessEnvironment noServer = QProcessEnvironment::systemEnvironment();
    noServer.insert(QStringLiteral("CUPS_SERVER"), dir.filePath(QStringLiteral("no-cups.sock")));
    const ToolRun r = run({QStringLiteral("print"), definition, QStringLiteral("--fit")}, noServer);
    EXPECT_EQ(r.status, 1);
    EXPECT_TRUE(
        r.err.startsWith(QStringLiteral("tabulor: cannot print: no print server answers at ")))
        << r.err.toStdString();
}

TEST_F(CommandLineTest, NewMakesADefinitionWhoseRowsInfoShows)
{
    const QString made = dir.filePath(QStringLiteral("sales.vrd"));
    const ToolRun created =
        run({QStringLiteral("new"), QStringLiteral("--database"),
             samplePath(QStringLiteral("sample.sqlite")), QStringLiteral("--source"),
             QStringLiteral("Sales by Region"), QStringLiteral("--group"), QStringLiteral("Region"),
             QStringLiteral("--detail"), QStringLiteral("Customer"), QStringLiteral("--detail"),
             QStringLiteral("Sales"), QStringLiteral("--sort"), QStringLiteral("Customer=desc"),
             QStringLiteral("--total"), QStringLiteral("Sales=sum"), QStringLiteral("--subtotals"),
             QStringLiteral("below"), QStringLiteral("-o"), made});
    ASSERT_EQ(created.status, 0) << created.err.toStdString();

    const ToolRun info =
        run({QStringLiteral("info"), made, QStringLiteral("--json"), QStringLiteral("--rows"),
             QStringLiteral("100000"), QStringLiteral("--all")});
    ASSERT_EQ(info.status, 0) << info.err.toStdString();
    const QJsonObject json = QJsonDocument::fromJson(info.out.toUtf8()).object();
    const QJsonArray fields = json[QStringLiteral("Fields")].toArray();
    ASSERT_EQ(fields.size(), 7);
    // The defaults a new field gets: its name as title, ascending, a format by its type.
    EXPECT_EQ(fields[4][QStringLiteral("Format")].toString(), QStringLiteral("Medium Date"));
    EXPECT_EQ(fields[6][QStringLiteral("Format")].toString(), QStringLiteral("#.##"));
    EXPECT_EQ(fields[6][QStringLiteral("Aggregate")].toInt(), 1);
    EXPECT_EQ(fields[2][QStringLiteral("Sort")].toInt(), 2);

    // The column title row first, as on paper; then every order once, seven regions, each
    // closed by a row with its total.
    const QJsonArray rows = json[QStringLiteral("Rows")].toArray();
    ASSERT_FALSE(rows.isEmpty());
    EXPECT_EQ(rows[0][QStringLiteral("Style")].toString(), QStringLiteral("Detail Title"));
    EXPECT_EQ(rows[0][QStringLiteral("Cells")].toArray(),
              QJsonArray::fromStringList(
                  {QStringLiteral("Region"), QStringLiteral("Customer"), QStringLiteral("Sales")}));
    int records = 0;
    QStringList closing;
    for (qsizetype i = 1; i < rows.size(); ++i) {
        const QJsonValue row = rows[i];
        if (!row[QStringLiteral("Outline")].toBool()) {
            ++records;
            continue;
        }
        EXPECT_EQ(row[QStringLiteral("Level")].toInt(), -100);
        EXPECT_EQ(row[QStringLiteral("Style")].toString(), QStringLiteral("Heading 1 Bottom"));
        closing.append(row[QStringLiteral("Cells")][0].toString());
    }
    EXPECT_EQ(records, 577);
    EXPECT_EQ(closing.size(), 7);
    EXPECT_TRUE(std::is_sorted(closing.begin(), closing.end()));

    const ToolRun bad =
        run({QStringLiteral("new"), QStringLiteral("--database"),
             samplePath(QStringLiteral("sample.sqlite")), QStringLiteral("--source"),
             QStringLiteral("Sales by Region"), QStringLiteral("--total"),
             QStringLiteral("Sales=median"), QStringLiteral("-o"), made});
    EXPECT_EQ(bad.status, 2);
    const ToolRun missing =
        run({QStringLiteral("new"), QStringLiteral("--database"),
             samplePath(QStringLiteral("sample.sqlite")), QStringLiteral("--source"),
             QStringLiteral("No such view"), QStringLiteral("-o"), made});
    EXPECT_EQ(missing.status, 1);
}

TEST_F(CommandLineTest, RenderWritesTheSampleReportAsSearchablePdfAndAsImages)
{
    const QString pdf = dir.filePath(QStringLiteral("report.pdf"));
    const ToolRun rendered =
        run({QStringLiteral("render"), samplePath(QStringLiteral("sales_by_region.vrd")),
             QStringLiteral("-o"), pdf});
    ASSERT_EQ(rendered.status, 0) << rendered.err.toStdString();
    EXPECT_TRUE(rendered.err.isEmpty()) << rendered.err.toStdString();

    QProcess info;
    info.start(QStringLiteral("pdfinfo"), {pdf});
    ASSERT_TRUE(info.waitForFinished(30000)) << "pdfinfo (poppler-utils) is needed";
    const QString details = QString::fromUtf8(info.readAllStandardOutput());
    const QRegularExpression pagesLine(QStringLiteral("Pages:\\s+(\\d+)"));
    const int pages = pagesLine.match(details).captured(1).toInt();
    ASSERT_GT(pages, 1);
    EXPECT_TRUE(details.contains(QStringLiteral("sales_by_region.vrd")));

    QProcess text;
    text.start(QStringLiteral("pdftotext"), {QStringLiteral("-layout"), pdf, QStringLiteral("-")});
    ASSERT_TRUE(text.waitForFinished(30000));
    const QStringList pageTexts =
        QString::fromUtf8(text.readAllStandardOutput()).split(u'\f', Qt::SkipEmptyParts);
    ASSERT_EQ(pageTexts.size(), pages);
    EXPECT_TRUE(pageTexts.first().contains(QStringLiteral("Sales by Region, ")));
    for (int p = 0; p < pages; ++p) {
        const QString& page = pageTexts.at(p);
        EXPECT_TRUE(page.contains(QStringLiteral("Page %1 of %2").arg(p + 1).arg(pages))) << p + 1;
        EXPECT_TRUE(page.contains(QStringLiteral("sample.sqlite"))) << p + 1;
        EXPECT_TRUE(page.contains(QStringLiteral("Customer"))) << "title row on page " << p + 1;
    }
    const QString all = pageTexts.join(QString());
    EXPECT_TRUE(all.contains(QStringLiteral("North America")));
    EXPECT_TRUE(all.contains(QString::fromUtf8("M\xC3\xBCller & S\xC3\xB6hne GmbH")));

    // The first page as an image: white paper, dark text, the grey title band of the column
    // title row across the table.
    const ToolRun image = run(
        {QStringLiteral("render"), samplePath(QStringLiteral("sales_by_region.vrd")),
         QStringLiteral("-o"), dir.filePath(QStringLiteral("page-%d.png")), QStringLiteral("--dpi"),
         QStringLiteral("72"), QStringLiteral("--pages"), QStringLiteral("1")});
    ASSERT_EQ(image.status, 0) << image.err.toStdString();
    const QImage first(dir.filePath(QStringLiteral("page-1.png")));
    ASSERT_FALSE(first.isNull());
    EXPECT_NEAR(first.width(), 595, 1); // A4 at 72 dots per inch
    EXPECT_FALSE(QFile::exists(dir.filePath(QStringLiteral("page-2.png"))));
    int darkRows = 0;
    for (int y = 0; y < first.height(); ++y) {
        for (int x = 0; x < first.width(); ++x) {
            if (qGray(first.pixel(x, y)) < 100) {
                ++darkRows;
                break;
            }
        }
    }
    EXPECT_GT(darkRows, 100);
    EXPECT_EQ(first.pixel(5, 5), qRgb(255, 255, 255));
}

TEST_F(CommandLineTest, RenderRefusesWhatItCannotWrite)
{
    EXPECT_EQ(run({QStringLiteral("render"), definition, QStringLiteral("-o"),
                   dir.filePath(QStringLiteral("x.doc"))})
                  .status,
              2);
    const ToolRun denied = run({QStringLiteral("render"), definition, QStringLiteral("-o"),
                                dir.filePath(QStringLiteral("no/such/folder/x.pdf"))});
    EXPECT_EQ(denied.status, 1);
    EXPECT_TRUE(denied.err.contains(QStringLiteral("cannot write")));
}
