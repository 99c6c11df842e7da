#include "agent/watch/BackOff.h"

#include <gtest/gtest.h>

namespace korvale::agent {
namespace {

using std::chrono::milliseconds;

TEST(BackOffTest, EachTimeItTakesLongerUpToABound) {
    BackOff backOff;
    BackOff::Clock::time_point now{};
    milliseconds expected = BackOff::shortest;
    for (int count = 0; count < 20; ++count) {
        const milliseconds wait = backOff.next(now);
        EXPECT_EQ(wait, expected);
        now += wait;
        expected = std::min(expected * 2, BackOff::longest);
    }
    EXPECT_EQ(expected, BackOff::longest);
}

TEST(BackOffTest, WhatLivedLongBeginsAnew) {
    BackOff backOff;
    BackOff::Clock::time_point now{};
    (void)backOff.next(now);
    const milliseconds second = backOff.next(now);
    EXPECT_GT(second, BackOff::shortest);
    EXPECT_GT(backOff.next(now + second + BackOff::longLife), second) << "not yet";
    EXPECT_EQ(backOff.next(now + 3 * BackOff::longLife), BackOff::shortest);
}

} // namespace
} // namespace korvale::agent
