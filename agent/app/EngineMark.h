#pragma once

#include <string>

namespace korvale::agent {

/// Whether the engine has ever answered on this machine, over restarts: a file in the state folder.
/// Main thread; a few calls to the disk at the start and once in the agent's life.
class EngineMark {
public:
    explicit EngineMark(std::string file);

    [[nodiscard]] bool isSet() const { return m_set; }
    /// True when it was not set before. It holds for this run even when it cannot be written.
    bool set();

private:
    std::string m_file;
    bool m_set = false;
};

} // namespace korvale::agent
