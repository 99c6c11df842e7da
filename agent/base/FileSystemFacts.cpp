#include "agent/base/FileSystemFacts.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <linux/magic.h>
#include <sys/vfs.h>

namespace korvale::agent {
namespace {

constexpr std::uint64_t kMqueue = 0x19800202; // this and the next are not in linux/magic.h
constexpr std::uint64_t kConfig = 0x62656570;
constexpr std::uint64_t kRpcPipe = 0x67596969;
constexpr std::uint64_t kFuseControl = 0x65735543;

constexpr std::array<std::uint64_t, 22> kPseudo{
    PROC_SUPER_MAGIC,
    SYSFS_MAGIC,
    CGROUP_SUPER_MAGIC,
    CGROUP2_SUPER_MAGIC,
    DEVPTS_SUPER_MAGIC,
    DEBUGFS_MAGIC,
    TRACEFS_MAGIC,
    SECURITYFS_MAGIC,
    PSTOREFS_MAGIC,
    BPF_FS_MAGIC,
    HUGETLBFS_MAGIC,
    AUTOFS_SUPER_MAGIC,
    BINFMTFS_MAGIC,
    EFIVARFS_MAGIC,
    SELINUX_MAGIC,
    SMACK_MAGIC,
    NSFS_MAGIC,
    PIPEFS_MAGIC,
    kMqueue,
    kConfig,
    kRpcPipe,
    kFuseControl,
};

constexpr std::uint64_t kXfs = XFS_SUPER_MAGIC;
constexpr std::uint64_t kBcachefs = 0xca451a4e;
constexpr std::uint64_t kZfs = 0x2fc12fc1;

// The others have reasons not to stand here: a shared mapping changes a file on tmpfs without any
// trace in its ctime, FAT keeps times of two seconds, network and FUSE file systems believe what
// somebody else says.
constexpr std::array<std::uint64_t, 7> kHonest{
    EXT4_SUPER_MAGIC,      BTRFS_SUPER_MAGIC, kXfs, F2FS_SUPER_MAGIC, kBcachefs, kZfs,
    OVERLAYFS_SUPER_MAGIC,
};

template <std::size_t Size>
bool contains(const std::array<std::uint64_t, Size>& list, std::uint64_t magic) {
    return std::find(list.begin(), list.end(), magic) != list.end();
}

} // namespace

std::optional<FileSystemFacts> fileSystemFacts(int descriptor) {
    struct statfs status {};
    while (::fstatfs(descriptor, &status) != 0) {
        if (errno != EINTR) {
            return std::nullopt;
        }
    }
    FileSystemFacts facts;
    static_assert(sizeof status.f_fsid == sizeof facts.id);
    std::memcpy(&facts.id, &status.f_fsid, sizeof facts.id);
    const auto magic = static_cast<std::uint64_t>(static_cast<std::uint32_t>(status.f_type));
    facts.pseudo = contains(kPseudo, magic);
    facts.keepsVerdicts = facts.id != 0 && contains(kHonest, magic);
    return facts;
}

} // namespace korvale::agent
