#include "agent/engine/TestFile.h"

#include "agent/engine/BuiltInEngine.h"

#include <cstdlib>
#include <fcntl.h>

namespace korvale::agent {

TestFile::TestFile(const std::string& folder) : m_path(folder + "/engine-test-XXXXXX") {
    const UniqueFd writer(::mkostemp(m_path.data(), O_CLOEXEC));
    const std::string content = eicarTestContent();
    if (!writer) {
        m_path.clear();
        return;
    }
    if (::write(writer.get(), content.data(), content.size()) ==
        static_cast<ssize_t>(content.size())) {
        m_file.reset(::open(m_path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW));
    }
}

TestFile::~TestFile() {
    if (!m_path.empty()) {
        ::unlink(m_path.c_str());
    }
}

} // namespace korvale::agent
