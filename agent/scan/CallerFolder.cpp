#include "agent/scan/CallerFolder.h"

#include "agent/base/Log.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <linux/openat2.h>
#include <sys/syscall.h>
#include <thread>

namespace korvale::agent {
namespace {

/// Where an open folder is. Empty when it has no name any more.
std::string pathOf(int descriptor) {
    std::array<char, 8192> buffer{};
    const std::string link = "/proc/self/fd/" + std::to_string(descriptor);
    const ssize_t length = ::readlink(link.c_str(), buffer.data(), buffer.size());
    if (length <= 0 || length == static_cast<ssize_t>(buffer.size()) || buffer[0] != '/') {
        return {};
    }
    return {buffer.data(), static_cast<std::size_t>(length)};
}

CallerFolder openIt(const std::string& path, const CallerCredentials& caller) {
    CallerFolder folder;
    if (!assumeRightsOf(caller, folder.error)) {
        return folder;
    }
    open_how how{};
    how.flags = O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK;
    how.resolve = RESOLVE_NO_MAGICLINKS; // /proc/PID/cwd leads where the caller may not go
    folder.descriptor.reset(
        static_cast<int>(::syscall(SYS_openat2, AT_FDCWD, path.c_str(), &how, sizeof how)));
    if (!folder.descriptor) {
        folder.error = printable(path) + ": " + std::strerror(errno);
    }
    return folder;
}

} // namespace

CallerFolder openCallerFolder(const std::string& path, const CallerCredentials& caller) {
    CallerFolder folder;
    if (!path.starts_with('/') || path.find('\0') != std::string::npos) {
        folder.error = printable(path) + ": not an absolute path";
        return folder;
    }
    std::thread([&] { folder = openIt(path, caller); }).join();
    if (folder.descriptor) {
        folder.path = pathOf(folder.descriptor.get());
        if (folder.path.empty()) {
            folder.descriptor.reset();
            folder.error = printable(path) + ": it has no name any more";
        }
    }
    return folder;
}

} // namespace korvale::agent
