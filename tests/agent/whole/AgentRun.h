#pragma once

#include "agent/fakes/EicarText.h"
#include "agent/fakes/Needs.h"
#include "agent_sim/BusEar.h"
#include "fakes/PrivateBus.h"
#include "fakes/TestFolder.h"
#include "fakes/WaitUntil.h"

#include <QDBusArgument>
#include <QDBusPendingCallWatcher>
#include <QJsonArray>
#include <QVariantMap>

#include <csignal>
#include <memory>

namespace korvale::agent {

/// The whole agent as a process of its own, on a private bus and scratch folders. Needs root where
/// files are quarantined.
class AgentRun : public testing::Test {
protected:
    void SetUp() override {
        KORVALE_NEEDS(root()); // as the agent does
        m_bus.allowService(QStringLiteral("org.freedesktop.systemd1"));
        m_bus.start();
        m_ear = std::make_unique<sim::BusEar>(m_bus.address());
        QDir().mkpath(m_folder.path(QStringLiteral("files")));
        configure({});
        m_tick.start(20); // files change without an event: conditions are looked at all the same
        QObject::connect(&m_process, &QProcess::readyReadStandardError, &m_process,
                         [this] { m_log += m_process.readAllStandardError(); });
    }
    void TearDown() override {
        if (HasFailure()) {
            m_log += m_process.readAllStandardError();
            std::fprintf(stderr, "--- the agent's log:\n%s---\n", m_log.constData());
        }
        kill();
    }

    /// `further` is put behind the folders and the engine.
    void configure(const QByteArray& further, const QByteArray& engine = {}) const {
        const QByteArray place = QFile::encodeName(m_folder.path());
        const QByteArray none =
            "configuration = \"" + place + "/clamd.conf\"\nsocket = \"" + place + "/clamd.ctl\"\n";
        m_folder.write(QStringLiteral("agent.toml"),
                       "[folders]\nhost_cache = \"" + place + "/HostCache\"\nupdater_status = \"" +
                           place + "/status\"\nstate = \"" + place + "/state\"\nquarantine = \"" +
                           place + "/state/quarantine\"\n[engine]\nunits = " + m_units + "\n" +
                           (engine.isEmpty() ? none : engine) + further);
    }

    void start() {
        m_ear->heard.clear();
        QStringList command = m_wrapper;
        command += {QStringLiteral(KORVALE_AGENT), QStringLiteral("--config"),
                    m_folder.path(QStringLiteral("agent.toml"))};
        m_process.start(command.takeFirst(), command);
        ASSERT_TRUE(m_process.waitForStarted());
        ASSERT_TRUE(heard("com.korvale.agent.running"));
    }
    void kill() {
        m_process.kill();
        m_process.waitForFinished();
    }
    void signal(int number) const { ::kill(static_cast<pid_t>(m_process.processId()), number); }

    [[nodiscard]] bool heard(const char* notification) {
        return waitUntil([&] { return m_ear->heard.contains(QLatin1String(notification)); });
    }
    [[nodiscard]] bool logged(const char* text) {
        return waitUntil([&] { return m_log.contains(text); });
    }

    /// The reply to a request, as any program on the bus gets it.
    QJsonObject ask(const QJsonObject& request) {
        QDBusMessage message = QDBusMessage::createMethodCall(
            QStringLiteral("com.korvale.agent_server"), QStringLiteral("/com/korvale/agent_server"),
            QStringLiteral("com.korvale.agent_server"), QStringLiteral("Request"));
        message << QVariantMap{{QStringLiteral("<DATA>"), QJsonDocument(request).toJson()}};
        const QDBusPendingCallWatcher watcher(m_ear->bus().asyncCall(message));
        EXPECT_TRUE(waitUntil([&] { return watcher.isFinished(); }));
        return QJsonDocument::fromJson(qdbus_cast<QVariantMap>(watcher.reply().arguments().value(0))
                                           .value(QStringLiteral("<DATA>"))
                                           .toByteArray())
            .object();
    }
    QString resp(const QJsonObject& request) {
        return ask(request).value(QStringLiteral("RESP")).toString();
    }
    QString scanFiles() {
        return resp({{QStringLiteral("CMD_"), QStringLiteral("SCAN")},
                     {QStringLiteral("START"), m_folder.path(QStringLiteral("files"))}});
    }
    /// The answer to a call of korvale-agentctl.
    QJsonObject control(const char* method, const QJsonObject& arguments = {}) {
        QDBusMessage message = QDBusMessage::createMethodCall(
            QStringLiteral("com.korvale.agent_server"), QStringLiteral("/com/korvale/agent_server"),
            QStringLiteral("com.korvale.agent_control"), QLatin1String(method));
        message << QString::fromUtf8(QJsonDocument(arguments).toJson());
        const QDBusPendingCallWatcher watcher(m_ear->bus().asyncCall(message));
        EXPECT_TRUE(waitUntil([&] { return watcher.isFinished(); }));
        return QJsonDocument::fromJson(watcher.reply().arguments().value(0).toString().toUtf8())
            .object();
    }

    void writeBadFile(const QString& name) const {
        m_folder.write(QStringLiteral("files/") + name, QByteArray::fromStdString(eicarText()));
    }
    [[nodiscard]] QJsonObject published(const char* file) const {
        return m_folder.readJson(QStringLiteral("HostCache/") + QLatin1String(file));
    }
    /// The state of the record of files/NAME; -1 without one.
    [[nodiscard]] int publishedState(const QString& name) const {
        return published("file_states.log")
            .value(m_folder.path(QStringLiteral("files/") + name))
            .toObject()
            .value(QStringLiteral("State"))
            .toInt(-1);
    }

    QByteArray m_units = "[]"; ///< of the engine, as the configuration has them
    QStringList m_wrapper;     ///< runs the agent, in the same process
    TestFolder m_folder;
    PrivateBus m_bus;
    std::unique_ptr<sim::BusEar> m_ear;
    QProcess m_process;
    QByteArray m_log;
    QTimer m_tick;
};

} // namespace korvale::agent
