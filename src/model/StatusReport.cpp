#include "model/StatusReport.h"

namespace korvale {

StatusReport statusReport(const AppState& state) {
    const ProtectionRule& rule = protectionRule(state);
    return {.rule = &rule,
            .why = protectionWhy(rule, state),
            .color = state.curIconDispColor,
            .lastScanEnd = state.lastScanEnd,
            .agentRunning = !state.agentIsAway,
            .managementConnected = state.halyxConnected,
            .cloudConnected = state.quillmarConnected,
            .driverConnected = state.driverConnected,
            .policyName = state.policyName,
            .policyMode = state.policyMode,
            .updaterText = state.updateStatus,
            .newThreats = state.newThreatCount,
            .newExploits = state.newExploitCount,
            .newEvents = state.eventCount,
            .analyzed = state.analyzedCount,
            .quarantined = state.quarantineCount,
            .waived = state.waiveCount};
}

const char* colorName(IconColor color) {
    switch (color) {
    case IconColor::Red:
        return "red";
    case IconColor::Yellow:
        return "yellow";
    case IconColor::Green:
        break;
    }
    return "green"; // any other number too
}

} // namespace korvale
