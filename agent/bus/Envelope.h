#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QVariantMap>

#include <optional>

class QDBusMessage;

/// The dictionary that carries every request, reply and message: one entry, "<DATA>", a byte string
/// with a compact JSON object in UTF-8.
namespace korvale::agent {

[[nodiscard]] QVariantMap envelope(const QByteArray& data);
[[nodiscard]] QVariantMap envelope(const QJsonObject& object);
/// The bytes of the only argument of `message`; nothing when it is no such dictionary.
[[nodiscard]] std::optional<QByteArray> envelopeData(const QDBusMessage& message);

} // namespace korvale::agent
