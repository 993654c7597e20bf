#include "production/pagination/PageBreakRules.h"

#include <gtest/gtest.h>

#include <iterator>

using namespace tabulor;

TEST(PageBreakRules, WidowControlKeepsHeadingsAndClosingRowsWithTheirRows)
{
    using K = RowKind;
    // o0 o1 d d c1 o1 d c1 c0: where a page may end before each row after the first.
    const K rows[] = {K::Opening, K::Opening, K::Data,    K::Data,   K::Closing,
                      K::Opening, K::Data,    K::Closing, K::Closing};
    const bool expected[] = {false, false, true, false, true, false, false, false};
    for (size_t i = 1; i < std::size(rows); ++i) {
        EXPECT_EQ(breakAllowedBetween(rows[i - 1], rows[i], true), expected[i - 1]) << i;
        EXPECT_TRUE(breakAllowedBetween(rows[i - 1], rows[i], false)) << i;
    }
}
