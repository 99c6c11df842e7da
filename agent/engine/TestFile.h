#pragma once

#include "agent/base/UniqueFd.h"

#include <string>

namespace korvale::agent {

/// An open file with a content that scanners find. At first it has a name, as confinement goes by
/// names; hide() takes it away. Where no file can be made it lies in memory.
class TestFile {
public:
    TestFile(const std::string& folder, const std::string& content);
    ~TestFile() { hide(); }
    TestFile(const TestFile&) = delete;
    TestFile& operator=(const TestFile&) = delete;

    /// O_RDONLY; closed when the file could not be made.
    [[nodiscard]] const UniqueFd& descriptor() const { return m_file; }
    void hide();

private:
    std::string m_path; ///< empty: it has no name
    UniqueFd m_file;
};

} // namespace korvale::agent
