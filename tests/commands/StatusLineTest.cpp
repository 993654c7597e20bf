#include "commands/StatusLine.h"
#include "localisation/StringTable.h"

#include <gtest/gtest.h>

using namespace tabulor;

TEST(StatusLine, TellsTheReportItsRecordsOrItsPages)
{
    const StringTable strings;
    StatusFacts facts;
    EXPECT_EQ(statusLine(strings, QString(), facts), QStringLiteral("No Report"));
    EXPECT_EQ(statusLine(strings, QStringLiteral("Updating Report..."), facts),
              QStringLiteral("Updating Report..."));

    facts.databaseName = QStringLiteral("Sales.mdb");
    facts.recordSource = QStringLiteral("Orders");
    facts.rowsLoaded = 100;
    facts.recordsCounted = 250;
    EXPECT_EQ(statusLine(strings, QString(), facts),
              QStringLiteral("Report [Orders] from [Sales.mdb] records [100/250]"));

    facts.view = DesignerView::Preview;
    EXPECT_EQ(statusLine(strings, QString(), facts),
              QStringLiteral("Report [Orders] from [Sales.mdb]"));
    facts.pageCount = 7;
    EXPECT_EQ(statusLine(strings, QString(), facts),
              QStringLiteral("Report [Orders] from [Sales.mdb] pages [7]"));

    EXPECT_EQ(windowCaption(QStringLiteral("Tabulor"), QString()), QStringLiteral("Tabulor"));
    EXPECT_EQ(windowCaption(QStringLiteral("Tabulor"), QStringLiteral("/r/a.vrd")),
              QStringLiteral("Tabulor - /r/a.vrd"));
}
