#pragma once

#include "core/base/AppState.h"
#include "core/base/Displays.h"
#include "model/FileThreatGroups.h"
#include "model/JsonValue.h"
#include "model/TableFeeds.h"

#include <optional>

namespace korvale {

struct ThreatNotification {
    QString message;
    QString subtitle;
    Urgency urgency = Urgency::Normal;
};

/// The notification that the step from the previous counters to a list's tallies asks for: at most
/// one, the most serious.
[[nodiscard]] std::optional<ThreatNotification> threatNotification(const FileThreatGroups& groups,
                                                                   const AppState& previous);

/// Puts a list's tallies in the place of the previous counters.
void updateFileThreatCounters(AppState& state, const FileThreatTally& tally);

/// Turns the list of files with a threat state into rows, counters and a notification. Main thread.
class FileStateChanges {
public:
    FileStateChanges(AppState& state, TableFeed& fileThreatsTableCtrl,
                     NotificationSender& notifications)
        : m_state(state), m_table(fileThreatsTableCtrl), m_notifications(notifications) {}

    /// No list empties the table and lets the counters drop to 0.
    void parseFileStateChanges(const std::optional<JsonValue>& list);

private:
    AppState& m_state;
    TableFeed& m_table;
    NotificationSender& m_notifications;
};

} // namespace korvale
