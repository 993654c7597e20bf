#include "ServerEnvironment.h"
#include "SqliteFixture.h"
#include "TestSupport.h"

#include "production/base/Currency.h"
#include "production/base/FieldType.h"
#include "production/data/Recordset.h"
#include "production/databases/OpenDatabase.h"

#include <QDateTime>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>

#include <gtest/gtest.h>

namespace tabulor::test {
namespace {

using Kind = RecordSourceKind;

QString sqliteDriver(const QString& path)
{
    return QStringLiteral("odbc:DRIVER=Tabulor SQLite;Database=%1;NoCreat=1").arg(path);
}

// Money as its amount and every number as a double: the drivers type some numbers otherwise
// than the embedded reader does.
QVariant plain(const QVariant& value)
{
    if (value.metaType() == QMetaType::fromType<Currency>())
        return value.value<Currency>().toDouble();
    if (value.metaType() == QMetaType::fromType<int>() ||
        value.metaType() == QMetaType::fromType<qint64>())
        return value.toDouble();
    return value;
}

// Reads a record source both through ODBC and directly, and compares them cell by cell.
void expectSameRows(DataSource& odbc, DataSource& direct, const QString& name)
{
    SCOPED_TRACE(name.toStdString());
    const QList<QVariantList> expected = readAll(direct, name);
    const QList<QVariantList> actual = readAll(odbc, name);
    ASSERT_EQ(actual.size(), expected.size());
    for (qsizetype row = 0; row < actual.size(); ++row) {
        ASSERT_EQ(actual[row].size(), expected[row].size());
        for (qsizetype field = 0; field < actual[row].size(); ++field)
            ASSERT_EQ(plain(actual[row][field]), plain(expected[row][field]))
                << "row " << row << ", field " << field;
    }
    EXPECT_EQ(odbc.countRows(name), direct.countRows(name));
}

TEST(OdbcSources, ChinookThroughAConnectionStringListsReadsAndCounts)
{
    REQUIRE_SERVERS();
    QTemporaryDir dir;
    const QString copy = copyInto(dir, sharedDataPath("sqlite_Chinook.sqlite"));
    const QByteArray before = readBytes(copy);
    {
        const std::unique_ptr<DataSource> chinook = openOrFail(sqliteDriver(copy));
        ASSERT_TRUE(chinook);
        EXPECT_EQ(names(chinook->recordSources()),
                  (QStringList{"Album", "Artist", "Customer", "Employee", "Genre", "Invoice",
                               "InvoiceLine", "MediaType", "Playlist", "PlaylistTrack", "Track"}));

        QString error;
        const std::unique_ptr<Recordset> invoices = chinook->openRecordSource("Invoice", 1, &error);
        ASSERT_TRUE(invoices) << error.toStdString();
        QList<qint16> types;
        for (int field = 0; field < invoices->fieldCount(); ++field)
            types.append(invoices->fieldType(field));
        // The driver describes the NUMERIC total as a double.
        EXPECT_EQ(types, (QList<qint16>{FieldLong, FieldLong, FieldDate, FieldText, FieldText,
                                        FieldText, FieldText, FieldText, FieldDouble}));
        const QVariantList invoice = readRows(*invoices).value(0);
        ASSERT_EQ(invoice.size(), 9);
        EXPECT_EQ(invoice[2], QDateTime(QDate(2021, 1, 1), QTime(0, 0), Qt::UTC));
        EXPECT_EQ(invoice[3], QString::fromUtf8("Theodor-Heuss-Straße 34"));
        EXPECT_FALSE(invoice[5].isValid());
        EXPECT_EQ(invoice[8], 1.98);

        EXPECT_EQ(readAll(*chinook, "Track").size(), 3503);
        EXPECT_EQ(chinook->countRows("Track"), 3503);
    }
    EXPECT_EQ(readBytes(copy), before);
}

TEST(OdbcSources, SampleThroughADataSourceNameMatchesTheDirectReader)
{
    REQUIRE_SERVERS();
    const std::unique_ptr<DataSource> odbc = openOrFail("odbc:Sample");
    const std::unique_ptr<DataSource> direct = openOrFail(servers().odbcSampleCopy);
    ASSERT_TRUE(odbc && direct);
    EXPECT_EQ(odbc->recordSources(), direct->recordSources());
    for (const RecordSourceEntry& entry : direct->recordSources())
        expectSameRows(*odbc, *direct, entry.name);
}

TEST(OdbcSources, AwkwardNamesAreQuotedAndOtherNamesFailCleanly)
{
    REQUIRE_SERVERS();
    ScratchDatabase db(QString::fromUtf8(R"sql(
        CREATE TABLE Plain (x INTEGER);                    INSERT INTO Plain VALUES (0);
        CREATE TABLE "Say ""cheese"""  (x INTEGER);        INSERT INTO "Say ""cheese""" VALUES (1);
        CREATE TABLE "a; DROP TABLE Plain; --" (x INTEGER);
        INSERT INTO "a; DROP TABLE Plain; --" VALUES (2);
        CREATE TABLE "Robert'); DROP TABLE Plain;--" (x INTEGER);
        INSERT INTO "Robert'); DROP TABLE Plain;--" VALUES (3);
        CREATE TABLE "Ünïcödé 名前" (x INTEGER);           INSERT INTO "Ünïcödé 名前" VALUES (4);
        CREATE TABLE "~sq_rHidden" (x INTEGER);
        CREATE VIEW "x"" FROM Plain; --" AS SELECT 5 AS x;
    )sql"));
    const std::unique_ptr<DataSource> odbc = openOrFail(sqliteDriver(db.path()));
    ASSERT_TRUE(odbc);
    const QStringList awkward = {
        "Say \"cheese\"",
        "a; DROP TABLE Plain; --",
        "Robert'); DROP TABLE Plain;--",
        QString::fromUtf8("Ünïcödé 名前"),
        "x\" FROM Plain; --",
    };
    EXPECT_EQ(odbc->recordSources(), (QList<RecordSourceEntry>{{"Plain", Kind::Table},
                                                               {awkward[0], Kind::Table},
                                                               {awkward[1], Kind::Table},
                                                               {awkward[2], Kind::Table},
                                                               {awkward[3], Kind::Table},
                                                               {awkward[4], Kind::View}}));
    for (int i = 0; i < awkward.size(); ++i) {
        SCOPED_TRACE(awkward[i].toStdString());
        ASSERT_EQ(readAll(*odbc, awkward[i]).size(), 1);
        EXPECT_EQ(plain(readAll(*odbc, awkward[i])[0][0]), double(i + 1));
        EXPECT_EQ(odbc->countRows(awkward[i]), 1);
    }
    for (const QString& name : {QString("main.Plain"), QString("Plain WHERE 0"),
                                QString("Plain\"; --"), QString(""), QString("sqlite_master")}) {
        SCOPED_TRACE(name.toStdString());
        QString error;
        EXPECT_FALSE(odbc->openRecordSource(name, std::nullopt, &error));
        EXPECT_EQ(error, "'" + name + "' is not a table or view of the database.");
        EXPECT_FALSE(odbc->countRows(name));
    }
    EXPECT_EQ(odbc->countRows("Plain"), 1);
}

TEST(OdbcRecordsets, RowLimitStartingOverAndOutlivingTheDataSource)
{
    REQUIRE_SERVERS();
    std::unique_ptr<DataSource> odbc = openOrFail("odbc:Sample");
    ASSERT_TRUE(odbc);
    const auto read = [&](std::optional<qint64> limit) {
        return readCounts(*odbc, "Order Details", limit);
    };
    EXPECT_EQ(read(249), (QList<qint64>{249, 249, 6}));
    EXPECT_EQ(read(0), (QList<qint64>{0, 0, 6}));
    EXPECT_EQ(read(-5), (QList<qint64>{0, 0, 6}));
    EXPECT_EQ(read(std::nullopt), (QList<qint64>{2000, 2000, 6}));

    QString error;
    const std::unique_ptr<Recordset> records =
        odbc->openRecordSource("Orders", std::nullopt, &error);
    ASSERT_TRUE(records) << error.toStdString();
    for (int i = 0; i < 10; ++i)
        ASSERT_TRUE(records->moveNext());
    EXPECT_EQ(records->value(0), 10011);
    EXPECT_EQ(odbc->countRows("Orders"), 577);
    odbc.reset();
    EXPECT_TRUE(records->moveFirst());
    EXPECT_EQ(records->value(0), 10001);
    EXPECT_EQ(readRows(*records).size(), 577);
}

TEST(OdbcServer, PostgresThroughItsDriverReadsTheSampleAndNeverWrites)
{
    REQUIRE_SERVERS();
    const std::unique_ptr<DataSource> odbc = openOrFail("odbc:ServerSample");
    const std::unique_ptr<DataSource> direct = openOrFail(servers().postgresAddress);
    ASSERT_TRUE(odbc && direct);
    const QList<RecordSourceEntry> entries = odbc->recordSources();
    for (const RecordSourceEntry& entry :
         {RecordSourceEntry{"Orders", Kind::Table}, RecordSourceEntry{"Every Type", Kind::Table},
          RecordSourceEntry{QString::fromUtf8("名前 Ünïcödé"), Kind::Table},
          RecordSourceEntry{"Linked Regions", Kind::Linked},
          RecordSourceEntry{"Order Details Extended", Kind::View},
          RecordSourceEntry{"Regional Totals", Kind::View}})
        EXPECT_TRUE(entries.contains(entry)) << entry.name.toStdString();
    for (const char* name :
         {"Customers", "Products", "Say \"cheese\"; DROP TABLE \"Orders\"; --", "名前 Ünïcödé"})
        expectSameRows(*odbc, *direct, name);

    // Reading "Noted Reads" inserts into "Reads": refused, or undone when the read ends.
    QString error;
    std::unique_ptr<Recordset> writer = odbc->openRecordSource("Noted Reads", std::nullopt, &error);
    writer.reset();
    EXPECT_EQ(direct->countRows("Reads"), 0) << error.toStdString();
}

TEST(OdbcConnections, FailuresComeBackAsMessagesWithinTheTimeout)
{
    REQUIRE_SERVERS();
    QTemporaryDir dir;
    const QString missing = dir.filePath("missing.sqlite");
    struct Case
    {
        QString name;
        QString expected;
    };
    const QList<Case> cases = {
        {"odbc:", "no data source name or connection string was given"},
        {"odbc:NoSuchSource", "Data source name not found"},
        {"odbc:DRIVER=No Such Driver;Database=x", "Can't open lib 'No Such Driver'"},
        {"odbc:DSN=ServerSample;PWD=reader-secret", "holds a password"},
        {"odbc:DSN=ServerSample;Port=" + QString::number(closedPort()), "Connection refused"},
        {"odbc:DSN=ServerSample;Username=nobody", "no password supplied"},
        {"odbc:DSN=ServerSample;Database=no_such_database", "does not exist"},
        {sqliteDriver(missing), "cannot be opened"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name.toStdString());
        QElapsedTimer timer;
        timer.start();
        QString error;
        EXPECT_FALSE(openDatabase(c.name, &error));
        EXPECT_LT(timer.elapsed(), 3000);
        EXPECT_TRUE(error.contains(c.expected)) << error.toStdString();
        EXPECT_TRUE(error.contains("'" + c.name + "'")) << error.toStdString();
    }
    // The driver was told not to make the file it could not find.
    EXPECT_FALSE(QFile::exists(missing));
}

TEST(OdbcCommandLine, SourcesListsKindsThroughTheFactory)
{
    REQUIRE_SERVERS();
    QProcess tool;
    tool.start(toolPath(), {"sources", "odbc:Sample", "--kind"});
    ASSERT_TRUE(tool.waitForFinished(30000));
    EXPECT_EQ(tool.exitCode(), 0) << tool.readAllStandardError().toStdString();
    EXPECT_EQ(QString::fromUtf8(tool.readAllStandardOutput()),
              "table\tRegions\ntable\tCustomers\ntable\tProducts\ntable\tOrders\n"
              "table\tOrder Details\nview\tOrder Details Extended\nview\tSales by Region\n");
}

} // namespace
} // namespace tabulor::test
