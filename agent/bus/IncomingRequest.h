#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QJsonObject>

#include <functional>

namespace korvale::agent {

/// One request that came in over the bus. Copies answer the same request; it is to be answered
/// once.
struct IncomingRequest {
    QDBusMessage message;
    QDBusConnection connection;
    QByteArray data;    ///< what the envelope held
    QJsonObject object; ///< the same, parsed; empty when it is no JSON object
    QString command;    ///< its "CMD_"; empty when it had none
    /// Takes the reply in place of the bus, for a request that did not come over it. Empty as a
    /// rule.
    std::function<void(const QJsonObject& answer)> replier = {};

    /// The request that an envelope with that data is. Data that makes no sense is an empty one.
    [[nodiscard]] static IncomingRequest
    of(const QDBusMessage& message, const QDBusConnection& connection, const QByteArray& data);
    /// The bus name of the caller.
    [[nodiscard]] QString caller() const { return message.service(); }
    void reply(const QJsonObject& answer) const;
};

/// Takes the requests.
class RequestHandler {
public:
    virtual ~RequestHandler() = default;
    /// Answers with `request.reply`, now or later.
    virtual void request(const IncomingRequest& request) = 0;
};

} // namespace korvale::agent
