#include "agent/base/SmallFile.h"

#include "agent/base/UniqueFd.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>

namespace korvale::agent {

std::optional<std::string> readSmallFile(const std::string& path, std::size_t limit,
                                         std::string& error) {
    const UniqueFd file(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY));
    struct stat status {};
    if (!file || ::fstat(file.get(), &status) != 0) {
        error = path + ": " + std::strerror(errno);
        return std::nullopt;
    }
    if (!S_ISREG(status.st_mode)) {
        error = path + ": not a regular file";
        return std::nullopt;
    }
    std::string content;
    std::array<char, 16384> buffer{};
    while (true) {
        const ssize_t count = ::read(file.get(), buffer.data(), buffer.size());
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0) {
            error = path + ": " + std::strerror(errno);
            return std::nullopt;
        }
        if (count == 0) {
            return content;
        }
        content.append(buffer.data(), static_cast<std::size_t>(count));
        if (content.size() > limit) {
            error = path + ": too large";
            return std::nullopt;
        }
    }
}

} // namespace korvale::agent
