#include "model/AggregatedMessages.h"

#include "model/HostCache.h"
#include "model/HostCacheFiles.h"
#include "model/Values.h"

#include <limits>
#include <new>

namespace korvale {
namespace {

/// Bits of the header's mask. The event list has none: it rides on the process and file states.
namespace MessageBit {
constexpr std::uint32_t fileStates = 1;
constexpr std::uint32_t scannerState = 2;
constexpr std::uint32_t analysisCount = 4;
constexpr std::uint32_t processStates = 16;
constexpr std::uint32_t externalDevices = 2048;
} // namespace MessageBit

constexpr std::int64_t scannerIdle = 1;

ListNews newsOf(ListState state) {
    switch (state) {
    case ListState::Absent:
        return ListNews::NotRead;
    case ListState::Unreadable:
        return ListNews::Unreadable;
    default:
        return ListNews::Read;
    }
}

/// False when memory does not hold what `parse` makes of a list that was read: it is as unreadable
/// then as one that memory does not hold itself.
template <typename Parse>
bool isParsed(ListNews& news, Parse parse) {
    try {
        parse();
        return true;
    } catch (const std::bad_alloc&) {
        news = ListNews::Unreadable;
        return false;
    }
}

} // namespace

AggregatedMessages::AggregatedMessages(AppState& state, HostCache& hostCache,
                                       RememberedLists& remembered, const TableFeeds& tables,
                                       StatusDisplay& status, NotificationSender& notifications,
                                       CounterDisplay& counters)
    : m_state(state),
      m_hostCache(hostCache),
      m_remembered(remembered),
      m_tables(tables),
      m_status(status),
      m_counters(counters),
      m_fileStates(state, tables.fileThreatsTableCtrl, notifications),
      m_eventList(hostCache, remembered),
      m_processStates(state, remembered.cachedProcessByPID, tables.memExploitTableCtrl,
                      notifications, [this] { return m_eventList.firstExploitTypeName(); }),
      m_events(state, remembered.cacheEvents, tables.eventsTableCtrl),
      m_devices(state, tables.externalDevicesTableCtrl) {}

void AggregatedMessages::parseTimerAggregatedMessage() {
    bool isUnreadable = false;
    const auto header = m_hostCache.readFile(QLatin1String(HostCacheFile::header), isUnreadable);
    m_state.header = header         ? ListNews::Read
                     : isUnreadable ? ListNews::Unreadable
                                    : ListNews::NotRead;
    if (header) {
        // The files are read one by one: gathering them all first would decide nothing.
        readMaskedFiles(unsigned32Value((*header)["MessageMask"]));
    }
    m_counters.updateDisplay();
}

void AggregatedMessages::parseEverything() {
    if (m_hostCache.readFile(QLatin1String(HostCacheFile::header))) {
        readMaskedFiles(std::numeric_limits<std::uint32_t>::max());
    }
    m_counters.updateDisplay();
}

void AggregatedMessages::readMaskedFiles(std::uint32_t mask) {
    const auto isDue = [this, mask](std::uint32_t bit) {
        return m_state.justStart || (mask & bit) != 0;
    };
    if (isDue(MessageBit::fileStates)) {
        readFileStates();
    }
    if (isDue(MessageBit::scannerState)) {
        readScannerState();
    }
    if (isDue(MessageBit::analysisCount)) {
        readAnalysisCount();
    }
    if (isDue(MessageBit::externalDevices)) {
        readExternalDevices();
    }
    if (isDue(MessageBit::processStates)) {
        readProcessStates();
    }
    // Also when the lists they ride on turned out unchanged.
    if (isDue(MessageBit::processStates | MessageBit::fileStates)) {
        readEvents();
    }
}

void AggregatedMessages::readFileStates() {
    ListRead read = m_hostCache.readList(QLatin1String(HostCacheFile::fileStates),
                                         m_remembered.lastFileStateCRC);
    m_state.fileThreats = newsOf(read.state);
    switch (read.state) {
    case ListState::Unchanged:
        m_remembered.lastFileStateCRC = read.checksum;
        return;
    case ListState::Changed:
        if (isParsed(m_state.fileThreats, [&] { m_fileStates.parseFileStateChanges(read.list); })) {
            m_remembered.lastFileStateCRC = read.checksum;
        } else {
            m_fileStates.parseFileStateChanges(std::nullopt);
        }
        break;
    case ListState::Empty:
        m_fileStates.parseFileStateChanges(read.list);
        break;
    case ListState::Absent: // unlike the other lists: the table empties, on every pass anew
    case ListState::Unreadable:
        m_fileStates.parseFileStateChanges(std::nullopt);
        break;
    }
    m_tables.fileThreatsTableCtrl.updateView();
}

void AggregatedMessages::readScannerState() {
    const auto scanner = m_hostCache.readFile(QLatin1String(HostCacheFile::scannerState));
    if (scanner && integerValue((*scanner)["ScannerState"]) == scannerIdle &&
        m_state.statusState == StatusState::Inspecting) {
        m_status.updateStatusMessage(StatusState::Running);
    }
}

void AggregatedMessages::readAnalysisCount() {
    if (const auto count = m_hostCache.readFile(QLatin1String(HostCacheFile::analysisCount))) {
        m_state.analyzedCount = integerValue((*count)["AnalyzedCount"]);
    }
}

void AggregatedMessages::readExternalDevices() {
    // One checksum for devices and processes, on purpose: where both are read, each is compared
    // with the other, and both are parsed each time.
    if (const auto list = changedList(HostCacheFile::externalDevices,
                                      m_remembered.lastProcessStateCRC, m_state.externalDevices)) {
        if (isParsed(m_state.externalDevices,
                     [&] { m_devices.parseExternalDevicesEvents(list); })) {
            m_tables.externalDevicesTableCtrl.updateView();
        }
    }
}

void AggregatedMessages::readProcessStates() {
    if (const auto list = changedList(HostCacheFile::processStates,
                                      m_remembered.lastProcessStateCRC, m_state.processThreats)) {
        if (isParsed(m_state.processThreats,
                     [&] { m_processStates.parseProcessStateChanges(list); })) {
            m_tables.memExploitTableCtrl.updateView();
        }
    }
}

void AggregatedMessages::readEvents() {
    m_state.events = newsOf(m_eventList.state());
    if (const auto list = m_eventList.takeChanged()) {
        bool areNew = false;
        if (isParsed(m_state.events, [&] { areNew = m_events.parseFileProcessEvents(list); }) &&
            areNew) {
            m_tables.eventsTableCtrl.updateView();
        }
    }
}

/// The list, when it has members and is not the one that `last` was remembered of. Comparing cannot
/// fail, so there is no failure to log.
std::optional<JsonValue> AggregatedMessages::changedList(const char* name, ListChecksum& last,
                                                         ListNews& news) {
    ListRead read = m_hostCache.readList(QString::fromLatin1(name), last);
    news = newsOf(read.state);
    if (read.state == ListState::Unchanged || read.state == ListState::Changed) {
        last = read.checksum;
    }
    return read.state == ListState::Changed ? std::optional(std::move(read.list)) : std::nullopt;
}

} // namespace korvale
