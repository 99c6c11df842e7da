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

namespace korvale {

class HostCache;

/// Process identifiers of whatever type, by their jsonFingerprint. A missing one counts as one too.
using ProcessIds = std::unordered_set<std::uint64_t>;

/// What one list of stopped processes comes to.
struct ProcessPass {
    RowBatchPtr rows;
    std::int64_t attempts = 0;      ///< processes that are not ignored
    ProcessIds newProcesses;        ///< those whose identifier was not remembered
    bool alert = false;             ///< one of these is in the alert state
    std::optional<QString> message; ///< about these, if there are any
};

/// `remembered` is what the previous pass found new. `exploitTypeName` is asked at most once.
[[nodiscard]] ProcessPass processPass(const JsonValue& list, const ProcessIds& remembered,
                                      const std::function<QString()>& exploitTypeName);

/// Name of the exploit type of the first record of an event list; empty when there is none.
[[nodiscard]] QString firstExploitTypeName(const std::optional<JsonValue>& events);

/// Turns the agent's list of processes stopped for exploit attempts into rows, counters and a
/// notification. Main thread.
class ProcessStateChanges {
public:
    ProcessStateChanges(AppState& state, HostCache& hostCache, ProcessIds& cachedProcessByPID,
                        TableFeed& memExploitTable, NotificationSender& notifications)
        : m_state(state),
          m_hostCache(hostCache),
          m_cachedProcessByPID(cachedProcessByPID),
          m_memExploitTable(memExploitTable),
          m_notifications(notifications) {}

    /// `list` is the content of "process_states.log"; no value empties the table.
    void parseProcessStateChanges(const std::optional<JsonValue>& list);

private:
    AppState& m_state;
    HostCache& m_hostCache;
    ProcessIds& m_cachedProcessByPID;
    TableFeed& m_memExploitTable;
    NotificationSender& m_notifications;
};

} // namespace korvale
