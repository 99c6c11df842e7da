#include "tables/RowIndexes.h"

#include <gtest/gtest.h>

namespace korvale {
namespace {

using Ranges = std::vector<RowIndexes::Range>;

TEST(RowIndexes, RangesAscendAndNeighboursAreJoined) {
    const RowIndexes indexes({{7, 9}, {0, 1}, {2, 3}, {8, 12}, {20, 20}});
    EXPECT_EQ(indexes.ranges(), (Ranges{{0, 3}, {7, 12}, {20, 20}}));
    EXPECT_EQ(indexes.count(), 11U);
    EXPECT_EQ(indexes.last(), 20);
}

TEST(RowIndexes, NoRangesHoldNothing) {
    const RowIndexes indexes;
    EXPECT_TRUE(indexes.isEmpty());
    EXPECT_EQ(indexes.count(), 0U);
    EXPECT_EQ(indexes.last(), -1);
}

} // namespace
} // namespace korvale
