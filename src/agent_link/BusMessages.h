#pragma once

#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QVariantMap>

#include <limits>
#include <optional>

namespace korvale {

/// A time-out that never comes, for QDBusConnection::asyncCall.
inline constexpr int noTimeout = std::numeric_limits<int>::max();

/// The call that carries a request; it never starts the service.
[[nodiscard]] QDBusMessage requestMessage(const QVariantMap& envelope);

/// The dictionary that a reply or signal consists of; no value for an error or another signature.
[[nodiscard]] std::optional<QVariantMap> dictionaryOf(const QDBusMessage& message);

/// Whether a call just made has already failed, as on a bus that has gone: a watcher would then
/// hear nothing. A call that has its reply already, which a quick service manages, has not failed.
[[nodiscard]] bool hasFailedAtOnce(const QDBusPendingCall& call);

} // namespace korvale
