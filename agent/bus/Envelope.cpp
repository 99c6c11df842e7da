#include "agent/bus/Envelope.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QJsonDocument>

namespace korvale::agent {
namespace {

const QString& dataKey() {
    static const QString key = QStringLiteral("<DATA>");
    return key;
}

} // namespace

QVariantMap envelope(const QByteArray& data) {
    return {{dataKey(), data}};
}

QVariantMap envelope(const QJsonObject& object) {
    return envelope(QJsonDocument(object).toJson(QJsonDocument::Compact));
}

std::optional<QByteArray> envelopeData(const QDBusMessage& message) {
    if (message.signature() != QLatin1String("a{sv}")) {
        return std::nullopt;
    }
    const auto entries = qdbus_cast<QVariantMap>(message.arguments().constFirst());
    const QVariant data = entries.value(dataKey());
    if (data.metaType() != QMetaType::fromType<QByteArray>()) {
        return std::nullopt;
    }
    return data.toByteArray();
}

} // namespace korvale::agent
