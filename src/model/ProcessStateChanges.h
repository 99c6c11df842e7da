#pragma once

#include "core/base/AppState.h"
#include "core/base/Displays.h"
#include "model/JsonValue.h"
#include "model/TableFeeds.h"

#include <QString>

#include <cstdint>
#include <functional>
#include <optional>
#include <unordered_set>
#include <utility>

namespace korvale {

/// Process identifiers of whatever type, by their jsonFingerprint.
using ProcessIds = std::unordered_set<std::uint64_t>;

/// What one list of stopped processes comes to.
struct ProcessPass {
    RowBatchPtr rows;
    std::int64_t attempts = 0;      ///< processes that are not ignored
    ProcessIds newProcesses;        ///< the identifiers that were not remembered
    bool alert = false;             ///< one of these is in the alert state
    std::optional<QString> message; ///< about these, if there are any
};

/// `remembered` is what the previous pass found new; a process without identifier is new each time.
/// `exploitTypeName` is asked at most once.
[[nodiscard]] ProcessPass processPass(const JsonValue& list, const ProcessIds& remembered,
                                      const std::function<QString()>& exploitTypeName);

/// Turns the agent's list of processes stopped for exploit attempts into rows, counters and a
/// notification. Main thread.
class ProcessStateChanges {
public:
    /// `exploitTypeName` gives the name of the exploit type that a notification shall name.
    ProcessStateChanges(AppState& state, ProcessIds& cachedProcessByPID, TableFeed& memExploitTable,
                        NotificationSender& notifications, std::function<QString()> exploitTypeName)
        : m_state(state),
          m_cachedProcessByPID(cachedProcessByPID),
          m_memExploitTable(memExploitTable),
          m_notifications(notifications),
          m_exploitTypeName(std::move(exploitTypeName)) {}

    /// `list` is the content of "process_states.log"; no value empties the table.
    void parseProcessStateChanges(const std::optional<JsonValue>& list);

private:
    AppState& m_state;
    ProcessIds& m_cachedProcessByPID;
    TableFeed& m_memExploitTable;
    NotificationSender& m_notifications;
    std::function<QString()> m_exploitTypeName;
};

} // namespace korvale
