#include "platform/DesktopEntryIndex.h"

#include "platform/UserLanguages.h"
#include "platform/XdgFolders.h"

#include <QFile>
#include <QList>

#include <dirent.h>
#include <memory>
#include <string_view>
#include <sys/stat.h>
#include <tuple>
#include <utility>

namespace korvale {
namespace {

constexpr std::size_t largestEntry = 1 << 20;
constexpr std::size_t usualEntries = 500; ///< of a desktop

std::vector<std::string> folders(const QByteArray& list) {
    std::vector<std::string> result;
    for (const QByteArray& folder : list.split(':')) {
        if (folder.startsWith('/')) {
            result.push_back(folder.toStdString());
        }
    }
    return result;
}

bool isFolder(const dirent& entry, const std::string& path) {
    struct stat status {};
    return entry.d_type == DT_DIR ||
           (entry.d_type == DT_UNKNOWN && ::lstat(path.c_str(), &status) == 0 &&
            S_ISDIR(status.st_mode));
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

DesktopEntryIndex::DesktopEntryIndex(const Sources& sources,
                                     const std::vector<std::string>& executables)
    : m_programFolders(sources.programFolders.begin(), sources.programFolders.end()) {
    m_ids.reserve(usualEntries);
    for (const std::string& executable : executables) {
        if (const auto id = fileId(executable)) {
            m_best.try_emplace(*id);
        } else {
            m_bestOfGone.try_emplace(executable);
        }
    }
    for (std::size_t number = 0; number < sources.dataFolders.size(); ++number) {
        std::string folder = sources.dataFolders[number] + "/applications";
        readFolder(folder, {}, number, sources);
    }
}

void DesktopEntryIndex::readFolder(std::string& path, const std::string& idPrefix,
                                   std::size_t number, const Sources& sources) {
    const std::unique_ptr<DIR, int (*)(DIR*)> folder(::opendir(path.c_str()), ::closedir);
    const std::size_t length = path.append("/").size();
    // Not by std::filesystem, which takes every path apart, at every start.
    while (const dirent* entry = folder ? ::readdir(folder.get()) : nullptr) {
        const std::string_view name(entry->d_name);
        path.resize(length);
        path.append(name);
        if (name != "." && name != ".." && isFolder(*entry, path)) {
            readFolder(path, std::string(idPrefix).append(name).append("-"), number, sources);
        } else if (name.ends_with(".desktop")) {
            const auto [seen, isNew] =
                m_ids.try_emplace(std::pmr::string(idPrefix, &m_memory).append(name), number);
            if (isNew || seen->second == number) {
                readEntry(path, number, seen->first, sources);
            }
        }
    }
}

void DesktopEntryIndex::readEntry(const std::string& path, std::size_t folder, std::string_view id,
                                  const Sources& sources) {
    const auto file = RegularFile::open(path.c_str(), largestEntry);
    auto bytes = file ? file->readAll({}, std::exchange(m_content, {})) : std::nullopt;
    if (!bytes) {
        return;
    }
    m_content = std::move(*bytes);
    const std::string_view content(m_content.bytes.get(), m_content.size);
    // Few entries are of what runs, and all are looked at at every start.
    if (!mayStart(content,
                  [this](std::string_view program) { return bestOf(program) != nullptr; })) {
        return;
    }
    const auto entry = parseDesktopEntry(content, sources.languages);
    Best* const best = entry ? bestOf(entry->program) : nullptr;
    if (!best) {
        return;
    }
    Best found{entry->name, entry->isShown, folder, id};
    const auto rank = [](const Best& one) { return std::tuple(!one.isShown, one.folder, one.id); };
    if (!best->name || rank(found) < rank(*best)) {
        *best = std::move(found);
    }
}

DesktopEntryIndex::Best* DesktopEntryIndex::bestOf(std::string_view program) {
    const auto in = [](auto& all, const auto& key) {
        const auto found = all.find(key);
        return found == all.end() ? nullptr : &found->second;
    };
    m_program = program;
    if (program.starts_with('/')) {
        const auto id = fileId(m_program);
        return id ? in(m_best, *id) : in(m_bestOfGone, m_program);
    }
    for (const OpenFolder& folder : m_programFolders) {
        if (const auto id = fileId(m_program, folder.descriptor())) {
            return in(m_best, *id);
        }
    }
    return nullptr;
}

std::optional<DesktopEntryIndex::FileId> DesktopEntryIndex::fileId(const std::string& path,
                                                                   int folder) {
    struct stat status {};
    if (::fstatat(folder, path.c_str(), &status, 0) != 0 || !S_ISREG(status.st_mode)) {
        return std::nullopt;
    }
    return FileId(status.st_dev, status.st_ino);
}

std::optional<QString> DesktopEntryIndex::nameOf(const std::string& executable) const {
    const auto nameIn = [](const auto& all, const auto& key) {
        const auto found = all.find(key);
        return found == all.end() ? std::nullopt : found->second.name;
    };
    const auto id = fileId(executable);
    return id ? nameIn(m_best, *id) : nameIn(m_bestOfGone, executable);
}

} // namespace korvale
