#pragma once

#include "model/FileThreatRows.h"
#include "model/JsonValue.h"

#include <QString>

#include <cstdint>
#include <memory>

namespace korvale {

/// Files of one pass, each counted once; bit unsafe wins over abnormal, quarantined over waived.
struct FileThreatTally {
    std::int64_t unsafeDetected = 0;
    std::int64_t unsafeQuarantined = 0;
    std::int64_t unsafeWaived = 0;
    std::int64_t abnormalDetected = 0;
    std::int64_t abnormalQuarantined = 0;
    std::int64_t abnormalWaived = 0;

    friend bool operator==(const FileThreatTally&, const FileThreatTally&) = default;
};

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
