#pragma once

#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QLatin1String>

#include <limits>

namespace korvale {

/// A time-out that never comes, for QDBusConnection::asyncCall.
inline constexpr int noTimeout = std::numeric_limits<int>::max();

/// Who the bus is to its clients: the sender of what it says itself, which nobody else can be.
inline constexpr QLatin1String busName{"org.freedesktop.DBus"};

/// A call of the bus itself.
[[nodiscard]] QDBusMessage busCall(const char* method);

/// Whether a call just made has already failed, as on a bus that has gone: a watcher would then
/// hear nothing. A call that has its answer already, be it an error, which a quick service manages,
/// has not failed.
[[nodiscard]] bool hasFailedAtOnce(const QDBusPendingCall& call);

} // namespace korvale
