#include "gui/design/DesignView.h"
#include "gui/design/RowLook.h"

#include "SampleReport.h"

#include <QHeaderView>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

using namespace tabulor;
using namespace tabulor::test;

namespace {

// The design view of the sample report in a window, driven as the user drives it.
class DesignViewTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(sample.open());
        new DesignView(session, &window);
        window.resize(900, 600);
        view = window.findChild<DesignView*>(QStringLiteral("fa"));
        ASSERT_NE(view, nullptr);
        view->resize(window.size());
        titles = view->findChild<QHeaderView*>(QStringLiteral("faTitleRow"));
        ASSERT_NE(titles, nullptr);
        window.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
    }

    const QAbstractItemModel& model() const { return *view->model(); }
    int firstRow(RowKind kind, int level = 0) const { return test::firstRow(model(), kind, level); }
    // The middle of a cell, scrolled into view.
    QPoint cellCentre(int row, int column) const
    {
        const QModelIndex index = model().index(row, column);
        view->scrollTo(index);
        return view->visualRect(index).center();
    }
    QPoint titleCentre(int column) const
    {
        return {titles->sectionViewportPosition(column) + titles->sectionSize(column) / 2,
                titles->height() / 2};
    }
    const ReportField& field(const QString& id) { return sample.field(id); }
    // What the system sends for a double click: a click, then the second press as a double
    // click.
    static void doubleClick(QWidget* widget, QPoint point)
    {
        QTest::mouseClick(widget, Qt::LeftButton, {}, point);
        QTest::mouseDClick(widget, Qt::LeftButton, {}, point);
    }
    int pixels(double twips) const { return twipsToPixels(twips, view->logicalDpiY()); }

    SampleReport sample;
    ReportSession& session = sample.session;
    QWidget window;
    DesignView* view = nullptr;
    QHeaderView* titles = nullptr;
};

} // namespace

TEST_F(DesignViewTest, ADoubleClickAsksForTheStyleOfTheRowOrTheFieldOfTheTitle)
{
    QSignalSpy styles(view, &DesignView::stylePropertiesRequested);
    QSignalSpy fields(view, &DesignView::fieldPropertiesRequested);
    const std::pair<int, QString> rows[] = {
        {firstRow(RowKind::Data), QStringLiteral("Detail Body")},
        {firstRow(RowKind::Opening, 0), QStringLiteral("Heading 1 Top")},
        {firstRow(RowKind::Opening, 1), QStringLiteral("Heading 2 Top")},
        {firstRow(RowKind::Closing, -99), QStringLiteral("Heading 2 Bottom")},
        {firstRow(RowKind::Closing, -100), QStringLiteral("Heading 1 Bottom")},
    };
    for (const auto& [row, style] : rows) {
        ASSERT_GE(row, 0) << style.toStdString();
        doubleClick(view->viewport(), cellCentre(row, 2));
        EXPECT_EQ(view->currentIndex().row(), row);
        ASSERT_EQ(styles.size(), 1);
        EXPECT_EQ(styles.takeFirst().at(0).toString(), style);
    }

    // The title of a column names its field, not the title the report prints.
    doubleClick(titles->viewport(), titleCentre(3));
    ASSERT_EQ(fields.size(), 1);
    EXPECT_EQ(fields.takeFirst().at(0).toString(), QStringLiteral("OrderID"));
    EXPECT_TRUE(styles.isEmpty());
}

TEST_F(DesignViewTest, APressOnATitleKeepsTheCurrentRow)
{
    constexpr int kRow = 5;
    QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, cellCentre(kRow, 1));
    ASSERT_EQ(view->currentIndex().row(), kRow);
    QTest::mouseClick(titles->viewport(), Qt::LeftButton, {}, titleCentre(2));
    EXPECT_EQ(view->currentIndex().row(), kRow);
    EXPECT_TRUE(view->selectionModel()->isRowSelected(kRow, QModelIndex()));
    EXPECT_TRUE(view->selectionModel()->selectedColumns().isEmpty());
}

