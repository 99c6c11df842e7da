#pragma once

#include "agent/base/UniqueFd.h"
#include "agent/watch/GuardMessages.h"
#include "agent/watch/KnownStarts.h"
#include "agent/watch/WaitingStarts.h"

#include <cstddef>
#include <cstdint>

struct fanotify_event_metadata;

namespace korvale::agent {

/// Answers the kernel whether programs may run: the whole work of the guard process. It opens,
/// allocates, logs and locks nothing, and waits for nothing but the next event; each program waits
/// at most until its deadline, and then runs.
class GuardLoop {
public:
    /// How long a program waits for a verdict.
    static constexpr std::int64_t deadline = 2'000'000'000; // nanoseconds
    /// After so many deadlines in a row nobody waits any more, until the agent speaks.
    static constexpr int patience = 3;

    /// `socket` leads to the agent, `group` to the kernel; both are borrowed and do not block.
    /// `known` and `page` are borrowed, too.
    GuardLoop(int socket, int group, GuardPage& page, KnownStarts& known);

    /// Returns when the agent is gone, or the kernel cannot be heard any more.
    void run();

private:
    [[nodiscard]] int pollTime() const; ///< milliseconds, for poll()
    bool takeEvents();
    void takeStart(const fanotify_event_metadata& event);
    [[nodiscard]] bool isExempt(pid_t process) const;
    bool ask(int descriptor, std::uint64_t token);
    bool takeOrders();
    void obey(const GuardOrder& order, UniqueFd passed);
    void takeAnswer(const GuardOrder& order);
    void expire();
    void letAllRun();
    void respond(int descriptor, bool allow);
    void note(const GuardNote& note);

    const int m_socket;
    const int m_group;
    GuardPage& m_page;
    KnownStarts& m_known;
    WaitingStarts m_waiting;
    std::array<pid_t, GuardOrder::exemptions> m_exempt{};
    std::uint64_t m_lastToken = 0;
    std::uint32_t m_generation = 0;
    int m_missed = 0;      ///< deadlines in a row
    bool m_asleep = false; ///< the machine is about to sleep
};

} // namespace korvale::agent
