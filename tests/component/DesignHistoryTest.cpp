#include "component/ReportSession.h"
#include "definition/DefinitionFile.h"

#include "SampleCopy.h"
#include "ScriptedPrompt.h"
#include "TestSupport.h"

#include <QRandomGenerator>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace tabulor;
using namespace tabulor::test;

namespace {

// A session on a copy of the sample report, whose definition file can be compared byte by
// byte after any number of changes.
class DesignHistoryTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        const QString report = copySampleReport(dir, session);
        ASSERT_FALSE(report.isEmpty());
        session.loadDesigner();
        ASSERT_TRUE(session.OpenReportFile(report));
        session.definition().CurrentFileName = report;
    }

    QByteArray file() const { return definitionFileBytes(session.definition()); }

    // One change of the kinds the designer's windows make, chosen by the generator.
    void randomChange(QRandomGenerator& random)
    {
        const auto pick = [&](qsizetype size) { return int(random.bounded(int(size))); };
        switch (random.bounded(7)) {
        case 0: // a field dragged between the lists
            session.changeDefinition(QStringLiteral("Move"),
                                     [&](ReportDefinition& d, QStringList& available) {
                                         QStringList* lists[] = {&available, &d.groups, &d.details};
                                         QStringList* from = lists[pick(3)];
                                         if (from->isEmpty())
                                             return;
                                         const QString name = from->takeAt(pick(from->size()));
                                         QStringList* to = lists[pick(3)];
                                         to->insert(pick(to->size() + 1), name);
                                     });
            break;
        case 1:
            session.changeDefinition(QStringLiteral("Title"),
                                     [&](ReportDefinition& d, QStringList&) {
                                         d.fields[pick(d.fields.size())].Title =
                                             QStringLiteral("T%1").arg(random.generate());
                                     });
            break;
        case 2:
            session.changeDefinition(QStringLiteral("Style"),
                                     [&](ReportDefinition& d, QStringList&) {
                                         ReportStyle& s = d.styles[pick(kStyleCount)];
                                         s.FontBold = !s.FontBold;
                                         s.Before = int(random.bounded(600));
                                         s.Back = int(random.bounded(0x1000000));
                                     });
            break;
        case 3:
            session.changeDefinition(
                QStringLiteral("General"), [&](ReportDefinition& d, QStringList&) {
                    d.global.SubtotalPosition = int(random.bounded(3));
                    d.global.Header = QStringLiteral("<rs>|%1|<p>").arg(random.generate());
                });
            break;
        case 4: {
            const OutlineGrid& grid = session.data().grid();
            if (!grid.reportColumns().isEmpty())
                session.resizeColumn(grid.reportColumns().at(pick(grid.reportColumns().size())),
                                     float(500 + random.bounded(3000)));
            break;
        }
        case 5: // another record source, then maybe back
            session.selectRecordSource(random.bounded(2) ? QStringLiteral("Order Details Extended")
                                                         : QStringLiteral("Sales by Region"));
            break;
        default:
            session.changeDefinition(QStringLiteral("Sort"),
                                     [&](ReportDefinition& d, QStringList&) {
                                         ReportField& f = d.fields[pick(d.fields.size())];
                                         f.Sort = qint16(random.bounded(3));
                                         f.Aggregate = qint16(random.bounded(8));
                                     });
            break;
        }
    }

    QTemporaryDir dir;
    ScriptedPrompt prompt;
    ReportSession session{&prompt};
};

TEST_F(DesignHistoryTest, UndoingEveryChangeGivesBackTheFileByteForByte)
{
    QRandomGenerator random(20261123);
    for (int run = 0; run < 3; ++run) {
        const QByteArray original = file();
        const qsizetype rows = session.data().grid().rows().size();
        const int start = session.history().stack().index();
        for (int i = 0; i < 25; ++i)
            randomChange(random);
        const QByteArray changed = file();
        ASSERT_NE(changed, original);
        EXPECT_TRUE(session.definition().Dirty);

        while (session.history().stack().index() > start)
            session.history().stack().undo();
        EXPECT_EQ(file(), original);
        EXPECT_FALSE(session.definition().Dirty) << "every change undone: nothing to save";
        EXPECT_EQ(session.data().grid().rows().size(), rows) << "the report is as it was";

        while (session.history().stack().canRedo())
            session.history().stack().redo();
        EXPECT_EQ(file(), changed);
        EXPECT_TRUE(session.definition().Dirty);
        session.history().stack().setClean();
    }
}

TEST_F(DesignHistoryTest, OpeningOrStartingAReportForgetsTheChangesBeforeIt)
{
    session.changeDefinition(QStringLiteral("Title"), [](ReportDefinition& d, QStringList&) {
        d.global.ReportTitle = QStringLiteral("changed");
    });
    EXPECT_TRUE(session.history().stack().canUndo());
    ASSERT_TRUE(session.OpenReportFile(session.definition().CurrentFileName));
    EXPECT_FALSE(session.history().stack().canUndo());
    // A change that changes nothing is not recorded, though it marks the report changed.
    session.changeDefinition(QStringLiteral("Nothing"), [](ReportDefinition&, QStringList&) {});
    EXPECT_FALSE(session.history().stack().canUndo());
    EXPECT_TRUE(session.definition().Dirty);

    session.changeDefinition(QStringLiteral("Title"), [](ReportDefinition& d, QStringList&) {
        d.global.ReportTitle = QStringLiteral("changed again");
    });
    const QString database = session.definition().DataBaseName;
    session.startReport(database);
    EXPECT_FALSE(session.history().stack().canUndo());
    EXPECT_TRUE(session.definition().CurrentFileName.isEmpty());
    EXPECT_TRUE(session.definition().RecordSource.isEmpty());
    EXPECT_TRUE(session.definition().groups.isEmpty() && session.definition().details.isEmpty());
    EXPECT_EQ(session.definition().DataBaseName, database);
}

} // namespace