TEST_F(DesignViewTest, DraggingAColumnEdgeStoresItsWidthAndRebuilds)
{
    constexpr int kColumn = 2; // Customer
    constexpr int kWider = 40;
    QSignalSpy built(&session, &ReportSession::reportBuilt);
    const int before = view->columnWidth(kColumn);
    const QPoint edge(titles->sectionViewportPosition(kColumn) + before - 1, titles->height() / 2);
    QTest::mousePress(titles->viewport(), Qt::LeftButton, {}, edge);
    for (int dx = 10; dx <= kWider; dx += 10)
        QTest::mouseMove(titles->viewport(), edge + QPoint(dx, 0));
    QTest::mouseRelease(titles->viewport(), Qt::LeftButton, {}, edge + QPoint(kWider, 0));

    EXPECT_EQ(built.size(), 1) << "one rebuild, when the drag ends";
    EXPECT_FLOAT_EQ(field(QStringLiteral("Customer")).Width,
                    float(pixelsToTwips(before + kWider, view->logicalDpiX())));
    EXPECT_TRUE(session.definition().Dirty);
    EXPECT_EQ(view->columnWidth(kColumn), before + kWider) << "the rebuilt report keeps it";

    // A double click on the edge leaves the width to the report.
    QSignalSpy fields(view, &DesignView::fieldPropertiesRequested);
    doubleClick(titles->viewport(), edge + QPoint(kWider, 0));
    EXPECT_EQ(view->columnWidth(kColumn), before + kWider);
    EXPECT_TRUE(fields.isEmpty());

    // Widths set by the program are the report's own: nothing is stored or rebuilt.
    view->setColumnWidth(1, 300);
    session.definition().Dirty = false;
    session.rebuildReport();
    EXPECT_EQ(built.size(), 2);
    EXPECT_EQ(field(QStringLiteral("Country")).Width, 0.0f);
    EXPECT_NE(view->columnWidth(1), 300) << "the column fits its texts again";
    EXPECT_FALSE(session.definition().Dirty);
}

TEST_F(DesignViewTest, TheCurrentRowStaysThroughARebuild)
{
    constexpr int kRow = 40;
    QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, cellCentre(kRow, 1));
    const int top = view->rowAt(0);
    session.rebuildReport();
    EXPECT_EQ(view->currentIndex().row(), kRow);
    EXPECT_EQ(view->rowAt(0), top);
}

TEST_F(DesignViewTest, RowsArePaintedWithTheirStylesColoursRulesAndSpacing)
{
    const StyleTable& styles = session.definition().styles;
    const auto colourAt = [](const QImage& image, int x, int y) { return image.pixelColor(x, y); };
    const QColor paper(Qt::white);

    // A group's heading: space above it, then its rule above and its back colour.
    const ReportStyle& heading = styles[StyleHeading1Top];
    const int headingRow = firstRow(RowKind::Opening, 0);
    const int x = cellCentre(headingRow, 4).x(); // the heading has no text in this column
    QRect row = view->visualRect(model().index(headingRow, 4));
    QImage image = view->viewport()->grab().toImage();
    const int ruleTop = row.top() + pixels(heading.Before);
    EXPECT_EQ(colourAt(image, x, ruleTop - 1), paper);
    EXPECT_EQ(colourAt(image, x, ruleTop), FontCatalog::colour(heading.Color));
    EXPECT_EQ(colourAt(image, x, ruleTop + heading.Top), FontCatalog::colour(heading.Back));
    EXPECT_EQ(colourAt(image, x, row.bottom()), FontCatalog::colour(heading.Back));

    // A group's totals: its back colour, the rule below it, then space after it.
    const ReportStyle& totals = styles[StyleHeading1Bottom];
    const int totalsRow = firstRow(RowKind::Closing, -100);
    cellCentre(totalsRow, 4);
    row = view->visualRect(model().index(totalsRow, 4));
    image = view->viewport()->grab().toImage();
    const int ruleBottom = row.bottom() - pixels(totals.After);
    EXPECT_EQ(colourAt(image, x, row.top()), FontCatalog::colour(totals.Back));
    EXPECT_EQ(colourAt(image, x, ruleBottom), FontCatalog::colour(totals.Color));
    EXPECT_EQ(colourAt(image, x, ruleBottom - totals.Bottom), FontCatalog::colour(totals.Back));
    EXPECT_EQ(colourAt(image, x, ruleBottom + 1), paper);

    // The title row, ruled above and below, and nothing of a spreadsheet's header beyond it.
    const ReportStyle& title = styles[StyleDetailTitle];
    image = titles->viewport()->grab().toImage();
    const int titleX = titles->sectionViewportPosition(4) + titles->sectionSize(4) - 2;
    EXPECT_EQ(colourAt(image, titleX, 0), FontCatalog::colour(title.Color));
    EXPECT_EQ(colourAt(image, titleX, title.Top), FontCatalog::colour(title.Back));
    EXPECT_EQ(colourAt(image, titleX, image.height() - 1), FontCatalog::colour(title.Color));
    EXPECT_EQ(colourAt(image, titles->length() + 5, image.height() / 2), paper);
}
