// A list of the agent, handed to every parser, with every text of every row.

#include "ReadingTable.h"
#include "Surroundings.h"
#include "model/EventList.h"
#include "model/ExternalDevicesEvents.h"
#include "model/FileProcessEvents.h"
#include "model/FileStateChanges.h"
#include "model/ProcessStateChanges.h"

#include <QByteArrayView>

using namespace korvale;

const fuzz::Grammar& fuzz::targetGrammar() {
    return fuzz::json;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const fuzz::CheckingSink sink;
    const auto list = JsonValue::parse(QByteArrayView(data, static_cast<qsizetype>(size)));
    if (!list) {
        return 0;
    }
    ++fuzz::taken;
    AppState state;
    state.justStart = false;
    fuzz::ReadingTable table;
    fuzz::SilentDisplays displays;
    FileStateChanges(state, table, displays).parseFileStateChanges(list);
    ExternalDevicesEvents(state, table).parseExternalDevicesEvents(list);

    const ProcessPass pass = processPass(*list, {}, [&] { return firstExploitTypeName(*list); });
    table.loadData(pass.rows);
    // By now every process is known that has a number.
    const ProcessPass again = processPass(*list, pass.newProcesses, [] { return QString(); });
    fuzz::require(again.newProcesses.empty());

    RememberedEvents remembered;
    FileProcessEvents events(state, remembered, table);
    const bool fits = list->size() <= mostTableRows;
    if (events.parseFileProcessEvents(list) && fits) {
        fuzz::require(!events.parseFileProcessEvents(list)); // every event is known by now
    }
    return 0;
}
