#include "model/ProtectionRules.h"

#include "core/base/TextFormat.h"
#include "platform/CountText.h"
#include "platform/Texts.h"

#include <QLocale>

#include <algorithm>
#include <array>

namespace korvale {
namespace {

constexpr bool isUnreadable(const AppState& state) {
    return state.header == ListNews::Unreadable || state.fileThreats == ListNews::Unreadable ||
           state.processThreats == ListNews::Unreadable;
}

constexpr bool isUnreported(const AppState& state) {
    return state.header != ListNews::Read || state.fileThreats != ListNews::Read ||
           state.processThreats != ListNews::Read;
}

constexpr std::array rules{
    ProtectionRule{"agent-away", [](const AppState& s) { return s.agentIsAway; }, Verdict::Away,
                   "HPS_WhyAgentAway", nullptr, "HPS_NowAgentAway"},
    ProtectionRule{"driver-missing", [](const AppState& s) { return !s.driverConnected; },
                   Verdict::Danger, "HPS_WhyDriverMissing", nullptr, "HPS_NowDriverMissing"},
    ProtectionRule{"new-threats-offline",
                   [](const AppState& s) {
                       return s.newThreatCount >= 1 && s.curIconDispColor == IconColor::Yellow;
                   },
                   Verdict::Danger, "HPS_WhyThreatsOffline", "HPS_WhyThreatOffline",
                   "HPS_NowThreats", &AppState::newThreatCount},
    ProtectionRule{"new-threats", [](const AppState& s) { return s.newThreatCount >= 1; },
                   Verdict::Danger, "HPS_WhyThreats", "HPS_WhyThreat", "HPS_NowThreats",
                   &AppState::newThreatCount},
    ProtectionRule{"unconfirmed",
                   [](const AppState& s) { return s.curIconDispColor == IconColor::Red; },
                   Verdict::Unknown, "HPS_WhyUnconfirmed", nullptr, "HPS_NowUnconfirmed"},
    ProtectionRule{"unreadable", isUnreadable, Verdict::Unknown, "HPS_WhyUnreadable", nullptr,
                   "HPS_NowUnreadable"},
    ProtectionRule{"new-exploits", [](const AppState& s) { return s.newExploitCount >= 1; },
                   Verdict::Danger, "HPS_WhyExploits", "HPS_WhyExploit", "HPS_NowExploits",
                   &AppState::newExploitCount},
    ProtectionRule{"offline",
                   [](const AppState& s) { return s.curIconDispColor == IconColor::Yellow; },
                   Verdict::Unknown, "HPS_WhyOffline", nullptr, "HPS_NowOffline"},
    ProtectionRule{"not-reported", isUnreported, Verdict::Unknown, "HPS_WhyNotReported", nullptr,
                   "HPS_NowNotReported"},
    ProtectionRule{"connection-unknown",
                   [](const AppState& s) { return !s.halyxConnected && !s.quillmarConnected; },
                   Verdict::Unknown, "HPS_WhyConnectionUnknown", nullptr,
                   "HPS_NowConnectionUnknown"},
    ProtectionRule{"good", [](const AppState&) { return true; }, Verdict::Good, "HPS_WhyGood"},
};

} // namespace

std::span<const ProtectionRule> protectionRules() {
    return rules;
}

const ProtectionRule& protectionRule(const AppState& state) {
    return *std::find_if(rules.begin(), rules.end(),
                         [&state](const ProtectionRule& rule) { return rule.holds(state); });
}

QString protectionWhy(const ProtectionRule& rule, const AppState& state) {
    if (rule.counts == nullptr) {
        return localizedText(rule.whyKey);
    }
    const std::int64_t count = state.*rule.counts;
    return count == 1 ? localizedText(rule.whyOneKey)
                      : formatText(localizedText(rule.whyKey), {countText(count)});
}

QString protectionAdvice(const ProtectionRule& rule) {
    return rule.adviceKey != nullptr ? localizedText(rule.adviceKey) : QString();
}

QString lastScanText(const QDateTime& end) {
    if (!end.isValid()) {
        return {};
    }
    return formatText(localizedText("HPS_LastScan"),
                      {QLocale().toString(end, QLocale::ShortFormat)});
}

} // namespace korvale
