#pragma once

#include "PlainJson.h"
#include "model/FileThreatGroups.h"

#include <QString>

#include <vector>

namespace korvale {

struct PlainThreatRow {
    std::string key;
    std::vector<std::string> paths;
    unsigned state = 0;
};

struct PlainThreats {
    std::vector<PlainThreatRow> rows;
    FileThreatTally tally;
    std::string lastUnsafePath;
    std::string lastAbnormalPath;
};

/// Grouping the plain way, for lists whose states are integers below 2^31 or no numbers, and whose
/// identifiers are texts or missing.
[[nodiscard]] PlainThreats plainFileThreats(const PlainJson& list);

} // namespace korvale
