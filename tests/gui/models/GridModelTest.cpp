#include "production/pages/PageDocument.h"

#include "SampleReport.h"

#include <QAbstractItemModelTester>

#include <gtest/gtest.h>

using namespace tabulor;
using namespace tabulor::test;

namespace {

// The model of the sample report, checked by the model tester through every change.
class GridModelTest : public ::testing::Test
{
protected:
    void SetUp() override { ASSERT_TRUE(sample.open()); }

    QVariant header(int column, int role) const
    {
        return model.headerData(column, Qt::Horizontal, role);
    }
    QVariant cell(int row, int column, int role = Qt::DisplayRole) const
    {
        return model.index(row, column).data(role);
    }
    RowKind kind(int row) const { return RowKind(cell(row, 0, GridModel::RowKindRole).toInt()); }
    int firstRow(RowKind kind, int level = 0) const { return test::firstRow(model, kind, level); }
    int columnOf(const QString& field) const
    {
        for (int c = 0; c < model.columnCount(); ++c) {
            if (header(c, GridModel::FieldNameRole) == field)
                return c;
        }
        return -1;
    }
    Qt::Alignment horizontalAlignment(int row, int column) const
    {
        return Qt::Alignment(cell(row, column, Qt::TextAlignmentRole).toInt()) &
               Qt::AlignHorizontal_Mask;
    }
    ReportField& field(const QString& id) { return sample.field(id); }

    SampleReport sample;
    ReportSession& session = sample.session;
    GridModel model{session};
    QAbstractItemModelTester tester{&model, QAbstractItemModelTester::FailureReportingMode::Fatal};
};

} // namespace

TEST_F(GridModelTest, ShowsTheBuiltReportAndFollowsItsRebuilds)
{
    const OutlineGrid& grid = session.data().grid();
    ASSERT_EQ(model.rowCount(), int(grid.rows().size()));
    QStringList titles;
    for (int c = 0; c < model.columnCount(); ++c)
        titles.append(header(c, Qt::DisplayRole).toString());
    EXPECT_EQ(titles, QStringList({"Region", "Country", "Customer", "Order", "Date", "Sales"}));
    EXPECT_EQ(header(3, GridModel::FieldNameRole), QStringLiteral("OrderID"));
    EXPECT_EQ(header(3, GridModel::GridColumnRole), grid.FindGridColumn("OrderID"));
    EXPECT_EQ(kind(0), RowKind::Opening);
    EXPECT_GE(firstRow(RowKind::Closing, -100), 0);

    // Without groups the records are all there is.
    session.definition().groups.clear();
    session.rebuildReport();
    EXPECT_EQ(model.columnCount(), 4);
    EXPECT_EQ(model.rowCount(), int(grid.recordCount()));
    EXPECT_EQ(firstRow(RowKind::Opening), -1);
    EXPECT_EQ(firstRow(RowKind::Closing, -100), -1);

    // One group again: a heading above each country and its totals below it.
    session.definition().groups = QStringList{QStringLiteral("Country")};
    session.rebuildReport();
    ASSERT_EQ(model.columnCount(), 5);
    EXPECT_EQ(header(0, GridModel::FieldNameRole), QStringLiteral("Country"));
    EXPECT_GT(model.rowCount(), int(grid.recordCount()));
    const int closing = firstRow(RowKind::Closing, -100);
    ASSERT_GT(closing, 0);
    EXPECT_EQ(cell(closing, 0), cell(closing - 1, 0)) << "the caption is the group's value";
    EXPECT_EQ(kind(closing + 1), RowKind::Opening);
    EXPECT_EQ(cell(closing + 1, 0, GridModel::OutlineLevelRole), 0);
    EXPECT_FALSE(cell(closing - 1, 0, GridModel::OutlineLevelRole).isValid());
}

TEST_F(GridModelTest, RowsArePaintedInTheStyleOfTheirKind)
{
    ReportStyle& closingStyle = session.definition().styles[StyleHeading1Bottom];
    closingStyle.FontItalic = true;
    closingStyle.Bottom = 3;
    closingStyle.Color = 0x0000FF; // red
    session.rebuildReport();

    const int closing = firstRow(RowKind::Closing, -100);
    ASSERT_GE(closing, 0);
    EXPECT_EQ(cell(closing, 0, GridModel::StyleRole), int{StyleHeading1Bottom});
    const QFont font = cell(closing, 2, Qt::FontRole).value<QFont>();
    EXPECT_TRUE(font.bold());
    EXPECT_TRUE(font.italic());
    EXPECT_EQ(font.pointSizeF(), closingStyle.FontSize);
    EXPECT_EQ(font.family(), FontCatalog().font(closingStyle).family());
    EXPECT_EQ(cell(closing, 2, Qt::ForegroundRole), FontCatalog::colour(closingStyle.Text));
    EXPECT_EQ(cell(closing, 2, Qt::BackgroundRole), FontCatalog::colour(closingStyle.Back));
    EXPECT_EQ(cell(closing, 2, GridModel::RuleAboveRole), 0);
    EXPECT_EQ(cell(closing, 2, GridModel::RuleBelowRole), 3);
    EXPECT_EQ(cell(closing, 2, GridModel::RuleColourRole), QColor(Qt::red));
    EXPECT_EQ(cell(closing, 2, GridModel::SpaceAfterRole), closingStyle.After);

    const int record = firstRow(RowKind::Data);
    EXPECT_EQ(cell(record, 0, GridModel::StyleRole), int{StyleDetailBody});
    EXPECT_FALSE(cell(record, 0, Qt::FontRole).value<QFont>().bold());
    EXPECT_EQ(cell(record, 0, GridModel::RuleBelowRole), 0);

    // The title row: ruled above and below on its own back colour.
    const ReportStyle& title = session.definition().styles[StyleDetailTitle];
    EXPECT_EQ(header(0, GridModel::StyleRole), int{StyleDetailTitle});
    EXPECT_EQ(header(0, Qt::BackgroundRole), FontCatalog::colour(title.Back));
    EXPECT_EQ(header(0, GridModel::RuleAboveRole), int{title.Top});
    EXPECT_EQ(header(0, GridModel::RuleBelowRole), int{title.Bottom});
    EXPECT_TRUE(header(0, Qt::FontRole).value<QFont>().bold());
}

