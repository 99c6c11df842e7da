#include "agent/watch/FilePlaces.h"

#include <array>
#include <climits>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>

namespace korvale::agent {
namespace {

/// What /proc says of the place of a descriptor, which is a lie for what cannot be seen from here.
std::string placeOf(int descriptor) {
    std::array<char, PATH_MAX> target{};
    const std::string link = "/proc/self/fd/" + std::to_string(descriptor);
    const ssize_t length = ::readlink(link.c_str(), target.data(), target.size());
    return length <= 0 ? std::string()
                       : std::string(target.data(), static_cast<std::size_t>(length));
}

bool isSame(const struct stat& one, const struct stat& other) {
    return one.st_dev == other.st_dev && one.st_ino == other.st_ino;
}

/// The path under which a descriptor's file is found; nothing when it is found under none.
std::optional<std::string> provenPlace(int descriptor) {
    struct stat here {};
    struct stat there {};
    std::string path = placeOf(descriptor);
    if (!path.starts_with('/') || ::fstat(descriptor, &here) != 0 ||
        ::fstatat(AT_FDCWD, path.c_str(), &there, AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT) != 0 ||
        !isSame(here, there)) {
        return std::nullopt;
    }
    return path;
}

UniqueFd openHandle(const WatchedRoot& root, void* handle) {
    const UniqueFd folder = root.open();
    return UniqueFd(folder ? ::open_by_handle_at(folder.get(), static_cast<file_handle*>(handle),
                                                 O_PATH | O_CLOEXEC)
                           : -1);
}

} // namespace

UniqueFd WatchedRoot::open() const {
    UniqueFd folder(::open(point.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK));
    const auto now = fileSystemFacts(folder.get());
    if (!now || now->id != facts.id) {
        folder.reset();
    }
    return folder;
}

void FilePlaces::set(std::vector<WatchedRoot> roots) {
    const std::lock_guard lock(m_mutex);
    m_roots.clear();
    for (WatchedRoot& root : roots) {
        m_roots.insert_or_assign(root.facts.id, std::move(root));
    }
}

std::optional<WatchedRoot> FilePlaces::rootOf(std::uint64_t fileSystem) const {
    const std::lock_guard lock(m_mutex);
    const auto found = m_roots.find(fileSystem);
    return found == m_roots.end() ? std::nullopt : std::optional(found->second);
}

std::optional<WatchedRoot> FilePlaces::rootAround(const std::string& path) const {
    const std::lock_guard lock(m_mutex);
    const WatchedRoot* around = nullptr;
    for (const auto& [id, root] : m_roots) {
        const bool inside =
            root.point == "/" || path == root.point || path.starts_with(root.point + '/');
        if (inside && (around == nullptr || root.point.size() > around->point.size())) {
            around = &root;
        }
    }
    return around == nullptr ? std::nullopt : std::optional(*around);
}

std::vector<WatchedRoot> FilePlaces::rootsIn(const std::string& folder) const {
    std::vector<WatchedRoot> roots;
    if (const std::optional<WatchedRoot> around = rootAround(folder)) {
        roots.push_back(*around);
    }
    const std::lock_guard lock(m_mutex);
    for (const auto& [id, root] : m_roots) {
        if (root.point != folder && (folder == "/" || root.point.starts_with(folder + '/'))) {
            roots.push_back(root);
        }
    }
    return roots;
}

std::optional<std::string> FilePlaces::pathOf(const FileEvent& event) const {
    if (event.descriptor >= 0) {
        return provenPlace(event.descriptor);
    }
    const std::optional<WatchedRoot> root = rootOf(event.fileSystem);
    std::vector<char> handle = event.folder;
    const UniqueFd folder = root ? openHandle(*root, handle.data()) : UniqueFd();
    std::optional<std::string> path = folder ? provenPlace(folder.get()) : std::nullopt;
    if (path) {
        *path += path->ends_with('/') ? event.name : '/' + event.name;
    }
    return path;
}

std::optional<std::string> FilePlaces::pathOf(int descriptor) const {
    if (std::optional<std::string> path = provenPlace(descriptor)) {
        return path;
    }
    // Opened in another mount namespace: look at it through our own mount.
    const auto facts = fileSystemFacts(descriptor);
    const std::optional<WatchedRoot> root = facts ? rootOf(facts->id) : std::nullopt;
    alignas(file_handle) std::array<char, sizeof(file_handle) + MAX_HANDLE_SZ> buffer{};
    const unsigned int room = MAX_HANDLE_SZ;
    std::memcpy(buffer.data(), &room, sizeof room);
    int mount = 0;
    void* const handle = buffer.data();
    if (!root || ::name_to_handle_at(descriptor, "", static_cast<file_handle*>(handle), &mount,
                                     AT_EMPTY_PATH) != 0) {
        return std::nullopt;
    }
    const UniqueFd again = openHandle(*root, handle);
    return again ? provenPlace(again.get()) : std::nullopt;
}

} // namespace korvale::agent
