#include "gui/models/FieldListModel.h"

#include "SampleReport.h"

#include <QAbstractItemModelTester>
#include <QMimeData>
#include <QSignalSpy>

#include <memory>

#include <gtest/gtest.h>

using namespace tabulor;
using namespace tabulor::test;

namespace {

// The three lists of the sample report (Region and Country grouping; Customer, OrderID,
// OrderDate and Sales in the details), each checked by the model tester through every move.
class FieldListModelTest : public ::testing::Test
{
protected:
    void SetUp() override { ASSERT_TRUE(sample.open()); }

    // Drags the field at row of one model and drops it at row (a gap) of another.
    bool drag(FieldListModel& from, int row, FieldListModel& to, int gap)
    {
        const std::unique_ptr<QMimeData> data(from.mimeData({from.index(row)}));
        return to.dropMimeData(data.get(), Qt::MoveAction, gap, 0, {});
    }

    SampleReport sample;
    LayoutEdits edits{sample.session};
    FieldListModel fields{edits, LayoutList::Fields};
    FieldListModel groups{edits, LayoutList::Groups};
    FieldListModel details{edits, LayoutList::Details};
    QAbstractItemModelTester fieldsTester{&fields,
                                          QAbstractItemModelTester::FailureReportingMode::Fatal};
    QAbstractItemModelTester groupsTester{&groups,
                                          QAbstractItemModelTester::FailureReportingMode::Fatal};
    QAbstractItemModelTester detailsTester{&details,
                                           QAbstractItemModelTester::FailureReportingMode::Fatal};
};

} // namespace

TEST_F(FieldListModelTest, ShowsItsListAndFollowsTheSession)
{
    ASSERT_EQ(groups.rowCount(), 2);
    EXPECT_EQ(groups.index(1).data().toString(), "Country");
    EXPECT_EQ(details.fields(), QStringList({"Customer", "OrderID", "OrderDate", "Sales"}));
    EXPECT_EQ(fields.fields(), edits.fields(LayoutList::Fields));

    // A change made elsewhere (here: undone through the history) reaches every list.
    edits.moveField(LayoutList::Groups, 0, LayoutList::Fields, 0);
    EXPECT_EQ(groups.fields(), QStringList({"Country"}));
    EXPECT_EQ(fields.fields().last(), "Region");
    sample.session.history().stack().undo();
    EXPECT_EQ(groups.fields(), QStringList({"Region", "Country"}));
    EXPECT_FALSE(fields.fields().contains("Region"));
}

TEST_F(FieldListModelTest, DropsBetweenListsPlaceTheFieldAtTheGap)
{
    const QSignalSpy placed(&groups, &FieldListModel::fieldPlaced);
    EXPECT_TRUE(drag(details, 0, groups, 1));
    EXPECT_EQ(groups.fields(), QStringList({"Region", "Customer", "Country"}));
    EXPECT_EQ(details.fields(), QStringList({"OrderID", "OrderDate", "Sales"}));
    ASSERT_EQ(placed.count(), 1);
    EXPECT_EQ(placed.at(0).at(0).toInt(), 1);

    // Below the last item (no row): appended.
    EXPECT_TRUE(drag(groups, 0, details, -1));
    EXPECT_EQ(details.fields().last(), "Region");
    // Back to the fields, at any gap: appended to them.
    EXPECT_TRUE(drag(groups, 0, fields, 0));
    EXPECT_EQ(fields.fields().last(), "Customer");
    EXPECT_TRUE(sample.session.definition().Dirty);
}

TEST_F(FieldListModelTest, DropsWithinAListReorderIt)
{
    // Down: into the gap between OrderID and OrderDate.
    EXPECT_TRUE(drag(details, 0, details, 2));
    EXPECT_EQ(details.fields(), QStringList({"OrderID", "Customer", "OrderDate", "Sales"}));
    // Up: into the first gap; down: below the last.
    EXPECT_TRUE(drag(details, 3, details, 0));
    EXPECT_EQ(details.fields().first(), "Sales");
    EXPECT_TRUE(drag(details, 0, details, -1));
    EXPECT_EQ(details.fields(), QStringList({"OrderID", "Customer", "OrderDate", "Sales"}));
}

TEST_F(FieldListModelTest, DropsThatMoveNothingAreRefused)
{
    // Into the gaps on either side of the field itself.
    EXPECT_FALSE(drag(details, 1, details, 1));
    EXPECT_FALSE(drag(details, 1, details, 2));
    EXPECT_FALSE(drag(details, 3, details, -1));
    EXPECT_FALSE(sample.session.definition().Dirty);

    // Within the available fields, which keep their order.
    const std::unique_ptr<QMimeData> available(fields.mimeData({fields.index(0)}));
    EXPECT_FALSE(fields.canDropMimeData(available.get(), Qt::MoveAction, 0, 0, {}));
    EXPECT_TRUE(groups.canDropMimeData(available.get(), Qt::MoveAction, 0, 0, {}));
    EXPECT_FALSE(groups.canDropMimeData(available.get(), Qt::CopyAction, 0, 0, {}));

    // A drag whose field no longer stands where it started (the list changed meanwhile), and
    // mime data of another kind.
    const std::unique_ptr<QMimeData> stale(details.mimeData({details.index(0)}));
    edits.moveField(LayoutList::Details, 0, LayoutList::Details, 3);
    EXPECT_FALSE(groups.dropMimeData(stale.get(), Qt::MoveAction, 0, 0, {}));
    QMimeData text;
    text.setText(QStringLiteral("OrderID"));
    EXPECT_FALSE(groups.dropMimeData(&text, Qt::MoveAction, 0, 0, {}));
    QMimeData garbage;
    garbage.setData(FieldListModel::mimeType(), "\x01");
    EXPECT_FALSE(groups.dropMimeData(&garbage, Qt::MoveAction, 0, 0, {}));
    EXPECT_EQ(groups.fields(), QStringList({"Region", "Country"}));
}
