#include "agent/bus/RequestLimits.h"

#include <gtest/gtest.h>

namespace korvale::agent {
namespace {

using std::chrono::milliseconds;

class RequestLimitsTest : public testing::Test {
protected:
    int taken(std::uint32_t uid, int tries) {
        int count = 0;
        for (int i = 0; i < tries; ++i) {
            count += m_limits.take(uid, m_now) ? 1 : 0;
        }
        return count;
    }

    RequestLimits m_limits{{3, milliseconds(1000)}};
    RequestLimits::Clock::time_point m_now{std::chrono::hours(1)};
};

TEST_F(RequestLimitsTest, AUserHasSomeAtOnceAndOneMoreAfterEachPeriod) {
    EXPECT_EQ(taken(1000, 10), 3);
    m_now += milliseconds(999);
    EXPECT_EQ(taken(1000, 10), 0);
    m_now += milliseconds(1);
    EXPECT_EQ(taken(1000, 10), 1);
    m_now += std::chrono::hours(5);
    EXPECT_EQ(taken(1000, 10), 3);
}

TEST_F(RequestLimitsTest, OneUserTakesNothingFromAnother) {
    EXPECT_EQ(taken(1000, 10), 3);
    EXPECT_EQ(taken(1001, 10), 3);
}

TEST_F(RequestLimitsTest, RootIsNotLimited) {
    EXPECT_EQ(taken(0, 100), 100);
}

TEST_F(RequestLimitsTest, ManyUsersDoNotMakeItGrow) {
    for (std::uint32_t uid = 1; uid < 5000; ++uid) {
        EXPECT_TRUE(m_limits.take(uid, m_now));
    }
    EXPECT_EQ(taken(4999, 10), 2) << "who asked last is remembered";
}

} // namespace
} // namespace korvale::agent
