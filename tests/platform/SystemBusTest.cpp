#include "platform/SystemBus.h"

#include "fakes/BusAgent.h"
#include "fakes/HalfAliveBus.h"
#include "fakes/PrivateBus.h"
#include "fakes/SilentSocket.h"
#include "fakes/WaitUntil.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QElapsedTimer>

#include <csignal>
#include <gtest/gtest.h>
#include <optional>

namespace korvale {
namespace {

constexpr int briefLimitMs = 50;
constexpr int endlessLimitMs = 1000000;

/// What a SystemBus has said so far.
struct Counts {
    explicit Counts(SystemBus& bus) {
        QObject::connect(&bus, &SystemBus::connected, &bus, [this] { ++connected; });
        QObject::connect(&bus, &SystemBus::firstAttemptFailed, &bus, [this] { ++failed; });
        QObject::connect(&bus, &SystemBus::lost, &bus, [this] { ++lost; });
    }
    int connected = 0;
    int failed = 0;
    int lost = 0;
};

bool answers(const QDBusConnection& connection) {
    const QDBusMessage question = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("GetId"));
    return connection.call(question).type() == QDBusMessage::ReplyMessage;
}

TEST(SystemBus, IsOnTheBusOnceTheEventLoopTurns) {
    PrivateBus daemon;
    daemon.start();
    SystemBus bus;
    const Counts counts(bus);
    EXPECT_EQ(bus.state(), SystemBus::State::Idle);
    bus.start();
    EXPECT_EQ(bus.state(), SystemBus::State::FirstAttempt);
    EXPECT_TRUE(waitUntil([&] { return counts.connected == 1; }));
    EXPECT_EQ(bus.state(), SystemBus::State::Connected);
    EXPECT_TRUE(answers(bus.connection()));
    EXPECT_EQ(counts.failed, 0);
}

TEST(SystemBus, FindsABusThatAppearsLater) {
    PrivateBus daemon;
    SystemBus bus;
    const Counts counts(bus);
    bus.start();
    EXPECT_TRUE(waitUntil([&] { return counts.failed == 1; }));
    EXPECT_EQ(bus.state(), SystemBus::State::Absent);
    EXPECT_FALSE(bus.connection().isConnected());
    daemon.start();
    EXPECT_TRUE(waitUntil([&] { return counts.connected == 1; }));
    EXPECT_EQ(counts.failed, 1);
}

TEST(SystemBus, ComesBackAfterTheBusWasKilled) {
    PrivateBus daemon;
    daemon.start();
    SystemBus bus;
    const Counts counts(bus);
    bus.start();
    for (int life = 1; life <= 3; ++life) {
        ASSERT_TRUE(waitUntil([&] { return counts.connected == life; }));
        EXPECT_TRUE(answers(bus.connection()));
        daemon.kill();
        ASSERT_TRUE(waitUntil([&] { return counts.lost == life; }));
        EXPECT_EQ(bus.state(), SystemBus::State::Absent);
        EXPECT_FALSE(bus.connection().isConnected());
        daemon.start();
    }
    EXPECT_TRUE(waitUntil([&] { return counts.connected == 4; }));
    EXPECT_EQ(counts.failed, 0);
}

TEST(SystemBus, ASilentBusHoldsUpNobody) {
    PrivateBus daemon;
    const SilentSocket silent(daemon.socketPath().toUtf8());
    PrivateBus other; // stands for the session's bus
    other.start();
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", daemon.address().toUtf8());
    SystemBus bus(endlessLimitMs);
    bus.start();
    bool turned = false;
    QTimer::singleShot(0, &bus, [&turned] { turned = true; });
    EXPECT_TRUE(waitUntil([&turned] { return turned; }));
    EXPECT_EQ(bus.state(), SystemBus::State::FirstAttempt);

    const QDBusConnection session =
        QDBusConnection::connectToBus(other.address(), QStringLiteral("session"));
    EXPECT_TRUE(answers(session));
    QDBusConnection::disconnectFromBus(QStringLiteral("session"));
}

TEST(SystemBus, ASilentBusThatGivesWayToARealOneIsNoticed) {
    PrivateBus daemon;
    SilentSocket silent(daemon.socketPath().toUtf8());
    SystemBus bus(briefLimitMs);
    const Counts counts(bus);
    bus.start();
    EXPECT_TRUE(waitUntil([&] { return counts.failed == 1; }));
    silent.hangUp();
    daemon.start();
    EXPECT_TRUE(waitUntil([&] { return counts.connected == 1; }));
}

TEST(SystemBus, ADaemonThatIsStoppedAtStartIsJoinedWhenItGoesOn) {
    PrivateBus daemon;
    daemon.start();
    const auto pid = static_cast<pid_t>(daemon.pid());
    ASSERT_EQ(::kill(pid, SIGSTOP), 0);
    SystemBus bus(briefLimitMs);
    const Counts counts(bus);
    bus.start();
    EXPECT_TRUE(waitUntil([&] { return counts.failed == 1; }));
    ASSERT_EQ(::kill(pid, SIGCONT), 0);
    EXPECT_TRUE(waitUntil([&] { return counts.connected == 1; }));
}

TEST(SystemBus, ABusThatRefusesTheGreetingIsJoinedWhenItNoLongerDoes) {
    PrivateBus daemon;
    daemon.limitConnectionsPerUser(1);
    daemon.start();
    BusAgent occupant(daemon.address());
    ASSERT_TRUE(occupant.isConnected());
    SystemBus bus;
    const Counts counts(bus);
    bus.start();
    EXPECT_TRUE(waitUntil([&] { return counts.failed == 1; }));
    EXPECT_FALSE(bus.connection().isConnected());
    occupant.die();
    EXPECT_TRUE(waitUntil([&] { return counts.connected == 1; }));
    EXPECT_TRUE(answers(bus.connection()));
}

TEST(SystemBus, AfterARestartABusThatRefusesIsAskedAgain) {
    PrivateBus daemon;
    daemon.start();
    SystemBus bus;
    const Counts counts(bus);
    bus.start();
    ASSERT_TRUE(waitUntil([&] { return counts.connected == 1; }));
    daemon.kill();
    ASSERT_TRUE(waitUntil([&] { return counts.lost == 1; }));
    daemon.limitConnectionsPerUser(0);
    daemon.start();
    QTimer soon;
    bool looked = false;
    QObject::connect(&soon, &QTimer::timeout, &soon, [&looked] { looked = true; });
    soon.start(500); // several attempts
    EXPECT_TRUE(waitUntil([&looked] { return looked; }));
    EXPECT_EQ(bus.state(), SystemBus::State::Absent);
    daemon.kill();
    daemon.limitConnectionsPerUser(5);
    daemon.start();
    EXPECT_TRUE(waitUntil([&] { return counts.connected == 2; }));
}

TEST(SystemBus, ABusThatLetsItInAndThenHangsHoldsUpNobody) {
    PrivateBus daemon;
    const HalfAliveBus halfAlive(daemon.socketPath().toUtf8());
    PrivateBus other; // stands for the session's bus
    other.start();
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", daemon.address().toUtf8());
    SystemBus bus(endlessLimitMs);
    bus.start();
    int ticks = 0;
    QTimer ticking;
    QObject::connect(&ticking, &QTimer::timeout, &ticking, [&ticks] { ++ticks; });
    ticking.start(5);
    ASSERT_TRUE(waitUntil([&] { return halfAlive.letIn() >= 1 && ticks >= 20; }));
    EXPECT_EQ(bus.state(), SystemBus::State::FirstAttempt);
    const QDBusConnection session =
        QDBusConnection::connectToBus(other.address(), QStringLiteral("session"));
    EXPECT_TRUE(answers(session));
    QDBusConnection::disconnectFromBus(QStringLiteral("session"));
}

TEST(SystemBus, ABusThatLetsItInAndThenHangsGivesWayToARealOne) {
    PrivateBus daemon;
    std::optional<HalfAliveBus> halfAlive(daemon.socketPath().toUtf8());
    SystemBus bus(briefLimitMs);
    const Counts counts(bus);
    bus.start();
    EXPECT_TRUE(waitUntil([&] { return counts.failed == 1; }));
    halfAlive.reset();
    daemon.start();
    EXPECT_TRUE(waitUntil([&] { return counts.connected == 1; }));
}

TEST(SystemBus, TakesTheFirstOfSeveralAddressesThatAnswers) {
    PrivateBus daemon;
    daemon.start();
    const QByteArray silentPath = daemon.socketPath().toUtf8() + "-silent";
    const SilentSocket silent(silentPath);
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nonexistent/bus;nonsense;unix:path=" +
                                           silentPath + ';' + daemon.address().toUtf8());
    SystemBus bus(briefLimitMs);
    const Counts counts(bus);
    bus.start();
    EXPECT_TRUE(waitUntil([&] { return counts.connected == 1; }));
    EXPECT_EQ(counts.failed, 0);
}

