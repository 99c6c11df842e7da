#include "agent/engine/TestFile.h"

#include <cstdlib>
#include <fcntl.h>
#include <sys/mman.h>

namespace korvale::agent {
namespace {

UniqueFd filled(const UniqueFd& writer, const std::string& content, const std::string& path) {
    const bool whole = writer && ::write(writer.get(), content.data(), content.size()) ==
                                     static_cast<ssize_t>(content.size());
    return UniqueFd(whole ? ::open(path.c_str(), O_RDONLY | O_CLOEXEC) : -1);
}

} // namespace

TestFile::TestFile(const std::string& folder, const std::string& content)
    : m_path(folder + "/engine-test-XXXXXX") {
    const UniqueFd writer(::mkostemp(m_path.data(), O_CLOEXEC));
    if (!writer) {
        m_path.clear();
    }
    m_file = filled(writer, content, m_path);
    if (!m_file) {
        // A full disk must not keep anybody from finding out that the engine does not scan.
        const UniqueFd memory(::memfd_create("engine-test", MFD_CLOEXEC));
        m_file = filled(memory, content, "/proc/self/fd/" + std::to_string(memory.get()));
    }
}

void TestFile::hide() {
    if (!m_path.empty()) {
        ::unlink(m_path.c_str());
        m_path.clear();
    }
}

} // namespace korvale::agent
