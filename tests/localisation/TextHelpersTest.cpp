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

TEST(FillListFromText, ReplacesTheListOnlyWhenTheCountMatches)
{
    QStringList list{"Left", "Center", "Right"};
    EXPECT_FALSE(FillListFromText(list, QStringLiteral("Links|Rechts"), 3));
    EXPECT_FALSE(FillListFromText(list, QStringLiteral("a|b|c|d"), 3));
    EXPECT_EQ(list, (QStringList{"Left", "Center", "Right"}));

    EXPECT_TRUE(FillListFromText(list, QStringLiteral(" Links ||Rechts"), 3));
    EXPECT_EQ(list, (QStringList{" Links ", "", "Rechts"}));
}

} // namespace
} // namespace tabulor
