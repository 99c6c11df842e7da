#include "agent_link/Envelope.h"

#include "model/Values.h"

#include <QByteArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMetaType>

#include <algorithm>

namespace korvale {
namespace {

QString dataEntry() {
    return QStringLiteral("<DATA>");
}

QByteArray serialized(const RequestMembers& members) {
    QJsonObject object;
    for (const auto& [name, value] : members) {
        if (!name.isValidUtf16() || !value.isValidUtf16()) {
            return QByteArrayLiteral("");
        }
        object.insert(name, value);
    }
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

} // namespace

QVariantMap createXPCRequest(const RequestMembers& members) {
    return {{dataEntry(), serialized(members)}};
}

std::optional<JsonValue> decodeXPCResponse(const QVariantMap& envelope) {
    const QVariant data = envelope.value(dataEntry());
    if (data.metaType() != QMetaType::fromType<QByteArray>()) {
        return std::nullopt;
    }
    return JsonValue::parse(data.toByteArray());
}

bool ServiceReply::isOk() const {
    return text("RESP") == QStringLiteral("OK");
}

std::optional<QString> ServiceReply::text(const char* member) const {
    return textOnly(m_object[member]);
}

std::int32_t ServiceReply::integer(const char* member) const {
    return integer32Value(m_object[member]);
}

} // namespace korvale
