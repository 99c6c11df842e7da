#include "agent/engine/ReadableFile.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace korvale::agent {
namespace {

std::string troubleOf(int descriptor, const struct stat& status) {
    const int flags = ::fcntl(descriptor, F_GETFL);
    if (flags < 0 || (flags & O_ACCMODE) != O_RDONLY || (flags & O_PATH) != 0) {
        return "not opened for reading";
    }
    if (!S_ISREG(status.st_mode)) {
        return "not a regular file";
    }
    char byte = 0;
    ssize_t count = 0;
    while ((count = ::pread(descriptor, &byte, 1, 0)) < 0 && errno == EINTR) {
    }
    if (count < 0) {
        return std::string("cannot be read: ") + std::strerror(errno);
    }
    if ((count == 0) != (status.st_size == 0)) {
        return "its size is not what it says"; // files that the kernel makes up
    }
    return {};
}

} // namespace

ReadableFile ReadableFile::look(int descriptor) {
    ReadableFile file;
    struct stat status {};
    if (::fstat(descriptor, &status) != 0) {
        file.trouble = std::strerror(errno);
        return file;
    }
    file.identity = identityOf(status, status.st_dev);
    file.trouble = troubleOf(descriptor, status);
    return file;
}

} // namespace korvale::agent
