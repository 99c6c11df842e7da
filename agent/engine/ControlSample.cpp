#include "agent/engine/ControlSample.h"

#include "agent/engine/BuiltInEngine.h"

#include <algorithm>

namespace korvale::agent {

bool ControlSample::make(const std::string& folder, bool packed) {
    if (!m_file || !m_file->descriptor() || m_packed != packed) {
        m_file.emplace(folder, packed ? packedEicarTestContent() : eicarTestContent());
        m_packed = packed;
    }
    return static_cast<bool>(m_file->descriptor());
}

bool ControlSample::isDue(TimePoint now) const {
    const std::chrono::nanoseconds window =
        std::min<std::chrono::nanoseconds>(costShare * m_cost, longestWindow);
    return !m_provesNothing && (!m_found || now - *m_found >= window);
}

ControlSample::Meaning ControlSample::meaningOf(Verdict verdict, const std::string& signatures,
                                                bool official) {
    if (isBad(verdict)) {
        m_knownBy = signatures;
        m_provesNothing = false;
        return Meaning::Scans;
    }
    m_provesNothing = !official && m_knownBy != signatures;
    return m_provesNothing ? Meaning::Nothing : Meaning::Blind;
}

void ControlSample::tookFrom(TimePoint began, TimePoint now) {
    m_found = now;
    m_cost = now - began;
}

void ControlSample::caught() {
    m_caught = true;
    m_settling = false;
    m_found.reset();
}

ControlSample::Cure ControlSample::cure(Meaning meaning, TimePoint now,
                                        std::chrono::milliseconds settling) {
    if (!m_caught) {
        return Cure::None;
    }
    if (meaning == Meaning::Blind) {
        // It may remember the sample itself as clean, and would for ever.
        if (m_reloaded && now - *m_reloaded < 2 * settling) {
            return Cure::Wait;
        }
        m_reloaded = now;
        return Cure::Reload;
    }
    if (!m_settling) {
        m_settling = true;
        m_reloaded = now;
        return Cure::Reload;
    }
    if (now - *m_reloaded < settling) {
        return Cure::Wait;
    }
    m_caught = false;
    return Cure::None;
}

} // namespace korvale::agent
