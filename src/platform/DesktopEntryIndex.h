#pragma once

#include "platform/DesktopEntry.h"
#include "platform/OpenFolder.h"
#include "platform/RegularFile.h"

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <fcntl.h>
#include <map>
#include <memory_resource>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace korvale {

/// Names of running applications, from the desktop entries of some data folders. Where several
/// entries name one executable, one that menus show comes before helpers that they do not, then the
/// first folder's, then the first by id.
class DesktopEntryIndex {
public:
    struct Sources {
        std::vector<std::string> dataFolders;    ///< each with an "applications" folder, best first
        std::vector<std::string> programFolders; ///< where "Exec" names without a path are found
        std::vector<QByteArray> languages;
    };

    /// Looks through all entries at once, for the names of these `executables` alone: absolute
    /// paths without links, whether the file still exists or not.
    DesktopEntryIndex(const Sources& sources, const std::vector<std::string>& executables);

    /// `executable` is one of those given.
    [[nodiscard]] std::optional<QString> nameOf(const std::string& executable) const;

    /// What the environment says: XDG_DATA_HOME, XDG_DATA_DIRS, PATH and the user's languages.
    [[nodiscard]] static Sources environment();

private:
    using FileId = std::pair<std::uint64_t, std::uint64_t>; ///< device and inode

    /// What the best entry so far says; before the first there is no name.
    struct Best {
        std::optional<QString> name;
        bool isShown = false;
        std::size_t folder = 0; ///< which of the data folders
        std::string_view id;    ///< the entry's, among m_ids
    };

    /// Reads the entries in the folder `path` and below it, of the data folder `number`. `idPrefix`
    /// is the way from there to here, slashes as hyphens. What is left in `path` is of no use.
    void readFolder(std::string& path, const std::string& idPrefix, std::size_t number,
                    const Sources& sources);
    void readEntry(const std::string& path, std::size_t folder, std::string_view id,
                   const Sources& sources);
    /// Where the name belongs of what `program`, a path or a name, starts; null: nowhere.
    [[nodiscard]] Best* bestOf(std::string_view program);
    /// Of a regular file; a `path` that is not absolute begins in `folder`, a descriptor.
    [[nodiscard]] static std::optional<FileId> fileId(const std::string& path,
                                                      int folder = AT_FDCWD);

    std::pmr::monotonic_buffer_resource m_memory; ///< for many small things that go together
    /// The data folder of each entry seen: an earlier one's hides a later one's of the same id.
    std::pmr::unordered_map<std::pmr::string, std::size_t> m_ids{&m_memory};
    std::pmr::map<FileId, Best> m_best{&m_memory};
    std::map<std::string, Best> m_bestOfGone; ///< by path, where no file is now
    FileBytes m_content;                      ///< of the entry that was read last
    std::string m_program;                    ///< that was looked for last
    std::vector<OpenFolder> m_programFolders; ///< many names are looked for in each
};

} // namespace korvale
