#include "agent/bus/SleepWatch.h"

#include "BusTest.h"

#include <QDBusVirtualObject>

#include <fcntl.h>
#include <poll.h>

namespace korvale::agent {
namespace {

/// The login service: hands out delays, and sees when they end.
class FakeLogin : public QDBusVirtualObject {
public:
    static QString serviceName() { return QStringLiteral("org.freedesktop.login1"); }

    explicit FakeLogin(const QString& busAddress)
        : m_bus(QDBusConnection::connectToBus(busAddress, QStringLiteral("login"))) {
        EXPECT_TRUE(m_bus.registerVirtualObject(QStringLiteral("/org/freedesktop/login1"), this));
        EXPECT_TRUE(m_bus.registerService(serviceName()));
    }
    ~FakeLogin() override {
        ::close(m_reading);
        QDBusConnection::disconnectFromBus(QStringLiteral("login"));
    }
    bool handleMessage(const QDBusMessage& call, const QDBusConnection& bus) override {
        if (call.member() != QLatin1String("Inhibit")) {
            return false;
        }
        asked = call.arguments();
        ::close(m_reading);
        std::array<int, 2> pair{};
        EXPECT_EQ(::pipe2(pair.data(), O_CLOEXEC), 0);
        m_reading = pair[0];
        bus.send(call.createReply(QVariant::fromValue(QDBusUnixFileDescriptor(pair[1]))));
        ::close(pair[1]);
        return true;
    }
    QString introspect(const QString& /*path*/) const override { return {}; }

    void prepare(bool asleep) {
        QDBusMessage signal = QDBusMessage::createSignal(
            QStringLiteral("/org/freedesktop/login1"),
            QStringLiteral("org.freedesktop.login1.Manager"), QStringLiteral("PrepareForSleep"));
        signal << asleep;
        m_bus.send(signal);
    }
    /// Somebody keeps the machine awake.
    [[nodiscard]] bool isDelayed() const {
        pollfd end{m_reading, POLLIN, 0};
        return m_reading >= 0 && ::poll(&end, 1, 0) == 0;
    }

    QVariantList asked;

private:
    QDBusConnection m_bus;
    int m_reading = -1;
};

class SleepWatchTest : public BusTest {
protected:
    void SetUp() override {
        m_bus.allowService(FakeLogin::serviceName());
        BusTest::SetUp();
        m_tick.start(10);
        QObject::connect(&m_watch, &SleepWatch::sleeping, &m_watch,
                         [this](bool asleep) { m_told.append(asleep); });
    }

    QTimer m_tick;
    QList<bool> m_told;
    SleepWatch m_watch;
};

TEST_F(SleepWatchTest, SleepIsDelayedUntilItWasToldAndNoLonger) {
    FakeLogin login(m_bus.address());
    m_watch.use(*m_agent);
    ASSERT_TRUE(waitUntil([&] { return login.isDelayed(); }));
    EXPECT_EQ(login.asked.value(0), QStringLiteral("sleep"));
    EXPECT_EQ(login.asked.value(3), QStringLiteral("delay"));
    login.prepare(true);
    ASSERT_TRUE(waitUntil([&] { return !m_told.isEmpty(); }));
    EXPECT_EQ(m_told, QList<bool>{true});
    EXPECT_TRUE(waitUntil([&] { return !login.isDelayed(); }));
    login.prepare(false);
    EXPECT_TRUE(waitUntil([&] { return login.isDelayed(); })) << "for the next time";
    EXPECT_EQ(m_told, (QList<bool>{true, false}));
}

TEST_F(SleepWatchTest, WithoutALoginServiceNothingIsHeard) {
    m_watch.use(*m_agent);
    EXPECT_TRUE(m_told.isEmpty());
}

TEST_F(SleepWatchTest, ALoginServiceThatComesLaterIsAskedThen) {
    m_watch.use(*m_agent);
    // The bus answers one connection in order: it was asked, and refused, before this is there.
    ASSERT_TRUE(m_agent->interface()->isServiceRegistered(QStringLiteral("org.freedesktop.DBus")));
    FakeLogin login(m_bus.address());
    EXPECT_TRUE(waitUntil([&] { return login.isDelayed(); }));
}

TEST_F(SleepWatchTest, OnlyTheLoginServiceIsBelieved) {
    FakeLogin login(m_bus.address());
    m_watch.use(*m_agent);
    ASSERT_TRUE(waitUntil([&] { return login.isDelayed(); }));
    QDBusMessage forged = QDBusMessage::createSignal(
        QStringLiteral("/org/freedesktop/login1"), QStringLiteral("org.freedesktop.login1.Manager"),
        QStringLiteral("PrepareForSleep"));
    forged << true;
    m_caller->send(forged);
    login.prepare(false);
    ASSERT_TRUE(waitUntil([&] { return !m_told.isEmpty(); }));
    EXPECT_EQ(m_told, QList<bool>{false});
}

} // namespace
} // namespace korvale::agent
