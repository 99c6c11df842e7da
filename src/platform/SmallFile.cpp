#include "platform/SmallFile.h"

#include <QFile>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace korvale {
namespace {

std::optional<QByteArray> readAll(int descriptor, qint64 limit) {
    struct stat status {};
    if (::fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode) || status.st_size > limit) {
        return std::nullopt;
    }
    // Files of /proc have no size of their own, and a file may grow while it is read.
    QByteArray content(static_cast<qsizetype>(status.st_size > 0 ? status.st_size + 1 : 4096),
                       Qt::Uninitialized);
    qsizetype length = 0;
    while (true) {
        const ssize_t count = ::read(descriptor, content.data() + length,
                                     static_cast<std::size_t>(content.size() - length));
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0 || length + count > limit) {
            return std::nullopt;
        }
        if (count == 0) {
            content.truncate(length);
            return content;
        }
        length += count;
        if (length == content.size()) {
            content.resize(2 * length);
        }
    }
}

} // namespace

std::optional<QByteArray> readSmallFile(const char* path, qint64 limit) {
    const int descriptor = ::open(path, O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY);
    if (descriptor < 0) {
        return std::nullopt;
    }
    std::optional<QByteArray> content = readAll(descriptor, limit);
    ::close(descriptor);
    return content;
}

std::optional<QByteArray> readSmallFile(const QString& path, qint64 limit) {
    return readSmallFile(QFile::encodeName(path).constData(), limit);
}

} // namespace korvale
