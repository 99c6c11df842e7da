#include "agent/quarantine/FileTraits.h"

#include "agent/store/QuarantineRecord.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>
#include <vector>

namespace korvale::agent {
namespace {

constexpr std::uint32_t kHeldFast = FS_IMMUTABLE_FL | FS_APPEND_FL;
constexpr std::uint32_t kSettable =
    kHeldFast | FS_NODUMP_FL | FS_NOATIME_FL | FS_SYNC_FL | FS_DIRSYNC_FL;
constexpr std::int64_t kNanosecondsPerSecond = 1'000'000'000;

std::int64_t nanoseconds(const timespec& time) {
    return time.tv_sec * kNanosecondsPerSecond + time.tv_nsec;
}

timespec timeOf(std::int64_t nanoseconds) {
    std::int64_t rest = nanoseconds % kNanosecondsPerSecond;
    std::int64_t seconds = nanoseconds / kNanosecondsPerSecond;
    if (rest < 0) { // before 1970
        rest += kNanosecondsPerSecond;
        --seconds;
    }
    return {seconds, rest};
}

/// What the f…xattr calls give: asked for its size first, again while it grows meanwhile.
template <typename Ask>
bool askForBytes(Ask ask, std::string& bytes) {
    for (;;) {
        const ssize_t size = ask(nullptr, 0);
        if (size <= 0) {
            bytes.clear();
            return size == 0;
        }
        bytes.resize(static_cast<std::size_t>(size));
        const ssize_t got = ask(bytes.data(), bytes.size());
        if (got >= 0) {
            bytes.resize(static_cast<std::size_t>(got));
            return true;
        }
        if (errno != ERANGE) {
            return false;
        }
    }
}

bool captureAttributes(int descriptor, std::vector<ExtendedAttribute>& attributes) {
    std::string names;
    if (!askForBytes([&](char* at, std::size_t size) { return ::flistxattr(descriptor, at, size); },
                     names)) {
        return errno == ENOTSUP;
    }
    for (std::size_t begin = 0; begin < names.size();) {
        const std::string name = names.c_str() + begin;
        begin += name.size() + 1;
        std::string value;
        if (askForBytes(
                [&](char* at, std::size_t size) {
                    return ::fgetxattr(descriptor, name.c_str(), at, size);
                },
                value)) {
            attributes.push_back({name, value});
        } else if (errno != ENODATA && errno != ENOTSUP) { // taken away meanwhile
            return false;
        }
    }
    return true;
}

} // namespace

bool captureTraits(int descriptor, QuarantineRecord& record) {
    struct stat status {};
    if (::fstat(descriptor, &status) != 0) {
        return false;
    }
    record.mode = status.st_mode & 07777U;
    record.owner = status.st_uid;
    record.group = status.st_gid;
    record.accessedNs = nanoseconds(status.st_atim);
    record.modifiedNs = nanoseconds(status.st_mtim);
    unsigned int flags = 0;
    record.inodeFlags = ::ioctl(descriptor, FS_IOC_GETFLAGS, &flags) == 0 ? flags : 0;
    record.attributes.clear();
    return captureAttributes(descriptor, record.attributes);
}

std::string applyTraits(int descriptor, const QuarantineRecord& record) {
    std::string trouble;
    const auto note = [&](const std::string& what) {
        trouble +=
            (trouble.empty() ? "Not restored: " : ", ") + what + " (" + std::strerror(errno) + ")";
    };
    std::uint32_t mode = record.mode;
    if (::fchown(descriptor, record.owner, record.group) != 0) {
        note("owner");
        mode &= 0777U; // set-user-id for another owner would be a gift
    }
    if (::fchmod(descriptor, mode) != 0) {
        note("mode");
    }
    // After owner and mode, which take capabilities away and change access lists.
    for (const ExtendedAttribute& attribute : record.attributes) {
        if (::fsetxattr(descriptor, attribute.name.c_str(), attribute.value.data(),
                        attribute.value.size(), 0) != 0) {
            note(attribute.name);
        }
    }
    const timespec times[2] = {timeOf(record.accessedNs), timeOf(record.modifiedNs)};
    if (::futimens(descriptor, times) != 0) {
        note("times");
    }
    return trouble;
}

bool isHeldFast(std::uint32_t inodeFlags) {
    return (inodeFlags & kHeldFast) != 0;
}

bool loosen(int descriptor, std::uint32_t inodeFlags) {
    unsigned int flags = inodeFlags & ~kHeldFast;
    return ::ioctl(descriptor, FS_IOC_SETFLAGS, &flags) == 0;
}

bool applyFlags(int descriptor, std::uint32_t inodeFlags) {
    unsigned int flags = 0;
    if ((inodeFlags & kSettable) == 0) {
        return true;
    }
    if (::ioctl(descriptor, FS_IOC_GETFLAGS, &flags) != 0) {
        return false;
    }
    flags = (flags & ~kSettable) | (inodeFlags & kSettable);
    return ::ioctl(descriptor, FS_IOC_SETFLAGS, &flags) == 0;
}

} // namespace korvale::agent
