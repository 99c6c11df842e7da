#include "agent/engine/Signatures.h"

#include "agent/base/UniqueFd.h"

#include <array>
#include <cstdint>
#include <ctime>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>

namespace korvale::agent {
namespace {

struct CloseFolder {
    void operator()(DIR* folder) const { ::closedir(folder); }
};

/// The updater keeps notes and half-finished downloads beside the signatures.
bool isSignatureFile(std::string_view name) {
    const std::size_t dot = name.rfind('.');
    if (dot == std::string_view::npos || dot == 0) {
        return false;
    }
    const std::string_view ending = name.substr(dot + 1);
    return ending != "dat" && ending != "tmp" && ending != "log" && ending != "lock";
}

bool isOneOf(std::string_view name, std::string_view base) {
    return name.starts_with(base) &&
           (name.substr(base.size()) == ".cvd" || name.substr(base.size()) == ".cld");
}

} // namespace

std::optional<std::chrono::sys_seconds> signatureTimeOf(std::string_view version) {
    const std::size_t first = version.find('/');
    const std::size_t second =
        first == std::string_view::npos ? first : version.find('/', first + 1);
    if (second == std::string_view::npos) {
        return std::nullopt;
    }
    const std::string text(version.substr(second + 1));
    std::tm parts{};
    parts.tm_isdst = -1;
    // Names of days and months are English in the "C" locale, which the agent never leaves.
    const char* const end = ::strptime(text.c_str(), "%a %b %d %H:%M:%S %Y", &parts);
    if (end == nullptr || *end != '\0') {
        return std::nullopt;
    }
    const std::time_t time = std::mktime(&parts);
    if (time <= 0) {
        return std::nullopt;
    }
    return std::chrono::sys_seconds(std::chrono::seconds(time));
}

SignatureFiles lookAtSignatures(const std::string& folder) {
    SignatureFiles found;
    const std::unique_ptr<DIR, CloseFolder> list(::opendir(folder.c_str()));
    if (!list) {
        return found;
    }
    std::int64_t newestNs = 0;
    std::int64_t bytes = 0;
    int count = 0;
    bool main = false;
    bool daily = false;
    while (const dirent* const entry = ::readdir(list.get())) {
        const std::string_view name(static_cast<const char*>(entry->d_name));
        struct stat status {};
        if (!isSignatureFile(name) ||
            ::fstatat(::dirfd(list.get()), entry->d_name, &status, 0) != 0 ||
            !S_ISREG(status.st_mode)) {
            continue;
        }
        main = main || isOneOf(name, "main");
        daily = daily || isOneOf(name, "daily");
        newestNs = std::max<std::int64_t>(newestNs, status.st_mtim.tv_sec * 1'000'000'000 +
                                                        status.st_mtim.tv_nsec);
        bytes += status.st_size;
        ++count;
    }
    if (count > 0) {
        found.newest = std::chrono::sys_seconds(std::chrono::seconds(newestNs / 1'000'000'000));
        found.key =
            std::to_string(newestNs) + '/' + std::to_string(count) + '/' + std::to_string(bytes);
        found.complete = main && daily;
    }
    return found;
}

} // namespace korvale::agent
