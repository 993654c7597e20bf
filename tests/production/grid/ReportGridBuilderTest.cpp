#include "production/grid/ReportGridBuilder.h"
#include "production/grid/Aggregate.h"
#include "production/grid/RecordOrder.h"

#include "QtPrinters.h"

#include <QDate>

#include <gtest/gtest.h>

#include <cmath>
#include <numeric>

using namespace tabulor;

namespace {

// Sales of two regions: region, product, amount (money), quantity, day.
OutlineGrid sales()
{
    OutlineGrid grid;
    auto column = [](const char* title, qint16 type) {
        GridColumn c;
        c.title = QString::fromLatin1(title);
        c.type = type;
        return c;
    };
    grid.setColumns({column("region", FieldText), column("product", FieldText),
                     column("amount", FieldCurrency), column("qty", FieldLong),
                     column("day", FieldDate)});
    const auto money = [](double v) {
        return QVariant::fromValue(Currency{std::llround(v * 10000)});
    };
    const struct
    {
        const char* region;
        const char* product;
        double amount;
        QVariant qty;
        int day;
    } rows[] = {
        {"West", "Lamp", 10.10, 3, 5},         {"East", "Drill", 7.25, 1, 2},
        {"West", "Drill", 2.00, 4, 1},         {"East", "Drill", 0.75, 2, 9},
        {"West", "Lamp", 5.05, QVariant(), 3}, {"East", "Kettle", 100, 7, 4},
    };
    for (const auto& r : rows) {
        grid.appendRow({QString::fromLatin1(r.region), QString::fromLatin1(r.product),
                        money(r.amount), r.qty, QDate(2024, 1, r.day)});
    }
    return grid;
}

ReportDefinition report(qint32 subtotalPosition)
{
    ReportDefinition d;
    ApplyBuiltInStyles(d, {});
    d.global.SubtotalPosition = subtotalPosition;
    auto field = [](const char* id, const char* title, qint16 sort, qint16 aggregate) {
        return ReportField{
            QString::fromLatin1(id), QString::fromLatin1(title), sort, 9, {}, aggregate, 0};
    };
    d.fields = {field("region", "region", 1, 0), field("product", "Product total", 1, 0),
                field("amount", "amount", 0, AggregateSum),
                field("qty", "qty", 0, AggregateAverage), field("day", "day", 2, AggregateMax)};
    d.groups = {QStringLiteral("region"), QStringLiteral("product")};
    d.details = {QStringLiteral("day"), QStringLiteral("amount"), QStringLiteral("qty")};
    return d;
}

// One line per body row: "o" and the level for an opening row, "c" and the level for a closing
// row, then the record's region, product and day, or a group row's caption and totals.
QStringList dump(const OutlineGrid& grid)
{
    QStringList lines;
    for (const GridRow& row : grid.rows()) {
        QString line;
        switch (row.kind) {
        case RowKind::Data:
            line = QStringLiteral("  ");
            break;
        case RowKind::Opening:
            line = QStringLiteral("o%1 ").arg(row.level);
            break;
        case RowKind::Closing:
            line = QStringLiteral("c%1 ").arg(row.level);
            break;
        }
        line += grid.value(row.record, 0).toString() + u'/' + grid.value(row.record, 1).toString();
        if (!row.isGroupRow()) {
            line += u' ' + QString::number(grid.value(row.record, 4).toDate().day());
        } else {
            const GroupPlan& plan = grid.groupPlan();
            const GroupLevel& level = plan.levels[row.depth];
            line +=
                u' ' + (row.kind == RowKind::Opening ? level.openingCaption : level.closingCaption);
            for (size_t t = 0; row.kind == RowKind::Closing && t < plan.totals.size(); ++t) {
                const CellValue& total = grid.total(row, t);
                line += u' ' + grid.cells(plan.totals[t].column).toVariant(total).toString();
                if (total.kind == CellValue::Money)
                    line += QString::number(total.toDouble());
            }
        }
        lines.append(line);
    }
    return lines;
}

QStringList built(qint32 position)
{
    OutlineGrid grid = sales();
    buildReportGrid(grid, report(position), QCollator(QLocale(QLocale::English)));
    return dump(grid);
}

} // namespace

