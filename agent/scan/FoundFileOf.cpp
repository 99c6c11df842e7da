#include "agent/scan/FoundFileOf.h"

#include <sys/stat.h>

namespace korvale::agent {

FoundFile foundFileOf(const WalkedFile& file, Judgement judgement) {
    struct stat status {};
    FoundFile found;
    found.owner = ::fstat(file.descriptor.get(), &status) == 0 ? status.st_uid : 0;
    found.identity = identityOf(status, file.folder->facts.id);
    found.path = file.path();
    found.folder = file.folder;
    found.name = file.name;
    found.judgement = std::move(judgement);
    return found;
}

} // namespace korvale::agent
