#include "SqliteFixture.h"
#include "TestSupport.h"

#include "production/data/Recordset.h"
#include "production/databases/OpenDatabase.h"

#include <QFile>
#include <QRandomGenerator>

#include <gtest/gtest.h>

#include <unistd.h>

namespace tabulor::test {
namespace {

using Kind = RecordSourceKind;

TEST(SqliteRecordSources, TablesThenViewsInCatalogOrderWithoutInternalOrEmbeddedNames)
{
    ScratchDatabase db(R"sql(
        CREATE TABLE Zebra (id INTEGER);
        CREATE VIEW "Zebra View" AS SELECT id FROM Zebra;
        CREATE TABLE "~sq_rMonthly" (id INTEGER);
        CREATE TABLE "~SQ_Shouted" (id INTEGER);
        CREATE VIEW "~sq_fOrders" AS SELECT 1 AS one;
        CREATE VIEW "~Sq_Mixed" AS SELECT 1 AS one;
        CREATE TABLE Counter (id INTEGER PRIMARY KEY AUTOINCREMENT, n INTEGER);
        INSERT INTO Counter (n) VALUES (1);
        CREATE INDEX ZebraIds ON Zebra (id);
        CREATE TABLE Apple (id INTEGER);
        ANALYZE;
    )sql");

    // AUTOINCREMENT and ANALYZE leave the engine's own sqlite_sequence and sqlite_stat1 behind.
    const QList<RecordSourceEntry> expected = {
        {"Zebra", Kind::Table}, {"~SQ_Shouted", Kind::Table}, {"Counter", Kind::Table},
        {"Apple", Kind::Table}, {"Zebra View", Kind::View},   {"~Sq_Mixed", Kind::View},
    };
    EXPECT_EQ(db.source().recordSources(), expected);

    // Left out of the list, but still a record source a definition may name.
    QString error;
    EXPECT_TRUE(db.source().openRecordSource("~sq_fOrders", std::nullopt, &error))
        << error.toStdString();
}

TEST(SqliteRecordSources, AwkwardNamesAreReadAsNamesAndUnknownNamesFailCleanly)
{
    // Each table holds one row with its own number, so a read shows which table answered. The
    // file's name holds characters that an unescaped file URI would misread.
    ScratchDatabase db(QString::fromUtf8(R"sql(
        CREATE TABLE Plain (x INTEGER);                    INSERT INTO Plain VALUES (0);
        CREATE TABLE "Say ""cheese"""  (x INTEGER);        INSERT INTO "Say ""cheese""" VALUES (1);
        CREATE TABLE "[Bracketed]" (x INTEGER);            INSERT INTO "[Bracketed]" VALUES (2);
        CREATE TABLE "a; DROP TABLE Plain; --" (x INTEGER);
        INSERT INTO "a; DROP TABLE Plain; --" VALUES (3);
        CREATE TABLE "Robert'); DROP TABLE Plain;--" (x INTEGER);
        INSERT INTO "Robert'); DROP TABLE Plain;--" VALUES (4);
        CREATE TABLE "Ünïcödé 名前" (x INTEGER);           INSERT INTO "Ünïcödé 名前" VALUES (5);
        CREATE TABLE "  spaced  " (x INTEGER);             INSERT INTO "  spaced  " VALUES (6);
        CREATE VIEW "x"" FROM Plain; --" AS SELECT 7 AS x;
    )sql"),
                       "odd #1 ?%20 name.sqlite");

    const QStringList awkward = {
        "Say \"cheese\"",
        "[Bracketed]",
        "a; DROP TABLE Plain; --",
        "Robert'); DROP TABLE Plain;--",
        QString::fromUtf8("Ünïcödé 名前"),
        "  spaced  ",
        "x\" FROM Plain; --",
    };
    EXPECT_EQ(names(db.source().recordSources()), QStringList{"Plain"} + awkward);
    for (int i = 0; i < awkward.size(); ++i) {
        SCOPED_TRACE(awkward[i].toStdString());
        QString error;
        const std::unique_ptr<Recordset> records =
            db.source().openRecordSource(awkward[i], std::nullopt, &error);
        ASSERT_TRUE(records) << error.toStdString();
        EXPECT_EQ(readRows(*records), (QList<QVariantList>{{qint64(i + 1)}}));
        EXPECT_EQ(db.source().countRows(awkward[i]), 1);
    }

    // Names the engine would resolve, or that would change the statement if pasted into it.
    const QStringList unknown = {
        "[Plain]",      "main.Plain", "Plain WHERE 0", "Plain\"; --",
        "Say \"cheese", "",           "sqlite_master", QString::fromLatin1("Plain\0x", 7),
    };
    for (const QString& name : unknown) {
        SCOPED_TRACE(name.toStdString());
        QString error;
        EXPECT_FALSE(db.source().openRecordSource(name, std::nullopt, &error));
        EXPECT_TRUE(error.contains("'" + name + "'")) << error.toStdString();
        EXPECT_FALSE(db.source().countRows(name));
    }
    EXPECT_EQ(db.source().countRows("Plain"), 1);
}

TEST(SqliteRecordsets, RowLimitCutsTheCursorAndItsCount)
{
    ScratchDatabase db(R"sql(
        CREATE TABLE Numbers (n INTEGER);
        WITH RECURSIVE counter(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM counter WHERE i < 300)
        INSERT INTO Numbers SELECT i FROM counter;
    )sql");
    EXPECT_EQ(db.source().countRows("Numbers"), 300);

    // Rows read, then the count the cursor reports.
    const auto readWithLimit = [&](std::optional<qint64> limit) -> QList<qint64> {
        QString error;
        const std::unique_ptr<Recordset> records =
            db.source().openRecordSource("Numbers", limit, &error);
        if (!records)
            return {};
        return {readRows(*records).size(), records->recordCount()};
    };
    EXPECT_EQ(readWithLimit(249), (QList<qint64>{249, 249}));
    EXPECT_EQ(readWithLimit(std::nullopt), (QList<qint64>{300, 300}));
    EXPECT_EQ(readWithLimit(1000), (QList<qint64>{300, 300}));
    EXPECT_EQ(readWithLimit(0), (QList<qint64>{0, 0}));
    EXPECT_EQ(readWithLimit(-5), (QList<qint64>{0, 0}));
}

TEST(SqliteRecordsets, CursorStartsOverAndOutlivesItsDataSource)
{
    QTemporaryDir dir;
    const QString path = dir.filePath("numbers.sqlite");
    createDatabase(path, "CREATE TABLE Numbers (n INTEGER); INSERT INTO Numbers VALUES (1), (2);");
    QString error;
    std::unique_ptr<DataSource> source = openDatabase(path, &error);
    ASSERT_TRUE(source) << error.toStdString();
    const std::unique_ptr<Recordset> records =
        source->openRecordSource("Numbers", std::nullopt, &error);
    ASSERT_TRUE(records) << error.toStdString();
    source.reset();

    // Open stands on the first row; moving past the last one ends the cursor for good.
    ASSERT_FALSE(records->atEnd());
    EXPECT_EQ(records->value(0), qint64(1));
    EXPECT_TRUE(records->moveNext());
    EXPECT_FALSE(records->moveNext());
    EXPECT_TRUE(records->atEnd());
    EXPECT_FALSE(records->moveNext());
    EXPECT_FALSE(records->value(0).isValid());

    EXPECT_TRUE(records->moveFirst());
    EXPECT_EQ(readRows(*records), (QList<QVariantList>{{qint64(1)}, {qint64(2)}}));
    EXPECT_EQ(records->recordCount(), 2);
}

TEST(OpenDatabase, RefusesWhatItCannotReadWithAMessageNamingIt)
{
    QTemporaryDir dir;
    const QString chinook = copyInto(dir, sharedDataPath("sqlite_Chinook.sqlite"));
    const QByteArray database = readBytes(chinook);
    QRandomGenerator random(7);
    QByteArray noise(8192, '\0');
    random.fillRange(reinterpret_cast<quint32*>(noise.data()), noise.size() / 4);

    const auto file = [&](const QString& name, const QByteArray& bytes) {
        writeBytes(dir.filePath(name), bytes);
        return dir.filePath(name);
    };
    const QString sqliteMagic = QStringLiteral("SQLite format 3");
    struct Case
    {
        QString name;
        QString expected;
    };
    const QList<Case> cases = {
        {"", "No database was given"},
        {dir.filePath("missing.sqlite"), "does not exist"},
        {dir.path(), "is a folder"},
        {file("empty.sqlite", {}), "not a database this version can read"},
        {file("noise.sqlite", noise), "not a database this version can read"},
        {file("notes.txt", "SQLite format 3 is what this file is not.\n"),
         "not a database this version can read"},
        {file("half.sqlite", database.left(database.size() / 2)), "malformed"},
        {file("stub.sqlite", database.left(50)), "malformed"},
        {file("magic-then-noise.sqlite", database.left(16) + noise), "cannot be opened"},
        {file("schema-noise.sqlite",
              database.left(100) + noise.left(4096 - 100) + database.mid(4096)),
         "cannot be opened"},
        // Server addresses go to their own readers, which fail to connect here.
        {"postgresql://reports@127.0.0.1:1/sales", "cannot be opened"},
        {"odbc:DSN=NoSuchSource", "cannot be opened"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name.toStdString());
        QString error;
        EXPECT_FALSE(openDatabase(c.name, &error));
        EXPECT_TRUE(error.contains(c.expected)) << error.toStdString();
        EXPECT_TRUE(error.contains("'" + c.name + "'") || c.name.isEmpty()) << error.toStdString();
    }
    // The original still opens: nothing above touched it.
    QString error;
    EXPECT_TRUE(openDatabase(chinook, &error)) << error.toStdString();
}

TEST(OpenDatabase, FileWithoutReadPermissionIsRefused)
{
    if (geteuid() == 0)
        GTEST_SKIP() << "permissions do not bind the superuser";
    QTemporaryDir dir;
    const QString path = dir.filePath("locked.sqlite");
    createDatabase(path, "CREATE TABLE t (x INTEGER);");
    ASSERT_TRUE(QFile::setPermissions(path, QFileDevice::WriteOwner));
    QString error;
    EXPECT_FALSE(openDatabase(path, &error));
    EXPECT_TRUE(error.contains("cannot be read")) << error.toStdString();
}

} // namespace
} // namespace tabulor::test
