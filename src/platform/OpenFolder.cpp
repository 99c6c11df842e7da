#include "platform/OpenFolder.h"

#include <fcntl.h>
#include <unistd.h>
#include <utility>

namespace korvale {

OpenFolder::OpenFolder(const std::string& path)
    : m_descriptor(::open(path.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC)) {}

OpenFolder::OpenFolder(OpenFolder&& other) noexcept
    : m_descriptor(std::exchange(other.m_descriptor, -1)) {}

OpenFolder::~OpenFolder() {
    if (m_descriptor >= 0) {
        ::close(m_descriptor);
    }
}

} // namespace korvale
