#include "agent/watch/WatchedFile.h"

#include "agent/scan/BeneathOpen.h"

#include <fcntl.h>
#include <sys/stat.h>

namespace korvale::agent {

UniqueFd openWatchedFolder(const WatchedRoot& root, const std::string& path) {
    UniqueFd top = root.open();
    std::string inside = path.substr(std::min(path.size(), root.point.size()));
    inside.erase(0, std::min(inside.find_first_not_of('/'), inside.size()));
    return !top || inside.empty()
               ? std::move(top)
               : openBeneath(top.get(), inside.c_str(), O_RDONLY | O_DIRECTORY, false);
}

WalkedFile openWatched(const FilePlaces& places, const std::string& path) {
    WalkedFile file;
    const std::size_t slash = path.rfind('/');
    const std::optional<WatchedRoot> root = places.rootAround(path);
    if (!root || slash == std::string::npos || path.size() <= root->point.size()) {
        return file;
    }
    const std::string folder = slash == 0 ? "/" : path.substr(0, slash);
    UniqueFd descriptor = openWatchedFolder(*root, folder);
    file.name = path.substr(slash + 1);
    UniqueFd opened =
        descriptor ? openBeneath(descriptor.get(), file.name.c_str(), O_RDONLY, false) : UniqueFd();
    struct stat status {};
    if (!opened || ::fstat(opened.get(), &status) != 0 || !S_ISREG(status.st_mode)) {
        return file;
    }
    file.folder =
        std::make_shared<WalkedFolder>(WalkedFolder{std::move(descriptor), folder, root->facts});
    file.identity = identityOf(status, root->facts.id);
    file.descriptor = std::move(opened);
    return file;
}

} // namespace korvale::agent
