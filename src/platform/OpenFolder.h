#pragma once

#include <string>

namespace korvale {

/// A folder held open to look names up in, which is cheaper than by whole paths. Any thread.
class OpenFolder {
public:
    explicit OpenFolder(const std::string& path);
    OpenFolder(OpenFolder&& other) noexcept;
    OpenFolder(const OpenFolder&) = delete;
    OpenFolder& operator=(const OpenFolder&) = delete;
    OpenFolder& operator=(OpenFolder&&) = delete;
    ~OpenFolder();

    /// For fstatat(2) and the like; -1, in which nothing is found, when it cannot be opened.
    [[nodiscard]] int descriptor() const { return m_descriptor; }

private:
    int m_descriptor;
};

} // namespace korvale
