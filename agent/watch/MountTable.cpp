#include "agent/watch/MountTable.h"

#include <algorithm>
#include <array>
#include <map>

namespace korvale::agent {
namespace {

// What holds no files that anybody stored, or is mounted by being looked at.
constexpr std::array<std::string_view, 25> kPseudo{
    "autofs", "binfmt_misc", "bpf",      "cgroup",  "cgroup2",    "configfs",   "debugfs",
    "devpts", "devtmpfs",    "efivarfs", "fusectl", "hugetlbfs",  "mqueue",     "nsfs",
    "nfsd",   "proc",        "pstore",   "ramfs",   "rpc_pipefs", "securityfs", "selinuxfs",
    "sysfs",  "tracefs",     "squashfs", "iso9660"};
constexpr std::array<std::string_view, 12> kRemote{
    "nfs", "nfs4", "cifs", "smb3", "smbfs", "9p", "ceph", "afs", "coda", "ncpfs", "ocfs2", "gfs2"};

template <std::size_t Size>
bool contains(const std::array<std::string_view, Size>& list, std::string_view type) {
    return std::find(list.begin(), list.end(), type) != list.end();
}

/// Blanks and the like stand there as \040.
std::string unescaped(std::string_view text) {
    const auto isOctal = [](char c) { return c >= '0' && c <= '7'; };
    std::string bytes;
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (text[at] == '\\' && at + 3 < text.size() &&
            std::all_of(text.begin() + static_cast<std::ptrdiff_t>(at) + 1,
                        text.begin() + static_cast<std::ptrdiff_t>(at) + 4, isOctal)) {
            bytes += static_cast<char>(((text[at + 1] - '0') << 6) | ((text[at + 2] - '0') << 3) |
                                       (text[at + 3] - '0'));
            at += 3;
        } else {
            bytes += text[at];
        }
    }
    return bytes;
}

std::vector<std::string_view> wordsOf(std::string_view line) {
    std::vector<std::string_view> words;
    while (!line.empty()) {
        const std::size_t end = std::min(line.find(' '), line.size());
        words.push_back(line.substr(0, end));
        line.remove_prefix(std::min(end + 1, line.size()));
    }
    return words;
}

bool liesIn(std::string_view path, std::string_view folder) {
    return folder == "/" || (path.starts_with(folder) &&
                             (path.size() == folder.size() || path[folder.size()] == '/'));
}

} // namespace

std::vector<Mount> parseMounts(std::string_view text) {
    std::vector<Mount> mounts;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        const std::vector<std::string_view> words = wordsOf(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
        // Optional words stand between the options and a dash.
        const auto dash = std::find(words.begin(), words.end(), "-");
        if (words.size() >= 6 && dash != words.end() && dash + 1 != words.end()) {
            mounts.push_back({std::string(words[2]), unescaped(words[3]), unescaped(words[4]),
                              std::string(*(dash + 1))});
        }
    }
    return mounts;
}

std::vector<Mount> mountsOf(const std::vector<Mount>& mounts,
                            const std::vector<std::string>& folders) {
    std::vector<const Mount*> wanted;
    for (const std::string& folder : folders) {
        const Mount* around = nullptr;
        for (const Mount& mount : mounts) {
            if (mount.point != folder && liesIn(mount.point, folder)) {
                wanted.push_back(&mount);
            } else if (liesIn(folder, mount.point) &&
                       (around == nullptr || mount.point.size() >= around->point.size())) {
                around = &mount; // the later one hides the earlier one
            }
        }
        if (around != nullptr) {
            wanted.push_back(around);
        }
    }
    std::map<std::string, Mount> byDevice;
    for (const Mount* mount : wanted) {
        const auto [place, added] = byDevice.try_emplace(mount->device, *mount);
        if (!added && place->second.root != "/" && mount->root == "/") {
            place->second = *mount;
        }
    }
    std::vector<Mount> chosen;
    for (const auto& [device, mount] : byDevice) {
        if (!contains(kPseudo, mount.type)) {
            chosen.push_back(mount);
        }
    }
    return chosen;
}

bool isLocalType(std::string_view type) {
    return !contains(kRemote, type) && type != "fuse" && !type.starts_with("fuse.");
}

} // namespace korvale::agent
