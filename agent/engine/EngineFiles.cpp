#include "agent/engine/EngineFiles.h"

#include <array>
#include <pwd.h>

namespace korvale::agent {

bool EngineFiles::contain(const std::string& path, uid_t of) const {
    return owner == of && path.starts_with(folder) && path.size() > folder.size() &&
           (folder.ends_with('/') || path[folder.size()] == '/');
}

EngineFiles engineFilesOf(const ClamdConfiguration& configuration) {
    EngineFiles files{configuration.temporaryFolder, std::nullopt};
    std::array<char, 4096> room{};
    passwd entry{};
    passwd* found = nullptr;
    if (!configuration.user.empty() &&
        ::getpwnam_r(configuration.user.c_str(), &entry, room.data(), room.size(), &found) == 0 &&
        found != nullptr && found->pw_uid != 0) {
        files.owner = found->pw_uid;
    }
    return files;
}

} // namespace korvale::agent
