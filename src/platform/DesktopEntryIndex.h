#pragma once

#include "platform/DesktopEntry.h"

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <unordered_set>
#include <utility>
#include <vector>

namespace korvale {

/// Names of applications by their executable, from the desktop entries of some data folders.
/// Where several entries name one executable, one that menus show comes before helpers that they do
/// not, then the first folder's, then the first by id.
class DesktopEntryIndex {
public:
    struct Sources {
        std::vector<std::string> dataFolders;    ///< each with an "applications" folder, best first
        std::vector<std::string> programFolders; ///< where "Exec" names without a path are found
        std::vector<QByteArray> languages;
    };

    /// Reads all entries at once.
    explicit DesktopEntryIndex(const Sources& sources);

    /// `executable` is an absolute path without links, whether it still exists or not.
    [[nodiscard]] std::optional<QString> nameOf(const std::string& executable) const;

    /// What the environment says: XDG_DATA_HOME, XDG_DATA_DIRS, PATH and the user's languages.
    [[nodiscard]] static Sources environment();

private:
    using FileId = std::pair<std::uint64_t, std::uint64_t>; ///< device and inode

    void readFolder(const std::string& folder, const Sources& sources);
    void add(const DesktopEntry& entry, const std::vector<std::string>& programFolders);
    [[nodiscard]] static std::optional<FileId> fileId(const std::string& path);

    std::unordered_set<std::string>
        m_ids; ///< seen already: an earlier folder's entry hides a later one's
    std::map<FileId, DesktopEntry> m_entries;
    std::map<std::string, DesktopEntry> m_entriesOfGone; ///< "Exec" paths where no file is now
};

} // namespace korvale
