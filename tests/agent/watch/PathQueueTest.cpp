#include "agent/watch/PathQueue.h"

#include <gtest/gtest.h>
#include <thread>

namespace korvale::agent {
namespace {

TEST(PathQueueTest, APathThatWaitsIsTakenOnce) {
    PathQueue queue;
    ASSERT_TRUE(queue.add({"/a", false}));
    ASSERT_TRUE(queue.add({"/a", false}));
    ASSERT_TRUE(queue.add({"/a", true})) << "the folder of that name is another job";
    EXPECT_EQ(queue.size(), 2U);
    EXPECT_EQ(queue.pop()->path, "/a");
    EXPECT_TRUE(queue.pop()->isTree);
    EXPECT_EQ(queue.size(), 0U);
}

TEST(PathQueueTest, WhatWasTakenAMomentAgoWaits) {
    PathQueue queue;
    ASSERT_TRUE(queue.add({"/busy", false}));
    ASSERT_TRUE(queue.pop());
    const auto start = PathQueue::TimePoint::clock::now();
    ASSERT_TRUE(queue.add({"/busy", false}));
    ASSERT_TRUE(queue.add({"/other", false}));
    EXPECT_EQ(queue.pop()->path, "/other") << "nobody waits for it";
    EXPECT_EQ(queue.pop()->path, "/busy");
    EXPECT_GE(PathQueue::TimePoint::clock::now() - start, std::chrono::milliseconds(500));
}

TEST(PathQueueTest, ThereIsRoomForSoMany) {
    PathQueue queue;
    for (std::size_t count = 0; count < PathQueue::capacity; ++count) {
        ASSERT_TRUE(queue.add({std::to_string(count), false}));
    }
    EXPECT_FALSE(queue.add({"one more", false}));
    EXPECT_TRUE(queue.add({"0", false})) << "it waits already";
}

TEST(PathQueueTest, ClosingWakesWhoWaits) {
    PathQueue queue;
    std::thread waiter([&] { EXPECT_FALSE(queue.pop()); });
    queue.close();
    waiter.join();
    EXPECT_TRUE(queue.add({"/late", false}));
    EXPECT_FALSE(queue.pop());
}

} // namespace
} // namespace korvale::agent
