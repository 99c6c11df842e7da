#pragma once

#include "agent/publish/HostCacheLists.h"
#include "agent_sim/AgentRooms.h"

#include <QString>

namespace korvale::sim {

/// Takes files away: a quarantined file lies in the quarantine folder under its identifier,
/// readable by its owner alone.
class Quarantine {
public:
    /// `model` must outlive this object.
    Quarantine(HostCacheLists& model, QString folder);

    /// Moves a file that is on the threat list and marks it. An empty text, or why it stays.
    QString take(const QString& path);
    /// Marks a file on the threat list as waived.
    QString waive(const QString& path);

    [[nodiscard]] const QString& folder() const { return m_folder; }

private:
    HostCacheLists& m_model;
    QString m_folder;
};

} // namespace korvale::sim
