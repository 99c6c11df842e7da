#include "agent/scan/TreeWalk.h"

#include "agent/scan/BeneathOpen.h"

#include <cerrno>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <string_view>

namespace korvale::agent {
namespace {

constexpr std::size_t kBatch = 256;

struct CloseFolder {
    void operator()(DIR* folder) const { ::closedir(folder); }
};
using Listing = std::unique_ptr<DIR, CloseFolder>;

std::string join(const std::string& folder, std::string_view name) {
    std::string path;
    path.reserve(folder.size() + name.size() + 1);
    path += folder;
    if (!path.ends_with('/')) {
        path += '/';
    }
    path += name;
    return path;
}

/// The list of an open folder, which stays open when the list is closed.
Listing listingOf(int folder) {
    UniqueFd again(::openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    Listing listing(again ? ::fdopendir(again.get()) : nullptr);
    if (listing) {
        static_cast<void>(again.release());
    }
    return listing;
}

} // namespace

std::string WalkedFile::path() const {
    return join(folder->path, name);
}

TreeWalk::TreeWalk(Options options, WalkVisitor& visitor)
    : m_options(std::move(options)),
      m_visitor(visitor),
      m_openFolders(std::make_shared<std::atomic<std::size_t>>(0)) {}

void TreeWalk::walk(UniqueFd root, std::string path, const std::stop_token& stop) {
    const auto facts = fileSystemFacts(root.get());
    if (!facts || facts->pseudo || m_options.excluded.match(path) != nullptr) {
        m_visitor.skipped(facts ? Skipped::Excluded : Skipped::Unreadable, path);
        return;
    }
    m_root = keep(std::move(root), std::move(path), *facts);
    list(m_root, stop);
    while (!m_waiting.empty() && !stop.stop_requested()) {
        const Waiting next = std::move(m_waiting.back());
        m_waiting.pop_back();
        if (const FolderPtr folder = enter(next)) {
            list(folder, stop);
        }
    }
    m_waiting.clear();
    m_batch.clear();
}

TreeWalk::FolderPtr TreeWalk::keep(UniqueFd descriptor, std::string path,
                                   const FileSystemFacts& facts) const {
    ++*m_openFolders;
    const auto forget = [count = m_openFolders](const WalkedFolder* folder) {
        delete folder;
        --*count;
    };
    return {new WalkedFolder{std::move(descriptor), std::move(path), facts}, forget};
}

TreeWalk::FolderPtr TreeWalk::enter(const Waiting& waiting) {
    std::string path = join(waiting.parent->path, waiting.name);
    UniqueFd descriptor = openBeneath(waiting.parent->descriptor.get(), waiting.name.c_str(),
                                      O_RDONLY | O_DIRECTORY, m_options.otherFileSystems);
    if (!descriptor) {
        // EXDEV: another file system is mounted there, and was not asked for.
        m_visitor.skipped(errno == EXDEV ? Skipped::Excluded : Skipped::Unreadable, path);
        return nullptr;
    }
    const auto facts =
        m_options.otherFileSystems ? fileSystemFacts(descriptor.get()) : waiting.parent->facts;
    if (!facts || facts->pseudo) {
        m_visitor.skipped(facts ? Skipped::Excluded : Skipped::Unreadable, path);
        return nullptr;
    }
    return keep(std::move(descriptor), std::move(path), *facts);
}

void TreeWalk::list(const FolderPtr& folder, const std::stop_token& stop) {
    const Listing listing = listingOf(folder->descriptor.get());
    if (!listing) {
        m_visitor.skipped(Skipped::Unreadable, folder->path);
        return;
    }
    errno = 0;
    while (const dirent* const entry = ::readdir(listing.get())) {
        if (stop.stop_requested()) {
            return;
        }
        const std::string_view name(static_cast<const char*>(entry->d_name));
        if (name != "." && name != "..") {
            meet(folder, entry->d_name, entry->d_type);
        }
        errno = 0;
    }
    if (errno != 0) { // the disk, or a list that changes: what was read counts
        m_visitor.skipped(Skipped::Unreadable, folder->path);
    }
    handOut();
}

void TreeWalk::meet(const FolderPtr& folder, const char* name, unsigned char type) {
    if (type == DT_DIR) {
        meetFolder(folder, name);
        return;
    }
    if (type != DT_REG && type != DT_UNKNOWN) {
        return; // links are not followed, and nothing is stored in the others
    }
    struct stat status {};
    if (::fstatat(folder->descriptor.get(), name, &status, AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT) !=
        0) {
        m_visitor.skipped(Skipped::Unreadable, join(folder->path, name));
    } else if (S_ISDIR(status.st_mode)) {
        meetFolder(folder, name);
    } else if (S_ISREG(status.st_mode)) {
        meetFile(folder, name, status);
    }
}

void TreeWalk::meetFolder(const FolderPtr& folder, const char* name) {
    const std::string path = join(folder->path, name);
    if (m_options.excluded.match(path) != nullptr) {
        m_visitor.skipped(Skipped::Excluded, path);
    } else if (path.size() > m_options.limits.longestPath ||
               m_openFolders->load() > m_options.limits.openFolders) {
        m_visitor.skipped(Skipped::TooDeep, path);
    } else {
        m_waiting.push_back({folder, name});
    }
}

void TreeWalk::meetFile(const FolderPtr& folder, const char* name, const struct stat& status) {
    if (!m_options.excluded.isEmpty()) {
        const std::string path = join(folder->path, name);
        if (m_options.excluded.match(path) != nullptr) {
            m_visitor.skipped(Skipped::Excluded, path);
            return;
        }
    }
    if (status.st_size == 0) {
        m_visitor.skipped(Skipped::Empty, name);
        return;
    }
    if (isFurtherName(status)) {
        m_visitor.skipped(Skipped::OtherName, name);
        return;
    }
    m_batch.push_back({folder, name, identityOf(status, folder->facts.id), UniqueFd()});
    if (m_batch.size() >= kBatch) {
        handOut();
    }
}

bool TreeWalk::isFurtherName(const struct stat& status) {
    if (status.st_nlink < 2) {
        return false;
    }
    const std::pair key(status.st_dev, status.st_ino);
    if (m_links.size() >= m_options.limits.rememberedLinks) {
        return m_links.contains(key);
    }
    return !m_links.insert(key).second;
}

void TreeWalk::handOut() {
    if (m_batch.empty()) {
        return;
    }
    std::vector<WalkedFile> batch = std::exchange(m_batch, {});
    m_visitor.choose(batch);
    for (WalkedFile& file : batch) {
        if (openFile(file)) {
            m_visitor.file(std::move(file));
        } else {
            // EXDEV: another file is mounted over it.
            m_visitor.skipped(errno == EXDEV ? Skipped::Excluded : Skipped::Unreadable,
                              file.path());
        }
    }
}

bool TreeWalk::openFile(WalkedFile& file) const {
    file.descriptor = openBeneath(file.folder->descriptor.get(), file.name.c_str(), O_RDONLY,
                                  m_options.otherFileSystems);
    struct stat status {};
    if (!file.descriptor || ::fstat(file.descriptor.get(), &status) != 0) {
        return false;
    }
    if (!S_ISREG(status.st_mode)) {
        errno = EINVAL;
        return false;
    }
    // What was opened counts, not what had that name a moment before.
    file.identity = identityOf(status, file.folder->facts.id);
    return true;
}

WalkedFile TreeWalk::again(const std::string& path) const {
    WalkedFile file;
    const std::size_t slash = path.rfind('/');
    if (!m_root || slash == std::string::npos) {
        return file;
    }
    std::string_view inside(path);
    inside.remove_prefix(m_root->path.size());
    const std::size_t first = inside.find_first_not_of('/');
    inside = first == std::string_view::npos ? std::string_view() : inside.substr(first);
    file.name = path.substr(slash + 1);
    const std::size_t last = inside.rfind('/');
    if (last == std::string_view::npos) {
        file.folder = m_root;
    } else {
        const std::string folder(inside.substr(0, last));
        UniqueFd descriptor = openBeneath(m_root->descriptor.get(), folder.c_str(),
                                          O_RDONLY | O_DIRECTORY, m_options.otherFileSystems);
        const auto facts = fileSystemFacts(descriptor.get());
        if (!facts) {
            return file;
        }
        file.folder = keep(std::move(descriptor), path.substr(0, slash), *facts);
    }
    if (!openFile(file)) {
        file.descriptor.reset();
    }
    return file;
}

} // namespace korvale::agent
