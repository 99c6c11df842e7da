#include "agent/app/EngineMark.h"

#include "agent/base/UniqueFd.h"

#include <fcntl.h>
#include <sys/stat.h>

namespace korvale::agent {

EngineMark::EngineMark(std::string file)
    : m_file(std::move(file)), m_set(::access(m_file.c_str(), F_OK) == 0) {}

bool EngineMark::set() {
    if (m_set) {
        return false;
    }
    const UniqueFd made(
        ::open(m_file.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC | O_NOFOLLOW, S_IRUSR | S_IWUSR));
    return m_set = true;
}

} // namespace korvale::agent
