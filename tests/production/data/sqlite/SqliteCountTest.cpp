#include "SqliteFixture.h"

#include "production/report/ReportData.h"

#include <gtest/gtest.h>

namespace tabulor::test {
namespace {

// A view without end: counting it never finishes, reading its first rows is instant.
constexpr const char* Script = R"sql(
    CREATE TABLE Numbers (n INTEGER);
    WITH RECURSIVE counter(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM counter WHERE i < 300)
    INSERT INTO Numbers SELECT i FROM counter;
    CREATE VIEW Endless AS
        WITH RECURSIVE counter(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM counter)
        SELECT i FROM counter;
)sql";

TEST(SqliteCounts, ACountThatWouldTakeLongIsUnknownAndStopsNoCursor)
{
    ScratchDatabase db(Script);
    QString error;
    const std::unique_ptr<Recordset> numbers =
        db.source().openRecordSource("Numbers", std::nullopt, &error);
    ASSERT_TRUE(numbers) << error.toStdString();
    for (int i = 0; i < 10; ++i)
        numbers->moveNext();

    EXPECT_EQ(db.source().countRows("Endless"), std::nullopt);
    EXPECT_EQ(db.source().countRows("Numbers"), 300);
    // The cursor opened before the counts reads on to its end.
    EXPECT_EQ(readRows(*numbers).size(), 290);
}

TEST(SqliteCounts, TheWorkingViewOfASourceThatCannotBeCountedShowsWhatItLoaded)
{
    ScratchDatabase db(Script);
    ReportData data;
    data.OpenDataSource(db.path(), "Endless");
    ASSERT_TRUE(data.RecordSourceOpen());
    EXPECT_EQ(data.LoadedRowCount(), ReportData::kWorkingViewRows);
    EXPECT_EQ(data.TotalRowCount(), ReportData::kWorkingViewRows);

    data.OpenDataSource(db.path(), "Numbers");
    EXPECT_EQ(data.LoadedRowCount(), ReportData::kWorkingViewRows);
    EXPECT_EQ(data.TotalRowCount(), 301);
}

} // namespace
} // namespace tabulor::test
