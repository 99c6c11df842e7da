#pragma once

#include <cstdint>
#include <optional>

struct stat;

namespace korvale::agent {

/// Which file, and which state of it: equal identities mean the same content, where the file system
/// keeps an honest change time (FileSystemFacts::keepsVerdicts) and the change is not too young.
struct FileIdentity {
    std::uint64_t fileSystem = 0; ///< FileSystemFacts::id: stands over restarts, unlike st_dev
    std::uint64_t inode = 0;
    std::int64_t size = 0;    ///< bytes
    std::int64_t ctimeNs = 0; ///< since 1970; no program can set it, unlike mtime
    std::int64_t mtimeNs = 0; ///< since 1970

    friend bool operator==(const FileIdentity&, const FileIdentity&) = default;
};

/// What is behind an open descriptor (of any kind, O_PATH too). No value when it cannot be asked.
[[nodiscard]] std::optional<FileIdentity> identify(int descriptor);

/// The same from what fstat or fstatat told; `fileSystem` is FileSystemFacts::id.
[[nodiscard]] FileIdentity identityOf(const struct stat& status, std::uint64_t fileSystem);

} // namespace korvale::agent
