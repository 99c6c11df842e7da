#include "agent/app/ThreatLists.h"

#include "agent/base/Utf8.h"
#include "agent/publish/HostCacheLists.h"

#include <QDateTime>

#include <algorithm>

namespace korvale::agent {
namespace {

constexpr int kUnsafeScore = 100;
constexpr int kAbnormalScore = 60;

int stateBits(const Finding& finding) {
    int bits = finding.kind == ThreatKind::Unsafe ? file_state::kUnsafe : file_state::kAbnormal;
    if (finding.state == FindingState::Quarantined) {
        bits |= file_state::kQuarantined;
    } else if (finding.state == FindingState::Waived) {
        bits |= file_state::kWaived;
    }
    return bits;
}

int eventOf(FindingState state) {
    switch (state) {
    case FindingState::Quarantined:
        return threat_event::kQuarantined;
    case FindingState::Waived:
        return threat_event::kWaived;
    case FindingState::Deleted:
        return threat_event::kRemoved;
    case FindingState::Detected:
        break;
    }
    return threat_event::kDetected;
}

QString localTime(std::int64_t seconds) {
    return QDateTime::fromSecsSinceEpoch(seconds).toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
}

} // namespace

QString pathText(std::string_view bytes) {
    std::string text;
    while (!bytes.empty()) {
        const std::size_t length = utf8Length(bytes);
        if (length > 0) {
            text += bytes.substr(0, length);
            bytes.remove_prefix(length);
            continue;
        }
        constexpr std::string_view kDigits = "0123456789abcdef";
        const auto byte = static_cast<unsigned char>(bytes.front());
        text += "\\x";
        text += kDigits[byte >> 4U];
        text += kDigits[byte & 0xfU];
        bytes.remove_prefix(1);
    }
    return QString::fromStdString(text);
}

void ThreatLists::put(const Finding& finding, const QString& path) {
    if (finding.state == FindingState::Deleted) {
        // Another content may have been found there since.
        if (const auto shown = m_shown.constFind(path);
            shown != m_shown.constEnd() && shown->id == finding.id) {
            m_shown.erase(shown);
            m_lists.setFile(path, {});
        }
        return;
    }
    m_shown.insert(path, {finding.id, finding.state});
    m_lists.setFile(path, {stateBits(finding), QString::fromStdString(finding.id),
                           finding.kind == ThreatKind::Unsafe ? kUnsafeScore : kAbnormalScore});
}

void ThreatLists::fill(const std::vector<Finding>& findings) {
    for (const Finding& finding : findings) {
        const QString path = pathText(finding.path);
        put(finding, path);
        m_lists.setEventTime(localTime(finding.lastSeen));
        m_lists.addThreatEvent(path, stateBits(finding), eventOf(finding.state));
    }
    m_lists.setEventTime({});
}

void ThreatLists::show(const Finding& finding) {
    const QString path = pathText(finding.path);
    put(finding, path);
    m_lists.addThreatEvent(path, stateBits(finding), eventOf(finding.state));
}

int ThreatLists::count(FindingState state) const {
    return static_cast<int>(std::count_if(
        m_shown.begin(), m_shown.end(), [&](const Shown& shown) { return shown.state == state; }));
}

} // namespace korvale::agent
