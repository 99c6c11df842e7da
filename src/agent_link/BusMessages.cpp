#include "agent_link/BusMessages.h"

#include "agent_link/ServiceNames.h"

#include <QDBusArgument>

namespace korvale {

QDBusMessage requestMessage(const QVariantMap& envelope) {
    QDBusMessage request = QDBusMessage::createMethodCall(
        QString::fromLatin1(serviceName), QString::fromLatin1(servicePath),
        QString::fromLatin1(serviceInterface), QString::fromLatin1(requestMethod));
    request.setAutoStartService(false);
    request << envelope;
    return request;
}

std::optional<QVariantMap> dictionaryOf(const QDBusMessage& message) {
    if (message.type() == QDBusMessage::ErrorMessage ||
        message.signature() != QLatin1String(envelopeSignature)) {
        return std::nullopt;
    }
    return qdbus_cast<QVariantMap>(message.arguments().constFirst());
}

} // namespace korvale
