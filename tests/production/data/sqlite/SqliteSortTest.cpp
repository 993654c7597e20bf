#include "SqliteFixture.h"

#include "production/data/Recordset.h"
#include "production/grid/OutlineGrid.h"
#include "production/grid/RecordOrder.h"

#include <QLocale>

#include <gtest/gtest.h>

namespace tabulor::test {
namespace {

// Each column mixes what one sort key must order like the grid: empty values, whole numbers
// stored as integers and as reals, numbers beyond a double's precision, texts in case and
// accent variants, texts that look like numbers, ISO dates and date-times beside text a date
// column cannot read, and binary values; every value several times, so that ties show whether
// they keep the table's order.
const QString kScript = QStringLiteral(R"sql(
CREATE TABLE t (id INTEGER, mixed, word TEXT, day DATE, big INTEGER, price REAL);
WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 300)
INSERT INTO t SELECT i,
  CASE i % 9 WHEN 0 THEN NULL WHEN 1 THEN 2 WHEN 2 THEN 2.0 WHEN 3 THEN -1.5 WHEN 4 THEN 'b'
             WHEN 5 THEN 'B' WHEN 6 THEN x'01' WHEN 7 THEN 10 ELSE '10' END,
  CASE i % 8 WHEN 0 THEN 'été' WHEN 1 THEN 'ete' WHEN 2 THEN 'Ete' WHEN 3 THEN 'zèbre'
             WHEN 4 THEN '' WHEN 5 THEN NULL WHEN 6 THEN 'Zebra' ELSE 'apple' END,
  CASE i % 6 WHEN 0 THEN '2021-03-04' WHEN 1 THEN '2021-03-04 10:20:30' WHEN 2 THEN 'soon'
             WHEN 3 THEN NULL WHEN 4 THEN '1999-12-31' ELSE '08:15:00' END,
  CASE i % 4 WHEN 0 THEN 9007199254740993 WHEN 1 THEN 9007199254740992
             WHEN 2 THEN 9007199254740992.0 ELSE -9007199254740993 END,
  CASE i % 3 WHEN 0 THEN 3 WHEN 1 THEN 3.0 ELSE 2.5 END
FROM n;
)sql");

// The ids of the records in the order the grid sorts them.
QList<qint64> gridOrder(DataSource& db, int column, bool descending, const QCollator& collator)
{
    QString error;
    const auto records = db.openRecordSource(QStringLiteral("t"), std::nullopt, &error);
    OutlineGrid grid;
    QList<GridColumn> columns;
    for (int f = 0; f < records->fieldCount(); ++f) {
        GridColumn column;
        column.title = records->fieldName(f);
        column.type = records->fieldType(f);
        columns.append(column);
    }
    grid.setColumns(columns);
    for (const QVariantList& row : readRows(*records))
        grid.appendRow(row);
    QList<qint64> ids;
    for (qint32 r : sortedRecords(grid, {SortKey{column, descending}}, collator))
        ids.append(grid.value(r, 0).toLongLong());
    return ids;
}

TEST(SqliteSortedOpen, OrdersEveryKindOfValueAsTheGridDoes)
{
    ScratchDatabase db(kScript);
    const QCollator collator{QLocale(QLocale::French)};
    const QStringList fields = {"mixed", "word", "day", "big", "price"};
    for (int c = 0; c < fields.size(); ++c) {
        for (bool descending : {false, true}) {
            QString error;
            const auto sorted = db.source().openSorted(
                QStringLiteral("t"), {SortField{fields[c], descending}}, collator, &error);
            ASSERT_TRUE(sorted) << error.toStdString();
            QList<qint64> ids;
            for (const QVariantList& row : readRows(*sorted))
                ids.append(row.at(0).toLongLong());
            EXPECT_EQ(ids, gridOrder(db.source(), c + 1, descending, collator))
                << fields[c].toStdString() << (descending ? " descending" : "");
        }
    }
    // Two keys: the second orders what the first leaves tied.
    QString error;
    const auto sorted = db.source().openSorted(QStringLiteral("t"),
                                               {SortField{"price", true}, SortField{"word", false}},
                                               collator, &error);
    ASSERT_TRUE(sorted);
    EXPECT_EQ(readRows(*sorted).size(), 300);

    // No key at all: the table's own order.
    const auto unsorted = db.source().openSorted(QStringLiteral("t"), {}, collator, &error);
    ASSERT_TRUE(unsorted) << error.toStdString();
    const QList<QVariantList> rows = readRows(*unsorted);
    ASSERT_EQ(rows.size(), 300);
    for (qsizetype r = 0; r < rows.size(); ++r)
        EXPECT_EQ(rows[r].at(0).toLongLong(), r + 1);
}

TEST(SqliteSortedOpen, LeavesViewsAndUnknownFieldsToTheCaller)
{
    ScratchDatabase db(kScript + QStringLiteral("CREATE VIEW v AS SELECT * FROM t;"));
    const QCollator collator;
    QString error;
    EXPECT_FALSE(
        db.source().openSorted(QStringLiteral("v"), {SortField{"id", false}}, collator, &error));
    EXPECT_FALSE(db.source().openSorted(QStringLiteral("t"), {SortField{"nothing", false}},
                                        collator, &error));
    EXPECT_FALSE(db.source().openSorted(QStringLiteral("t\" ; DROP TABLE t; --"),
                                        {SortField{"id", false}}, collator, &error));
}

} // namespace
} // namespace tabulor::test
