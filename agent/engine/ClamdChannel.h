#pragma once

#include "agent/engine/ClamdSession.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <stop_token>
#include <string>
#include <unordered_map>
#include <vector>

namespace korvale::agent {

/// A session with clamd that several threads share: each asks for a file and waits, and one of
/// those who wait reads for all. So there is no thread that would wake for nothing. Reconnects when
/// it is used. Any thread.
class ClamdChannel {
public:
    using TimePoint = std::chrono::steady_clock::time_point;

    enum class Outcome {
        Answered,
        Lost,        ///< the session broke while clamd had this file: it may be the reason
        Dropped,     ///< the session was given up for another file's sake: ask again
        TimedOut,    ///< no reply until the deadline
        Stopped,     ///< as was asked
        Unreachable, ///< nobody accepts a connection
        BadFile,     ///< the descriptor cannot be passed
    };

    struct Answer {
        Outcome outcome = Outcome::Unreachable;
        std::string text; ///< the reply, or what went wrong
    };

    /// `depth`: how many files may be in clamd's hands at a time; further callers wait.
    ClamdChannel(std::string socketPath, std::size_t depth);
    ClamdChannel(const ClamdChannel&) = delete;
    ClamdChannel& operator=(const ClamdChannel&) = delete;

    /// Borrows the descriptor until it returns. Stopping takes effect within a fifth of a second.
    Answer ask(int file, TimePoint deadline, const std::stop_token& stop);

    /// How many callers are inside; a hint.
    [[nodiscard]] std::size_t load() const { return m_load.load(std::memory_order_relaxed); }

    /// Gives up a session that nobody has used for `time`: clamd serves few at once.
    void closeIfIdle(std::chrono::milliseconds time);

private:
    struct Ticket {
        std::condition_variable changed;
        bool settled = false;
        Answer answer;
    };
    using Lock = std::unique_lock<std::mutex>;
    using SessionPtr = std::shared_ptr<ClamdSession>;

    Answer askLocked(Lock& lock, int file, TimePoint deadline, const std::stop_token& stop);
    bool waitForTurn(Lock& lock, TimePoint deadline, const std::stop_token& stop);
    bool connect(Lock& lock, TimePoint deadline, const std::stop_token& stop, std::string& error);
    ClamdSession::Sent send(Lock& lock, int file, TimePoint deadline, const std::stop_token& stop,
                            Ticket& ticket, std::uint32_t& number);
    Answer wait(Lock& lock, Ticket& ticket, std::uint32_t number, TimePoint deadline,
                const std::stop_token& stop);
    void readForAll(Lock& lock, TimePoint deadline);
    void takeReplies();
    void giveUp(Outcome outcome, const std::string& why);
    void handOver();

    const std::string m_socketPath;
    const std::size_t m_depth;
    std::atomic<std::size_t> m_load = 0;

    std::mutex m_mutex;
    std::condition_variable m_turn;
    std::condition_variable m_connected; ///< or failed to
    SessionPtr m_session;
    std::unordered_map<std::uint32_t, Ticket*> m_tickets; ///< of this session, by number
    std::size_t m_asking = 0;                             ///< callers who have a turn
    bool m_reading = false;                               ///< somebody polls the session
    bool m_connecting = false;                            ///< somebody opens one
    TimePoint m_lastUse;
};

} // namespace korvale::agent