TEST(ReportGridBuilder, HeadingRowsAboveAndNoTotalsForPositionZero)
{
    EXPECT_EQ(built(0), (QStringList{
                            "o0 East/Drill %s",
                            "o1 East/Drill %s",
                            "  East/Drill 9",
                            "  East/Drill 2",
                            "o1 East/Kettle %s",
                            "  East/Kettle 4",
                            "o0 West/Drill %s",
                            "o1 West/Drill %s",
                            "  West/Drill 1",
                            "o1 West/Lamp %s",
                            "  West/Lamp 5",
                            "  West/Lamp 3",
                        }));
}

TEST(ReportGridBuilder, ClosingRowsBelowWithTotalsForPositionOne)
{
    // Totals: day Max, amount Sum (exact money), qty Average (the empty quantity does not count).
    // The product's closing rows carry its title; the region's, whose title is its name, "%s".
    EXPECT_EQ(built(1), (QStringList{
                            "  East/Drill 9",
                            "  East/Drill 2",
                            "c-99 East/Drill Product total 2024-01-09 8 1.5",
                            "  East/Kettle 4",
                            "c-99 East/Kettle Product total 2024-01-04 100 7",
                            "c-100 East/Drill %s 2024-01-09 108 3.3333333333333335",
                            "  West/Drill 1",
                            "c-99 West/Drill Product total 2024-01-01 2 4",
                            "  West/Lamp 5",
                            "  West/Lamp 3",
                            "c-99 West/Lamp Product total 2024-01-05 15.15 3",
                            "c-100 West/Drill %s 2024-01-05 17.15 3.5",
                        }));
}

TEST(ReportGridBuilder, BothPositionsNestHeadingsAndClosingRows)
{
    const QStringList rows = built(2);
    ASSERT_EQ(rows.size(), 6 + 6 + 6);
    EXPECT_EQ(rows.mid(0, 7),
              (QStringList{"o0 East/Drill %s", "o1 East/Drill %s", "  East/Drill 9",
                           "  East/Drill 2", "c-99 East/Drill Product total 2024-01-09 8 1.5",
                           "o1 East/Kettle %s", "  East/Kettle 4"}));
    EXPECT_EQ(rows.last(), QStringLiteral("c-100 West/Drill %s 2024-01-05 17.15 3.5"));
}

TEST(ReportGridBuilder, ColumnsFollowTheListsAndTakeTheFieldSettings)
{
    OutlineGrid grid = sales();
    ReportDefinition d = report(0);
    d.details = {QStringLiteral("qty"), QStringLiteral("nonexistent"), QStringLiteral("amount")};
    d.fields[3].Align = 3;
    d.fields[2].Format = QStringLiteral("#,##0.00");
    buildReportGrid(grid, d, QCollator());
    EXPECT_EQ(grid.reportColumns(), (QList<int>{0, 1, 3, 2}));
    EXPECT_EQ(grid.column(3).alignment, 3);
    EXPECT_EQ(grid.column(2).alignment, AlignRightTop); // 9: the type's own alignment
    EXPECT_EQ(grid.column(0).alignment, AlignLeftTop);
    EXPECT_EQ(grid.column(2).format, QStringLiteral("#,##0.00"));
}

