#include "agent_sim/RequestPort.h"

#include "agent_sim/Answers.h"
#include "agent_sim/Envelope.h"
#include "agent_sim/NotificationNames.h"
#include "agent_sim/ReplyFaults.h"
#include "agent_sim/RequestLog.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QJsonDocument>
#include <QTimer>

namespace korvale::sim {

RequestPort::RequestPort(Answers& answers, RequestLog& log, const ReplyFaults& faults,
                         QObject* parent)
    : QDBusVirtualObject(parent), m_answers(answers), m_log(log), m_faults(faults) {}

bool RequestPort::handleMessage(const QDBusMessage& message, const QDBusConnection& connection) {
    const bool isOurs = message.interface().isEmpty() || message.interface() == kServiceName;
    if (!isOurs || message.member() != QLatin1String("Request")) {
        return false; // answered by the library: no such method
    }
    const std::optional<QByteArray> data = envelopeData(message);
    if (!data) {
        connection.send(message.createErrorReply(
            QDBusError::InvalidArgs, QStringLiteral("A dictionary with \"<DATA>\" is needed.")));
        return true;
    }
    const QString command =
        QJsonDocument::fromJson(*data).object().value(QStringLiteral("CMD_")).toString();
    m_log.add(message.service(), *data, command);
    if (!m_faults.hang) {
        const QDBusMessage answer = reply(message, *data, command);
        QTimer::singleShot(m_faults.delayMilliseconds, this,
                           [connection, answer] { connection.send(answer); });
    }
    Q_EMIT requested(command);
    return true;
}

QDBusMessage RequestPort::reply(const QDBusMessage& message, const QByteArray& data,
                                const QString& command) {
    // Asked first in any case: a scan starts although its reply gets lost.
    const QJsonObject answer = m_answers.answer(QJsonDocument::fromJson(data).object());
    if (m_faults.malformed != nullptr) {
        return m_faults.malformed(message);
    }
    const auto replaced = m_faults.replaced.constFind(command);
    return message.createReply(replaced == m_faults.replaced.constEnd() ? envelope(answer)
                                                                        : envelope(*replaced));
}

QString RequestPort::introspect(const QString& path) const {
    if (path != kObjectPath) {
        return {};
    }
    return QStringLiteral("<interface name=\"com.korvale.agent_server\">"
                          "<method name=\"Request\">"
                          "<arg name=\"request\" type=\"a{sv}\" direction=\"in\"/>"
                          "<arg name=\"reply\" type=\"a{sv}\" direction=\"out\"/>"
                          "</method>"
                          "<signal name=\"Message\"><arg name=\"message\" type=\"a{sv}\"/></signal>"
                          "</interface>");
}

} // namespace korvale::sim
