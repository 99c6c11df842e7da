#include "shell/StatusLine.h"

#include "core/base/TextFormat.h"
#include "platform/Texts.h"

#include <utility>

namespace korvale {
namespace {

/// Progress reports closer together than this (seconds) show the file they name.
constexpr double progressWindow = 5.0;

} // namespace

StatusLine::StatusLine(AppState& state, const Clock& clock, QObject* parent)
    : QObject(parent), m_state(state), m_clock(clock) {}

void StatusLine::updateStatusMessage(StatusState state) {
    if (!m_state.driverConnected && m_state.statusState == StatusState::NoDriver) {
        return;
    }
    const std::optional<double> previousReport =
        std::exchange(m_state.lastStatusReportTime, m_clock.now());
    m_state.statusState = state;

    QString text;
    QString toolTip = m_toolTip; // states without a text keep the old tooltip
    switch (state) {
    case StatusState::NotRunning:
        toolTip = text = localizedText("NotRunning");
        break;
    case StatusState::NoNetwork:
        toolTip = text = localizedText("NoNetwork");
        break;
    case StatusState::NoDriver:
        toolTip = text = localizedText("NoDriver");
        break;
    case StatusState::Inspecting:
        toolTip = text = inspectingText(previousReport);
        break;
    case StatusState::UpdaterMessage:
        toolTip = text = m_state.updateStatus;
        break;
    case StatusState::Running:
        break;
    }
    if (text != m_text || toolTip != m_toolTip) {
        m_text = text;
        m_toolTip = toolTip;
        Q_EMIT changed();
    }
}

QString StatusLine::inspectingText(std::optional<double> previousReport) const {
    if (!previousReport || *m_state.lastStatusReportTime - *previousReport >= progressWindow) {
        return localizedText("EventThreatStringFromValueRunning");
    }
    const QString& item = m_state.currentScanItem;
    return formatText(
        u"%@ %@", {localizedText("Inspecting"), item.isNull() ? QStringLiteral("(null)") : item});
}

} // namespace korvale