TEST(ReportGridBuilder, SortingIsStableWithEmptyValuesFirst)
{
    OutlineGrid grid;
    GridColumn name;
    name.title = QStringLiteral("name");
    GridColumn n;
    n.title = QStringLiteral("n");
    grid.setColumns({name, n});
    const QList<QVariant> names = {QStringLiteral("b"), QVariant(),
                                   QStringLiteral("a"), QStringLiteral("B"),
                                   QStringLiteral("a"), QString::fromUtf8("\xC3\xA4")};
    for (int i = 0; i < names.size(); ++i)
        grid.appendRow({names[i], i});
    ReportDefinition d;
    d.fields = {{QStringLiteral("name"), QStringLiteral("name"), 1, 9, {}, 0, 0},
                {QStringLiteral("n"), QStringLiteral("n"), 0, 9, {}, 0, 0}};
    d.details = {QStringLiteral("name"), QStringLiteral("n")};
    buildReportGrid(grid, d, QCollator(QLocale(QLocale::German)));
    QList<int> order;
    for (const GridRow& row : grid.rows())
        order.append(grid.value(row.record, 1).toInt());
    // Empty first; "a" ties keep their load order; "ä" sorts with "a" in German; "b" before "B".
    EXPECT_EQ(order, (QList<int>{1, 2, 4, 5, 0, 3}));

    d.fields[0].Sort = 2;
    buildReportGrid(grid, d, QCollator(QLocale(QLocale::German)));
    order.clear();
    for (const GridRow& row : grid.rows())
        order.append(grid.value(row.record, 1).toInt());
    EXPECT_EQ(order, (QList<int>{3, 0, 5, 2, 4, 1}));
}

TEST(ReportGridBuilder, StylesFollowTheOutlineLevels)
{
    OutlineGrid grid = sales();
    ReportDefinition d = report(2);
    buildReportGrid(grid, d, QCollator());
    for (const GridRow& row : grid.rows()) {
        if (!row.isGroupRow())
            EXPECT_EQ(row.style, StyleDetailBody);
        else if (row.kind == RowKind::Opening)
            EXPECT_EQ(row.style, row.depth == 0 ? StyleHeading1Top : StyleHeading2Top);
        else
            EXPECT_EQ(row.style, row.depth == 0 ? StyleHeading1Bottom : StyleHeading2Bottom);
    }
    // A fourth group level has no style of its own.
    GridRow deep;
    deep.kind = RowKind::Opening;
    deep.level = 3;
    EXPECT_EQ(StyleForRow(d.styles, deep), -1);
    EXPECT_EQ(StyleForRow(d.styles, QStringLiteral("Heading 3 Bottom")), StyleHeading3Bottom);
    EXPECT_EQ(StyleForRow(d.styles, QString()), 0);
    EXPECT_EQ(StyleForRow(d.styles, QStringLiteral("heading 3 bottom")), -1);

    EXPECT_EQ(FindField(d.fields, QString()), 0);
    EXPECT_EQ(FindField(d.fields, QStringLiteral("qty")), 3);
    EXPECT_EQ(FindField(d.fields, QStringLiteral("QTY")), -1);
}

TEST(Aggregates, MatchIndependentlyComputedValues)
{
    const double values[] = {4.5, -1.25, 10, 3.75, 0, 8};
    Accumulator a;
    double sum = 0;
    for (double v : values) {
        CellValue cell;
        cell.kind = CellValue::Double;
        cell.real = v;
        a.add(cell);
        sum += v;
    }
    a.add(CellValue{});
    const double mean = sum / 6;
    double squares = 0;
    for (double v : values)
        squares += (v - mean) * (v - mean);
    EXPECT_DOUBLE_EQ(a.result(AggregateSum).real, 25.0);
    EXPECT_DOUBLE_EQ(a.result(AggregateAverage).real, mean);
    EXPECT_DOUBLE_EQ(a.result(AggregateStdDev).real, std::sqrt(squares / 5));
    EXPECT_EQ(a.result(AggregateCount).number, 6);
    EXPECT_EQ(a.result(AggregateMax).real, 10);
    EXPECT_EQ(a.result(AggregateMin).real, -1.25);
    EXPECT_DOUBLE_EQ(a.result(AggregatePercent, 100).real, 25.0);
    EXPECT_TRUE(a.result(AggregatePercent, 0).isEmpty());

    // Money sums stay exact where doubles would drift.
    Accumulator money;
    for (int i = 0; i < 10; ++i) {
        CellValue cell;
        cell.kind = CellValue::Money;
        cell.number = 1000; // 0.10
        money.add(cell);
    }
    CellValue whole;
    whole.kind = CellValue::Integer;
    whole.number = 2;
    money.add(whole);
    EXPECT_EQ(money.result(AggregateSum).kind, CellValue::Money);
    EXPECT_EQ(money.result(AggregateSum).number, 30000);

    Accumulator one;
    one.add(whole);
    EXPECT_TRUE(one.result(AggregateStdDev).isEmpty());
    EXPECT_TRUE(Accumulator().result(AggregateAverage).isEmpty());
}

