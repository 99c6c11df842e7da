#include "agent/bus/ControlPort.h"

#include <QDBusError>
#include <QJsonDocument>

#include <algorithm>

namespace korvale::agent {
namespace {

QString text(std::string_view view) {
    return QString::fromUtf8(view.data(), static_cast<qsizetype>(view.size()));
}

const control::Method* methodOf(const QString& name) {
    const auto* found =
        std::find_if(control::kMethods.begin(), control::kMethods.end(),
                     [&](const control::Method& method) { return text(method.name) == name; });
    return found == control::kMethods.end() ? nullptr : found;
}

} // namespace

std::optional<QJsonObject> ControlCall::argumentsOf(const QByteArray& text) {
    const QJsonDocument document =
        text.size() > kLongestArguments ? QJsonDocument() : QJsonDocument::fromJson(text);
    return document.isObject() ? std::optional(document.object()) : std::nullopt;
}

void ControlCall::reply(const QJsonObject& answer) const {
    const QByteArray json = QJsonDocument(answer).toJson(QJsonDocument::Compact);
    connection.send(message.createReply(QString::fromUtf8(json)));
}

void ControlCall::succeed(QJsonObject answer) const {
    answer.insert(QStringLiteral("ok"), true);
    reply(answer);
}

void ControlCall::fail(std::string_view code, const QString& sentence) const {
    reply({{QStringLiteral("ok"), false},
           {QStringLiteral("code"), text(code)},
           {QStringLiteral("error"), sentence}});
}

QString ControlPort::interfaceName() const {
    return text(control::kInterface);
}

QString ControlPort::introspection() const {
    QString xml = QStringLiteral("<interface name=\"%1\">").arg(interfaceName());
    for (const control::Method& method : control::kMethods) {
        xml += QStringLiteral("<method name=\"%1\">"
                              "<arg name=\"arguments\" type=\"s\" direction=\"in\"/>"
                              "<arg name=\"answer\" type=\"s\" direction=\"out\"/>"
                              "</method>")
                   .arg(text(method.name));
    }
    return xml + QStringLiteral("</interface>");
}

bool ControlPort::handle(const QDBusMessage& message, const QDBusConnection& connection) {
    const control::Method* method = methodOf(message.member());
    if (method == nullptr) {
        return false;
    }
    if (message.signature() != QLatin1String("s")) {
        connection.send(message.createErrorReply(
            QDBusError::InvalidArgs, QStringLiteral("One text with a JSON object is needed.")));
        return true;
    }
    ControlCall call{message, connection, method, {}};
    const auto arguments =
        ControlCall::argumentsOf(message.arguments().constFirst().toString().toUtf8());
    if (!arguments) {
        call.fail(control::kBadArguments, QStringLiteral("The arguments are no JSON object."));
        return true;
    }
    call.arguments = *arguments;
    m_handler.control(call);
    return true;
}

} // namespace korvale::agent
