#include "localisation/TextHelpers.h"

#include <gtest/gtest.h>

namespace tabulor {
namespace {

TEST(TrimBlanks, RemovesAnyMixOfTabsAndSpacesAtBothEndsOnly)
{
    EXPECT_EQ(TrimBlanks(u" \t  \tSeite \t 2\t \t  "), QStringLiteral("Seite \t 2"));
    EXPECT_EQ(TrimBlanks(u"\t \t"), QString());
    EXPECT_EQ(TrimBlanks(u"plain"), QStringLiteral("plain"));
    // Only blanks and tabs are blanks: other white space is text a translator may want.
    EXPECT_EQ(TrimBlanks(u"\u00A0x\u00A0 "), QStringLiteral("\u00A0x\u00A0"));
    EXPECT_EQ(TrimBlanks(u"\vx\f"), QStringLiteral("\vx\f"));
}

TEST(TrimSpaces, KeepsTabs)
{
    EXPECT_EQ(TrimSpaces(u"  \tPAGES\t  "), QStringLiteral("\tPAGES\t"));
}

TEST(FillListFromText, ReplacesTheListOnlyWhenTheCountMatches)
{
    QStringList list{QStringLiteral("Left"), QStringLiteral("Center"), QStringLiteral("Right")};
    const QStringList before = list;

    EXPECT_FALSE(FillListFromText(list, QStringLiteral("Links|Rechts"), 3));
    EXPECT_FALSE(FillListFromText(list, QStringLiteral("a|b|c|d"), 3));
    EXPECT_EQ(list, before);

    EXPECT_TRUE(FillListFromText(list, QStringLiteral(" Links | Mitte|Rechts "), 3));
    EXPECT_EQ(list, (QStringList{QStringLiteral(" Links "), QStringLiteral(" Mitte"),
                                 QStringLiteral("Rechts ")}));
}

TEST(FillListFromText, KeepsEmptyPieces)
{
    QStringList list{QStringLiteral("(none)"), QStringLiteral("Ascending")};
    EXPECT_TRUE(FillListFromText(list, QStringLiteral("||"), 3));
    EXPECT_EQ(list, (QStringList{QString(), QString(), QString()}));

    EXPECT_TRUE(FillListFromText(list, QString(), 1));
    EXPECT_EQ(list, QStringList{QString()});
}

} // namespace
} // namespace tabulor
