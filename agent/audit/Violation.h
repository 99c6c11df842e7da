#pragma once

#include "agent/audit/AuditRecord.h"

#include <optional>
#include <string>
#include <sys/types.h>

namespace korvale::agent {

/// A process that did what its own rules forbid.
struct Violation {
    pid_t process = 0;
    std::string program;     ///< its path if known, else its name; raw bytes, never empty
    bool terminated = false; ///< killed for it; else refused
    std::string deed;        ///< what it tried, for the log; raw bytes

    friend bool operator==(const Violation&, const Violation&) = default;
};

/// What a record says of a process that was killed by its system call filter (seccomp), or killed
/// or refused something by its AppArmor profile. No value for all others: what was only logged, and
/// records without a process.
[[nodiscard]] std::optional<Violation> violationOf(const AuditRecord& record);

} // namespace korvale::agent
