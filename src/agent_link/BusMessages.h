#pragma once

#include <QDBusMessage>
#include <QVariantMap>

#include <optional>

namespace korvale {

/// The call that carries a request; it never starts the service.
[[nodiscard]] QDBusMessage requestMessage(const QVariantMap& envelope);

/// The dictionary that a reply or signal consists of; no value for an error or another signature.
[[nodiscard]] std::optional<QVariantMap> dictionaryOf(const QDBusMessage& message);

} // namespace korvale
