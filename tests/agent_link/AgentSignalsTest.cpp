#include "agent_link/AgentNotifications.h"
#include "agent_link/LinkFixture.h"
#include "fakes/FakeClock.h"
#include "platform/BusCalls.h"

#include <QThread>
#include <QTimer>

#include <functional>
#include <gmock/gmock.h>
#include <utility>

namespace korvale {

/// Who has sent what comes to a connection by which the program hears the agent.
class Senders final : public QObject {
    Q_OBJECT
public:
    QStringList names;
public Q_SLOTS:
    void hear(const QDBusMessage& message) { names << message.service(); }
};

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

/// The shared controller, which writes down what reaches it and hands it on.
class Listener final : public AgentNotificationHandler {
public:
    Listener() { setSharedController(this); }
    ~Listener() override { setSharedController(nullptr); }
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;

    void HandleAgentNotification(std::uint32_t code) override {
        EXPECT_EQ(QThread::currentThread(), QCoreApplication::instance()->thread());
        heard.push_back(code);
        std::exchange(atFirst, [] {})();
    }

    std::function<void()> atFirst = [] {}; ///< takes a while

    std::vector<std::uint32_t> heard;
};

class AgentSignalsTest : public LinkFixture {
protected:
    AgentSignalsTest() { notifications.observe(bus, channel.owner()); }

    /// Waits until the mark, posted last, has been heard.
    std::vector<std::uint32_t> heardUpTo(AgentNotification mark) {
        const auto code = static_cast<std::uint32_t>(mark);
        EXPECT_TRUE(waitUntil(
            [this, code] { return !listener.heard.empty() && listener.heard.back() == code; }));
        return listener.heard;
    }

