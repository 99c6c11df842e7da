#pragma once

#include "agent/fakes/ScratchFolder.h"

#include <string>
#include <sys/types.h>

namespace korvale::agent {

/// The machine's own clamd with a few signatures of the test's own, on a socket of its own.
class RealClamd {
public:
    static constexpr const char* program = "/usr/sbin/clamd";

    /// `options`: further lines of its configuration. Signatures: the EICAR text, and every file
    /// whose content is one of the markers below.
    explicit RealClamd(const std::string& options = {});
    ~RealClamd() { end(); }
    RealClamd(const RealClamd&) = delete;
    RealClamd& operator=(const RealClamd&) = delete;

    static constexpr const char* badMarker = "korvale bad content marker 7c1f";
    static constexpr const char* heuristicMarker = "korvale heuristic content marker 88ab";
    static constexpr const char* unwantedMarker = "korvale unwanted content marker 3e90";

    void start(); ///< and waits until it answers
    void kill();  ///< SIGKILL: the socket file stays
    void end();
    void signal(int number) const;

    [[nodiscard]] std::string socket() const { return m_folder / "clamd.ctl"; }
    [[nodiscard]] std::string configuration() const { return m_folder / "clamd.conf"; }
    [[nodiscard]] std::string signatures() const { return m_folder / "signatures"; }
    [[nodiscard]] pid_t pid() const { return m_pid; }

private:
    ScratchFolder m_folder;
    pid_t m_pid = -1;
};

} // namespace korvale::agent
