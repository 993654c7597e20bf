#include "production/Aggregate.h"
#include "production/ReportData.h"
#include "production/ReportGridBuilder.h"
#include "production/ReportRenderer.h"
#include "production/StreamedBodyRows.h"

#include "../SqliteFixture.h"

#include <QLocale>

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

TokenContext context()
{
    TokenContext c;
    c.recordSource = QStringLiteral("t");
    c.locale = FormatLocale::fromQLocale(QLocale(QLocale::English));
    return c;
}

// Everything a page shows, item by item.
QStringList pageItems(const PageDisplayList& page)
{
    QStringList items;
    for (const DisplayItem& item : page.items) {
        if (const auto* run = std::get_if<TextRun>(&item)) {
            items.append(QStringLiteral("text %1 %2 %3 %4")
                             .arg(run->text)
                             .arg(run->origin.x())
                             .arg(run->origin.y())
                             .arg(run->font.bold));
        } else if (const auto* fill = std::get_if<Fill>(&item)) {
            items.append(QStringLiteral("fill %1 %2").arg(fill->rect.y()).arg(fill->rect.height()));
        } else if (const auto* rule = std::get_if<Rule>(&item)) {
            items.append(QStringLiteral("rule %1").arg(rule->line.y1()));
        }
    }
    return items;
}

} // namespace

TEST(StreamedRows, GiveTheSamePagesAsTheReportBuiltInMemory)
{
    ScratchDatabase db(kScript);
    const ReportDefinition d = definition();
    const QCollator collator{QLocale(QLocale::English)};

    ReportData everything;
    everything.setUnlimitedRows(true);
    everything.OpenDataSource(db.path(), QStringLiteral("t"));
    ASSERT_EQ(everything.grid().recordCount(), 5000);
    buildReportGrid(everything.grid(), d, collator);
    PageDocument built;
    built.OverlayHeadersAndFooters = true;
    ReportRenderer fromMemory(d, everything.grid(), context());
    built.onEndDoc = [&](PageDocument& doc) { fromMemory.OverlayHeadersAndFooters(doc); };
    fromMemory.RenderReport(built);

    ReportData workingView;
    workingView.OpenDataSource(db.path(), QStringLiteral("t"));
    ASSERT_EQ(workingView.grid().recordCount(), 249);
    buildReportGrid(workingView.grid(), d, collator);
    const auto rows = StreamedBodyRows::open(*workingView.CurrentDatabase(), QStringLiteral("t"),
                                             workingView.grid(), d, collator, context().locale);
    ASSERT_TRUE(rows);
    PageDocument streamed;
    streamed.OverlayHeadersAndFooters = true;
    ReportRenderer fromStream(d, workingView.grid(), context());
    streamed.onEndDoc = [&](PageDocument& doc) { fromStream.OverlayHeadersAndFooters(doc); };
    fromStream.RenderReport(streamed, *rows);

    ASSERT_GT(built.PageCount(), 20);
    ASSERT_EQ(streamed.PageCount(), built.PageCount());
    for (int p = 0; p < built.PageCount(); ++p)
        ASSERT_EQ(pageItems(streamed.pages()[p]), pageItems(built.pages()[p])) << "page " << p + 1;
}

TEST(StreamedRows, OnlyTablesOfDatabasesThatSortAreStreamed)
{
    ScratchDatabase db(kScript);
    const ReportDefinition d = definition();
    const QCollator collator{QLocale(QLocale::English)};
    ReportData view;
    view.OpenDataSource(db.path(), QStringLiteral("v"));
    buildReportGrid(view.grid(), d, collator);
    // A view has no row order of its own for ties to keep.
    EXPECT_FALSE(StreamedBodyRows::open(*view.CurrentDatabase(), QStringLiteral("v"), view.grid(),
                                        d, collator, context().locale));
}
