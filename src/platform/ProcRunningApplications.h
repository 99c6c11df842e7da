#pragma once

#include "platform/DesktopEntryIndex.h"
#include "platform/RunningApplications.h"

#include <QByteArray>

#include <map>
#include <optional>
#include <string>
#include <sys/types.h>

namespace korvale {

/// The running applications as /proc tells them. A process is left out only when systemd's control
/// groups say that it belongs to another login session; what the user's service manager started
/// belongs to every session of the user. What runs with more rights than the user hides its
/// executable; it goes by the name it has in /proc.
class ProcRunningApplications final : public RunningApplications {
public:
    struct Place {
        std::string proc = "/proc";
        uid_t user;         ///< whose processes
        QByteArray session; ///< login session's number; empty: unknown, nothing is left out
        uid_t root = 0;     ///< whose rights a set-user-ID program runs with
    };

    /// This process's user and session.
    [[nodiscard]] static Place thisProcess();

    explicit ProcRunningApplications(
        Place place = thisProcess(),
        DesktopEntryIndex::Sources entries = DesktopEntryIndex::environment());

    [[nodiscard]] std::vector<RunningApplication> list() const override;

private:
    /// The process that stands for an application so far. When it started is only asked for where
    /// another process shares its executable.
    struct Oldest {
        std::string name;
        pid_t pid;
        std::optional<unsigned long long> start;
    };
    using Executables = std::map<std::string, Oldest>;

    [[nodiscard]] Executables executables() const;
    /// Whether the process, a folder of /proc, belongs to another login session.
    [[nodiscard]] bool isElsewhere(const std::string& process) const;

    Place m_place;
    DesktopEntryIndex::Sources m_entries;
};

} // namespace korvale
