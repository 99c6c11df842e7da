#pragma once

#include "agent/base/UniqueFd.h"
#include "agent/watch/GuardMessages.h"

#include <memory>
#include <sys/types.h>

namespace korvale::agent {

/// The process that alone holds the descriptor by which the kernel asks whether programs may run.
/// Whatever happens to it or to the agent, the descriptor is closed soon, and then the kernel lets
/// everything run: it ends with the agent (even one that is killed), and the agent ends it when it
/// was stopped.
class GuardProcess {
public:
    /// Forks it. To be called on the main thread while there is no other one: its life hangs on
    /// that of the thread. Without the right to watch there is none, and `trouble` says so.
    [[nodiscard]] static GuardProcess start();
    /// Forks it again once it has ended, with a new socket and the same page. Does not wait: the
    /// guard's first note says whether it can do its work. To be called on the main thread, too,
    /// which may have others beside it by now. `ping`: the last one that was sent. False, with
    /// `trouble`, when it cannot be forked.
    bool restart(std::uint64_t ping);

    GuardProcess() = default;
    GuardProcess(GuardProcess&& other) noexcept;
    GuardProcess& operator=(GuardProcess&& other) noexcept;
    GuardProcess(const GuardProcess&) = delete;
    GuardProcess& operator=(const GuardProcess&) = delete;
    ~GuardProcess(); ///< ends it

    [[nodiscard]] bool isRunning() const { return m_pid > 0; }
    [[nodiscard]] pid_t pid() const { return m_pid; }
    /// For GuardOrder and GuardNote; does not block.
    [[nodiscard]] int socket() const { return m_socket ? m_socket->get() : -1; }
    /// The same for whoever may still need it when there is another guard.
    [[nodiscard]] std::shared_ptr<const UniqueFd> sharedSocket() const { return m_socket; }
    [[nodiscard]] GuardPage& page() const { return *m_page; }
    /// errno of what could not be done; 0 when it runs.
    [[nodiscard]] int trouble() const { return m_trouble; }

    /// What has become of it, without waiting. A stopped one is killed, and has ended soon.
    enum class State { Runs, Stopped, Ended };
    State look();
    void end(); ///< by SIGKILL; waits for its end a moment

private:
    void fork();

    pid_t m_pid = -1;
    std::shared_ptr<const UniqueFd> m_socket;
    GuardPage* m_page = nullptr; ///< mapped, shared
    int m_trouble = 0;
};

} // namespace korvale::agent
