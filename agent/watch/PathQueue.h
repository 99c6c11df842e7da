#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace korvale::agent {

/// What is to be looked at, each path once however often it is added before its turn. A path that
/// was looked at a moment ago waits: a file that is written all the time must not be judged all the
/// time. Any thread.
class PathQueue {
public:
    using TimePoint = std::chrono::steady_clock::time_point;

    static constexpr std::size_t capacity = 50'000;
    static constexpr std::chrono::seconds pause{1};

    struct Job {
        std::string path;
        bool isTree = false; ///< everything in it
    };

    /// False: there is no room.
    [[nodiscard]] bool add(Job job);
    /// Waits for the next one. No value: closed.
    [[nodiscard]] std::optional<Job> pop();
    void close();
    [[nodiscard]] std::size_t size() const;

private:
    void forgetOld(TimePoint now);

    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    std::map<std::pair<TimePoint, std::uint64_t>, Job> m_jobs; ///< by the time they may be taken
    std::unordered_set<std::string> m_waiting;           ///< their paths, trees with "/" behind
    std::unordered_map<std::string, TimePoint> m_recent; ///< when a path was taken last
    std::uint64_t m_next = 0;
    bool m_closed = false;
};

} // namespace korvale::agent
