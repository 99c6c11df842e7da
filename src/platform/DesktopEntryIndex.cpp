#include "platform/DesktopEntryIndex.h"

#include "platform/SmallFile.h"
#include "platform/UserLanguages.h"
#include "platform/XdgFolders.h"

#include <QFile>
#include <QList>

#include <algorithm>
#include <dirent.h>
#include <memory>
#include <string_view>
#include <sys/stat.h>

namespace korvale {
namespace {

constexpr qint64 largestEntry = 1 << 20;

std::vector<std::string> folders(const QByteArray& list) {
    std::vector<std::string> result;
    for (const QByteArray& folder : list.split(':')) {
        if (folder.startsWith('/')) {
            result.push_back(folder.toStdString());
        }
    }
    return result;
}

template <typename Key>
void addTo(std::map<Key, DesktopEntry>& entries, const Key& key, const DesktopEntry& entry) {
    const auto [known, isNew] = entries.emplace(key, entry);
    if (!isNew && entry.isShown && !known->second.isShown) {
        known->second = entry;
    }
}

template <typename Key>
std::optional<QString> nameIn(const std::map<Key, DesktopEntry>& entries, const Key& key) {
    const auto found = entries.find(key);
    return found == entries.end() ? std::nullopt : std::optional(found->second.name);
}

struct EntryFile {
    std::string id; ///< path below the folder, slashes as hyphens
    std::string path;
};

bool isFolder(const dirent& entry, const std::string& path) {
    struct stat status {};
    return entry.d_type == DT_DIR ||
           (entry.d_type == DT_UNKNOWN && ::lstat(path.c_str(), &status) == 0 &&
            S_ISDIR(status.st_mode));
}

/// Adds the entries in `folder`, whose path below the data folder's begins each id, and below it.
/// Not by std::filesystem, which takes every path apart, at every start.
void addEntryFiles(const std::string& folder, const std::string& idPrefix,
                   std::vector<EntryFile>& files) {
    const std::unique_ptr<DIR, int (*)(DIR*)> open(::opendir(folder.c_str()), ::closedir);
    while (const dirent* entry = open ? ::readdir(open.get()) : nullptr) {
        const std::string_view name(entry->d_name);
        std::string path = folder;
        path.append("/").append(name);
        std::string id = idPrefix;
        id.append(name);
        if (name != "." && name != ".." && isFolder(*entry, path)) {
            addEntryFiles(path, id.append("-"), files);
        } else if (name.ends_with(".desktop")) {
            files.push_back({std::move(id), std::move(path)});
        }
    }
}

std::vector<EntryFile> entryFiles(const std::string& folder) {
    std::vector<EntryFile> files;
    addEntryFiles(folder, {}, files);
    std::sort(files.begin(), files.end(),
              [](const EntryFile& a, const EntryFile& b) { return a.id < b.id; });
    return files;
}

} // namespace

DesktopEntryIndex::Sources DesktopEntryIndex::environment() {
    const QByteArray dataHome = QFile::encodeName(applicationSupportFolder());
    QByteArray dataDirs = qgetenv("XDG_DATA_DIRS");
    if (dataDirs.isEmpty()) {
        dataDirs = "/usr/local/share:/usr/share";
    }
    return {folders(dataHome + ':' + dataDirs), folders(qgetenv("PATH")), userLanguages()};
}

DesktopEntryIndex::DesktopEntryIndex(const Sources& sources) {
    for (const std::string& folder : sources.dataFolders) {
        readFolder(folder + "/applications", sources);
    }
}

void DesktopEntryIndex::readFolder(const std::string& folder, const Sources& sources) {
    std::vector<EntryFile> files = entryFiles(folder);
    for (const EntryFile& file : files) {
        if (m_ids.contains(file.id)) {
            continue;
        }
        const std::optional<QByteArray> content = readSmallFile(file.path.c_str(), largestEntry);
        if (!content) {
            continue;
        }
        if (const auto entry = parseDesktopEntry(*content, sources.languages)) {
            add(*entry, sources.programFolders);
        }
    }
    for (EntryFile& file : files) {
        m_ids.insert(std::move(file.id));
    }
}

void DesktopEntryIndex::add(const DesktopEntry& entry,
                            const std::vector<std::string>& programFolders) {
    const std::string program = entry.program.toStdString();
    if (program.starts_with('/')) {
        if (const auto id = fileId(program)) {
            addTo(m_entries, *id, entry);
        } else {
            addTo(m_entriesOfGone, program, entry);
        }
        return;
    }
    for (std::string path : programFolders) {
        path += '/';
        path += program;
        if (const auto id = fileId(path)) {
            addTo(m_entries, *id, entry);
            return;
        }
    }
}

std::optional<DesktopEntryIndex::FileId> DesktopEntryIndex::fileId(const std::string& path) {
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) {
        return std::nullopt;
    }
    return FileId(status.st_dev, status.st_ino);
}

std::optional<QString> DesktopEntryIndex::nameOf(const std::string& executable) const {
    const auto id = fileId(executable);
    return id ? nameIn(m_entries, *id) : nameIn(m_entriesOfGone, executable);
}

} // namespace korvale
