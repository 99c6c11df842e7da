#include "agent/quarantine/SafeOpen.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <linux/openat2.h>
#include <sys/stat.h>
#include <sys/syscall.h>

namespace korvale::agent {
namespace {

UniqueFd openResolved(int folder, const std::string& path, int flags, std::uint64_t resolve) {
    open_how how{};
    how.flags = static_cast<std::uint64_t>(flags);
    how.resolve = resolve;
    long descriptor = -1;
    do { // EAGAIN: something was renamed meanwhile, which the kernel could not be sure of
        descriptor = ::syscall(SYS_openat2, folder, path.c_str(), &how, sizeof how);
    } while (descriptor < 0 && (errno == EAGAIN || errno == EINTR));
    return UniqueFd(static_cast<int>(descriptor));
}

} // namespace

UniqueFd openFolder(const std::string& path) {
    return openResolved(AT_FDCWD, path, O_RDONLY | O_DIRECTORY | O_CLOEXEC,
                        RESOLVE_NO_SYMLINKS | RESOLVE_NO_MAGICLINKS);
}

UniqueFd openRegular(int folder, const std::string& name) {
    constexpr int kFlags = O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
    constexpr std::uint64_t kResolve = RESOLVE_BENEATH | RESOLVE_NO_SYMLINKS;
    if (name.empty() || name.find('/') != std::string::npos || name == "." || name == "..") {
        errno = EINVAL;
        return {};
    }
    // What it is comes first: opening some devices does something.
    const UniqueFd place = openResolved(folder, name, O_PATH | O_NOFOLLOW | O_CLOEXEC, kResolve);
    struct stat status {};
    if (!place || ::fstat(place.get(), &status) != 0) {
        return {};
    }
    if (!S_ISREG(status.st_mode)) {
        errno = EINVAL;
        return {};
    }
    UniqueFd file = openResolved(folder, name, kFlags | O_NOATIME, kResolve);
    if (!file && errno == EPERM) {
        file = openResolved(folder, name, kFlags, kResolve);
    }
    struct stat opened {};
    if (file && (::fstat(file.get(), &opened) != 0 || !S_ISREG(opened.st_mode))) {
        errno = EINVAL;
        return {};
    }
    return file;
}

bool syncFolder(int folder) {
    const UniqueFd readable(::openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    return readable && ::fsync(readable.get()) == 0;
}

bool moveName(int fromFolder, const std::string& from, int toFolder, const std::string& to) {
    return ::renameat2(fromFolder, from.c_str(), toFolder, to.c_str(), RENAME_NOREPLACE) == 0;
}

bool nameFile(int file, int folder, const std::string& name) {
    if (::linkat(file, "", folder, name.c_str(), AT_EMPTY_PATH) == 0) {
        return true;
    }
    if (errno != ENOENT) { // which is what it says without the capability
        return false;
    }
    const std::string place = "/proc/self/fd/" + std::to_string(file);
    return ::linkat(AT_FDCWD, place.c_str(), folder, name.c_str(), AT_SYMLINK_FOLLOW) == 0;
}

std::string folderOf(std::string_view path) {
    const std::size_t slash = path.rfind('/');
    return slash == 0 || slash == std::string_view::npos ? "/" : std::string(path.substr(0, slash));
}

std::string nameOf(std::string_view path) {
    const std::size_t slash = path.rfind('/');
    return std::string(slash == std::string_view::npos ? path : path.substr(slash + 1));
}

} // namespace korvale::agent
