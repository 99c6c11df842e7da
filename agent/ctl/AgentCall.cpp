#include "agent/ctl/AgentCall.h"

#include "agent/base/ControlInterface.h"

#include <QDBusConnection>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QJsonDocument>
#include <QMetaType>

#include <limits>

namespace korvale::agent {
namespace {

QString text(std::string_view view) {
    return QString::fromUtf8(view.data(), static_cast<qsizetype>(view.size()));
}

CallResult troubled(const QDBusMessage& reply) {
    const QDBusError error(reply);
    // What the bus says of an absent name that is not to be started.
    if (reply.errorName() == QLatin1String("org.freedesktop.DBus.Error.NameHasNoOwner")) {
        return {CallResult::Kind::NoAgent, {}, QStringLiteral("korvale-agent does not run.")};
    }
    switch (error.type()) {
    case QDBusError::ServiceUnknown:
    case QDBusError::Disconnected:
    case QDBusError::NoReply: // it ended before it answered
        return {CallResult::Kind::NoAgent, {}, QStringLiteral("korvale-agent does not run.")};
    case QDBusError::AccessDenied:
        return {CallResult::Kind::Failed,
                {},
                QStringLiteral("The bus does not let you talk to the agent.")};
    default:
        return {CallResult::Kind::Failed, {}, error.message()};
    }
}

} // namespace

CallResult callAgent(const QString& method, const QJsonObject& arguments) {
    // What is made first goes last: the toolkit's thread of the bus still reads, with the types
    // that are registered, while the process ends.
    static_cast<void>(QMetaType::fromType<QDBusVariant>().id());
    const QDBusConnection bus = QDBusConnection::systemBus();
    if (!bus.isConnected()) {
        return {CallResult::Kind::NoAgent,
                {},
                QStringLiteral("There is no system bus: %1").arg(bus.lastError().message())};
    }
    QDBusMessage call = QDBusMessage::createMethodCall(
        text(control::kService), text(control::kObject), text(control::kInterface), method);
    call.setArguments({QString::fromUtf8(QJsonDocument(arguments).toJson(QJsonDocument::Compact))});
    call.setAutoStartService(false);
    call.setInteractiveAuthorizationAllowed(true);
    const QDBusMessage reply = bus.call(call, QDBus::Block, std::numeric_limits<int>::max());
    if (reply.type() != QDBusMessage::ReplyMessage) {
        return troubled(reply);
    }
    const QJsonDocument document =
        QJsonDocument::fromJson(reply.arguments().value(0).toString().toUtf8());
    if (reply.signature() != QLatin1String("s") || !document.isObject()) {
        return {CallResult::Kind::Failed,
                {},
                QStringLiteral("The agent's answer cannot be understood.")};
    }
    return {CallResult::Kind::Answered, document.object(), {}};
}

} // namespace korvale::agent
