#include "definition/ValueText.h"

#include <gtest/gtest.h>

using namespace tabulor;

TEST(ValueText, LeadingNumberFollowsTheClassicRule)
{
    const struct
    {
        const char* text;
        double expected;
    } cases[] = {
        {"", 0},      {"abc", 0},        {"  1440 ", 1440}, {"\t-12", -12},
        {"+7", 7},    {"12.5xyz", 12.5}, {"1.2.3", 1.2}, // a second decimal point ends the number
        {".5", 0.5},  {"5.", 5},         {"1e3", 1000},     {"1E+2px", 100},
        {"2e", 2},    // an exponent without digits is not part of the number
        {"1d2", 100}, // the old double-precision exponent letter
        {"- 5", 0},   // the sign must touch the digits
        {"1 000", 1},
    };
    for (const auto& c : cases)
        EXPECT_DOUBLE_EQ(leadingNumber(QString::fromLatin1(c.text)), c.expected) << c.text;
}

TEST(ValueText, StrictNumbersAcceptOnlyAWholeNumber)
{
    EXPECT_EQ(strictNumber(u" 1440 "), 1440.0);
    EXPECT_EQ(strictNumber(u"-3"), -3.0);
    EXPECT_EQ(strictNumber(u"8.25"), 8.25);
    EXPECT_FALSE(strictNumber(u""));
    EXPECT_FALSE(strictNumber(u"  "));
    EXPECT_FALSE(strictNumber(u"12abc"));
    EXPECT_FALSE(strictNumber(u"True"));
    EXPECT_FALSE(strictNumber(u"1 2"));
}

TEST(ValueText, IntegerConversionRoundsHalfToEvenAndChecksRange)
{
    EXPECT_EQ(toInt16(2.5), 2);
    EXPECT_EQ(toInt16(3.5), 4);
    EXPECT_EQ(toInt16(-2.5), -2);
    EXPECT_EQ(toInt16(32767), 32767);
    EXPECT_FALSE(toInt16(32768));
    EXPECT_EQ(toInt16(-32768), -32768);
    EXPECT_FALSE(toInt16(-32769));
    EXPECT_EQ(toInt32(2147483647.0), 2147483647);
    EXPECT_FALSE(toInt32(2147483648.0));
    EXPECT_FALSE(toInt32(1e300));
    EXPECT_FALSE(toSingle(1e300));
}

TEST(ValueText, BooleansAreWordsOrNumbers)
{
    EXPECT_EQ(strictBoolean(u"True"), true);
    EXPECT_EQ(strictBoolean(u"false"), false);
    EXPECT_EQ(strictBoolean(u" TRUE "), true);
    EXPECT_EQ(strictBoolean(u"0"), false);
    EXPECT_EQ(strictBoolean(u"-1"), true);
    EXPECT_EQ(strictBoolean(u"2"), true);
    EXPECT_FALSE(strictBoolean(u""));
    EXPECT_FALSE(strictBoolean(u"yes"));
    EXPECT_EQ(booleanText(true), QStringLiteral("True"));
    EXPECT_EQ(booleanText(false), QStringLiteral("False"));
}

TEST(ValueText, SinglesAreWrittenShortestWithSevenDigitsAtMost)
{
    EXPECT_EQ(shortestSingleText(8.25f), QStringLiteral("8.25"));
    EXPECT_EQ(shortestSingleText(12.0f), QStringLiteral("12"));
    EXPECT_EQ(shortestSingleText(0.1f), QStringLiteral("0.1"));
    EXPECT_EQ(shortestSingleText(0.0f), QStringLiteral("0"));
    EXPECT_EQ(shortestSingleText(-1.5f), QStringLiteral("-1.5"));
    EXPECT_EQ(shortestSingleText(1234.567f), QStringLiteral("1234.567"));
    EXPECT_EQ(shortestSingleText(1.0f / 3.0f), QStringLiteral("0.3333333"));
    EXPECT_EQ(shortestSingleText(1e7f), QStringLiteral("1E+07"));
    // Values of up to seven digits read back as the same single; longer ones settle on
    // their seven-digit form after one round.
    for (float v : {8.25f, 0.1f, 2880.5f, 1e-5f, 123456.7f})
        EXPECT_EQ(static_cast<float>(leadingNumber(shortestSingleText(v))), v) << v;
    const float third = static_cast<float>(leadingNumber(shortestSingleText(1.0f / 3.0f)));
    EXPECT_EQ(shortestSingleText(third), QStringLiteral("0.3333333"));
}
