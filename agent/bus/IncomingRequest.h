#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QJsonObject>

namespace korvale::agent {

/// One request that came in over the bus. Copies answer the same request; it is to be answered
/// once.
struct IncomingRequest {
    QDBusMessage message;
    QDBusConnection connection;
    QByteArray data;    ///< what the envelope held
    QJsonObject object; ///< the same, parsed; empty when it is no JSON object
    QString command;    ///< its "CMD_"; empty when it had none

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
