#pragma once

#include "agent/base/UniqueFd.h"
#include "agent/watch/FileEvents.h"

#include <functional>

namespace korvale::agent {

/// A group of the kernel's file notifications: it tells of files that were written and closed, and
/// of what was moved in. One thread.
class EventGroup {
public:
    enum class Kind {
        Names,       ///< folder handle and name: also of what was moved
        Descriptors, ///< an open file: for file systems that have no handles
    };

    explicit EventGroup(Kind kind);

    [[nodiscard]] int descriptor() const { return m_group.get(); } ///< -1: not allowed
    /// errno, or 0. `folder` is any open one of the file system.
    [[nodiscard]] int mark(int folder) const;
    void unmarkAll() const;
    /// What has happened since the last time, at most a buffer of it; does not wait.
    [[nodiscard]] FileEvents read() const;

private:
    Kind m_kind;
    UniqueFd m_group;
};

} // namespace korvale::agent
