#include "agent_sim/SimRequests.h"

#include "agent/bus/Envelope.h"
#include "agent_sim/Answers.h"
#include "agent_sim/ReplyFaults.h"
#include "agent_sim/RequestLog.h"

#include <QTimer>

namespace korvale::sim {

SimRequests::SimRequests(Answers& answers, RequestLog& log, const ReplyFaults& faults,
                         QObject* parent)
    : QObject(parent), m_answers(answers), m_log(log), m_faults(faults) {}

void SimRequests::request(const IncomingRequest& request) {
    m_log.add(request.caller(), request.data, request.command);
    if (!m_faults.hang) {
        const QDBusMessage answer = reply(request);
        QTimer::singleShot(m_faults.delayMilliseconds, this,
                           [connection = request.connection, answer] { connection.send(answer); });
    }
    Q_EMIT requested(request.command);
}

QDBusMessage SimRequests::reply(const IncomingRequest& request) {
    // Asked first in any case: a scan starts although its reply gets lost.
    const QJsonObject answer = m_answers.answer(request.object);
    if (m_faults.malformed != nullptr) {
        return m_faults.malformed(request.message);
    }
    const auto replaced = m_faults.replaced.constFind(request.command);
    return request.message.createReply(
        replaced == m_faults.replaced.constEnd() ? envelope(answer) : envelope(*replaced));
}

} // namespace korvale::sim
