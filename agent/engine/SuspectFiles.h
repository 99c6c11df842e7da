#pragma once

#include "agent/base/FileIdentity.h"

#include <cstddef>
#include <deque>
#include <mutex>
#include <string>

namespace korvale::agent {

/// Files that clamd had in hand when it died: such a one is asked for alone, and when clamd dies of
/// it again it is not asked for any more. Remembers the last few. Any thread.
class SuspectFiles {
public:
    static constexpr std::size_t capacity = 256;
    static constexpr int fatal = 2; ///< so many deaths are no accident

    /// How often clamd died with this file in hand.
    [[nodiscard]] int deaths(const FileIdentity& file) const;
    void died(const FileIdentity& file);
    void acquit(const FileIdentity& file);
    void forgetAll(); ///< another engine or other signatures may fare better

private:
    struct Suspect {
        FileIdentity file;
        int deaths = 0;
    };
    [[nodiscard]] std::deque<Suspect>::iterator find(const FileIdentity& file);

    mutable std::mutex m_mutex;
    std::deque<Suspect> m_suspects; ///< oldest first
};

} // namespace korvale::agent
