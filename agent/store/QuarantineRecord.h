#pragma once

#include "agent/base/FileIdentity.h"

#include <cstdint>
#include <string>
#include <vector>

namespace korvale::agent {

/// Numbers are stored: never renumber.
enum class QuarantineState : int {
    Prepared = 0, ///< a copy is (or may be) in the vault, the file may still lie where it was
    Taken = 1,    ///< the file is only in the vault
    Restored = 2, ///< it lies in the file system again
    Removed = 3,  ///< the copy in the vault was deleted
};

struct ExtendedAttribute {
    std::string name;  ///< with its name space: "user.comment", "system.posix_acl_access"
    std::string value; ///< raw bytes

    friend bool operator==(const ExtendedAttribute&, const ExtendedAttribute&) = default;
};

/// Everything that is needed to put a file back as it was.
struct QuarantineRecord {
    std::string id;           ///< 32 hex digits, random; also the name of the copy in the vault
    std::int64_t finding = 0; ///< number of the finding it belongs to
    std::string path;         ///< where it was: absolute, raw bytes
    std::string sha256;       ///< of the content, 64 hex digits
    FileIdentity judged;      ///< which file was taken
    std::uint32_t mode = 0;   ///< permission bits only, 07777
    std::uint32_t owner = 0;
    std::uint32_t group = 0;
    std::int64_t accessedNs = 0; ///< times since 1970
    std::int64_t modifiedNs = 0;
    std::uint32_t inodeFlags = 0;              ///< as FS_IOC_GETFLAGS gives them; 0: unknown
    std::vector<ExtendedAttribute> attributes; ///< access lists and capabilities among them
    std::uint32_t otherNames = 0;              ///< hard links that remained elsewhere
    std::int64_t since = 0;                    ///< wall clock, seconds
    QuarantineState state = QuarantineState::Prepared;

    friend bool operator==(const QuarantineRecord&, const QuarantineRecord&) = default;
};

} // namespace korvale::agent
