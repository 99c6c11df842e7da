#pragma once

#include "PlainJson.h"
#include "model/FileThreatGroups.h"

#include <QString>

#include <optional>
#include <string>
#include <vector>

namespace korvale {

struct PlainThreatRow {
    std::string key;
    std::vector<std::string> paths;
    unsigned state = 0;
    std::optional<std::string> id; ///< as shown
    std::optional<std::string> score;
};

struct PlainThreats {
    std::vector<PlainThreatRow> rows;
    FileThreatTally tally;
    std::string lastUnsafePath;
    std::string lastAbnormalPath;
};

/// Grouping the plain way, for lists whose states are numbers below 2^31 or no numbers.
[[nodiscard]] PlainThreats plainFileThreats(const PlainJson& list);

} // namespace korvale
