#pragma once

#include <cstdint>

namespace korvale {

/// Files of one pass, each counted once; bit unsafe wins over abnormal, quarantined over waived.
struct FileThreatTally {
    std::int64_t unsafeDetected = 0;
    std::int64_t unsafeQuarantined = 0;
    std::int64_t unsafeWaived = 0;
    std::int64_t abnormalDetected = 0;
    std::int64_t abnormalQuarantined = 0;
    std::int64_t abnormalWaived = 0;

    /// Counts a file in this state (see FileStateBit); one that is neither unsafe nor abnormal
    /// counts nowhere.
    void add(std::uint32_t state);

    friend bool operator==(const FileThreatTally&, const FileThreatTally&) = default;
};

} // namespace korvale
