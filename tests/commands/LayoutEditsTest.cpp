#include "commands/LayoutEdits.h"
#include "component/ReportSession.h"

#include "SampleCopy.h"
#include "ScriptedPrompt.h"
#include "TestSupport.h"

#include <QSignalSpy>
#include <QTemporaryDir>

#include <algorithm>

#include <gtest/gtest.h>

using namespace tabulor;
using namespace tabulor::test;

namespace {

// The sample report (Region and Country grouping; Customer, OrderID, OrderDate and Sales in
// the details) opened from a copy, with the layout window's edits on its session.
class LayoutEditsTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        report = copySampleReport(dir, session);
        ASSERT_FALSE(report.isEmpty());
        session.loadDesigner();
        ASSERT_TRUE(session.OpenReportFile(report));
        session.definition().CurrentFileName = report;
    }

    QStringList groups() const { return edits.fields(LayoutList::Groups); }
    QStringList details() const { return edits.fields(LayoutList::Details); }
    QStringList available() const { return edits.fields(LayoutList::Fields); }
    bool grouped() const
    {
        const auto& rows = session.data().grid().rows();
        return std::any_of(rows.begin(), rows.end(),
                           [](const GridRow& r) { return r.isGroupRow(); });
    }

    QTemporaryDir dir;
    QString report;
    ScriptedPrompt prompt;
    ReportSession session{&prompt};
    LayoutEdits edits{session};
};

TEST_F(LayoutEditsTest, ListsFollowTheDefinitionAndData)
{
    EXPECT_EQ(groups(), QStringList({"Region", "Country"}));
    EXPECT_EQ(details(), QStringList({"Customer", "OrderID", "OrderDate", "Sales"}));
    // Every field of the record source stands in exactly one list.
    QStringList all = available() + groups() + details();
    const qsizetype count = all.size();
    all.removeDuplicates();
    EXPECT_EQ(all.size(), count);
    EXPECT_EQ(count, session.data().grid().columnCount());
    EXPECT_TRUE(edits.databaseOpen());
    EXPECT_EQ(edits.recordSources().value(edits.currentRecordSource()), "Sales by Region");
}

TEST_F(LayoutEditsTest, DropsPlaceFieldsByTheDropPosition)
{
    // Into the middle of the groups, from the details.
    EXPECT_EQ(edits.moveField(LayoutList::Details, 0, LayoutList::Groups, 1), 1);
    EXPECT_EQ(groups(), QStringList({"Region", "Customer", "Country"}));
    EXPECT_EQ(details(), QStringList({"OrderID", "OrderDate", "Sales"}));
    EXPECT_TRUE(session.definition().Dirty);

    // Below the last detail: appended as the last column; above the first: the first.
    EXPECT_EQ(edits.moveField(LayoutList::Groups, 1, LayoutList::Details, 99), 3);
    EXPECT_EQ(details(), QStringList({"OrderID", "OrderDate", "Sales", "Customer"}));
    EXPECT_EQ(edits.moveField(LayoutList::Groups, 1, LayoutList::Details, -5), 0);
    EXPECT_EQ(details().first(), "Country");

    // Reordering: the position counts once the field has left its place, and a drop below
    // the end of its own list lands on the last place.
    EXPECT_EQ(edits.moveField(LayoutList::Details, 0, LayoutList::Details, 2), 2);
    EXPECT_EQ(details(), QStringList({"OrderID", "OrderDate", "Country", "Sales", "Customer"}));
    EXPECT_EQ(edits.moveField(LayoutList::Details, 1, LayoutList::Details, 5), 4);
    EXPECT_EQ(details(), QStringList({"OrderID", "Country", "Sales", "Customer", "OrderDate"}));
    EXPECT_EQ(edits.moveField(LayoutList::Details, 3, LayoutList::Details, 0), 0);
    EXPECT_EQ(details().first(), "Customer");

    // Back to the fields: appended, whatever the position.
    const QStringList before = available();
    EXPECT_EQ(edits.moveField(LayoutList::Details, 0, LayoutList::Fields, 0), before.size());
    EXPECT_EQ(available(), before + QStringList{"Customer"});
}

