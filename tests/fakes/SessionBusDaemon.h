#pragma once

#include <QFile>
#include <QProcess>
#include <QString>
#include <QTemporaryDir>

#include <csignal>
#include <gtest/gtest.h>

namespace korvale {

/// A session bus of its own, which can be made to hang.
class SessionBusDaemon {
public:
    SessionBusDaemon() { start(); }
    ~SessionBusDaemon() { end(); }
    SessionBusDaemon(const SessionBusDaemon&) = delete;
    SessionBusDaemon& operator=(const SessionBusDaemon&) = delete;

    [[nodiscard]] QString socketPath() const { return m_folder.filePath(QStringLiteral("bus")); }
    [[nodiscard]] QString address() const { return QStringLiteral("unix:path=") + socketPath(); }
    void hang() { ::kill(static_cast<pid_t>(m_daemon.processId()), SIGSTOP); }
    void goOn() { ::kill(static_cast<pid_t>(m_daemon.processId()), SIGCONT); }
    /// Another daemon at the same address.
    void restart() {
        end();
        QFile::remove(socketPath());
        start();
    }

private:
    void start() {
        m_daemon.start(QStringLiteral("dbus-daemon"),
                       {QStringLiteral("--session"), QStringLiteral("--nofork"),
                        QStringLiteral("--nopidfile"), QStringLiteral("--nosyslog"),
                        QStringLiteral("--print-address"),
                        QStringLiteral("--address=") + address()});
        EXPECT_TRUE(m_daemon.waitForStarted());
        EXPECT_TRUE(m_daemon.waitForReadyRead()); // the address: it accepts connections now
    }
    void end() {
        m_daemon.kill();
        m_daemon.waitForFinished();
    }

    QTemporaryDir m_folder;
    QProcess m_daemon;
};

} // namespace korvale
