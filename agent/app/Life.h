#pragma once

#include "agent/base/UniqueFd.h"

#include <QObject>
#include <QSocketNotifier>
#include <QTimer>

#include <memory>

namespace korvale::agent {

/// The agent's life as the service manager sees it: readiness, watchdog, reload and the signals
/// that end it. Without a service manager only the signals are left.
class Life : public QObject {
    Q_OBJECT
public:
    /// Blocks the signals in the calling thread and thereby in those it starts: to be called before
    /// there is a second thread. They are then taken by the object alone.
    static void blockSignals();

    explicit Life(QObject* parent = nullptr);

    /// Says that the agent can be asked, and begins to feed the watchdog from the event loop: a
    /// main thread that hangs is noticed by the service manager.
    void ready();
    /// One line for `systemctl status`.
    void status(const QString& line);
    void reloading();
    void reloaded();
    void stopping();

Q_SIGNALS:
    void endWanted();    ///< SIGTERM, SIGINT
    void reloadWanted(); ///< SIGHUP
    void childChanged(); ///< SIGCHLD: one was stopped or has ended
    void alive();        ///< each time that the watchdog is fed

private:
    void takeSignal();

    UniqueFd m_signals;
    std::unique_ptr<QSocketNotifier> m_notifier;
    QTimer m_watchdog;
};

} // namespace korvale::agent
