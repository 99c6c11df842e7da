#include "agent/engine/ClamdChannel.h"

#include "agent/base/Log.h"
#include "agent/engine/LocalSocket.h"

#include <poll.h>

namespace korvale::agent {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

// How long nobody looks whether a stop was requested.
constexpr std::chrono::milliseconds kPatience = 200ms;

class Counted {
public:
    explicit Counted(std::atomic<std::size_t>& count) : m_count(count) { ++m_count; }
    ~Counted() { --m_count; }
    Counted(const Counted&) = delete;
    Counted& operator=(const Counted&) = delete;

private:
    std::atomic<std::size_t>& m_count;
};

void pollFor(const ClamdSession& session, short events, ClamdChannel::TimePoint deadline) {
    pollfd entry{session.descriptor(), events, 0};
    ::poll(&entry, 1, pollTime(deadline, kPatience));
}

} // namespace

ClamdChannel::ClamdChannel(std::string socketPath, std::size_t depth)
    : m_socketPath(std::move(socketPath)), m_depth(depth) {}

ClamdChannel::Answer ClamdChannel::ask(int file, TimePoint deadline, const std::stop_token& stop) {
    const Counted counted(m_load);
    Lock lock(m_mutex);
    if (!waitForTurn(lock, deadline, stop)) {
        return {stop.stop_requested() ? Outcome::Stopped : Outcome::TimedOut,
                "too many files wait"};
    }
    ++m_asking;
    Answer answer = askLocked(lock, file, deadline, stop);
    m_lastUse = Clock::now();
    --m_asking;
    m_turn.notify_one();
    return answer;
}

bool ClamdChannel::waitForTurn(Lock& lock, TimePoint deadline, const std::stop_token& stop) {
    while (m_asking >= m_depth) {
        if (stop.stop_requested() || Clock::now() >= deadline) {
            return false;
        }
        m_turn.wait_until(lock, std::min(deadline, Clock::now() + kPatience));
    }
    return true;
}

ClamdChannel::Answer ClamdChannel::askLocked(Lock& lock, int file, TimePoint deadline,
                                             const std::stop_token& stop) {
    Ticket ticket;
    std::uint32_t number = 0;
    // A session that has lain idle may have been closed by clamd, which is nobody's fault.
    for (int attempt = 0;; ++attempt) {
        std::string error;
        if (!m_session && !connect(lock, deadline, stop, error)) {
            return {stop.stop_requested() ? Outcome::Stopped : Outcome::Unreachable, error};
        }
        const bool alone = m_tickets.empty();
        switch (send(lock, file, deadline, stop, ticket, number)) {
        case ClamdSession::Sent::Yes:
            return wait(lock, ticket, number, deadline, stop);
        case ClamdSession::Sent::BadFile:
            return {Outcome::BadFile, "the file cannot be passed to clamd"};
        case ClamdSession::Sent::Full:
            if (stop.stop_requested()) {
                return {Outcome::Stopped, {}};
            }
            giveUp(Outcome::Dropped, "clamd does not read");
            return {Outcome::TimedOut, "clamd does not read"};
        case ClamdSession::Sent::Broken:
            takeReplies(); // those that came before the end
            giveUp(Outcome::Lost, "clamd closed the session");
            if (!alone || attempt > 0) {
                return {Outcome::Dropped, "clamd closed the session"};
            }
        }
    }
}

bool ClamdChannel::connect(Lock& lock, TimePoint deadline, const std::stop_token& stop,
                           std::string& error) {
    // One connects for all: clamd serves few at once, and a second session would be thrown away.
    while (m_connecting) {
        if (stop.stop_requested() || Clock::now() >= deadline) {
            error = "no connection in time";
            return false;
        }
        m_connected.wait_until(lock, std::min(deadline, Clock::now() + kPatience));
    }
    if (m_session) {
        return true;
    }
    m_connecting = true;
    lock.unlock(); // the listener's queue may be full
    SessionPtr session = ClamdSession::open(m_socketPath, deadline, error);
    lock.lock();
    m_connecting = false;
    m_session = std::move(session);
    m_connected.notify_all();
    return m_session != nullptr;
}

