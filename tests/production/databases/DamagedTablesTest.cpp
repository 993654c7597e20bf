#include "DamagedFiles.h"
#include "SqliteFixture.h"
#include "TestSupport.h"

#include "production/data/Recordset.h"
#include "production/databases/OpenDatabase.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <unistd.h>

namespace tabulor::test {
namespace {

struct ReadOutcome
{
    qint64 rows = 0;
    QString readError;
    QByteArray printed; // what reached stderr meanwhile
};

// Opens a record source and reads it to where it stops, with stderr sent to a file.
ReadOutcome readToTheEnd(const QString& database, const QString& source)
{
    ReadOutcome outcome;
    QTemporaryDir dir;
    const QString printedPath = dir.filePath("stderr");
    std::fflush(stderr);
    const int savedStderr = dup(STDERR_FILENO);
    FILE* printed = std::fopen(QFile::encodeName(printedPath).constData(), "w");
    dup2(fileno(printed), STDERR_FILENO);
    {
        QString error;
        const std::unique_ptr<DataSource> opened = openDatabase(database, &error);
        const std::unique_ptr<Recordset> records =
            opened ? opened->openRecordSource(source, std::nullopt, &error) : nullptr;
        if (records) {
            for (; !records->atEnd(); records->moveNext())
                ++outcome.rows;
            outcome.readError = records->readError();
        } else {
            outcome.readError = error;
        }
    }
    std::fflush(stderr);
    dup2(savedStderr, STDERR_FILENO);
    close(savedStderr);
    std::fclose(printed);
    outcome.printed = readBytes(printedPath);
    return outcome;
}

TEST(DamagedTables, ReadingStopsAtADamagedPageOfTheEmbeddedEngineWithAMessage)
{
    // Rows added in order fill the table's leaf pages one after the other.
    QTemporaryDir dir;
    const QString path = dir.filePath("lines.sqlite");
    createDatabase(path, "PRAGMA page_size = 4096;"
                         "CREATE TABLE Lines (Id INTEGER PRIMARY KEY, Text TEXT);"
                         "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n"
                         " WHERE i < 4000) INSERT INTO Lines SELECT i, printf('%0100d', i)"
                         " FROM n;");
    const ReadOutcome whole = readToTheEnd(path, "Lines");
    ASSERT_EQ(whole.rows, 4000);
    EXPECT_TRUE(whole.readError.isEmpty());

    damageMiddlePage(path);
    const ReadOutcome damaged = readToTheEnd(path, "Lines");
    EXPECT_GT(damaged.rows, 0);
    EXPECT_LT(damaged.rows, 4000);
    EXPECT_TRUE(damaged.readError.contains("is damaged")) << damaged.readError.toStdString();
    EXPECT_TRUE(damaged.readError.contains(path)) << damaged.readError.toStdString();
}

TEST(DamagedTables, ReadingStopsAtAJetPageThatIsNotTheTablesWithOurMessageOnly)
{
    QTemporaryDir dir;
    const QString path = copyInto(dir, sharedDataPath("jet4_Northwind.mdb"));
    ASSERT_EQ(readToTheEnd(path, "Order Details").rows, 2155);

    // Order Details is among the tables spanning enough pages to get a damaged one.
    ASSERT_GT(damageJetTables(path), 0);

    const ReadOutcome damaged = readToTheEnd(path, "Order Details");
    EXPECT_GT(damaged.rows, 0);
    EXPECT_LT(damaged.rows, 2155);
    EXPECT_TRUE(damaged.readError.contains("is damaged")) << damaged.readError.toStdString();
    EXPECT_TRUE(damaged.readError.contains("Order Details")) << damaged.readError.toStdString();
    EXPECT_TRUE(damaged.printed.isEmpty()) << damaged.printed.toStdString();
}

} // namespace
} // namespace tabulor::test
