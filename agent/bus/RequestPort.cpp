#include "agent/bus/RequestPort.h"

#include "agent/bus/Envelope.h"
#include "agent/bus/IncomingRequest.h"
#include "agent/publish/NotificationNames.h"

#include <QDBusError>
#include <QJsonDocument>

namespace korvale::agent {

void IncomingRequest::reply(const QJsonObject& answer) const {
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
    const QJsonObject object = QJsonDocument::fromJson(*data).object();
    m_handler.request(
        {message, connection, *data, object, object.value(QStringLiteral("CMD_")).toString()});
    return true;
}

} // namespace korvale::agent