ClamdSession::Sent ClamdChannel::send(Lock& lock, int file, TimePoint deadline,
                                      const std::stop_token& stop, Ticket& ticket,
                                      std::uint32_t& number) {
    while (true) {
        const SessionPtr session = m_session;
        if (!session) {
            return ClamdSession::Sent::Broken;
        }
        const ClamdSession::Sent sent = session->ask(file, number);
        if (sent == ClamdSession::Sent::Yes) {
            m_tickets.emplace(number, &ticket);
        }
        if (sent != ClamdSession::Sent::Full || stop.stop_requested() || Clock::now() >= deadline) {
            return sent;
        }
        lock.unlock();
        pollFor(*session, POLLOUT, deadline);
        lock.lock();
    }
}

ClamdChannel::Answer ClamdChannel::wait(Lock& lock, Ticket& ticket, std::uint32_t number,
                                        TimePoint deadline, const std::stop_token& stop) {
    while (!ticket.settled) {
        const bool stopped = stop.stop_requested();
        if (stopped || Clock::now() >= deadline) {
            m_tickets.erase(number); // its reply, if there ever is one, interests nobody
            if (!stopped) {
                giveUp(Outcome::Dropped, "clamd did not answer in time");
            }
            ticket.answer = {stopped ? Outcome::Stopped : Outcome::TimedOut,
                             "clamd did not answer in time"};
            break;
        }
        if (m_reading) {
            ticket.changed.wait_until(lock, std::min(deadline, Clock::now() + kPatience));
        } else {
            readForAll(lock, deadline);
        }
    }
    handOver();
    return std::move(ticket.answer);
}

void ClamdChannel::readForAll(Lock& lock, TimePoint deadline) {
    const SessionPtr session = m_session;
    m_reading = true;
    lock.unlock();
    pollFor(*session, POLLIN, deadline);
    lock.lock();
    m_reading = false;
    if (session == m_session) {
        takeReplies();
    }
}

void ClamdChannel::takeReplies() {
    std::vector<ClamdReply> replies;
    const SessionPtr session = m_session;
    if (!session) {
        return; // given up by somebody else meanwhile
    }
    const bool alive = session->receive(replies);
    for (ClamdReply& reply : replies) {
        const auto found = m_tickets.find(reply.number);
        if (found == m_tickets.end()) {
            continue; // of one who did not wait for it
        }
        Ticket& ticket = *found->second;
        ticket.answer = {Outcome::Answered, std::move(reply.text)};
        ticket.settled = true;
        ticket.changed.notify_one();
        m_tickets.erase(found);
    }
    if (!alive) {
        giveUp(Outcome::Lost, session->fault());
    }
}

void ClamdChannel::giveUp(Outcome outcome, const std::string& why) {
    if (!m_session) {
        return;
    }
    if (!m_tickets.empty()) {
        logDebug("clamd session given up with " + std::to_string(m_tickets.size()) +
                 " files: " + why);
    }
    m_session->hangUp();
    m_session.reset();
    for (const auto& [number, ticket] : m_tickets) {
        ticket->answer = {outcome, why};
        ticket->settled = true;
        ticket->changed.notify_one();
    }
    m_tickets.clear();
}

void ClamdChannel::handOver() {
    if (!m_reading && !m_tickets.empty()) {
        m_tickets.begin()->second->changed.notify_one();
    }
}

void ClamdChannel::closeIfIdle(std::chrono::milliseconds time) {
    const Lock lock(m_mutex);
    if (m_session && m_asking == 0 && Clock::now() - m_lastUse >= time) {
        m_session.reset();
    }
}

} // namespace korvale::agent
