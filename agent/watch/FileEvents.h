#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <sys/types.h>
#include <vector>

namespace korvale::agent {

/// What the kernel says happened to a name in a folder of a watched file system.
struct FileEvent {
    std::uint64_t fileSystem = 0; ///< FileSystemFacts::id; 0 with a descriptor
    std::vector<char> folder;     ///< a struct file_handle; empty with a descriptor
    std::string name;             ///< in the folder
    pid_t process = 0;            ///< who did it
    bool isFolder = false;        ///< a whole folder was moved there
    int descriptor = -1;          ///< from groups that give descriptors: the caller closes it
};

struct FileEvents {
    std::vector<FileEvent> events;
    bool overflow = false; ///< the kernel dropped some before these
};

/// Takes apart what was read from a notification group (with folder handles and names, or with
/// descriptors). Whatever the bytes are, nothing is read beyond them; what is no event is dropped.
[[nodiscard]] FileEvents parseFileEvents(std::span<const char> bytes);

} // namespace korvale::agent
