#include "platform/ProcRunningApplications.h"

#include "platform/SmallFile.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <climits>
#include <dirent.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

namespace korvale {
namespace {

constexpr qint64 largestProcFile = 1 << 16;

std::optional<pid_t> pidOf(const char* name) {
    pid_t pid = 0;
    const char* end = name + std::char_traits<char>::length(name);
    const auto [last, error] = std::from_chars(name, end, pid);
    return error == std::errc() && last == end && pid > 0 ? std::optional(pid) : std::nullopt;
}

/// Number of the login session in the control group of the process in `folder`; empty: none.
QByteArray sessionOf(const std::string& folder) {
    static constexpr const char* prefix = "/session-";
    const auto groups = readSmallFile((folder + "/cgroup").c_str(), largestProcFile);
    const qsizetype start = groups ? groups->indexOf(prefix) : -1;
    if (start < 0) {
        return {};
    }
    const QByteArray rest = groups->mid(start + static_cast<qsizetype>(qstrlen(prefix)));
    const qsizetype end = rest.indexOf(".scope");
    return end < 0 ? QByteArray() : rest.left(end);
}

/// What tells an application from others, and the file whose name it may have.
struct Program {
    std::string key; ///< the executable's path; of one that is not ours to know, no path
    std::string name;
};

/// The name that the process in `folder` has in /proc.
std::optional<Program> hiddenProgram(const std::string& folder) {
    const auto name = readSmallFile((folder + "/comm").c_str(), largestProcFile);
    const std::string text = name ? name->trimmed().toStdString() : std::string();
    return text.empty() ? std::nullopt : std::optional(Program{text, text});
}

/// The program of the process in `folder`; none of a process that has none (a thread of the kernel)
/// or is gone. A deleted executable's path goes without the tail that says so. What has more rights
/// than the user (by set-user-ID or capabilities) hides its executable.
std::optional<Program> programOf(const std::string& folder) {
    static constexpr std::string_view deleted = " (deleted)";
    std::array<char, PATH_MAX> target; // filled as far as readlink says
    const ssize_t length = ::readlink((folder + "/exe").c_str(), target.data(), target.size());
    if (length < 0) {
        return errno == ENOENT ? std::nullopt : hiddenProgram(folder);
    }
    std::string path(target.data(), static_cast<std::size_t>(length));
    if (path.ends_with(deleted)) {
        path.resize(path.size() - deleted.size());
    }
    std::string name = path.substr(path.rfind('/') + 1);
    return Program{std::move(path), std::move(name)};
}

/// The process in `folder`, which runs with root's rights, was started by `user`.
bool wasStartedBy(uid_t user, const std::string& folder) {
    static constexpr const char* line = "\nUid:\t";
    const auto status = readSmallFile((folder + "/status").c_str(), largestProcFile);
    const qsizetype at = status ? status->indexOf(line) : -1;
    if (at < 0) {
        return false;
    }
    uid_t real = 0;
    const char* first = status->constData() + at + qstrlen(line);
    const auto [last, error] = std::from_chars(first, status->constData() + status->size(), real);
    return error == std::errc() && real == user;
}

bool isUsers(const ProcRunningApplications::Place& place, const std::string& folder) {
    struct stat status {};
    return ::stat(folder.c_str(), &status) == 0 &&
           (status.st_uid == place.user ||
            (status.st_uid == place.root && wasStartedBy(place.user, folder)));
}

/// Start time in clock ticks since boot (field 22 of stat); a process that is gone is the youngest.
unsigned long long startTime(const std::string& folder) {
    static constexpr int blanksBefore = 20; // behind the second field
    const auto content = readSmallFile((folder + "/stat").c_str(), largestProcFile);
    // The second field, the command's name between brackets, may itself hold blanks and brackets.
    qsizetype position = content ? content->lastIndexOf(')') : -1;
    for (int blank = 0; position >= 0 && blank < blanksBefore; ++blank) {
        position = content->indexOf(' ', position + 1);
    }
    unsigned long long ticks = ULLONG_MAX;
    if (position >= 0) {
        std::from_chars(content->constData() + position + 1, content->constData() + content->size(),
                        ticks);
    }
    return ticks;
}

} // namespace

ProcRunningApplications::Place ProcRunningApplications::thisProcess() {
    Place place{.user = ::getuid(), .session = qgetenv("XDG_SESSION_ID")};
    if (const QByteArray session = sessionOf("/proc/self"); !session.isEmpty()) {
        place.session = session;
    }
    return place;
}

ProcRunningApplications::ProcRunningApplications(Place place, DesktopEntryIndex::Sources entries)
    : m_place(std::move(place)), m_entries(std::move(entries)) {}

bool ProcRunningApplications::isElsewhere(const std::string& process) const {
    if (m_place.session.isEmpty()) {
        return false;
    }
    const QByteArray session = sessionOf(process);
    return !session.isEmpty() && session != m_place.session;
}

ProcRunningApplications::Executables ProcRunningApplications::executables() const {
    Executables oldest;
    const std::unique_ptr<DIR, int (*)(DIR*)> folder(::opendir(m_place.proc.c_str()), ::closedir);
    std::string process = m_place.proc + '/';
    const std::size_t length = process.size();
    while (const dirent* entry = folder ? ::readdir(folder.get()) : nullptr) {
        const std::optional<pid_t> pid = pidOf(entry->d_name);
        process.replace(length, std::string::npos, entry->d_name);
        if (!pid || !isUsers(m_place, process)) {
            continue;
        }
        std::optional<Program> program = programOf(process);
        if (!program || isElsewhere(process)) {
            continue;
        }
        const auto [known, isNew] =
            oldest.try_emplace(std::move(program->key), Oldest{std::move(program->name), *pid, {}});
        if (isNew) {
            continue;
        }
        Oldest& former = known->second;
        if (!former.start) {
            former.start = startTime(m_place.proc + '/' + std::to_string(former.pid));
        }
        const unsigned long long start = startTime(process);
        if (std::pair(start, *pid) < std::pair(*former.start, former.pid)) {
            former = {former.name, *pid, start};
        }
    }
    return oldest;
}

std::vector<RunningApplication> ProcRunningApplications::list() const {
    const Executables oldest = executables();
    std::vector<std::string> paths;
    for (const auto& [path, process] : oldest) {
        if (path.starts_with('/')) {
            paths.push_back(path);
        }
    }
    const DesktopEntryIndex names(m_entries, paths);
    std::vector<RunningApplication> applications;
    for (const auto& [path, process] : oldest) {
        const auto entry = path.starts_with('/') ? names.nameOf(path) : std::nullopt;
        applications.push_back(
            {entry ? *entry : QString::fromStdString(process.name), process.pid});
    }
    std::sort(applications.begin(), applications.end(),
              [](const auto& a, const auto& b) { return a.pid < b.pid; });
    return applications;
}

} // namespace korvale