TEST(SystemBus, UnderstandsAbstractAndEscapedAddresses) {
    const QString name = QStringLiteral("korvale-test-%1").arg(QCoreApplication::applicationPid());
    for (const QString& address : {QStringLiteral("unix:abstract=") + name,
                                   QStringLiteral("unix:abstract=%6b") + name.mid(1)}) {
        PrivateBus daemon;
        daemon.start(QStringLiteral("unix:abstract=") + name);
        qputenv("DBUS_SYSTEM_BUS_ADDRESS", address.toUtf8());
        SystemBus bus;
        bus.start();
        EXPECT_TRUE(waitUntil([&] { return bus.state() == SystemBus::State::Connected; }))
            << address.toStdString();
    }
}

TEST(SystemBus, AnyListWithoutABusIsAbsent) {
    for (const char* list : {";", "nonsense", "unix:", "unix:tmpdir=/tmp", "unix:path=%zz"}) {
        qputenv("DBUS_SYSTEM_BUS_ADDRESS", list);
        SystemBus bus;
        const Counts counts(bus);
        bus.start();
        EXPECT_TRUE(waitUntil([&] { return counts.failed == 1; })) << list;
    }
}

TEST(SystemBus, AOneShotStartCanFinishTheFirstAttemptWithoutTheEventLoop) {
    PrivateBus daemon;
    daemon.start();
    SystemBus bus;
    const Counts counts(bus);
    bus.start();
    bus.finishFirstAttempt(endlessLimitMs);
    EXPECT_EQ(bus.state(), SystemBus::State::Connected);
    EXPECT_EQ(counts.connected, 1);
    bool turned = false;
    QTimer::singleShot(0, &bus, [&turned] { turned = true; });
    EXPECT_TRUE(waitUntil([&turned] { return turned; }));
    EXPECT_EQ(counts.connected, 1) << "the search that was under way must not connect again";
}

