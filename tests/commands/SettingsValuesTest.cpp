#include "commands/SpecialTokens.h"
#include "commands/TextParts.h"
#include "commands/TypedLengths.h"

#include <gtest/gtest.h>

#include <limits>

using namespace tabulor;

TEST(TypedLengths, SpacingIsReadInPointsAndStoredInTwips)
{
    EXPECT_EQ(spacingTwips(u"4.5"), 90);
    EXPECT_EQ(spacingTwips(u"6 pt"), 120);
    EXPECT_EQ(spacingTwips(u"7 "), 140);
    EXPECT_EQ(spacingTwips(u"-3"), 0);
    EXPECT_EQ(spacingTwips(u"pt"), 0);
    // Halves go to the even neighbour.
    EXPECT_EQ(spacingTwips(u"0.125"), 2);
    EXPECT_EQ(spacingTwips(u"0.375"), 8);
    EXPECT_EQ(spacingTwips(u"1e30"), std::numeric_limits<qint32>::max());

    EXPECT_EQ(spacingText(120), QStringLiteral("6 pt"));
    EXPECT_EQ(spacingText(90), QStringLiteral("4.5 pt"));
    EXPECT_EQ(spacingTwips(spacingText(770)), 770);
}

TEST(TypedLengths, RowHeightIsReadInInchesAndStoredInTwips)
{
    EXPECT_EQ(rowHeightTwips(u"(default)"), 0);
    EXPECT_EQ(rowHeightTwips(u"0.5\""), 720);
    EXPECT_EQ(rowHeightTwips(u"1.5\""), 2160);
    EXPECT_EQ(rowHeightTwips(u"2.25"), 3240);
    EXPECT_EQ(rowHeightTwips(u"tall"), 0);
    EXPECT_EQ(rowHeightTwips(u"-1"), 0);
    EXPECT_EQ(rowHeightTwips(u"1e30"), std::numeric_limits<qint32>::max());

    EXPECT_EQ(rowHeightText(0, QStringLiteral("(default)")), QStringLiteral("(default)"));
    EXPECT_EQ(rowHeightText(2160, QStringLiteral("(default)")), QStringLiteral("1.5\""));
    EXPECT_EQ(rowHeightText(2880, QString()), QStringLiteral("2\""));
}

TEST(TextParts, HeadersJoinTheirThreeBoxesWithBars)
{
    EXPECT_EQ(joinTextParts({QStringLiteral("left"), QString(), QStringLiteral("right")}),
              QStringLiteral("left||right"));
    EXPECT_EQ(joinTextParts({}), QStringLiteral("||"));

    const TextParts two = splitTextParts(QStringLiteral("<db>|<rs>"));
    EXPECT_EQ(two[0], QStringLiteral("<db>"));
    EXPECT_EQ(two[1], QStringLiteral("<rs>"));
    EXPECT_TRUE(two[2].isEmpty());
    EXPECT_EQ(splitTextParts(QStringLiteral("alone"))[0], QStringLiteral("alone"));

    // Nothing is lost when a hand-written header has more parts than boxes.
    const QString many = QStringLiteral("a|b|c|d");
    EXPECT_EQ(splitTextParts(many)[2], QStringLiteral("c|d"));
    EXPECT_EQ(joinTextParts(splitTextParts(many)), many);
}

TEST(SpecialTokens, EachEntryInsertsItsToken)
{
    EXPECT_EQ(specialTokenText(0), QStringLiteral("%"));
    EXPECT_EQ(specialTokenText(1), QStringLiteral("<n>"));
    EXPECT_EQ(specialTokenText(2), QStringLiteral("<line>"));
    EXPECT_EQ(specialTokenText(6), QStringLiteral("<rf>"));
    EXPECT_EQ(specialTokenText(10), QStringLiteral("<ddd>"));
    EXPECT_EQ(specialTokenText(14), QStringLiteral("<ttt>"));
    for (const int entry : {3, 7, 11}) {
        EXPECT_TRUE(isSpecialTokenSeparator(entry));
        EXPECT_TRUE(specialTokenText(entry).isEmpty());
    }
    EXPECT_TRUE(specialTokenText(-1).isEmpty());
    EXPECT_TRUE(specialTokenText(kSpecialTokenEntries).isEmpty());
}