TEST_F(GridModelTest, CellsAreAlignedAsTheirFieldSaysOrAsTheirTypeIs)
{
    field(QStringLiteral("OrderID")).Align = 3;
    session.rebuildReport();
    const int record = firstRow(RowKind::Data);
    const int customer = columnOf(QStringLiteral("Customer"));
    const int order = columnOf(QStringLiteral("OrderID"));
    const int date = columnOf(QStringLiteral("OrderDate"));
    const int sales = columnOf(QStringLiteral("Sales"));
    EXPECT_EQ(horizontalAlignment(record, customer), Qt::AlignLeft);
    EXPECT_EQ(horizontalAlignment(record, order), Qt::AlignHCenter);
    EXPECT_EQ(horizontalAlignment(record, sales), Qt::AlignRight);
    // Group rows and titles follow their columns.
    EXPECT_EQ(horizontalAlignment(firstRow(RowKind::Closing, -99), sales), Qt::AlignRight);
    EXPECT_EQ(Qt::Alignment(header(sales, Qt::TextAlignmentRole).toInt()) & Qt::AlignRight,
              Qt::AlignRight);

    // The type's own alignment: numbers to the right, dates and texts to the left.
    for (const QString id : {"OrderID", "OrderDate", "Sales", "Customer"})
        field(id).Align = 9;
    session.rebuildReport();
    EXPECT_EQ(horizontalAlignment(record, order), Qt::AlignRight);
    EXPECT_EQ(horizontalAlignment(record, sales), Qt::AlignRight);
    EXPECT_EQ(horizontalAlignment(record, date), Qt::AlignLeft);
    EXPECT_EQ(horizontalAlignment(record, customer), Qt::AlignLeft);
}

TEST_F(GridModelTest, TextsBreakIntoTheLinesOfThePrintedReport)
{
    const int record = firstRow(RowKind::Data);
    const int customer = columnOf(QStringLiteral("Customer"));
    const int date = columnOf(QStringLiteral("OrderDate"));
    EXPECT_GT(header(customer, GridModel::ColumnWidthRole).toDouble(), 0.0)
        << "a column without a width fits its texts";
    ASSERT_EQ(cell(record, customer, GridModel::LinesRole).toStringList().size(), 1);
    const double oneLine = cell(record, 0, GridModel::TextHeightRole).toDouble();
    EXPECT_GT(oneLine, 0.0);

    constexpr float kNarrow = 700; // twips: less than most customers' names
    session.resizeColumn(session.data().grid().FindGridColumn(QStringLiteral("Customer")), kNarrow);
    EXPECT_EQ(header(customer, GridModel::ColumnWidthRole).toDouble(), kNarrow);
    const QStringList lines = cell(record, customer, GridModel::LinesRole).toStringList();
    ASSERT_GT(lines.size(), 1);
    // Broken at blanks, or within a word wider than the column: nothing is lost.
    EXPECT_EQ(lines.join(QString()).remove(u' '), cell(record, customer).toString().remove(u' '));
    EXPECT_EQ(cell(record, date, GridModel::LinesRole).toStringList(),
              QStringList{cell(record, date).toString()});
    // A row is as high as its cell with the most lines.
    EXPECT_DOUBLE_EQ(cell(record, date, GridModel::TextHeightRole).toDouble(),
                     oneLine * double(lines.size()));
}

TEST_F(GridModelTest, ShowsNothingWhileTheReportIsLoadedOrBuilt)
{
    // Reopening loads the records into the grid and rebuilds it; what the session lets
    // through meanwhile sees an empty table rather than records without their report.
    QList<std::pair<int, int>> seen; // columns and rows
    session.setEventPump([&] { seen.append({model.columnCount(), model.rowCount()}); });
    ASSERT_TRUE(session.OpenReportFile(samplePath(QStringLiteral("sales_by_region.vrd"))));
    ASSERT_FALSE(seen.isEmpty());
    EXPECT_EQ(seen.first(), std::make_pair(0, 0));
    const int rows = int(session.data().grid().rows().size());
    EXPECT_EQ(model.rowCount(), rows);

    // Rendering keeps the grid as it is: the report is shown again when it is done.
    PageDocument document;
    session.RenderReport(document);
    EXPECT_GT(document.PageCount(), 0);
    EXPECT_EQ(model.rowCount(), rows);
    EXPECT_EQ(model.columnCount(), 6);
}
