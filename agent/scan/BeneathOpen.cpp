#include "agent/scan/BeneathOpen.h"

#include <cerrno>
#include <cstdint>
#include <fcntl.h>
#include <linux/openat2.h>
#include <sys/syscall.h>

namespace korvale::agent {

UniqueFd openBeneath(int folder, const char* name, int flags, bool otherFileSystems) {
    constexpr int tries = 8;
    open_how how{};
    how.flags = static_cast<std::uint64_t>(flags | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY);
    how.resolve = RESOLVE_BENEATH | RESOLVE_NO_SYMLINKS | RESOLVE_NO_MAGICLINKS;
    how.resolve |= otherFileSystems ? 0 : RESOLVE_NO_XDEV;
    long descriptor = -1;
    // EAGAIN: something was renamed meanwhile, and the kernel could not tell whether it is beneath.
    for (int attempt = 0; attempt < tries && descriptor < 0; ++attempt) {
        descriptor = ::syscall(SYS_openat2, folder, name, &how, sizeof how);
        if (descriptor < 0 && errno != EAGAIN && errno != EINTR) {
            break;
        }
    }
    return UniqueFd(static_cast<int>(descriptor));
}

} // namespace korvale::agent
