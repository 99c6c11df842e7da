#pragma once

#include "model/JsonValue.h"

#include <QString>

#include <cstdint>
#include <unordered_set>
#include <vector>

namespace korvale {

class HostCache;

struct FoundThreat {
    QString path; ///< untrusted
    std::uint32_t state = 0;

    friend bool operator==(const FoundThreat&, const FoundThreat&) = default;
};

/// Tells what a scan has found from what was known before: the agent's lists say what there is, and
/// not since when. Main thread.
class FoundThreats {
public:
    /// Reads the lists as they are before the scan.
    explicit FoundThreats(HostCache& hostCache);

    /// What the lists have below `folder` (empty: everywhere) that is new since then, and what was
    /// known before and has not been dealt with: the scan saw it again. Waived files are none. In
    /// the order of the list, each path once.
    [[nodiscard]] std::vector<FoundThreat> below(const QString& folder) const;

private:
    [[nodiscard]] bool isNew(const JsonValue& name, const JsonValue& record) const;

    HostCache& m_hostCache;
    std::unordered_set<std::uint64_t> m_known; ///< hashes of records
};

} // namespace korvale
