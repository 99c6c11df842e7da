#pragma once

#include "agent/base/UniqueFd.h"
#include "agent/engine/ClamdReplies.h"

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <unordered_set>
#include <vector>

namespace korvale::agent {

/// One connection to clamd in which files are asked for by descriptor ("IDSESSION" of "FILDES"
/// commands). Never waits but for the connection; one thread at a time, except descriptor().
class ClamdSession {
public:
    enum class Sent {
        Yes,
        Full,    ///< clamd does not read: poll for POLLOUT, try again
        BadFile, ///< the descriptor cannot be passed
        Broken,
    };

    /// Null and a sentence in `error` when there is nobody, or nobody who accepts until `deadline`.
    static std::unique_ptr<ClamdSession> open(const std::string& socketPath,
                                              std::chrono::steady_clock::time_point deadline,
                                              std::string& error);
    ~ClamdSession(); ///< says good-bye; clamd finishes what it has begun
    ClamdSession(const ClamdSession&) = delete;
    ClamdSession& operator=(const ClamdSession&) = delete;

    /// For poll(); ends the poll of another thread through hangUp().
    [[nodiscard]] int descriptor() const { return m_socket.get(); }

    /// Asks for a file, and on Sent::Yes says by which number the reply will come.
    Sent ask(int file, std::uint32_t& number);

    /// Appends the replies that are there, which come in any order. False when the session is over:
    /// closed, in error, or clamd wrote what it cannot have meant (`fault()`).
    [[nodiscard]] bool receive(std::vector<ClamdReply>& replies);

    [[nodiscard]] std::size_t unanswered() const { return m_unanswered.size(); }
    [[nodiscard]] const std::string& fault() const { return m_fault; }

    void hangUp(); ///< any thread: everybody who polls the descriptor wakes

private:
    explicit ClamdSession(UniqueFd socket) : m_socket(std::move(socket)) {}
    bool accept(std::string_view bytes, std::vector<ClamdReply>& replies);
    bool over(std::string fault);

    UniqueFd m_socket;
    ClamdReplies m_replies;
    std::uint32_t m_lastNumber = 0;
    std::unordered_set<std::uint32_t> m_unanswered;
    std::string m_fault;
};

} // namespace korvale::agent
