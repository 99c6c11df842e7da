#pragma once

#include "core/base/AppState.h"
#include "model/JsonValue.h"
#include "model/TableFeeds.h"

#include <optional>

namespace korvale {

/// One row for each record of `list`, in the file's order, at most 1000. Nothing is remembered: the
/// records of a changed file are rows again.
[[nodiscard]] RowBatchPtr deviceRows(const JsonValue& list);

/// Turns the agent's list of device control events into rows of the external devices table. Main
/// thread.
class ExternalDevicesEvents {
public:
    ExternalDevicesEvents(AppState& state, TableFeed& externalDevicesTable)
        : m_state(state), m_externalDevicesTable(externalDevicesTable) {}

    /// `list` is the content of "external_device_control_events.log", if there is any. True when
    /// rows were added to the table.
    bool parseExternalDevicesEvents(const std::optional<JsonValue>& list);

private:
    AppState& m_state;
    TableFeed& m_externalDevicesTable;
};

} // namespace korvale
