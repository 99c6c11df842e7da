#pragma once

#include <QDBusVirtualObject>
#include <QObject>
#include <QTimer>

namespace korvale::sim {

/// The agent's place on the system bus: the name, the object, the signals. A bus that is missing,
/// goes away or comes back is followed without help.
class AgentBus : public QObject {
    Q_OBJECT
public:
    /// `port` must outlive this object.
    explicit AgentBus(QDBusVirtualObject& port, QObject* parent = nullptr);
    ~AgentBus() override;

    /// Asks for the name, again and again until it is owned (see `nameOwned`).
    void takeName();
    /// False when the name was not owned.
    bool releaseName();
    [[nodiscard]] bool ownsName() const { return m_ownsName; }

    /// Sends one of the twenty notifications. False when there is no bus.
    bool post(const QString& notification);
    /// Sends the unsolicited message with these bytes under "<DATA>". False when there is no bus.
    bool sendMessage(const QByteArray& data);

Q_SIGNALS:
    void nameOwned();
    void busLost();
    /// A sentence about what keeps the agent off the bus; each only once in a row.
    void problem(const QString& sentence);

private Q_SLOTS:
    void disconnected();

private:
    void attempt();
    bool connectToBus();
    bool requestName();
    void report(const QString& sentence);

    QDBusVirtualObject& m_port;
    QTimer m_retry;
    QString m_lastProblem;
    bool m_connected = false;
    bool m_wantsName = false;
    bool m_ownsName = false;
};

} // namespace korvale::sim
