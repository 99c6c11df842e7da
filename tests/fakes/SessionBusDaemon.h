#pragma once

#include <QProcess>
#include <QString>
#include <QTemporaryDir>

#include <csignal>
#include <gtest/gtest.h>

namespace korvale {

/// A session bus of its own, which can be made to hang.
class SessionBusDaemon {
public:
    SessionBusDaemon() {
        m_daemon.start(QStringLiteral("dbus-daemon"),
                       {QStringLiteral("--session"), QStringLiteral("--nofork"),
                        QStringLiteral("--nopidfile"), QStringLiteral("--nosyslog"),
                        QStringLiteral("--print-address"),
                        QStringLiteral("--address=") + address()});
        EXPECT_TRUE(m_daemon.waitForStarted());
        EXPECT_TRUE(m_daemon.waitForReadyRead()); // the address: it accepts connections now
    }
    ~SessionBusDaemon() {
        m_daemon.kill();
        m_daemon.waitForFinished();
    }
    SessionBusDaemon(const SessionBusDaemon&) = delete;
    SessionBusDaemon& operator=(const SessionBusDaemon&) = delete;

    [[nodiscard]] QString address() const {
        return QStringLiteral("unix:path=") + m_folder.filePath(QStringLiteral("bus"));
    }
    void hang() { ::kill(static_cast<pid_t>(m_daemon.processId()), SIGSTOP); }
    void goOn() { ::kill(static_cast<pid_t>(m_daemon.processId()), SIGCONT); }

private:
    QTemporaryDir m_folder;
    QProcess m_daemon;
};

} // namespace korvale
