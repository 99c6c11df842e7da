#include "platform/FileStamp.h"

#include <QFile>

#include <cerrno>
#include <sys/stat.h>

namespace korvale {

std::optional<FileStamp> fileStamp(const QString& path) {
    struct stat status {};
    if (lstat(QFile::encodeName(path).constData(), &status) != 0) {
        const bool isAbsent = errno == ENOENT || errno == ENOTDIR;
        return isAbsent ? std::nullopt : std::optional(FileStamp());
    }
    return FileStamp{static_cast<std::uint64_t>(status.st_dev),
                     static_cast<std::uint64_t>(status.st_ino), std::int64_t{status.st_size},
                     std::int64_t{status.st_ctim.tv_sec}, std::int64_t{status.st_ctim.tv_nsec}};
}

} // namespace korvale