TEST(RecordOrder, PackedAndGeneralKeysAgree)
{
    // Keys that pack (texts, small whole numbers, dates) and keys that do not (doubles, mixed
    // kinds) must order records the same way as comparing cell by cell.
    OutlineGrid grid;
    GridColumn a, b, c, d;
    a.title = QStringLiteral("text");
    b.title = QStringLiteral("day");
    c.title = QStringLiteral("real");
    d.title = QStringLiteral("mixed");
    grid.setColumns({a, b, c, d});
    const QStringList words = {"pear", "apple", "fig", "apple", "", "fig"};
    for (int i = 0; i < 60; ++i) {
        const QString word = words[i % words.size()];
        grid.appendRow({word.isEmpty() ? QVariant() : QVariant(word),
                        i % 7 == 0 ? QVariant() : QVariant(QDate(2024, 1 + i % 3, 1 + i % 5)),
                        (i * 37 % 11) / 4.0,
                        i % 4 == 0 ? QVariant(QStringLiteral("x")) : QVariant(i % 3)});
    }
    const QCollator collator(QLocale(QLocale::English));
    for (const QList<SortKey>& keys :
         {QList<SortKey>{{0, false}, {1, true}, {2, false}}, QList<SortKey>{{1, false}, {0, true}},
          QList<SortKey>{{3, false}, {0, false}},
          QList<SortKey>{{2, true}, {1, false}, {0, false}}}) {
        std::vector<qint32> expected(static_cast<size_t>(grid.recordCount()));
        std::iota(expected.begin(), expected.end(), 0);
        const CellOrder order(grid, keys, collator);
        std::stable_sort(expected.begin(), expected.end(),
                         [&](qint32 x, qint32 y) { return order.before(x, y); });
        EXPECT_EQ(sortedRecords(grid, keys, collator), expected);
    }
}

TEST(Aggregates, MergedPartsGiveWhatAddingAllGives)
{
    Accumulator all, first, second;
    const QList<CellValue> cells = [] {
        QList<CellValue> list;
        for (int i = 0; i < 9; ++i) {
            CellValue cell;
            cell.kind = i % 3 == 0 ? CellValue::Money : CellValue::Integer;
            cell.number = i % 3 == 0 ? i * 12345 : i - 4;
            list.append(cell);
        }
        return list;
    }();
    for (int i = 0; i < cells.size(); ++i) {
        all.add(cells[i]);
        (i < 4 ? first : second).add(cells[i]);
    }
    first.merge(second);
    for (qint16 aggregate = AggregateSum; aggregate <= AggregateStdDev; ++aggregate) {
        const CellValue merged = first.result(aggregate, 50);
        const CellValue direct = all.result(aggregate, 50);
        EXPECT_EQ(merged.kind, direct.kind) << aggregate;
        EXPECT_NEAR(merged.toDouble(), direct.toDouble(), 1e-9) << aggregate;
    }
    EXPECT_EQ(first.result(AggregateSum).kind, CellValue::Money);
}
