#include "core/ScanWatch.h"

#include <gtest/gtest.h>

namespace korvale {
namespace {

using namespace std::chrono_literals;
using End = ScanWatch::End;

TEST(ScanWatch, AScanThatWasSeenIsOverOnceTheAnalyserIsIdleAndNewsHaveSettled) {
    ScanWatch watch;
    watch.accepted(0ms);
    watch.saw(ScannerState::Busy, 100ms);
    EXPECT_EQ(watch.end(60s), End::None) << "however long it runs";
    watch.saw(ScannerState::Idle, 61s);
    EXPECT_EQ(watch.end(62s), End::None);
    watch.progressed(62s); // what was found at last
    EXPECT_EQ(watch.end(63s), End::None);
    EXPECT_EQ(watch.end(64s), End::Over);
}

TEST(ScanWatch, WhatWasSeenBeforeTheReplyCounts) {
    ScanWatch watch;
    watch.saw(ScannerState::Busy, 0ms);
    watch.saw(ScannerState::Idle, 10ms);
    EXPECT_EQ(watch.end(1h), End::None) << "not accepted";
    watch.accepted(5s);
    EXPECT_EQ(watch.end(6s), End::None);
    EXPECT_EQ(watch.end(7s), End::Over);
}

TEST(ScanWatch, AScanThatNobodySawIsGivenMoreTime) {
    ScanWatch watch;
    watch.saw(ScannerState::Idle, 0ms);
    watch.accepted(10ms);
    EXPECT_EQ(watch.end(10ms + ScanWatch::startTime - 1ms), End::None);
    EXPECT_EQ(watch.end(10ms + ScanWatch::startTime), End::Over);
}

TEST(ScanWatch, AnAgentThatDoesNotTellWhatItsAnalyserDoesIsGivenMost) {
    ScanWatch watch;
    watch.accepted(0ms);
    watch.progressed(20s);
    EXPECT_EQ(watch.end(49s), End::None);
    EXPECT_EQ(watch.end(50s), End::Over);
}

TEST(ScanWatch, AnAgentThatAlwaysHasNewsIsNotWaitedForForEver) {
    ScanWatch watch;
    watch.accepted(0ms);
    watch.saw(ScannerState::Busy, 0ms);
    watch.saw(ScannerState::Idle, 1s);
    for (auto moment = 1000ms; moment < 31s; moment += 500ms) {
        watch.progressed(moment);
        EXPECT_EQ(watch.end(moment), End::None);
    }
    watch.progressed(31s);
    EXPECT_EQ(watch.end(31s), End::Over);
}

TEST(ScanWatch, ASecondScanIsWaitedForToo) {
    ScanWatch watch;
    watch.accepted(0ms);
    watch.saw(ScannerState::Busy, 0ms);
    watch.saw(ScannerState::Idle, 1s);
    watch.saw(ScannerState::Busy, 2s);
    EXPECT_EQ(watch.end(10s), End::None);
}

TEST(ScanWatch, FiveMinutesWithoutAWordAreNoAnswer) {
    ScanWatch watch;
    watch.accepted(0ms);
    watch.saw(ScannerState::Busy, 0ms);
    watch.heard(100s);
    EXPECT_EQ(watch.end(399s), End::None);
    EXPECT_EQ(watch.end(400s), End::Silent);
}

} // namespace
} // namespace korvale
