#pragma once

#include <QString>
#include <QStringView>

#include <span>

namespace korvale::agent {

inline constexpr QStringView kServiceName = u"com.korvale.agent_server";
inline constexpr QStringView kObjectPath = u"/com/korvale/agent_server";

/// The twenty notifications, all of them signals without arguments.
[[nodiscard]] std::span<const QStringView> notificationNames();
/// The full name for `name`, which may lack its "com.korvale."; empty for none of the twenty.
[[nodiscard]] QString fullNotificationName(const QString& name);

/// A notification name cut at its last dot.
struct SignalName {
    QString interface;
    QString member;
};
[[nodiscard]] SignalName signalName(const QString& notification);

} // namespace korvale::agent
