#include "production/report/Tokens.h"

#include "QtPrinters.h"

#include <QLocale>

#include <gtest/gtest.h>

using namespace tabulor;

namespace {

TokenContext context()
{
    TokenContext c;
    c.pageCount = 12;
    c.databaseName = QStringLiteral("Sales.mdb");
    c.recordSource = QStringLiteral("Orders");
    c.reportFileName = QStringLiteral("C:\\Reports\\orders.vrd");
    c.clock = [] { return QDateTime(QDate(2026, 3, 7), QTime(14, 5, 9)); };
    c.locale = FormatLocale::fromQLocale(QLocale(QLocale::English, QLocale::UnitedStates));
    return c;
}

} // namespace

TEST(Tokens, EveryTokenButThePageNumberIsReplaced)
{
    const TokenContext c = context();
    EXPECT_EQ(ExpandTokens(QStringLiteral("[<rs>] from <db> in <rf>, <n> pages, page <p>"), c),
              QStringLiteral("[Orders] from Sales.mdb in orders.vrd, 12 pages, page <p>"));
    EXPECT_EQ(ExpandTokens(QStringLiteral("<dd>|<tt>|<line>"), c),
              QStringLiteral("07-Mar-26|02:05 PM|\n"));
    EXPECT_EQ(ExpandTokens(QStringLiteral("<d> <ddd>"), c),
              QStringLiteral("3/7/2026 Saturday, March 7, 2026"));

    // An empty record source or file name leaves its token; an empty database becomes a blank.
    TokenContext empty = c;
    empty.recordSource.clear();
    empty.reportFileName.clear();
    empty.databaseName.clear();
    EXPECT_EQ(ExpandTokens(QStringLiteral("<db>|<rs>|<rf>"), empty), QStringLiteral(" |<rs>|<rf>"));
}

TEST(Tokens, FileNamesLoseTheirFolderWithEitherSeparator)
{
    EXPECT_EQ(FileNameOnly(QStringLiteral("C:\\a\\b.vrd")), QStringLiteral("b.vrd"));
    EXPECT_EQ(FileNameOnly(QStringLiteral("/home/u/b.vrd")), QStringLiteral("b.vrd"));
    EXPECT_EQ(FileNameOnly(QStringLiteral("b.vrd")), QStringLiteral("b.vrd"));
    EXPECT_EQ(FileNameOnly(QStringLiteral("dir\\")), QString());
}

TEST(Tokens, HeaderLinesSplitIntoAtMostThreeTrimmedParts)
{
    EXPECT_EQ(headerParts(QStringLiteral(" |<rs>|Page <p> of 9"), 4),
              (QStringList{"", "<rs>", "Page 4 of 9"}));
    EXPECT_EQ(headerParts(QStringLiteral(" | |2:05, Monday"), 1),
              (QStringList{"", "", "2:05, Monday"}));
    EXPECT_EQ(headerParts(QStringLiteral("a|b|c|d"), 1), (QStringList{"a", "b", "c"}));
    EXPECT_EQ(headerParts(QStringLiteral("a|||d"), 1), (QStringList{"a", "", ""}));
    EXPECT_EQ(headerParts(QStringLiteral("only"), 1), QStringList{"only"});
}
