#pragma once

#include "BusEar.h"
#include "SimProcess.h"
#include "fakes/PrivateBus.h"
#include "fakes/TestFolder.h"
#include "fakes/WaitUntil.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusPendingCallWatcher>
#include <QVariantMap>

#include <memory>
#include <optional>

namespace korvale::sim {

/// A private bus, a folder in the place of the root, and the stand-in agent on both.
class AgentSimTest : public testing::Test {
protected:
    void SetUp() override {
        m_bus.start();
        m_sim.start(m_root.path(), {});
        ASSERT_TRUE(m_sim.waitFor(QStringLiteral("ready")));
        m_ear = std::make_unique<BusEar>(m_bus.address());
    }

    QString tell(const QString& command) { return m_sim.tell(command); }

    /// The reply or error to a request with these bytes; nothing when none comes within the limit.
    [[nodiscard]] std::optional<QDBusMessage> call(const QByteArray& data, int milliseconds = -1) {
        QDBusMessage message = QDBusMessage::createMethodCall(
            QStringLiteral("com.korvale.agent_server"), QStringLiteral("/com/korvale/agent_server"),
            QStringLiteral("com.korvale.agent_server"), QStringLiteral("Request"));
        message << QVariantMap{{QStringLiteral("<DATA>"), data}};
        const QDBusPendingCallWatcher watcher(m_ear->bus().asyncCall(message, milliseconds));
        if (!waitUntil([&watcher] { return watcher.isFinished(); })) {
            return std::nullopt;
        }
        return watcher.reply();
    }

    /// The JSON of the reply to that command.
    [[nodiscard]] QByteArray ask(const QByteArray& command) {
        const std::optional<QDBusMessage> reply = call("{\"CMD_\":\"" + command + "\"}");
        if (!reply || reply->signature() != QLatin1String("a{sv}")) {
            return "no dictionary";
        }
        return qdbus_cast<QVariantMap>(reply->arguments().constFirst())
            .value(QStringLiteral("<DATA>"))
            .toByteArray();
    }

    [[nodiscard]] bool waitForSignal(const QString& name) {
        return waitUntil([&] { return m_ear->heard.contains(name); });
    }

    [[nodiscard]] QJsonObject hostCacheFile(const char* name) const {
        return m_root.readJson(cachePath(name));
    }
    [[nodiscard]] static QString cachePath(const char* name) {
        return QStringLiteral(KORVALE_HOST_CACHE).mid(1) + u'/' + QLatin1String(name);
    }

    TestFolder m_root;
    PrivateBus m_bus;
    SimProcess m_sim;
    std::unique_ptr<BusEar> m_ear;
};

} // namespace korvale::sim
