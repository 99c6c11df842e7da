#pragma once

#include <QDBusConnection>
#include <QDBusVirtualObject>
#include <QObject>
#include <QTimer>

#include <chrono>

namespace korvale::agent {

/// The agent's place on the system bus: the name, the object, the signals. A bus that is missing,
/// goes away or comes back is followed without help.
class AgentBus : public QObject {
    Q_OBJECT
public:
    /// `object` must outlive this object. While there is no bus or the name is taken, it is tried
    /// again after each `retryPeriod`.
    explicit AgentBus(QDBusVirtualObject& object,
                      std::chrono::milliseconds retryPeriod = std::chrono::milliseconds(200),
                      QObject* parent = nullptr);
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
    /// The connection to the bus; not connected while there is none.
    [[nodiscard]] static QDBusConnection connection();

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

    QDBusVirtualObject& m_object;
    QTimer m_retry;
    QString m_lastProblem;
    bool m_connected = false;
    bool m_wantsName = false;
    bool m_ownsName = false;
};

} // namespace korvale::agent
