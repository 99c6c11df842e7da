#pragma once

#include "model/ListChecksum.h"
#include "model/ProcessStateChanges.h"
#include "model/RememberedEvents.h"

#include <QString>

namespace korvale {

/// What is remembered from one aggregated message to the next, for the life of the program; nothing
/// is ever reset, also not when a list becomes empty.
struct RememberedLists {
    ProcessIds cachedProcessByPID; ///< those that were new in the latest pass
    RememberedEvents cacheEvents;  ///< all that were ever reported

    // Checksums of the lists that were parsed last.
    ListChecksum lastFileStateCRC;
    ListChecksum lastProcessStateCRC; ///< of the process or the device list, whichever came last
    ListChecksum lastEventsCRC;
    QString lastEventsType; ///< exploit type of the first event of that list
};

} // namespace korvale
