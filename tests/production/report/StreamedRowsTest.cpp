#include "production/grid/Aggregate.h"
#include "production/grid/ReportGridBuilder.h"

#include "BothWaysReport.h"
#include "SqliteFixture.h"

#include <gtest/gtest.h>

using namespace tabulor;
using namespace tabulor::test;

namespace {

// Records that make sorting hard: empty values, case and accents, numbers and texts in one
// column, dates beside text a date column cannot read, binary values, whole numbers stored as
// integers and as reals, and many ties. More
// records than one streamed chunk holds, so that groups run across chunks.
const QString kScript = QStringLiteral(R"(
CREATE TABLE t(id INTEGER, grp TEXT, sub TEXT, day DATE, name TEXT, qty INTEGER, price REAL,
               misc);
WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 5000)
INSERT INTO t SELECT i,
  CASE i % 7 WHEN 0 THEN NULL WHEN 1 THEN 'apple' WHEN 2 THEN 'Apple' WHEN 3 THEN 'été'
             WHEN 4 THEN 'ete' WHEN 5 THEN 'Zebra' ELSE 'Éclair' END,
  CASE i % 5 WHEN 0 THEN 'b' WHEN 1 THEN 'B' WHEN 2 THEN 10 WHEN 3 THEN 9.5 ELSE NULL END,
  CASE i % 4 WHEN 0 THEN date('2020-01-01', '+' || (i * 37 % 900) || ' days')
             WHEN 1 THEN NULL WHEN 2 THEN '2021-03-04 10:20:30' ELSE 'soon' END,
  'name ' || (i * 7919 % 97),
  i * 31 % 13,
  round((i * 17 % 1000) / 7.0, 2),
  CASE WHEN i % 50 = 0 THEN x'00ff' WHEN i % 7 = 0 THEN 2.0 ELSE i % 3 END
FROM n;
CREATE VIEW v AS SELECT * FROM t;
)");

ReportDefinition definition()
{
    ReportDefinition d;
    ApplyBuiltInStyles(
        d, {QStringLiteral("Streamed"), QStringLiteral("<rs>|Page <p> of <n>"), QString()});
    d.global.SubtotalPosition = 2;
    // ID, title, sort (1 up, 2 down), align, format, aggregate, width
    d.fields = {{"grp", "grp", 1, 9, {}, 0, 0},
                {"sub", "Sub", 2, 9, {}, 0, 0},
                {"day", "day", 1, 9, {}, 0, 0},
                {"name", "name", 1, 9, {}, 0, 0},
                {"qty", "qty", 2, 9, {}, AggregateSum, 0},
                {"price", "price", 0, 9, QStringLiteral("0.00"), AggregatePercent, 0},
                {"misc", "misc", 1, 9, {}, AggregateCount, 0}};
    d.groups = {QStringLiteral("grp"), QStringLiteral("sub")};
    d.details = {QStringLiteral("day"), QStringLiteral("name"), QStringLiteral("qty"),
                 QStringLiteral("price"), QStringLiteral("misc")};
    return d;
}

} // namespace

TEST(StreamedRows, GiveTheSamePagesAsTheReportBuiltInMemory)
{
    ScratchDatabase db(kScript);
    const BothWaysReport report = renderBothWays(db.path(), QStringLiteral("t"), definition());
    ASSERT_EQ(report.records, 5000);
    ASSERT_TRUE(report.streamed);
    ASSERT_GT(report.builtPages.size(), 20u);
    EXPECT_EQ(report.streamedPages, report.builtPages);
}

TEST(StreamedRows, OnlyTablesOfDatabasesThatSortAreStreamed)
{
    ScratchDatabase db(kScript);
    // A view has no row order of its own for ties to keep.
    EXPECT_FALSE(renderBothWays(db.path(), QStringLiteral("v"), definition()).streamed);
}

TEST(StreamedRows, TotalsAndValuesFarDownTheReportFitTheirColumns)
{
    // The first few hundred rows hold small numbers and a short group name; the last group's
    // name, values and total are much wider than any of them, and would wrap if the widths
    // fitted the first rows.
    ScratchDatabase db(QStringLiteral(R"(
CREATE TABLE t(grp TEXT, qty INTEGER);
WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 600)
INSERT INTO t SELECT CASE WHEN i <= 500 THEN 'a' ELSE 'the second group' END,
                     CASE WHEN i <= 500 THEN 1 ELSE 123456789 END FROM n;
)"));
    ReportDefinition d;
    ApplyBuiltInStyles(d, {QStringLiteral("Wide totals"), QString(), QString()});
    d.global.SubtotalPosition = 2;
    d.fields = {{"grp", "g", 1, 9, {}, 0, 0}, {"qty", "q", 0, 9, {}, AggregateSum, 0}};
    d.groups = {QStringLiteral("grp")};
    d.details = {QStringLiteral("qty")};

    const BothWaysReport report = renderBothWays(db.path(), QStringLiteral("t"), d);
    ASSERT_TRUE(report.streamed);
    EXPECT_EQ(report.streamedPages, report.builtPages);
    const auto shows = [&](const QString& text) {
        for (const QStringList& page : report.builtPages) {
            for (const QString& item : page) {
                if (item.startsWith(QStringLiteral("text ") + text + u' '))
                    return true;
            }
        }
        return false;
    };
    EXPECT_TRUE(shows(QStringLiteral("123456789")));
    EXPECT_TRUE(shows(QStringLiteral("12345678900"))); // the second group's total, whole
    EXPECT_TRUE(shows(QStringLiteral("the second group")));
}
