#pragma once

#include "core/base/AppState.h"
#include "model/ProtectionRules.h"

#include <QString>

namespace korvale {

/// What the program knows of the machine's protection, for the window, scripts and bars. Names no
/// file.
struct StatusReport {
    const ProtectionRule* rule = nullptr; ///< of protectionRules(); never null
    QString why;                          ///< in the user's language, one line
    IconColor color = IconColor::Red;
    QDateTime lastScanEnd; ///< invalid: none told of in this run
    bool agentRunning = false;
    bool managementConnected = false;
    bool cloudConnected = false;
    bool driverConnected = true; ///< not reported missing
    QString policyName;
    QString policyMode;
    QString updaterText; ///< the updater's own words; empty without any
    std::int64_t newThreats = 0;
    std::int64_t newExploits = 0;
    std::int64_t newEvents = 0;
    std::int64_t analyzed = 0;
    std::int64_t quarantined = 0;
    std::int64_t waived = 0;

    friend bool operator==(const StatusReport&, const StatusReport&) = default;
};

[[nodiscard]] StatusReport statusReport(const AppState& state);

/// "green", "yellow" or "red": the word for the status item's colour in scripts.
[[nodiscard]] const char* colorName(IconColor color);

} // namespace korvale
