#pragma once

#include "agent/base/FileIdentity.h"
#include "agent/base/FileSystemFacts.h"
#include "agent/base/PathRules.h"
#include "agent/base/UniqueFd.h"

#include <atomic>
#include <cstddef>
#include <memory>
#include <set>
#include <stop_token>
#include <string>
#include <sys/stat.h>
#include <utility>
#include <vector>

namespace korvale::agent {

/// A folder on the way, kept open as long as somebody has to do with a file in it.
struct WalkedFolder {
    UniqueFd descriptor;
    std::string path; ///< absolute, raw bytes
    FileSystemFacts facts;
};

/// A regular file with content that was found.
struct WalkedFile {
    std::shared_ptr<const WalkedFolder> folder;
    std::string name; ///< in the folder, raw bytes
    FileIdentity identity;
    UniqueFd descriptor; ///< O_RDONLY; closed before it is opened

    [[nodiscard]] std::string path() const;
};

/// Why something was not handed out.
enum class Skipped {
    Empty,      ///< nothing to judge in it
    OtherName,  ///< a further hard link of a file that was handed out
    Excluded,   ///< by a rule, or on a pseudo file system
    Unreadable, ///< no rights, an error of the disk, or not there any more
    TooDeep,    ///< the limits of WalkLimits
};

/// What a walk hands out. Called on the walking thread, in the order of the folder lists.
class WalkVisitor {
public:
    WalkVisitor() = default;
    WalkVisitor(const WalkVisitor&) = delete;
    WalkVisitor& operator=(const WalkVisitor&) = delete;
    virtual ~WalkVisitor() = default;

    /// Removes from some files of one folder, none of them open yet, those that need not be read.
    /// With the process's own rights.
    virtual void choose(std::vector<WalkedFile>& files) = 0;
    virtual void file(WalkedFile file) = 0;
    virtual void skipped(Skipped reason, const std::string& path) = 0;
};

struct WalkLimits {
    std::size_t openFolders = 400;   ///< kept open because of folders in them that wait
    std::size_t longestPath = 32768; ///< bytes
    std::size_t rememberedLinks =
        200'000; ///< beyond, a file with several names is read several times
};

/// Walks a tree by descriptors: no link is followed, and whoever renames folders meanwhile cannot
/// lead it out of the tree. One thread; with the rights that the thread has.
class TreeWalk {
public:
    struct Options {
        PathRules excluded;
        bool otherFileSystems = false; ///< enter those that are mounted in the tree
        WalkLimits limits;
    };

    TreeWalk(Options options, WalkVisitor& visitor);

    /// Walks the tree of an open folder (O_RDONLY). Returns when it is done or `stop` was
    /// requested.
    void walk(UniqueFd root, std::string path, const std::stop_token& stop);
    /// Opens a file of the last walk again, by its path. Closed when it is not there any more.
    [[nodiscard]] WalkedFile again(const std::string& path) const;

private:
    using FolderPtr = std::shared_ptr<const WalkedFolder>;
    struct Waiting {
        FolderPtr parent; ///< null: the root
        std::string name;
    };

    FolderPtr enter(const Waiting& waiting);
    FolderPtr keep(UniqueFd descriptor, std::string path, const FileSystemFacts& facts) const;
    void list(const FolderPtr& folder, const std::stop_token& stop);
    void meet(const FolderPtr& folder, const char* name, unsigned char type);
    void meetFile(const FolderPtr& folder, const char* name, const struct stat& status);
    void meetFolder(const FolderPtr& folder, const char* name);
    void handOut();
    [[nodiscard]] bool isFurtherName(const struct stat& status);
    [[nodiscard]] bool openFile(WalkedFile& file) const;

    const Options m_options;
    WalkVisitor& m_visitor;
    FolderPtr m_root;
    std::vector<Waiting> m_waiting; ///< the last one goes first
    std::vector<WalkedFile> m_batch;
    std::set<std::pair<dev_t, ino_t>> m_links; ///< files with several names that were met
    std::shared_ptr<std::atomic<std::size_t>> m_openFolders;
};

} // namespace korvale::agent
