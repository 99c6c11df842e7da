#pragma once

#include "core/base/AppState.h"
#include "model/JsonValue.h"
#include "model/RememberedEvents.h"
#include "model/TableFeeds.h"

#include <optional>

namespace korvale {

/// The rows of those events of `list` that are not remembered yet, in the file's order; they are
/// remembered from now on. At most 1000 rows: the rest of the list is not looked at.
[[nodiscard]] RowBatchPtr newEventRows(const JsonValue& list, RememberedEvents& remembered);

/// Turns the agent's list of threat and exploit events into rows of the events table. Main thread.
class FileProcessEvents {
public:
    FileProcessEvents(AppState& state, RememberedEvents& cacheEvents, TableFeed& eventsTable)
        : m_state(state), m_cacheEvents(cacheEvents), m_eventsTable(eventsTable) {}

    /// `list` is the content of "file_process_events.log", if there is any. True when rows were
    /// added to the table.
    bool parseFileProcessEvents(const std::optional<JsonValue>& list);

private:
    AppState& m_state;
    RememberedEvents& m_cacheEvents;
    TableFeed& m_eventsTable;
};

} // namespace korvale
