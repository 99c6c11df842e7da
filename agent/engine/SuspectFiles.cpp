#include "agent/engine/SuspectFiles.h"

#include <algorithm>

namespace korvale::agent {

std::deque<SuspectFiles::Suspect>::iterator SuspectFiles::find(const FileIdentity& file) {
    return std::find_if(m_suspects.begin(), m_suspects.end(),
                        [&](const Suspect& suspect) { return suspect.file == file; });
}

int SuspectFiles::deaths(const FileIdentity& file) const {
    const std::lock_guard lock(m_mutex);
    const auto found = std::find_if(m_suspects.begin(), m_suspects.end(),
                                    [&](const Suspect& suspect) { return suspect.file == file; });
    return found == m_suspects.end() ? 0 : found->deaths;
}

void SuspectFiles::died(const FileIdentity& file) {
    const std::lock_guard lock(m_mutex);
    if (const auto found = find(file); found != m_suspects.end()) {
        ++found->deaths;
        return;
    }
    if (m_suspects.size() >= capacity) {
        m_suspects.pop_front();
    }
    m_suspects.push_back({file, 1});
}

void SuspectFiles::acquit(const FileIdentity& file) {
    const std::lock_guard lock(m_mutex);
    if (const auto found = find(file); found != m_suspects.end()) {
        m_suspects.erase(found);
    }
}

void SuspectFiles::forgetAll() {
    const std::lock_guard lock(m_mutex);
    m_suspects.clear();
}

} // namespace korvale::agent
