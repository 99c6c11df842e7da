#pragma once

#include "core/base/AppState.h"
#include "core/base/Displays.h"
#include "model/EventList.h"
#include "model/ExternalDevicesEvents.h"
#include "model/FileProcessEvents.h"
#include "model/FileStateChanges.h"
#include "model/JsonValue.h"
#include "model/ListChecksum.h"
#include "model/ProcessStateChanges.h"
#include "model/RememberedLists.h"
#include "model/TableFeeds.h"

#include <QString>

#include <cstdint>
#include <optional>

namespace korvale {

class HostCache;

/// Takes over what the agent has changed in the host cache, list by list in a fixed order. At
/// start-up it reads everything, later what the header's mask names. Main thread.
class AggregatedMessages {
public:
    AggregatedMessages(AppState& state, HostCache& hostCache, RememberedLists& remembered,
                       const TableFeeds& tables, StatusDisplay& status,
                       NotificationSender& notifications, CounterDisplay& counters);

    /// One batch. Whatever is found, it ends with updateDisplay.
    void parseTimerAggregatedMessage();
    /// The same with every file, whatever the mask names: after a time in which batches may have
    /// been missed.
    void parseEverything();

private:
    void readMaskedFiles(std::uint32_t mask);
    void readFileStates();
    void readScannerState();
    void readAnalysisCount();
    void readExternalDevices();
    void readProcessStates();
    void readEvents();
    std::optional<JsonValue> changedList(const char* name, ListChecksum& last, ListNews& news);

    AppState& m_state;
    HostCache& m_hostCache;
    RememberedLists& m_remembered;
    TableFeeds m_tables;
    StatusDisplay& m_status;
    CounterDisplay& m_counters;
    FileStateChanges m_fileStates;
    EventList m_eventList;
    ProcessStateChanges m_processStates;
    FileProcessEvents m_events;
    ExternalDevicesEvents m_devices;
};

} // namespace korvale
