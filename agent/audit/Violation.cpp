#include "agent/audit/Violation.h"

#include <initializer_list>
#include <limits>
#include <linux/audit.h>
#include <linux/seccomp.h>

namespace korvale::agent {
namespace {

pid_t processOf(const AuditRecord& record) {
    const std::uint64_t number = record.number("pid").value_or(0);
    const bool fits = number <= std::uint64_t{std::numeric_limits<pid_t>::max()};
    return fits ? static_cast<pid_t>(number) : 0;
}

/// The first of these that is there and says something.
std::string firstOf(const AuditRecord& record, std::initializer_list<const char*> names) {
    for (const char* const name : names) {
        std::string text = record.text(name).value_or(std::string());
        if (!text.empty()) {
            return text;
        }
    }
    return {};
}

bool isKilled(const AuditRecord& record) {
    // With other codes the call was refused or only logged, as the program itself had asked for.
    const std::optional<std::uint64_t> code = record.number("code");
    return code && ((*code & SECCOMP_RET_ACTION_FULL) == SECCOMP_RET_KILL_PROCESS ||
                    (*code & SECCOMP_RET_ACTION_FULL) == SECCOMP_RET_KILL_THREAD);
}

Violation filtered(const AuditRecord& record) {
    Violation violation{processOf(record), firstOf(record, {"exe", "comm"}), true, "system call "};
    violation.deed += record.plain("syscall").value_or("unknown");
    return violation;
}

/// AppArmor's records do not name the executable. Most profiles are named after it; the parts of
/// one
/// ("/usr/bin/man//filter") belong to the same program.
std::string confinedProgram(const AuditRecord& record) {
    std::string profile = record.text("profile").value_or(std::string());
    if (!profile.starts_with('/')) {
        profile.clear();
    }
    profile.erase(std::min(profile.find("//"), profile.size()));
    return profile.empty() ? firstOf(record, {"comm", "profile"}) : profile;
}

Violation confined(const AuditRecord& record, bool killed) {
    Violation violation{processOf(record), confinedProgram(record), killed, {}};
    violation.deed = firstOf(record, {"operation"});
    const std::string target = firstOf(record, {"name", "capname", "peer"});
    violation.deed += target.empty() ? target : ' ' + target;
    return violation;
}

} // namespace

std::optional<Violation> violationOf(const AuditRecord& record) {
    std::optional<Violation> violation;
    if (record.type == AUDIT_SECCOMP && isKilled(record)) {
        violation = filtered(record);
    } else if (record.type == AUDIT_AVC) {
        const std::string outcome = record.text("apparmor").value_or(std::string());
        if (outcome == "DENIED" || outcome == "KILLED") {
            violation = confined(record, outcome == "KILLED");
        }
    }
    return violation && violation->process > 0 && !violation->program.empty() ? violation
                                                                              : std::nullopt;
}

} // namespace korvale::agent
