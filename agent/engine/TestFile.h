#pragma once

#include "agent/base/UniqueFd.h"

#include <string>

namespace korvale::agent {

/// A file with the EICAR test content that is there as long as this object. It has a name, as
/// confinement goes by names.
class TestFile {
public:
    explicit TestFile(const std::string& folder);
    ~TestFile();
    TestFile(const TestFile&) = delete;
    TestFile& operator=(const TestFile&) = delete;

    /// O_RDONLY; closed when the file could not be made.
    [[nodiscard]] const UniqueFd& descriptor() const { return m_file; }

private:
    std::string m_path;
    UniqueFd m_file;
};

} // namespace korvale::agent
