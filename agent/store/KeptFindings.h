#pragma once

#include "agent/store/Finding.h"

#include <cstddef>
#include <vector>

namespace korvale::agent {

/// Findings that could not be written yet, in memory; their numbers are below 0. Whoever calls
/// holds the store's lock.
class KeptFindings {
public:
    /// One with the same id and path is updated.
    Finding put(const Finding& finding);
    bool setState(std::int64_t number, FindingState state);
    void moveAll(const std::string& id, FindingState from, FindingState to);
    [[nodiscard]] const Finding* find(std::int64_t number) const;
    [[nodiscard]] const std::vector<Finding>& all() const { return m_findings; }
    void removeFirst() { m_findings.erase(m_findings.begin()); }
    [[nodiscard]] std::size_t size() const { return m_findings.size(); }

private:
    std::vector<Finding> m_findings;
    std::int64_t m_next = -1;
};

} // namespace korvale::agent
