// What keeps one bad file or a dead engine from spoiling the rest.
#include "agent/engine/CircuitBreaker.h"
#include "agent/engine/SoloGate.h"
#include "agent/engine/SuspectFiles.h"

#include <atomic>
#include <future>
#include <gtest/gtest.h>
#include <thread>

using namespace korvale::agent;
using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

namespace {

TEST(CircuitBreaker, LetsOneTryAfterEachPauseAndPausesLonger) {
    CircuitBreaker breaker;
    const auto start = Clock::now();
    EXPECT_FALSE(breaker.isOpen());
    EXPECT_FALSE(breaker.takeTry(start));
    breaker.failed(start);
    EXPECT_TRUE(breaker.isOpen());
    EXPECT_FALSE(breaker.takeTry(start + 999ms));
    EXPECT_TRUE(breaker.takeTry(start + 1s));
    EXPECT_FALSE(breaker.takeTry(start + 1s)) << "a second one at the same time";
    auto now = start + 2s;
    for (int failure = 0; failure < 10; ++failure) {
        breaker.failed(now);
        now += CircuitBreaker::longestPause;
    }
    breaker.failed(now);
    EXPECT_FALSE(breaker.takeTry(now + 29s));
    EXPECT_TRUE(breaker.takeTry(now + 30s));
    breaker.answered();
    EXPECT_FALSE(breaker.isOpen());
    breaker.failed(now);
    EXPECT_TRUE(breaker.takeTry(now + 1s)) << "the pauses begin anew";
}

TEST(CircuitBreaker, TakesManyFailuresAtOnceAsOne) {
    CircuitBreaker breaker;
    const auto start = Clock::now();
    for (int file = 0; file < 8; ++file) {
        breaker.failed(start);
    }
    EXPECT_TRUE(breaker.takeTry(start + 1s));
}

TEST(SoloGate, LetsNobodyInBesideOneWhoIsAlone) {
    SoloGate gate;
    const auto late = Clock::now() + 20s;
    ASSERT_TRUE(gate.enter(late, {}));
    std::atomic<bool> alone = false;
    std::jthread solo([&] {
        ASSERT_TRUE(gate.enterAlone(late, {}));
        alone = true;
        alone.notify_all();
    });
    while (gate.enter(Clock::now(), {})) { // until the other one waits, which goes first
        gate.leave();
        std::this_thread::yield();
    }
    EXPECT_FALSE(alone);
    gate.leave();
    alone.wait(false);
    EXPECT_FALSE(gate.enter(Clock::now() + 10ms, {}));
    EXPECT_FALSE(gate.enterAlone(Clock::now() + 10ms, {}));
    solo.join();
    gate.leaveAlone();
    EXPECT_TRUE(gate.enter(late, {}));
    EXPECT_FALSE(gate.enterAlone(Clock::now(), {}));
    EXPECT_TRUE(gate.enter(late, {})) << "one who gave up waiting holds up nobody";
}

TEST(SoloGate, IsLeftWhenAStopIsRequested) {
    SoloGate gate;
    ASSERT_TRUE(gate.enterAlone(Clock::now() + 20s, {}));
    std::stop_source source;
    auto waiting = std::async(std::launch::async,
                              [&] { return gate.enter(Clock::now() + 1h, source.get_token()); });
    source.request_stop();
    EXPECT_FALSE(waiting.get());
}

TEST(SuspectFiles, AreCountedAcquittedAndForgotten) {
    SuspectFiles suspects;
    const FileIdentity file{1, 2, 3, 4, 5};
    EXPECT_EQ(suspects.deaths(file), 0);
    suspects.died(file);
    suspects.died(file);
    EXPECT_EQ(suspects.deaths(file), SuspectFiles::fatal);
    EXPECT_EQ(suspects.deaths({1, 2, 3, 4, 6}), 0) << "another state of it";
    suspects.acquit(file);
    EXPECT_EQ(suspects.deaths(file), 0);
    for (std::uint64_t inode = 0; inode < 2 * SuspectFiles::capacity; ++inode) {
        suspects.died({1, inode, 3, 4, 5});
    }
    EXPECT_EQ(suspects.deaths({1, 0, 3, 4, 5}), 0) << "the oldest goes first";
    EXPECT_EQ(suspects.deaths({1, 2 * SuspectFiles::capacity - 1, 3, 4, 5}), 1);
    suspects.forgetAll();
    EXPECT_EQ(suspects.deaths({1, 2 * SuspectFiles::capacity - 1, 3, 4, 5}), 0);
}

} // namespace
