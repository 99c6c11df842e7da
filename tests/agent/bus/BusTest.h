#pragma once

#include "FakePolkit.h"
#include "fakes/PrivateBus.h"
#include "fakes/WaitUntil.h"

#include <QDBusConnectionInterface>
#include <QDBusReply>
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
