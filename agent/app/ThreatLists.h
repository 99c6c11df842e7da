#pragma once

#include "agent/store/Finding.h"

#include <QHash>
#include <QString>

#include <string_view>
#include <vector>

namespace korvale::agent {

class HostCacheLists;

/// Shows findings in the lists that programs read: a path has one record, that of the finding shown
/// last. Main thread.
class ThreatLists {
public:
    /// `lists` must outlive this object.
    explicit ThreatLists(HostCacheLists& lists) : m_lists(lists) {}

    /// At the start: everything that is known, oldest first.
    void fill(const std::vector<Finding>& findings);
    /// A finding is new or has another state, which is an event.
    void show(const Finding& finding);

    [[nodiscard]] int detected() const { return count(FindingState::Detected); }
    [[nodiscard]] int quarantined() const { return count(FindingState::Quarantined); }
    [[nodiscard]] int waived() const { return count(FindingState::Waived); }

private:
    struct Shown {
        std::string id;
        FindingState state = FindingState::Detected;
    };

    void put(const Finding& finding, const QString& path);
    [[nodiscard]] int count(FindingState state) const;

    HostCacheLists& m_lists;
    QHash<QString, Shown> m_shown; ///< by path
};

/// A path of any bytes as a text that is different for different paths: what is no UTF-8 becomes
/// \xNN.
[[nodiscard]] QString pathText(std::string_view bytes);

} // namespace korvale::agent
