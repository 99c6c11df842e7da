#pragma once

#include <cstdint>
#include <sys/stat.h>

namespace korvale::agent {

/// A file in the state in which somebody wants to run it, as the guard knows it: only for the time
/// that the guard lives, hence the plain device number.
struct StartKey {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::int64_t size = 0;
    std::int64_t ctimeSeconds = 0;
    std::int64_t ctimeNanoseconds = 0;

    friend bool operator==(const StartKey&, const StartKey&) = default;
};

[[nodiscard]] inline StartKey startKeyOf(const struct stat& status) {
    return {status.st_dev, status.st_ino, status.st_size, status.st_ctim.tv_sec,
            status.st_ctim.tv_nsec};
}

} // namespace korvale::agent
