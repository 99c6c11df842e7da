#include "core/StatusProperties.h"

namespace korvale {

const char* verdictName(Verdict verdict) {
    switch (verdict) {
    case Verdict::Good:
        return "good";
    case Verdict::Danger:
        return "danger";
    case Verdict::Away:
        return "away";
    case Verdict::Unknown:
        break;
    }
    return "unknown";
}

QVariantMap statusProperties(const StatusReport& report) {
    const auto count = [](std::int64_t value) {
        return QVariant::fromValue(static_cast<qlonglong>(value));
    };
    const auto text = [](const QString& value) {
        return value.isNull() ? QStringLiteral("") : value;
    };
    const qint64 lastScan =
        report.lastScanEnd.isValid() ? report.lastScanEnd.toSecsSinceEpoch() : 0;
    return {
        {QStringLiteral("Version"), 1U},
        {QStringLiteral("State"), QString::fromLatin1(report.rule->name)},
        {QStringLiteral("Severity"), QString::fromLatin1(verdictName(report.rule->verdict))},
        {QStringLiteral("Reason"), report.why},
        {QStringLiteral("Color"), QString::fromLatin1(colorName(report.color))},
        {QStringLiteral("NewThreats"), count(report.newThreats)},
        {QStringLiteral("NewExploits"), count(report.newExploits)},
        {QStringLiteral("NewEvents"), count(report.newEvents)},
        {QStringLiteral("Analyzed"), count(report.analyzed)},
        {QStringLiteral("Quarantined"), count(report.quarantined)},
        {QStringLiteral("Waived"), count(report.waived)},
        {QStringLiteral("AgentRunning"), report.agentRunning},
        {QStringLiteral("ManagementConnected"), report.managementConnected},
        {QStringLiteral("CloudConnected"), report.cloudConnected},
        {QStringLiteral("DriverConnected"), report.driverConnected},
        {QStringLiteral("PolicyName"), text(report.policyName)},
        {QStringLiteral("PolicyMode"), text(report.policyMode)},
        {QStringLiteral("UpdaterText"), text(report.updaterText)},
        {QStringLiteral("LastScanEnd"), count(lastScan)},
    };
}

} // namespace korvale
