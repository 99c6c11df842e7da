#include "agent/app/UpdaterFolder.h"

#include "agent/base/SmallFile.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <filesystem>
#include <string_view>
#include <sys/stat.h>

namespace korvale::agent {
namespace {

// The updater's own note file: a mark, then (at offset 13) a version number, a text of 37 bytes and
// the moment, as a machine with 8-byte times lays them out. While that moment is to come the
// updater does nothing and yet ends with success, so that nothing else tells.
constexpr std::string_view kNoteMark = "FreshClamData";
constexpr std::size_t kVersionOffset = 13;
constexpr std::size_t kMomentOffset = 61;
constexpr std::size_t kLargestNote = 4096;

template <typename Number>
Number numberAt(const std::string& bytes, std::size_t offset) {
    Number number{};
    std::memcpy(&number, bytes.data() + offset, sizeof number);
    return number;
}

std::int64_t waitUntilOf(const std::string& folder) {
    std::string error;
    const auto note = readSmallFile(folder + "/freshclam.dat", kLargestNote, error);
    if (!note || note->size() < kMomentOffset + sizeof(std::int64_t) ||
        !note->starts_with(kNoteMark) || numberAt<std::uint32_t>(*note, kVersionOffset) != 1) {
        return 0;
    }
    return std::max<std::int64_t>(0, numberAt<std::int64_t>(*note, kMomentOffset));
}

} // namespace

UpdaterFolder readUpdaterFolder(const std::string& folder) {
    UpdaterFolder seen;
    seen.waitUntil = waitUntilOf(folder);
    bool main = false;
    bool daily = false;
    std::error_code error;
    for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error)) {
        const std::string extension = entry->path().extension().string();
        struct stat status {};
        constexpr std::array kSignatures{".cvd", ".cld", ".cud"};
        if (std::find(kSignatures.begin(), kSignatures.end(), extension) == kSignatures.end() ||
            ::stat(entry->path().c_str(), &status) != 0 || !S_ISREG(status.st_mode)) {
            continue;
        }
        main = main || entry->path().stem() == "main";
        daily = daily || entry->path().stem() == "daily";
        seen.newest = std::max<std::int64_t>(seen.newest, status.st_mtime);
    }
    seen.complete = main && daily;
    return seen;
}

} // namespace korvale::agent
