// A whole host cache, read as the program does: at the start, by batches, and for each of the
// agent's notifications.

#include "InputFiles.h"
#include "ReadingTable.h"
#include "Surroundings.h"
#include "agent_link/AgentNotifications.h"
#include "model/AggregatedMessages.h"
#include "model/HostCache.h"
#include "model/HostCacheFiles.h"

#include <array>

using namespace korvale;

namespace {

constexpr std::array fileNames{HostCacheFile::header,
                               HostCacheFile::fileStates,
                               HostCacheFile::scannerState,
                               HostCacheFile::analysisCount,
                               HostCacheFile::processStates,
                               HostCacheFile::externalDevices,
                               HostCacheFile::exeBlocked,
                               HostCacheFile::fileProcessEvents,
                               HostCacheFile::processBlocked,
                               HostCacheFile::analyzerStatus,
                               HostCacheFile::processTerminated,
                               HostCacheFile::consumerNotification};

/// The program's part that reads the folder, without a window and a bus.
struct Reader {
    explicit Reader(const QString& folder) : hostCache(defaults, folder) {}

    AppState state;
    fuzz::NoDefaults defaults;
    fuzz::StoppedClock clock;
    HostCache hostCache;
    RememberedLists remembered;
    fuzz::ReadingTable table;
    fuzz::SilentDisplays displays;
    AggregatedMessages batches{state,    hostCache, remembered, {table, table, table, table},
                               displays, displays,  displays};
    AgentNotifications notifications{
        {state, clock, displays, displays, displays,
         [this](const QString& file) { return hostCache.readFile(file); }, [] {},
         [this] { batches.parseTimerAggregatedMessage(); }}};
};

} // namespace

const fuzz::Grammar& fuzz::targetGrammar() {
    return fuzz::json;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const fuzz::CheckingSink sink;
    static const fuzz::InputFolder folder;
    const auto files = fuzz::filesIn(fuzz::textOf(data, size));
    for (const char* name : fileNames) {
        const auto file = files.find(name);
        if (file == files.end()) {
            folder.remove(QString::fromLatin1(name));
        } else {
            folder.write(QString::fromLatin1(name), file->second);
        }
    }
    Reader reader(folder.path());
    reader.batches.parseEverything();
    reader.state.justStart = false;
    for (std::uint32_t code = 0; code <= 22; ++code) {
        reader.notifications.HandleAgentNotification(code);
    }
    const AppState before = reader.state;
    const ListChecksum fileStates = reader.remembered.lastFileStateCRC;
    reader.batches.parseEverything(); // nothing has changed
    fuzz::require(reader.state.analyzedCount == before.analyzedCount);
    fuzz::require(reader.state.newThreatCount == before.newThreatCount);
    fuzz::require(reader.remembered.lastFileStateCRC.bytes == fileStates.bytes);
    fuzz::taken += fileStates.size != 0 ? 1U : 0U;
    return 0;
}
