#include "agent/watch/KnownStarts.h"

#include <gtest/gtest.h>
#include <memory>

namespace korvale::agent {
namespace {

StartKey key(std::uint64_t inode, std::int64_t ctime = 1) {
    return {7, inode, 100, ctime, 0};
}

TEST(KnownStartsTest, OnlyTheVeryStateThatWasJudgedIsKnown) {
    const auto known = std::make_unique<KnownStarts>();
    known->insert(key(1));
    EXPECT_TRUE(known->contains(key(1)));
    EXPECT_FALSE(known->contains(key(1, 2))) << "it was changed since";
    EXPECT_FALSE(known->contains(key(2)));
    EXPECT_FALSE(known->contains({8, 1, 100, 1, 0})) << "another file system";
    EXPECT_FALSE(known->contains({7, 1, 101, 1, 0})) << "another size";
    known->insert(key(1, 2));
    EXPECT_FALSE(known->contains(key(1))) << "the older state made room";
    known->clear();
    EXPECT_FALSE(known->contains(key(1, 2)));
}

TEST(KnownStartsTest, NothingIsKnownOfNothing) {
    const auto known = std::make_unique<KnownStarts>();
    EXPECT_FALSE(known->contains(StartKey()));
}

TEST(KnownStartsTest, AFullTableForgetsAndStaysRight) {
    const auto known = std::make_unique<KnownStarts>();
    constexpr std::uint64_t many = 4 * KnownStarts::buckets * KnownStarts::ways;
    std::uint64_t kept = 0;
    for (std::uint64_t inode = 1; inode <= many; ++inode) {
        known->insert(key(inode));
        EXPECT_TRUE(known->contains(key(inode)));
    }
    for (std::uint64_t inode = 1; inode <= many; ++inode) {
        kept += known->contains(key(inode)) ? 1 : 0;
    }
    EXPECT_LE(kept, KnownStarts::buckets * KnownStarts::ways);
    EXPECT_GT(kept, KnownStarts::buckets) << "the places are used";
}

} // namespace
} // namespace korvale::agent
