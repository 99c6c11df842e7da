#include "agent/watch/WaitingStarts.h"

#include <gtest/gtest.h>

namespace korvale::agent {
namespace {

WaitingStarts::Start start(int descriptor, std::uint64_t token, std::int64_t deadline) {
    return {descriptor, token, deadline, {1, token, 1, 1, 1}};
}

TEST(WaitingStartsTest, AllWhoWaitForOneTokenAreTaken) {
    WaitingStarts waiting;
    waiting.add(start(10, 1, 100));
    waiting.add(start(11, 1, 200));
    waiting.add(start(12, 2, 300));
    EXPECT_EQ(waiting.tokenOf({1, 1, 1, 1, 1}), 1U);
    EXPECT_EQ(waiting.tokenOf({1, 9, 1, 1, 1}), 0U);
    EXPECT_EQ(waiting.takeAnswered(1).descriptor, 10);
    EXPECT_EQ(waiting.takeAnswered(1).descriptor, 11);
    EXPECT_EQ(waiting.takeAnswered(1).descriptor, -1);
    EXPECT_EQ(waiting.keyOf(1), nullptr);
    EXPECT_NE(waiting.keyOf(2), nullptr);
}

TEST(WaitingStartsTest, TheEarliestDeadlineIsNext) {
    WaitingStarts waiting;
    EXPECT_EQ(waiting.nextDeadline(), WaitingStarts::never);
    waiting.add(start(10, 1, 300));
    waiting.add(start(11, 2, 100));
    EXPECT_EQ(waiting.nextDeadline(), 100);
    EXPECT_EQ(waiting.takeExpired(99).descriptor, -1);
    EXPECT_EQ(waiting.takeExpired(100).descriptor, 11);
    EXPECT_EQ(waiting.nextDeadline(), 300);
}

TEST(WaitingStartsTest, ThereIsRoomForSoManyOnly) {
    WaitingStarts waiting;
    for (std::size_t count = 0; count < WaitingStarts::capacity; ++count) {
        ASSERT_FALSE(waiting.isFull());
        waiting.add(start(static_cast<int>(count), count + 1, 1));
    }
    EXPECT_TRUE(waiting.isFull());
    while (waiting.takeAny().descriptor >= 0) {
    }
    EXPECT_TRUE(waiting.isEmpty());
}

} // namespace
} // namespace korvale::agent