    fakes::FakeClock clock;
    AgentNotifications notifications{{state, clock, displays, displays, displays,
                                      [](const QString&) { return std::nullopt; }, [] {}, [] {}}};
    Listener listener;
};

TEST_F(AgentSignalsTest, AllTwentyAreHeardInTheOrderSent) {
    joinBus();
    BusAgent agent(daemon.address());
    ASSERT_TRUE(agent.takeName());
    std::vector<std::uint32_t> expected;
    for (int round = 0; round < 50; ++round) {
        for (const AgentNotificationRow& row : agentNotificationTable) {
            agent.post(QString::fromLatin1(row.name));
            expected.push_back(static_cast<std::uint32_t>(row.code));
        }
        EXPECT_TRUE(waitUntil([&] { return listener.heard.size() >= expected.size(); }));
    }
    EXPECT_EQ(listener.heard, expected);
}

TEST_F(AgentSignalsTest, WhatOthersSendTheBusKeepsBack) {
    joinBus();
    Senders senders;
    QDBusConnection connection = bus.connection();
    QStringList interfaces = agentNotificationInterfaces();
    interfaces << QStringLiteral("com.korvale.agent_server")
               << QStringLiteral("org.freedesktop.DBus");
    for (const QString& interface : std::as_const(interfaces)) {
        ASSERT_TRUE(connection.connect(QString(), QString(), interface, QString(), &senders,
                                       SLOT(hear(QDBusMessage))));
    }
    BusAgent agent(daemon.address());
    ASSERT_TRUE(agent.takeName());
    BusAgent other(daemon.address());
    for (const AgentNotificationRow& row : agentNotificationTable) {
        other.post(QString::fromLatin1(row.name));
    }
    other.postMessage({});
    other.postOwnerChange(QStringLiteral("com.korvale.agent_server"), agent.uniqueName(), {});
    other.flush();
    const AgentNotificationRow& mark = agentNotificationTable.front();
    agent.post(QString::fromLatin1(mark.name));
    heardUpTo(mark.code);
    EXPECT_THAT(senders.names, Contains(agent.uniqueName()));
    EXPECT_FALSE(senders.names.contains(other.uniqueName())) << "a flood does not wake the program";
}

TEST_F(AgentSignalsTest, OfSeveralBatchesThatWaitTheLastStandsForAll) {
    joinBus();
    BusAgent agent(daemon.address());
    ASSERT_TRUE(agent.takeName());
    const QString batch = QStringLiteral("com.korvale.timer.aggregated_messages");
    listener.atFirst = [&] {
        for (int i = 0; i < 100; ++i) {
            agent.post(batch);
        }
        agent.post(QStringLiteral("com.korvale.halyx.connected"));
        agent.post(batch);
        agent.post(QStringLiteral("com.korvale.driver.connected"));
        agent.flush();
        // What follows on the same connection has been received when this is answered.
        (void)bus.connection().call(busCall("GetId"));
    };
    agent.post(batch);
    EXPECT_THAT(heardUpTo(AgentNotification::DriverConnected), ElementsAre(8U, 3U, 8U, 15U));
    listener.heard.clear();
    agent.post(batch);
    EXPECT_THAT(heardUpTo(AgentNotification::TimerAggregatedMessage), ElementsAre(8U));
}

TEST_F(AgentSignalsTest, TheEventLoopTurnsBetweenTwoBatches) {
    joinBus();
    BusAgent agent(daemon.address());
    ASSERT_TRUE(agent.takeName());
    const QString batch = QStringLiteral("com.korvale.timer.aggregated_messages");
    bool turned = false;
    std::function<void()> flood = [&] { // reading takes longer than the next batch needs to come
        agent.post(batch);
        agent.flush();
        (void)bus.connection().call(busCall("GetId"));
        listener.atFirst = flood;
    };
    listener.atFirst = flood;
    QTimer::singleShot(50, &notifications, [&turned] { turned = true; });
    agent.post(batch);
    EXPECT_TRUE(waitUntil([&turned] { return turned; }));
    EXPECT_GT(listener.heard.size(), 1U);
    listener.atFirst = [] {};
}

TEST_F(AgentSignalsTest, WhatIsHeardBeforeTheOwnerIsKnownIsNotLost) {
    daemon.start();
    BusAgent agent(daemon.address());
    ASSERT_TRUE(agent.takeName());
    bool wasKnown = true;
    QObject::connect(&bus, &SystemBus::connected, &bus, [&] {
        // Only the rules of the notifications are there: nobody has asked for the owner yet.
        (void)bus.connection().call(busCall("GetId"));
        agent.post(QStringLiteral("com.korvale.agent.running"));
        agent.flush();
        (void)bus.connection().call(busCall("GetId"));
        wasKnown = channel.owner().isKnown();
    });
    bus.start();
    channel.connectToService();
    EXPECT_THAT(heardUpTo(AgentNotification::AgentRunning), ElementsAre(2U));
    EXPECT_FALSE(wasKnown);
}

TEST_F(AgentSignalsTest, AnAgentIsHeardRightAfterItTookItsName) {
    joinBus();
    for (int life = 1; life <= 3; ++life) {
        BusAgent agent(daemon.address());
        ASSERT_TRUE(agent.takeName());
        agent.post(QStringLiteral("com.korvale.agent.started"));
        EXPECT_TRUE(waitUntil([&] { return listener.heard.size() == std::size_t(life); }));
    }
}

TEST_F(AgentSignalsTest, AnAgentThatWasThereFirstIsHeard) {
    daemon.start();
    BusAgent agent(daemon.address());
    ASSERT_TRUE(agent.takeName());
    bus.start();
    channel.connectToService();
    ASSERT_TRUE(waitUntil([this] { return bus.state() == SystemBus::State::Connected; }));
    agent.post(QStringLiteral("com.korvale.agent.running"));
    EXPECT_THAT(heardUpTo(AgentNotification::AgentRunning), ElementsAre(2U));
}

TEST_F(AgentSignalsTest, OnlyTheOwnerOfTheNameIsHeard) {
    joinBus();
    BusAgent impostor(daemon.address());
    const auto postAll = [&impostor] {
        for (const AgentNotificationRow& row : agentNotificationTable) {
            impostor.post(QString::fromLatin1(row.name));
        }
        impostor.flush();
    };
    postAll(); // the agent is absent
    BusAgent agent(daemon.address());
    ASSERT_TRUE(agent.takeName());
    postAll(); // it is present
    agent.die();
    ASSERT_TRUE(waitUntil([this] { return interruptions() == 1; }));
    postAll(); // it is gone
    BusAgent successor(daemon.address());
    ASSERT_TRUE(successor.takeName());
    successor.post(QStringLiteral("com.korvale.agent.running"));
    EXPECT_THAT(heardUpTo(AgentNotification::AgentRunning), ElementsAre(2U));
}

TEST_F(AgentSignalsTest, AFormerOwnerIsNoLongerHeard) {
    joinBus();
    BusAgent former(daemon.address());
    ASSERT_TRUE(former.takeName());
    ASSERT_TRUE(former.releaseName());
    former.post(QStringLiteral("com.korvale.agent.stopped"));
    former.flush();
    BusAgent agent(daemon.address());
    ASSERT_TRUE(agent.takeName());
    agent.post(QStringLiteral("com.korvale.agent.running"));
    EXPECT_THAT(heardUpTo(AgentNotification::AgentRunning), ElementsAre(2U));
}

TEST_F(AgentSignalsTest, OtherObjectsInterfacesAndNamesAreIgnored) {
    joinBus();
    BusAgent agent(daemon.address());
    ASSERT_TRUE(agent.takeName());
    agent.post(QStringLiteral("com.korvale.agent.started"), {}, QStringLiteral("/elsewhere"));
    agent.post(QStringLiteral("com.korvale.agent.Started"));
    agent.post(QStringLiteral("com.korvale.agent.connected"));
    agent.post(QStringLiteral("com.other.agent.started"));
    agent.post(QStringLiteral("com.korvale.started"));
    agent.post(QStringLiteral("com.korvale.agent.running"));
    EXPECT_THAT(heardUpTo(AgentNotification::AgentRunning), ElementsAre(2U));
}

TEST_F(AgentSignalsTest, ArgumentsOfASignalAreNotLookedAt) {
    joinBus();
    BusAgent agent(daemon.address());
    ASSERT_TRUE(agent.takeName());
    agent.post(QStringLiteral("com.korvale.agent.started"), {5, QStringLiteral("x")});
    agent.post(QStringLiteral("com.korvale.exe.blocked"), {envelopeWith(QByteArray(1 << 20, 'x'))});
    EXPECT_THAT(heardUpTo(AgentNotification::ExeBlocked), ElementsAre(0U, 7U));
}

TEST_F(AgentSignalsTest, AfterABusRestartEachIsHeardOnce) {
    joinBus();
    for (int life = 1; life <= 2; ++life) {
        daemon.kill();
        ASSERT_TRUE(waitUntil([&] { return invalidations() == life; }));
        daemon.start();
        ASSERT_TRUE(waitUntil([this] { return bus.state() == SystemBus::State::Connected; }));
        listener.heard.clear();
        BusAgent agent(daemon.address());
        ASSERT_TRUE(agent.takeName());
        agent.post(QStringLiteral("com.korvale.agent.started"));
        agent.post(QStringLiteral("com.korvale.agent.running"));
        EXPECT_THAT(heardUpTo(AgentNotification::AgentRunning), ElementsAre(0U, 2U));
    }
}

TEST_F(AgentSignalsTest, WithoutABusAtStartTheAgentIsHeardOnceThereIsOne) {
    bus.start();
    channel.connectToService();
    ASSERT_TRUE(waitUntil([this] { return bus.state() == SystemBus::State::Absent; }));
    daemon.start();
    ASSERT_TRUE(waitUntil([this] { return bus.state() == SystemBus::State::Connected; }));
    BusAgent agent(daemon.address());
    ASSERT_TRUE(agent.takeName());
    agent.post(QStringLiteral("com.korvale.agent.started"));
    EXPECT_THAT(heardUpTo(AgentNotification::AgentStarted), ElementsAre(0U));
}

} // namespace
} // namespace korvale

#include "AgentSignalsTest.moc"