TEST_F(LayoutEditsTest, MovesThatChangeNothingLeaveTheReportUnmarked)
{
    const QSignalSpy rebuilt(&session, &ReportSession::gridChanged);
    ASSERT_FALSE(available().isEmpty());
    EXPECT_EQ(edits.moveField(LayoutList::Fields, 0, LayoutList::Fields, 0), std::nullopt);
    EXPECT_EQ(edits.moveField(LayoutList::Fields, 0, LayoutList::Fields, 9), std::nullopt);
    EXPECT_EQ(edits.moveField(LayoutList::Details, 2, LayoutList::Details, 2), std::nullopt);
    EXPECT_EQ(edits.moveField(LayoutList::Details, 3, LayoutList::Details, 4), std::nullopt);
    EXPECT_EQ(edits.moveField(LayoutList::Groups, 2, LayoutList::Details, 0), std::nullopt);
    EXPECT_EQ(edits.moveField(LayoutList::Groups, -1, LayoutList::Details, 0), std::nullopt);
    // The keyboard's moves at the ends of a list, and to the list the field is in.
    EXPECT_EQ(edits.shiftField(LayoutList::Groups, 0, -1), std::nullopt);
    EXPECT_EQ(edits.shiftField(LayoutList::Details, 3, +1), std::nullopt);
    EXPECT_EQ(edits.shiftField(LayoutList::Fields, 0, +1), std::nullopt);
    EXPECT_EQ(edits.sendField(LayoutList::Groups, 0, LayoutList::Groups), std::nullopt);

    EXPECT_FALSE(session.definition().Dirty);
    EXPECT_EQ(session.history().stack().count(), 0);
    EXPECT_EQ(rebuilt.count(), 0);
    EXPECT_EQ(groups(), QStringList({"Region", "Country"}));
}

TEST_F(LayoutEditsTest, KeyboardMovesSendAndShiftFields)
{
    EXPECT_EQ(edits.sendField(LayoutList::Groups, 0, LayoutList::Details), 4);
    EXPECT_EQ(details().last(), "Region");
    EXPECT_EQ(edits.shiftField(LayoutList::Details, 4, -1), 3);
    EXPECT_EQ(details(), QStringList({"Customer", "OrderID", "OrderDate", "Region", "Sales"}));
    EXPECT_EQ(edits.shiftField(LayoutList::Details, 0, +1), 1);
    EXPECT_EQ(details().mid(0, 2), QStringList({"OrderID", "Customer"}));
    const std::optional<int> placed = edits.sendField(LayoutList::Details, 0, LayoutList::Fields);
    EXPECT_EQ(placed, available().size() - 1);
    EXPECT_EQ(available().last(), "OrderID");
}

TEST_F(LayoutEditsTest, TheLastGroupLeavingRebuildsTheReportWithoutGroups)
{
    ASSERT_TRUE(grouped());
    edits.moveField(LayoutList::Groups, 0, LayoutList::Fields, 0);
    ASSERT_TRUE(grouped());
    edits.moveField(LayoutList::Groups, 0, LayoutList::Details, 0);
    EXPECT_TRUE(groups().isEmpty());
    EXPECT_FALSE(grouped());
    EXPECT_TRUE(session.data().grid().groupPlan().levels.empty());
    EXPECT_EQ(session.data().grid().reportColumns().size(), 5);
}

TEST_F(LayoutEditsTest, UndoingEveryMoveGivesBackTheSavedFile)
{
    const QString saved = dir.filePath(QStringLiteral("saved.vrd"));
    const QString again = dir.filePath(QStringLiteral("again.vrd"));
    ASSERT_TRUE(session.saveReportFile(saved));

    edits.moveField(LayoutList::Groups, 1, LayoutList::Details, 1);
    edits.moveField(LayoutList::Fields, 0, LayoutList::Groups, 0);
    edits.shiftField(LayoutList::Details, 0, +1);
    edits.sendField(LayoutList::Details, 2, LayoutList::Fields);
    edits.moveField(LayoutList::Groups, 0, LayoutList::Groups, 2);
    QUndoStack& history = session.history().stack();
    ASSERT_EQ(history.count(), 5);
    const QStringList moved = details();

    while (history.canUndo())
        history.undo();
    EXPECT_FALSE(session.definition().Dirty);
    ASSERT_TRUE(session.saveReportFile(again));
    EXPECT_EQ(readBytes(again), readBytes(saved));

    // Redone, the moves give the same layout again.
    while (history.canRedo())
        history.redo();
    EXPECT_EQ(details(), moved);
    EXPECT_TRUE(session.definition().Dirty);
}

TEST_F(LayoutEditsTest, ChoosingARecordSourceStartsItsFieldsUnplaced)
{
    QSignalSpy rebuilt(&session, &ReportSession::gridChanged);
    edits.chooseRecordSource(QStringLiteral("Sales by Region"));
    EXPECT_EQ(rebuilt.count(), 0);
    EXPECT_FALSE(session.definition().Dirty);

    ASSERT_TRUE(edits.recordSources().contains("Orders"));
    edits.chooseRecordSource(QStringLiteral("Orders"));
    EXPECT_EQ(edits.recordSources().value(edits.currentRecordSource()), "Orders");
    EXPECT_TRUE(groups().isEmpty());
    EXPECT_TRUE(details().isEmpty());
    EXPECT_EQ(available().size(), session.data().grid().columnCount());
    EXPECT_GT(available().size(), 0);
    EXPECT_TRUE(session.definition().Dirty);

    session.history().stack().undo();
    EXPECT_EQ(edits.recordSources().value(edits.currentRecordSource()), "Sales by Region");
    EXPECT_EQ(groups(), QStringList({"Region", "Country"}));
}

} // namespace