TEST(SystemBus, FinishingTheFirstAttemptGivesUpOnNoBusAndOnASilentOne) {
    PrivateBus daemon;
    SystemBus absent;
    absent.start();
    absent.finishFirstAttempt(endlessLimitMs);
    EXPECT_EQ(absent.state(), SystemBus::State::Absent);

    const SilentSocket silent(daemon.socketPath().toUtf8());
    SystemBus hanging;
    hanging.start();
    hanging.finishFirstAttempt(briefLimitMs);
    EXPECT_EQ(hanging.state(), SystemBus::State::Absent);
}

TEST(SystemBus, FinishingTheFirstAttemptGivesUpOnABusThatHangsAfterLettingItIn) {
    const PrivateBus daemon;
    const HalfAliveBus halfAlive(daemon.socketPath().toUtf8());
    QElapsedTimer spent;
    spent.start();
    SystemBus bus;
    bus.start();
    bus.finishFirstAttempt(briefLimitMs);
    EXPECT_EQ(bus.state(), SystemBus::State::Absent);
    EXPECT_LT(spent.elapsed(), 10000);
}

TEST(SystemBus, FinishingTheFirstAttemptTakesItsTimeOnceForAllAddresses) {
    const PrivateBus daemon;
    const QByteArray path = daemon.socketPath().toUtf8();
    const SilentSocket silent(path);
    const QByteArray entry = ";unix:path=" + path;
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=" + path + entry + entry + entry + entry);
    QElapsedTimer spent;
    spent.start();
    SystemBus bus;
    bus.start();
    bus.finishFirstAttempt(1000);
    EXPECT_EQ(bus.state(), SystemBus::State::Absent);
    EXPECT_LT(spent.elapsed(), 3000);
}

} // namespace
} // namespace korvale
