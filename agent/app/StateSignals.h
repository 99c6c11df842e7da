#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <chrono>

namespace korvale::agent {

/// What the programs are told of the agent's connections, by signals: at once when one changes, all
/// of them now and then (a program takes a long silence for an agent that is gone), and when a
/// program connects. Main thread.
///
/// There is no management console. Programs show protection as soon as one of "console" and "cloud"
/// is connected; so the console counts as connected while the configuration is valid, but never
/// without the engine: a shield without an engine must not be green.
class StateSignals : public QObject {
    Q_OBJECT
public:
    static constexpr std::chrono::seconds kHeartbeat{60};
    /// However many programs connect, all is repeated at most this often.
    static constexpr std::chrono::milliseconds kGreetPeriod{1000};

    explicit StateSignals(QObject* parent = nullptr);

    void setEngineFresh(bool fresh); ///< it answers, and its signatures are not old
    void setConfigurationValid(bool valid);
    void setDriverConnected(bool connected); ///< every file system that shall be watched is
    [[nodiscard]] bool driverConnected() const { return m_driver; }

    /// The agent is on the bus (again).
    void start();
    void greet();
    /// The agent is about to end.
    void stop();

Q_SIGNALS:
    /// One of the twenty notifications is to be sent.
    void notification(const QString& name);

private:
    void tellConsole();
    void tellCloud();
    void tellDriver();
    void tellAll();

    bool m_engineFresh = false;
    bool m_configurationValid = true;
    bool m_driver = true;
    bool m_started = false;
    QTimer m_heartbeat;
    QTimer m_greeting;
    QElapsedTimer m_sinceGreeting;
};

} // namespace korvale::agent
