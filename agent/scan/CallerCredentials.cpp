#include "agent/scan/CallerCredentials.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <linux/capability.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace korvale::agent {
namespace {

constexpr int kKeep = -1;

// The library's functions of these names change all threads; the kernel's change the caller's only.
bool setGroups(const std::vector<gid_t>& groups) {
    return ::syscall(SYS_setgroups, groups.size(), groups.data()) == 0;
}

bool setEffectiveGroup(gid_t group) {
    return ::syscall(SYS_setresgid, kKeep, group, kKeep) == 0;
}

bool setEffectiveUser(uid_t user) {
    return ::syscall(SYS_setresuid, kKeep, user, kKeep) == 0;
}

bool hasNoCapabilities() {
    __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
    std::array<__user_cap_data_struct, _LINUX_CAPABILITY_U32S_3> data{};
    return ::syscall(SYS_capget, &header, data.data()) == 0 && data[0].effective == 0 &&
           data[1].effective == 0;
}

} // namespace

bool assumeRightsOf(const CallerCredentials& caller, std::string& error) {
    if (caller.isRoot()) {
        return true;
    }
    if (caller.groups.empty()) {
        error = "the groups of the caller are not known";
        return false;
    }
    if (::geteuid() == caller.user && ::getuid() == caller.user) {
        return true; // an agent that is no service scans for its own user
    }
    if (!setGroups(caller.groups) || !setEffectiveGroup(caller.groups.front()) ||
        !setEffectiveUser(caller.user)) {
        error = std::string("the caller's rights cannot be assumed: ") + std::strerror(errno);
        return false;
    }
    if (!hasNoCapabilities()) {
        error = "the service's own rights cannot be laid down";
        return false;
    }
    return true;
}

OwnRights::OwnRights() : m_assumed(::geteuid()) {
    if (m_assumed != 0) {
        static_cast<void>(setEffectiveUser(0)); // fails where there was nothing to lay down
    }
}

OwnRights::~OwnRights() {
    if (m_assumed != 0 && ::geteuid() != m_assumed && !setEffectiveUser(m_assumed)) {
        std::abort(); // going on would read for the caller what only root may read
    }
}

} // namespace korvale::agent
