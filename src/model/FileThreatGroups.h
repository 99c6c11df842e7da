#pragma once

#include "model/FileThreatRows.h"
#include "model/FileThreatTally.h"
#include "model/JsonValue.h"

#include <QString>

#include <memory>

namespace korvale {

/// The list of file threats, grouped into rows in the order in which each row's first file was met.
struct FileThreatGroups {
    std::shared_ptr<const FileThreatRows> rows;
    FileThreatTally tally;
    QString lastUnsafeName; ///< null when no file is unsafe
    QString lastAbnormalName;
};

/// `list` is an object from paths to records; any other value has no records.
[[nodiscard]] FileThreatGroups groupFileThreats(const JsonValue& list);

} // namespace korvale
