#include "agent/bus/RequestPort.h"

#include "agent/bus/Envelope.h"
#include "agent/bus/IncomingRequest.h"
#include "agent/publish/NotificationNames.h"

#include <QDBusError>
#include <QJsonDocument>

namespace korvale::agent {

IncomingRequest IncomingRequest::of(const QDBusMessage& message, const QDBusConnection& connection,
                                    const QByteArray& data) {
    const QJsonObject object = QJsonDocument::fromJson(data).object();
    return {message, connection, data, object, object.value(QStringLiteral("CMD_")).toString()};
}

void IncomingRequest::reply(const QJsonObject& answer) const {
    if (replier) {
        replier(answer);
        return;
    }
    connection.send(message.createReply(envelope(answer)));
}

QString RequestPort::interfaceName() const {
    return kServiceName.toString();
}

QString RequestPort::introspection() const {
    return QStringLiteral("<interface name=\"com.korvale.agent_server\">"
                          "<method name=\"Request\">"
                          "<arg name=\"request\" type=\"a{sv}\" direction=\"in\"/>"
                          "<arg name=\"reply\" type=\"a{sv}\" direction=\"out\"/>"
                          "</method>"
                          "<signal name=\"Message\"><arg name=\"message\" type=\"a{sv}\"/></signal>"
                          "</interface>");
}

bool RequestPort::handle(const QDBusMessage& message, const QDBusConnection& connection) {
    if (message.member() != QLatin1String("Request")) {
        return false;
    }
    const std::optional<QByteArray> data = envelopeData(message);
    if (!data || data->size() > kLongestRequest) {
        connection.send(message.createErrorReply(
            QDBusError::InvalidArgs, QStringLiteral("A dictionary with \"<DATA>\" is needed.")));
        return true;
    }
    m_handler.request(IncomingRequest::of(message, connection, *data));
    return true;
}

} // namespace korvale::agent
