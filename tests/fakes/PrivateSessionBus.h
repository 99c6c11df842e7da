#pragma once

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QProcess>
#include <QString>
#include <QStringList>

#include <gtest/gtest.h>

namespace korvale::fakes {

/// A session bus of its own, for as long as it lives. Every connect() is another client of it.
class PrivateSessionBus {
public:
    PrivateSessionBus() {
        m_daemon.start(QStringLiteral("dbus-daemon"),
                       {QStringLiteral("--session"), QStringLiteral("--nofork"),
                        QStringLiteral("--nopidfile"), QStringLiteral("--nosyslog"),
                        QStringLiteral("--print-address")});
        if (m_daemon.waitForReadyRead()) {
            m_address = QString::fromLocal8Bit(m_daemon.readLine().trimmed());
        }
        EXPECT_FALSE(m_address.isEmpty()) << "dbus-daemon does not start";
    }
    ~PrivateSessionBus() {
        for (const QString& name : m_names) {
            QDBusConnection::disconnectFromBus(name);
        }
        m_daemon.kill();
        m_daemon.waitForFinished();
    }
    PrivateSessionBus(const PrivateSessionBus&) = delete;
    PrivateSessionBus& operator=(const PrivateSessionBus&) = delete;

    [[nodiscard]] const QString& address() const { return m_address; }

    [[nodiscard]] QDBusConnection connect() {
        static int number = 0;
        m_names << QStringLiteral("private-session-%1").arg(++number);
        QDBusConnection connection = QDBusConnection::connectToBus(m_address, m_names.constLast());
        EXPECT_TRUE(connection.isConnected());
        return connection;
    }

    /// Returns once the bus has passed on everything that `connection` has sent.
    static void flush(const QDBusConnection& connection) {
        connection.interface()->isServiceRegistered(QStringLiteral("none.such"));
    }

private:
    QProcess m_daemon;
    QString m_address;
    QStringList m_names;
};

} // namespace korvale::fakes
