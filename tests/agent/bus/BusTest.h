#pragma once

#include "FakePolkit.h"
#include "fakes/PrivateBus.h"
#include "fakes/WaitUntil.h"

#include <QDBusConnectionInterface>
#include <QDBusPendingCallWatcher>
#include <QDBusReply>
#include <QDBusVirtualObject>
#include <QElapsedTimer>

#include <memory>

namespace korvale::agent {

/// A private bus on which polkit may be, and two connections to it: the agent's and a caller's.
class BusTest : public testing::Test {
protected:
    void SetUp() override {
        m_bus.allowService(FakePolkit::serviceName());
        m_bus.start();
        m_agent = std::make_unique<QDBusConnection>(
            QDBusConnection::connectToBus(m_bus.address(), QStringLiteral("agent side")));
        m_caller = std::make_unique<QDBusConnection>(
            QDBusConnection::connectToBus(m_bus.address(), QStringLiteral("caller side")));
        ASSERT_TRUE(m_agent->isConnected() && m_caller->isConnected());
    }
    void TearDown() override {
        m_agent.reset();
        m_caller.reset();
        QDBusConnection::disconnectFromBus(QStringLiteral("agent side"));
        QDBusConnection::disconnectFromBus(QStringLiteral("caller side"));
    }

    /// `object` is what has the agent's name.
    void serve(QDBusVirtualObject& object) {
        ASSERT_TRUE(
            m_agent->registerVirtualObject(QStringLiteral("/com/korvale/agent_server"), &object));
        ASSERT_TRUE(m_agent->registerService(QStringLiteral("com.korvale.agent_server")));
    }
    /// What comes of the caller's call of it.
    QDBusMessage callAgent(const QString& interface, const QString& method,
                           const QVariantList& arguments) {
        QDBusMessage message = QDBusMessage::createMethodCall(
            QStringLiteral("com.korvale.agent_server"), QStringLiteral("/com/korvale/agent_server"),
            interface, method);
        message.setArguments(arguments);
        const QDBusPendingCallWatcher watcher(m_caller->asyncCall(message));
        EXPECT_TRUE(waitUntil([&] { return watcher.isFinished(); }));
        return watcher.reply();
    }

    /// The bus has seen it go, too.
    void callerLeaves() {
        const QString name = m_caller->baseService();
        m_caller.reset();
        QDBusConnection::disconnectFromBus(QStringLiteral("caller side"));
        QElapsedTimer limit;
        limit.start();
        while (m_agent->interface()->isServiceRegistered(name)) {
            ASSERT_LT(limit.elapsed(), 20'000);
        }
    }

    PrivateBus m_bus;
    std::unique_ptr<QDBusConnection> m_agent;
    std::unique_ptr<QDBusConnection> m_caller;
};

} // namespace korvale::agent
