#pragma once

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QString>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <pwd.h>
#include <unistd.h>

namespace korvale {

/// A system bus of its own with the packaged policy, in a new folder; its address becomes that of
/// the system bus. Not started by itself. KORVALE_BUS_POLICY names the packaged policy.
class PrivateBus {
public:
    /// Who may own the agent's name: whoever runs the tests (root or not), or as packaged.
    enum class Owner { WhoeverRunsThis, AsPackaged };

    explicit PrivateBus(Owner owner = Owner::WhoeverRunsThis) {
        // Other users' connections are part of the tests.
        QFile::setPermissions(m_folder.path(), QFile::permissions(m_folder.path()) |
                                                   QFile::ReadOther | QFile::ExeOther |
                                                   QFile::ReadGroup | QFile::ExeGroup);
        QDir(m_folder.path()).mkdir(QStringLiteral("system.d"));
        QDir(m_folder.path()).mkdir(QStringLiteral("run"));
        writePolicy(owner);
        qputenv("DBUS_SYSTEM_BUS_ADDRESS", address().toUtf8());
    }
    ~PrivateBus() { kill(); }
    PrivateBus(const PrivateBus&) = delete;
    PrivateBus& operator=(const PrivateBus&) = delete;

    /// Of the next start(): how many connections one user may have.
    void limitConnectionsPerUser(int limit) {
        m_more += QStringLiteral("<limit name=\"max_connections_per_user\">%1</limit>").arg(limit);
    }

    /// Of the next start(): also those that nobody has asked for, which no system bus does.
    void passOnEveryReply() {
        m_more +=
            QStringLiteral("<policy context=\"mandatory\">"
                           "<allow send_type=\"method_return\" send_requested_reply=\"false\"/>"
                           "<allow receive_type=\"method_return\""
                           " receive_requested_reply=\"false\"/></policy>");
    }

    [[nodiscard]] QString socketPath() const {
        return m_folder.filePath(QStringLiteral("run/system_bus_socket"));
    }
    [[nodiscard]] QString address() const { return QStringLiteral("unix:path=") + socketPath(); }

    /// Returns once it accepts connections. `listenAddress`: another than address().
    void start(const QString& listenAddress = {}) {
        writeConfiguration(listenAddress.isEmpty() ? address() : listenAddress);
        m_daemon.start(QStringLiteral("dbus-daemon"),
                       {QStringLiteral("--config-file=") + configuration(),
                        QStringLiteral("--nofork"), QStringLiteral("--nopidfile"),
                        QStringLiteral("--nosyslog"), QStringLiteral("--print-address")});
        ASSERT_TRUE(m_daemon.waitForStarted());
        ASSERT_TRUE(m_daemon.waitForReadyRead());
    }

    void kill() {
        if (m_daemon.state() == QProcess::NotRunning) {
            return;
        }
        m_daemon.kill();
        m_daemon.waitForFinished();
        QFile::remove(socketPath());
    }

    /// To be called before start(): whoever runs the tests may be this service, and all may call
    /// it.
    void allowService(const QString& name) const {
        static const char* const text = R"(<!DOCTYPE busconfig PUBLIC
 "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <policy context="default">
    <allow own="@NAME@"/>
    <allow send_destination="@NAME@"/>
  </policy>
</busconfig>
)";
        write(m_folder.filePath(QStringLiteral("system.d/") + name + QStringLiteral(".conf")),
              QByteArray(text).replace("@NAME@", name.toUtf8()));
    }

    [[nodiscard]] qint64 pid() const { return m_daemon.processId(); }

private:
    [[nodiscard]] QString configuration() const {
        return m_folder.filePath(QStringLiteral("system.conf"));
    }

    static void write(const QString& path, const QByteArray& content) {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_EQ(file.write(content), content.size());
    }

    void writePolicy(Owner owner) {
        QFile packaged(QStringLiteral(KORVALE_BUS_POLICY));
        ASSERT_TRUE(packaged.open(QIODevice::ReadOnly));
        QByteArray policy = packaged.readAll();
        ASSERT_TRUE(policy.contains("user=\"root\""));
        if (owner == Owner::WhoeverRunsThis) {
            policy.replace("user=\"root\"",
                           QByteArray("user=\"") + getpwuid(geteuid())->pw_name + '"');
        }
        write(m_folder.filePath(QStringLiteral("system.d/agent.conf")), policy);
    }

    /// What the system bus of a distribution allows by default.
    void writeConfiguration(const QString& listenAddress) const {
        static const char* const text = R"(<!DOCTYPE busconfig PUBLIC
 "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>system</type>
  <listen>@ADDRESS@</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow user="*"/>
    <deny own="*"/>
    <deny send_type="method_call"/>
    <allow send_type="signal"/>
    <allow send_requested_reply="true" send_type="method_return"/>
    <allow send_requested_reply="true" send_type="error"/>
    <allow receive_type="method_call"/>
    <allow receive_type="method_return"/>
    <allow receive_type="error"/>
    <allow receive_type="signal"/>
    <allow send_destination="org.freedesktop.DBus" send_interface="org.freedesktop.DBus"/>
  </policy>
  @MORE@
  <includedir>@FOLDER@/system.d</includedir>
</busconfig>
)";
        write(configuration(), QByteArray(text)
                                   .replace("@ADDRESS@", listenAddress.toUtf8())
                                   .replace("@MORE@", m_more.toUtf8())
                                   .replace("@FOLDER@", m_folder.path().toUtf8()));
    }

    QTemporaryDir m_folder;
    QString m_more;
    QProcess m_daemon;
};

} // namespace korvale
