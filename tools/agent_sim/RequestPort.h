#pragma once

#include <QDBusVirtualObject>

namespace korvale::sim {

class Answers;
class RequestLog;
struct ReplyFaults;

/// The object on the bus: takes requests, notes them, answers them (or misbehaves as told). A
/// virtual object, so that replies of any signature can be sent.
class RequestPort : public QDBusVirtualObject {
    Q_OBJECT
public:
    /// All must outlive this object.
    RequestPort(Answers& answers, RequestLog& log, const ReplyFaults& faults,
                QObject* parent = nullptr);

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;
    [[nodiscard]] QString introspect(const QString& path) const override;

Q_SIGNALS:
    /// A request arrived, `command` being its "CMD_".
    void requested(const QString& command);

private:
    QDBusMessage reply(const QDBusMessage& message, const QByteArray& data, const QString& command);

    Answers& m_answers;
    RequestLog& m_log;
    const ReplyFaults& m_faults;
};

} // namespace korvale::sim
