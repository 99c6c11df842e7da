#include "agent/watch/WatchOptions.h"

#include <algorithm>

namespace korvale::agent {

const std::string* WatchOptions::folderOf(const std::string& path) const {
    const auto found = std::find_if(folders.begin(), folders.end(), [&](const std::string& folder) {
        return folder == "/" || path == folder ||
               (path.starts_with(folder) && path.size() > folder.size() &&
                path[folder.size()] == '/');
    });
    const bool out =
        found == folders.end() || excluded.match(path) != nullptr || own.match(path) != nullptr;
    return out ? nullptr : &*found;
}

} // namespace korvale::agent
