#pragma once

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <linux/audit.h>
#include <linux/filter.h>
#include <linux/netlink.h>
#include <linux/seccomp.h>
#include <poll.h>
#include <string>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace korvale::agent {

/// Gives the calling process a system call filter with that answer to getppid(), and calls that.
inline void breakOwnRule(std::uint32_t answer) {
    ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
    std::array<sock_filter, 4> steps{
        sock_filter{BPF_LD | BPF_W | BPF_ABS, 0, 0, offsetof(seccomp_data, nr)},
        sock_filter{BPF_JMP | BPF_JEQ | BPF_K, 0, 1, SYS_getppid},
        sock_filter{BPF_RET | BPF_K, 0, 0, answer},
        sock_filter{BPF_RET | BPF_K, 0, 0, SECCOMP_RET_ALLOW}};
    const sock_fprog filter{steps.size(), steps.data()};
    ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &filter);
    ::syscall(SYS_getppid);
}

/// A process with that name, killed by its own filter; its number.
inline pid_t killedProcess(const char* name, std::uint32_t answer = SECCOMP_RET_KILL_PROCESS) {
    const pid_t child = ::fork();
    if (child == 0) {
        ::prctl(PR_SET_NAME, name);
        breakOwnRule(answer);
        ::_exit(0);
    }
    ::waitpid(child, nullptr, 0);
    return child;
}

/// Why nobody here hears of killed processes; empty: the kernel tells. Looked at without the code
/// that is tested.
inline std::string auditStreamTrouble() {
    const int stream = ::socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC, NETLINK_AUDIT);
    sockaddr_nl group{};
    group.nl_family = AF_NETLINK;
    group.nl_groups = 1;
    const void* const address = &group;
    std::string why;
    if (stream < 0 || ::bind(stream, static_cast<const sockaddr*>(address), sizeof group) != 0) {
        why = std::strerror(errno);
    } else {
        killedProcess("control");
        pollfd waitFor{stream, POLLIN, 0};
        why = ::poll(&waitFor, 1, 5000) == 1 ? "" : "the kernel tells nothing here";
    }
    ::close(stream);
    return why;
}

} // namespace korvale::agent
