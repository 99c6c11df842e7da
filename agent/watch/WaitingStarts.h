#pragma once

#include "agent/watch/StartKey.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace korvale::agent {

/// Programs that wait for a verdict before they run: few, each until its own deadline. Allocates
/// nothing. One thread. Times are nanoseconds of any one clock.
class WaitingStarts {
public:
    static constexpr std::size_t capacity = 64;
    static constexpr std::int64_t never = -1;

    struct Start {
        int descriptor = -1; ///< the kernel's; -1: a free place
        std::uint64_t token = 0;
        std::int64_t deadline = 0;
        StartKey key;
    };

    [[nodiscard]] bool isFull() const { return m_count == capacity; }
    [[nodiscard]] bool isEmpty() const { return m_count == 0; }
    /// The token under which this very state of a file is being asked for already; 0: it is not.
    [[nodiscard]] std::uint64_t tokenOf(const StartKey& key) const;
    /// There must be room.
    void add(const Start& start);
    /// The earliest deadline, or `never`.
    [[nodiscard]] std::int64_t nextDeadline() const;
    /// The key that was asked for; null: nobody waits for it any more.
    [[nodiscard]] const StartKey* keyOf(std::uint64_t token) const;

    /// Takes one that waits for this token, or whose deadline has come, or any; its descriptor is
    /// -1 when there is none.
    [[nodiscard]] Start takeAnswered(std::uint64_t token);
    [[nodiscard]] Start takeExpired(std::int64_t now);
    [[nodiscard]] Start takeAny();

private:
    template <typename Fits>
    Start take(Fits fits);

    std::array<Start, capacity> m_starts;
    std::size_t m_count = 0;
};

} // namespace korvale::agent
