#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <map>

namespace korvale::agent {

/// How much each user may ask for: a number of requests at once, and one more after each period.
/// Root is not limited.
class RequestLimits {
public:
    using Clock = std::chrono::steady_clock;
    struct Rate {
        int atOnce = 1;
        std::chrono::milliseconds oneMoreAfter{1000};
    };
    /// Users remembered; beyond it, those who asked longest ago are forgotten.
    static constexpr std::size_t kMostUsers = 1024;

    explicit RequestLimits(Rate rate) : m_rate(rate) {}

    /// True, and one request used up, when the user has one left at `now`.
    bool take(std::uint32_t uid, Clock::time_point now = Clock::now());

private:
    Rate m_rate;
    /// When the user would have all requests back.
    std::map<std::uint32_t, Clock::time_point> m_fullAgain;
};

} // namespace korvale::agent
