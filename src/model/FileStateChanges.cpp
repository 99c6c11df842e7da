#include "model/FileStateChanges.h"

#include "core/base/TextFormat.h"
#include "platform/Texts.h"

#include <algorithm>
#include <array>

namespace korvale {

namespace {

struct Wording {
    const char* subtitle;
    const char* message;
};

struct Rule {
    std::int64_t FileThreatTally::*now;
    std::int64_t AppState::*before;
    QString FileThreatGroups::*name; ///< of the one file that the singular message names
    Wording singular;
    Wording plural;
    Urgency urgency; ///< once the program runs; what an earlier session found is no news
};

/// The first rule whose count has grown decides. Unsafe detections are compared with a counter that
/// holds all threats of the previous pass that are not waived; that asymmetry is wanted.
constexpr std::array<Rule, 4> rules{{
    {&FileThreatTally::unsafeDetected,
     &AppState::threatDetectCount,
     &FileThreatGroups::lastUnsafeName,
     {"NotificationSubtitleUnsafeDetected", "NotificationMessageUnsafeDetected"},
     {"NotificationSubtitleUnsafesDetected", "NotificationMessageUnsafesDetected"},
     Urgency::Critical},
    {&FileThreatTally::abnormalDetected,
     &AppState::abnormalDetectCount,
     &FileThreatGroups::lastAbnormalName,
     {"NotificationSubtitleAbnormalDetected", "NotificationMessageAbnormalDetected"},
     {"NotificationSubtitleAbnormalsDetected", "NotificationMessageAbnormalsDetected"},
     Urgency::Critical},
    {&FileThreatTally::unsafeQuarantined,
     &AppState::threatQuarantineCount,
     &FileThreatGroups::lastUnsafeName,
     {"NotificationSubtitleUnsafeQuarantined", "NotificationMessageUnsafeQuarantined"},
     {"NotificationSubtitleUnsafesQuarantined", "NotificationMessageUnsafesQuarantined"},
     Urgency::Normal},
    {&FileThreatTally::abnormalQuarantined,
     &AppState::abnormalQuarantineCount,
     &FileThreatGroups::lastAbnormalName,
     {"NotificationSubtitleAbnormalQuarantined", "NotificationMessageAbnormalQuarantined"},
     {"NotificationSubtitleAbnormalsQuarantined", "NotificationMessageAbnormalsQuarantined"},
     Urgency::Normal},
}};

/// How many threats the notification speaks of; may be 0 or less.
std::int64_t newThreats(const FileThreatTally& now, const AppState& before) {
    const std::int64_t quarantined = now.unsafeQuarantined + now.abnormalQuarantined -
                                     before.abnormalQuarantineCount - before.threatQuarantineCount;
    const std::int64_t detected = now.abnormalDetected - before.abnormalDetectCount +
                                  now.unsafeDetected - before.threatDetectCount;
    return quarantined + std::max<std::int64_t>(0, detected);
}

} // namespace

std::optional<ThreatNotification> threatNotification(const FileThreatGroups& groups,
                                                     const AppState& previous) {
    const auto* const rule = std::find_if(rules.begin(), rules.end(), [&](const Rule& candidate) {
        return groups.tally.*candidate.now > previous.*candidate.before;
    });
    if (rule == rules.end()) {
        return std::nullopt;
    }
    const std::int64_t count = newThreats(groups.tally, previous);
    const bool one = count == 1;
    const Wording& wording = one ? rule->singular : rule->plural;
    return ThreatNotification{formatText(localizedText(wording.message),
                                         {one ? groups.*rule->name : QString::number(count)}),
                              localizedText(wording.subtitle),
                              previous.justStart ? Urgency::Normal : rule->urgency};
}

void updateFileThreatCounters(AppState& state, const FileThreatTally& tally) {
    state.threatQuarantineCount = tally.unsafeQuarantined;
    state.threatWaiveCount = tally.unsafeWaived;
    state.quarantineCount = tally.unsafeQuarantined + tally.abnormalQuarantined;
    state.abnormalQuarantineCount = tally.abnormalQuarantined;
    state.abnormalDetectCount = tally.abnormalDetected;
    state.abnormalWaiveCount = tally.abnormalWaived;
    state.waiveCount = tally.unsafeWaived + tally.abnormalWaived;
    const std::int64_t threats =
        tally.unsafeDetected + tally.abnormalDetected + state.quarantineCount;
    // Falls, below zero too, when threats disappear.
    state.newThreatCount += threats - state.threatDetectCount;
    state.threatDetectCount = threats;
}

void FileStateChanges::parseFileStateChanges(const std::optional<JsonValue>& list) {
    const FileThreatGroups groups = list ? groupFileThreats(*list) : FileThreatGroups();
    m_table.loadData(groups.rows);
    if (const auto notification = threatNotification(groups, m_state)) {
        const auto send = notification->urgency == Urgency::Critical
                              ? &NotificationSender::SendUrgentNotification
                              : &NotificationSender::SendNotification;
        (m_notifications.*send)(notification->message, notification->subtitle, threatImage);
    }
    updateFileThreatCounters(m_state, groups.tally);
}

} // namespace korvale
