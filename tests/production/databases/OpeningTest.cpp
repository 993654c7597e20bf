#include "SqliteFixture.h"
#include "TestSupport.h"

#include "production/data/Recordset.h"
#include "production/databases/OpenDatabase.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace tabulor::test {
namespace {

std::unique_ptr<DataSource> open(const QString& path)
{
    QString error;
    std::unique_ptr<DataSource> source = openDatabase(path, &error);
    EXPECT_TRUE(source) << error.toStdString();
    return source;
}

// The first field's value in the first row of a record source opened under `name`; what went
// wrong when it does not open.
QString firstValue(DataSource& source, const QString& name)
{
    QString error;
    const std::unique_ptr<Recordset> records = source.openRecordSource(name, 1, &error);
    if (!records)
        return error;
    return records->value(0).toString();
}

TEST(Opening, RecordSourcesOpenWhateverTheLetterCaseOfTheirNames)
{
    const std::unique_ptr<DataSource> chinook = open(sharedDataPath("sqlite_Chinook.sqlite"));
    ASSERT_TRUE(chinook);
    EXPECT_EQ(firstValue(*chinook, "album"), firstValue(*chinook, "Album"));
    EXPECT_EQ(firstValue(*chinook, "ALBUM"), "1");
    EXPECT_EQ(chinook->countRows("playlisttrack"), 8715);
    QString error;
    const std::unique_ptr<Recordset> sorted =
        chinook->openSorted("genre", {{"Name", true}}, QCollator(), &error);
    ASSERT_TRUE(sorted) << error.toStdString();
    EXPECT_EQ(sorted->value(1), "World");
    EXPECT_TRUE(firstValue(*chinook, "Albums").contains("is not a table or view"));

    // Jet: tables, accented names and saved queries alike.
    const std::unique_ptr<DataSource> nwind = open(sharedDataPath("jet3_nwind.mdb"));
    ASSERT_TRUE(nwind);
    EXPECT_EQ(firstValue(*nwind, "order details"), firstValue(*nwind, "Order Details"));
    EXPECT_EQ(firstValue(*nwind, QString::fromUtf8("UMSÄTZE")), firstValue(*nwind, "Orders"));
    EXPECT_EQ(nwind->countRows("CUSTOMERS"), 91);
    EXPECT_EQ(firstValue(*nwind, "ten most expensive products"),
              firstValue(*nwind, "Ten Most Expensive Products"));
    EXPECT_TRUE(firstValue(*nwind, "Order Detail").contains("is not a table or query"));
}

TEST(Opening, OnlyRegularFilesAreOpenedAndOthersFailAtOnce)
{
    QTemporaryDir dir;
    const QString fifo = dir.filePath("pipe.sqlite");
    ASSERT_EQ(mkfifo(QFile::encodeName(fifo).constData(), 0600), 0);
    const struct
    {
        QString path;
        const char* expected;
    } cases[] = {
        {fifo, "pipe, device or socket"},
        {"/dev/zero", "pipe, device or socket"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.path.toStdString());
        QString error;
        EXPECT_FALSE(openDatabase(c.path, &error));
        EXPECT_TRUE(error.contains(c.expected)) << error.toStdString();
        EXPECT_TRUE(error.contains(c.path)) << error.toStdString();
    }

    // A link to a database file is a database file.
    const QString link = dir.filePath("link.sqlite");
    ASSERT_TRUE(QFile::link(sharedDataPath("sqlite_Chinook.sqlite"), link));
    EXPECT_TRUE(open(link));
}

} // namespace
} // namespace tabulor::test
