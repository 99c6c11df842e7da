#include "agent/base/FileIdentity.h"

#include "agent/base/FileSystemFacts.h"

#include <sys/stat.h>

namespace korvale::agent {
namespace {

std::int64_t nanoseconds(const timespec& time) {
    // Times that a damaged file system makes up must not overflow.
    std::int64_t seconds = 0;
    if (__builtin_mul_overflow(static_cast<std::int64_t>(time.tv_sec), 1'000'000'000, &seconds)) {
        return 0;
    }
    return seconds + time.tv_nsec;
}

} // namespace

FileIdentity identityOf(const struct stat& status, std::uint64_t fileSystem) {
    return {fileSystem, status.st_ino, status.st_size, nanoseconds(status.st_ctim),
            nanoseconds(status.st_mtim)};
}

std::optional<FileIdentity> identify(int descriptor) {
    struct stat status {};
    const auto facts = fileSystemFacts(descriptor);
    if (!facts || ::fstat(descriptor, &status) != 0) {
        return std::nullopt;
    }
    return identityOf(status, facts->id);
}

} // namespace korvale::agent
