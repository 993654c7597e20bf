#include "production/base/Currency.h"

#include "QtPrinters.h"

#include <gtest/gtest.h>

using namespace tabulor;

TEST(Currency, ReadsAndWritesExactDecimals)
{
    const struct
    {
        const char* text;
        qint64 scaled;
        const char* written;
    } cases[] = {
        {"12.5", 125000, "12.50"},
        {"-0.5", -5000, "-0.50"},
        {"0.1234", 1234, "0.1234"},
        {"7", 70000, "7.00"},
        {"-7.001", -70010, "-7.001"},
        {"+3.10", 31000, "3.10"},
        {".25", 2500, "0.25"},
        {"922337203685.4775", 9223372036854775LL, "922337203685.4775"},
    };
    for (const auto& c : cases) {
        const auto value = Currency::fromString(QString::fromLatin1(c.text));
        ASSERT_TRUE(value) << c.text;
        EXPECT_EQ(value->tenThousandths, c.scaled) << c.text;
        EXPECT_EQ(value->toString(), QString::fromLatin1(c.written)) << c.text;
    }
    for (const char* bad : {"", "-", ".", "1.23456", "1,5", "12a", "1e3", "123456789012345"})
        EXPECT_FALSE(Currency::fromString(QString::fromLatin1(bad))) << bad;
}

TEST(Currency, OrdersByValue)
{
    EXPECT_LT(Currency{-1}, Currency{0});
    EXPECT_EQ(Currency{25000}.toDouble(), 2.5);
}
