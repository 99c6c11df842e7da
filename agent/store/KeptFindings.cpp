#include "agent/store/KeptFindings.h"

#include <algorithm>

namespace korvale::agent {

Finding KeptFindings::put(const Finding& finding) {
    const auto known = std::find_if(m_findings.begin(), m_findings.end(), [&](const Finding& kept) {
        return kept.id == finding.id && kept.path == finding.path;
    });
    if (known == m_findings.end()) {
        Finding kept = finding;
        kept.number = m_next--;
        m_findings.push_back(kept);
        return kept;
    }
    const std::int64_t number = known->number;
    const std::int64_t firstSeen = known->firstSeen;
    *known = finding;
    known->number = number;
    known->firstSeen = firstSeen;
    return *known;
}

bool KeptFindings::setState(std::int64_t number, FindingState state) {
    for (Finding& finding : m_findings) {
        if (finding.number == number) {
            finding.state = state;
            return true;
        }
    }
    return false;
}

void KeptFindings::moveAll(const std::string& id, FindingState from, FindingState to) {
    for (Finding& finding : m_findings) {
        if (finding.id == id && finding.state == from) {
            finding.state = to;
        }
    }
}

const Finding* KeptFindings::find(std::int64_t number) const {
    const auto found = std::find_if(m_findings.begin(), m_findings.end(),
                                    [&](const Finding& kept) { return kept.number == number; });
    return found == m_findings.end() ? nullptr : &*found;
}

} // namespace korvale::agent
