#include "agent/engine/EngineWatch.h"

#include <gtest/gtest.h>

using namespace korvale::agent;
using namespace std::chrono_literals;

namespace {

class EngineWatchTest : public testing::Test {
protected:
    static EngineState gone(bool startable = true) {
        EngineState state;
        state.startable = startable;
        state.trouble = "refused";
        return state;
    }
    static EngineState there() {
        EngineState state = gone();
        state.reachable = true;
        return state;
    }

    std::vector<std::string> m_started;
    EngineWatch m_watch{EngineWatch::usualUnits(),
                        [this](const std::string& unit) { m_started.push_back(unit); }};
    EngineWatch::TimePoint m_now = EngineWatch::TimePoint() + 1h;
};

TEST_F(EngineWatchTest, StartsTheSocketAndTheServiceAtOnceWhenItIsGone) {
    m_watch.answered(there(), m_now);
    EXPECT_TRUE(m_started.empty());
    m_watch.answered(gone(), m_now + 1s);
    EXPECT_EQ(m_started, EngineWatch::usualUnits());
}

TEST_F(EngineWatchTest, StartsNothingBeforeThereAreSignaturesAndThenAtOnce) {
    m_watch.answered(gone(false), m_now);
    EXPECT_TRUE(m_started.empty());
    m_watch.answered(gone(true), m_now + 1s);
    EXPECT_EQ(m_started.size(), 2U);
}

TEST_F(EngineWatchTest, TriesLessAndLessOften) {
    std::vector<std::chrono::seconds> pauses;
    auto last = m_now;
    for (auto time = m_now; time < m_now + 4h; time += 1s) {
        const std::size_t before = m_started.size();
        m_watch.answered(gone(), time);
        if (m_started.size() > before) {
            pauses.push_back(std::chrono::duration_cast<std::chrono::seconds>(time - last));
            last = time;
        }
    }
    ASSERT_GE(pauses.size(), 8U);
    EXPECT_EQ(pauses[0], 0s);
    EXPECT_EQ(pauses[1], 30s);
    EXPECT_EQ(pauses[2], 60s);
    EXPECT_EQ(pauses.back(), EngineWatch::longestPause);
    m_watch.answered(there(), m_now + 5h);
    const std::size_t before = m_started.size();
    m_watch.answered(gone(), m_now + 5h + 1s);
    EXPECT_EQ(m_started.size(), before + 2) << "it had come back: begun anew";
}

TEST_F(EngineWatchTest, StartsNothingThatItWasNotGiven) {
    EngineWatch watch({}, [](const std::string&) { FAIL(); });
    watch.answered(gone(), m_now);
}

} // namespace
