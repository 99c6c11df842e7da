#include "agent/publish/NotificationNames.h"

#include <algorithm>
#include <array>

namespace korvale::agent {
namespace {

constexpr std::array<QStringView, 20> kNames{
    u"com.korvale.agent.started",
    u"com.korvale.agent.stopped",
    u"com.korvale.agent.running",
    u"com.korvale.halyx.connected",
    u"com.korvale.halyx.notconnected",
    u"com.korvale.quillmar.connected",
    u"com.korvale.quillmar.notconnected",
    u"com.korvale.driver.connected",
    u"com.korvale.driver.notconnected",
    u"com.korvale.consumer_notification",
    u"com.korvale.exe.blocked",
    u"com.korvale.timer.aggregated_messages",
    u"com.korvale.process.terminated",
    u"com.korvale.process.blocked",
    u"com.korvale.analyzerstatus_messages",
    u"com.korvale.policy.expired",
    u"com.korvale.policy.invalidcompanyid",
    u"com.korvale.policy.invalidsignature",
    u"com.korvale.btdscancomplete",
    u"com.korvale.devicecontrol.event",
};

} // namespace

std::span<const QStringView> notificationNames() {
    return kNames;
}

QString fullNotificationName(const QString& name) {
    for (const QString& candidate : {name, QStringLiteral("com.korvale.") + name}) {
        if (std::find(kNames.begin(), kNames.end(), candidate) != kNames.end()) {
            return candidate;
        }
    }
    return {};
}

SignalName signalName(const QString& notification) {
    const qsizetype dot = notification.lastIndexOf(u'.');
    return {notification.left(dot), notification.mid(dot + 1)};
}

} // namespace korvale::agent
