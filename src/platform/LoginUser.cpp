#include "platform/LoginUser.h"

#include <pwd.h>
#include <unistd.h>
#include <vector>

namespace korvale {

std::uint32_t userId(const char* name) {
    const long size = ::sysconf(_SC_GETPW_R_SIZE_MAX);
    if (size <= 0) {
        return 0;
    }
    std::vector<char> scratch(static_cast<std::size_t>(size));
    passwd entry{};
    passwd* found = nullptr;
    if (::getpwnam_r(name, &entry, scratch.data(), scratch.size(), &found) != 0 ||
        found == nullptr) {
        return 0;
    }
    return entry.pw_uid;
}

std::uint32_t getCurrentLoginUID() {
    const char* name = ::getlogin(); // NOLINT(concurrency-mt-unsafe): main thread only
    return name == nullptr ? 0 : userId(name);
}

} // namespace korvale
