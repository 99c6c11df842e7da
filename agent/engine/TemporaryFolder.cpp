#include "agent/engine/TemporaryFolder.h"

#include "agent/base/Log.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <sys/statvfs.h>

namespace korvale::agent {
namespace {

constexpr fsblkcnt_t kLeastBytes = fsblkcnt_t{1} << 20;
/// For every thread of clamd and every level that it unpacks; a small file system has fewer.
constexpr fsfilcnt_t kLeastInodes = 512;

} // namespace

std::string temporaryFolderTrouble(const std::string& folder) {
    struct statvfs room {}; // a file system without bounds has no blocks, or no inodes, at all
    std::string why;
    if (::statvfs(folder.c_str(), &room) != 0) {
        why = std::strerror(errno);
    } else if ((room.f_flag & ST_RDONLY) != 0) {
        why = "it cannot be written to";
    } else if (room.f_blocks > 0 && room.f_bavail * room.f_frsize < kLeastBytes) {
        why = "its file system is full";
    } else if (room.f_files > 0 && room.f_favail < std::min(kLeastInodes, room.f_files / 4)) {
        why = "its file system has no room for further files";
    } else {
        return {};
    }
    return "The engine cannot scan in its temporary folder " + printable(folder) + ": " + why + '.';
}

} // namespace korvale::agent
