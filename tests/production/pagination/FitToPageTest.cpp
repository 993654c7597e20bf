#include "production/pagination/FitToPage.h"

#include <gtest/gtest.h>

using namespace tabulor;

TEST(FitToPage, AReportThatFitsOrWhoseFirstColumnIsWidestIsLeftAlone)
{
    EXPECT_FALSE(fitColumnsToPage({1000, 2000, 3000}, 6000));
    EXPECT_FALSE(fitColumnsToPage({5000, 2000, 3000}, 6000));
    EXPECT_FALSE(fitColumnsToPage({}, 6000));
    EXPECT_FALSE(fitColumnsToPage({1000, 9000}, 0));
}

TEST(FitToPage, AWideColumnGivesUpTheExcessOrATenth)
{
    // Excess 500 is less than a tenth of 7000: the column loses the tenth, more than needed.
    EXPECT_EQ(fitColumnsToPage({1000, 7000, 1500}, 9000), (std::vector<double>{1000, 6300, 1500}));
    // Excess 3000 is more than a tenth: the column loses exactly the excess.
    EXPECT_EQ(fitColumnsToPage({1000, 7000, 4000}, 9000), (std::vector<double>{1000, 4000, 4000}));
    // Where the excess would leave almost nothing of it, every column is scaled instead.
    EXPECT_EQ(fitColumnsToPage({3000, 6000, 3000}, 6200), (std::vector<double>{1550, 3100, 1550}));
}

TEST(FitToPage, NarrowColumnsAreScaledToWholeTwips)
{
    // 9000 into 8000: each column of positive width shrinks by 8/9, truncated; a column of no
    // width stays.
    EXPECT_EQ(fitColumnsToPage({1000, 5000, 0, 3000}, 8000.9),
              (std::vector<double>{888, 4444, 0, 2666}));
}
