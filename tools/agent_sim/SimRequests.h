#pragma once

#include "agent/bus/IncomingRequest.h"
#include "agent_sim/AgentRooms.h"

#include <QObject>

namespace korvale::sim {

class Answers;
class RequestLog;
struct ReplyFaults;

/// Notes each request and answers it, or misbehaves as told.
class SimRequests : public QObject, public RequestHandler {
    Q_OBJECT
public:
    /// All must outlive this object.
    SimRequests(Answers& answers, RequestLog& log, const ReplyFaults& faults,
                QObject* parent = nullptr);

    void request(const IncomingRequest& request) override;

Q_SIGNALS:
    /// A request arrived, `command` being its "CMD_".
    void requested(const QString& command);

private:
    QDBusMessage reply(const IncomingRequest& request);

    Answers& m_answers;
    RequestLog& m_log;
    const ReplyFaults& m_faults;
};

} // namespace korvale::sim
