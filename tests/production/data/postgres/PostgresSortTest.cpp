#include "ServerEnvironment.h"

#include "production/grid/Aggregate.h"
#include "production/grid/ReportGridBuilder.h"

#include "BothWaysReport.h"

#include <gtest/gtest.h>

namespace tabulor::test {
namespace {

// Groups by a text of a column collation and by dates with 'infinity', details by every other
// kind of column, up and down.
ReportDefinition awkwardReport()
{
    ReportDefinition d;
    ApplyBuiltInStyles(d, {QStringLiteral("Sorted by the server"),
                           QStringLiteral("<rs>|Page <p> of <n>"), QString()});
    d.global.SubtotalPosition = 2;
    // ID, title, sort (1 up, 2 down), align, format, aggregate, width
    d.fields = {{"grp", "grp", 1, 9, {}, 0, 0},
                {"day", "day", 2, 9, {}, 0, 0},
                {"sub", "sub", 1, 9, {}, 0, 0},
                {"moment", "moment", 1, 9, {}, 0, 0},
                {"clock", "clock", 2, 9, {}, 0, 0},
                {"qty", "qty", 1, 9, {}, AggregateSum, 0},
                {"price", "price", 2, 9, {}, 0, 0},
                {"ratio", "ratio", 1, 9, {}, 0, 0},
                {"cost", "cost", 1, 9, {}, AggregatePercent, 0},
                {"flag", "flag", 2, 9, {}, 0, 0},
                {"raw", "raw", 1, 9, {}, 0, 0},
                {"key", "key", 1, 9, {}, AggregateCount, 0},
                {"id", "id", 0, 9, {}, 0, 0}};
    d.groups = {QStringLiteral("grp"), QStringLiteral("day")};
    d.details = {QStringLiteral("sub"),  QStringLiteral("moment"), QStringLiteral("clock"),
                 QStringLiteral("qty"),  QStringLiteral("price"),  QStringLiteral("ratio"),
                 QStringLiteral("cost"), QStringLiteral("flag"),   QStringLiteral("raw"),
                 QStringLiteral("key"),  QStringLiteral("id")};
    return d;
}

// Few sort keys, so that most rows tie, binary values among them.
ReportDefinition tyingReport()
{
    ReportDefinition d = awkwardReport();
    for (ReportField& field : d.fields)
        field.Sort =
            field.ID == QStringLiteral("flag") || field.ID == QStringLiteral("raw") ? 1 : 0;
    d.groups = {QStringLiteral("flag")};
    d.details = {QStringLiteral("raw"), QStringLiteral("id"), QStringLiteral("grp")};
    return d;
}

} // namespace

TEST(PostgresSort, TheServerSortsATableAsTheReportSortsItInMemory)
{
    REQUIRE_SERVERS();
    const BothWaysReport report =
        renderBothWays(servers().postgresAddress, QStringLiteral("Awkward Sort"), awkwardReport());
    ASSERT_EQ(report.records, 3000);
    ASSERT_TRUE(report.streamed);
    ASSERT_GT(report.builtPages.size(), 20u);
    ASSERT_EQ(report.streamedPages.size(), report.builtPages.size());
    for (size_t p = 0; p < report.builtPages.size(); ++p)
        ASSERT_EQ(report.streamedPages[p], report.builtPages[p]) << "page " << p + 1;
}

TEST(PostgresSort, RowsThatTieKeepTheTableOrder)
{
    REQUIRE_SERVERS();
    const BothWaysReport report =
        renderBothWays(servers().postgresAddress, QStringLiteral("Awkward Sort"), tyingReport());
    ASSERT_TRUE(report.streamed);
    ASSERT_EQ(report.streamedPages, report.builtPages);
}

TEST(PostgresSort, AViewIsSortedInMemory)
{
    REQUIRE_SERVERS();
    // A view's rows have no order of their own for ties to keep.
    EXPECT_FALSE(renderBothWays(servers().postgresAddress, QStringLiteral("Awkward Sort View"),
                                awkwardReport())
                     .streamed);
}

} // namespace tabulor::test
