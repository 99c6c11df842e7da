#include "platform/NameOwner.h"

#include "fakes/RawBusClient.h"
#include "fakes/SessionBusDaemon.h"
#include "fakes/WaitUntil.h"

#include <QCoreApplication>
#include <QDBusConnectionInterface>

#include <gmock/gmock.h>
#include <utility>
#include <vector>

namespace korvale {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

const QString name = QStringLiteral("com.korvale.test");

/// Another process on the bus, as the bus sees it.
class Client {
public:
    explicit Client(const QString& address)
        : m_name(QStringLiteral("client-%1").arg(++count)),
          m_bus(QDBusConnection::connectToBus(address, m_name)) {}
    ~Client() { leave(); }
    Client(const Client&) = delete;
    Client& operator=(const Client&) = delete;

    [[nodiscard]] QDBusConnection bus() const { return m_bus; }
    [[nodiscard]] QString uniqueName() const { return m_bus.baseService(); }
    void take() { ASSERT_TRUE(m_bus.registerService(name)); }
    void release() { ASSERT_TRUE(m_bus.unregisterService(name)); }
    void leave() {
        m_bus = QDBusConnection(QString());
        QDBusConnection::disconnectFromBus(m_name);
    }
    /// What only the bus may say; to everybody, or to one client.
    void announce(const QString& before, const QString& now, const QString& receiver = {}) {
        const auto path = QStringLiteral("/org/freedesktop/DBus");
        const auto bus = QStringLiteral("org.freedesktop.DBus");
        const auto member = QStringLiteral("NameOwnerChanged");
        QDBusMessage signal = receiver.isEmpty()
                                  ? QDBusMessage::createSignal(path, bus, member)
                                  : QDBusMessage::createTargetedSignal(receiver, path, bus, member);
        signal << name << before << now;
        ASSERT_TRUE(m_bus.send(signal));
        m_bus.interface()->isServiceRegistered(name); // the bus has passed it on
    }

private:
    static inline int count = 0;
    QString m_name;
    QDBusConnection m_bus;
};

class NameOwnerTest : public testing::Test {
protected:
    NameOwnerTest() {
        QObject::connect(&owner, &NameOwner::changed, &owner,
                         [this](const QString& before, const QString& now) {
                             changes.emplace_back(before, now);
                         });
    }
    bool waitForChanges(std::size_t count) {
        return waitUntil([this, count] { return changes.size() >= count; });
    }

    SessionBusDaemon daemon;
    Client own{daemon.address()};
    Client other{daemon.address()};
    NameOwner owner{name};
    std::vector<std::pair<QString, QString>> changes;
};

TEST_F(NameOwnerTest, NobodyIsAnAnswerToo) {
    EXPECT_FALSE(owner.isKnown());
    owner.follow(own.bus());
    EXPECT_FALSE(owner.isKnown());
    EXPECT_EQ(owner.compare(other.uniqueName()), NameOwner::Is::NotKnown);
    ASSERT_TRUE(waitForChanges(1));
    EXPECT_THAT(changes, ElementsAre(Pair(QString(), QString())));
    EXPECT_TRUE(owner.isKnown());
    EXPECT_EQ(owner.compare(other.uniqueName()), NameOwner::Is::Another);
    EXPECT_EQ(owner.compare(QString()), NameOwner::Is::Another);
}

TEST_F(NameOwnerTest, WhoWasThereFirstIsKnown) {
    other.take();
    owner.follow(own.bus());
    ASSERT_TRUE(waitForChanges(1));
    EXPECT_THAT(changes, ElementsAre(Pair(QString(), other.uniqueName())));
    EXPECT_EQ(owner.owner(), other.uniqueName());
    EXPECT_EQ(owner.compare(other.uniqueName()), NameOwner::Is::Owner);
    EXPECT_EQ(owner.compare(own.uniqueName()), NameOwner::Is::Another);
}

TEST_F(NameOwnerTest, EveryChangeIsSaidWithTheOwnerBefore) {
    owner.follow(own.bus());
    ASSERT_TRUE(waitForChanges(1));
    const QString first = other.uniqueName();
    other.take();
    ASSERT_TRUE(waitForChanges(2));
    other.release();
    ASSERT_TRUE(waitForChanges(3));
    Client successor(daemon.address());
    successor.take();
    ASSERT_TRUE(waitForChanges(4));
    const QString second = successor.uniqueName();
    successor.leave();
    ASSERT_TRUE(waitForChanges(5));
    EXPECT_THAT(changes, ElementsAre(Pair(QString(), QString()), Pair(QString(), first),
                                     Pair(first, QString()), Pair(QString(), second),
                                     Pair(second, QString())));
}

TEST_F(NameOwnerTest, ChangesAloneAreSaidWithTheOwnerBeforeThough) {
    other.take();
    owner.followChanges(own.bus());
    own.bus().interface()->isServiceRegistered(name); // an answer would be here by now
    QCoreApplication::processEvents();
    EXPECT_THAT(changes, IsEmpty());
    EXPECT_EQ(owner.compare(other.uniqueName()), NameOwner::Is::NotKnown);
    other.release();
    ASSERT_TRUE(waitForChanges(1));
    EXPECT_THAT(changes, ElementsAre(Pair(other.uniqueName(), QString())));
    EXPECT_TRUE(owner.isKnown());
}

TEST_F(NameOwnerTest, OnlyTheBusIsBelieved) {
    other.take();
    owner.follow(own.bus());
    ASSERT_TRUE(waitForChanges(1));
    Client impostor(daemon.address());
    impostor.announce(other.uniqueName(), impostor.uniqueName());
    impostor.announce(other.uniqueName(), impostor.uniqueName(), own.uniqueName());
    other.release();
    ASSERT_TRUE(waitForChanges(2));
    EXPECT_EQ(changes.back(), std::pair(other.uniqueName(), QString()));
    EXPECT_EQ(changes.size(), 2U);
}

TEST_F(NameOwnerTest, AnAnswerThatIsNotTheBussDoesNotCount) {
    // A session bus passes on replies that nobody has asked for.
    RawBusClient impostor(daemon.socketPath().toUtf8());
    impostor.flush();
    daemon.hang();
    impostor.answerWithText(own.uniqueName().toUtf8(), 64, other.uniqueName().toUtf8());
    owner.follow(own.bus());
    daemon.goOn(); // the impostor's turn comes first
    ASSERT_TRUE(waitForChanges(1));
    EXPECT_THAT(changes, ElementsAre(Pair(QString(), QString())));
}

TEST_F(NameOwnerTest, AStoppedBusIsNotWaitedForAndLeavesItUnknown) {
    other.take();
    daemon.hang();
    owner.follow(own.bus());
    bool turned = false;
    QTimer::singleShot(0, &owner, [&turned] { turned = true; });
    EXPECT_TRUE(waitUntil([&turned] { return turned; }));
    EXPECT_EQ(owner.compare(other.uniqueName()), NameOwner::Is::NotKnown);
    EXPECT_THAT(changes, IsEmpty());
    daemon.goOn();
    ASSERT_TRUE(waitForChanges(1));
    EXPECT_EQ(owner.compare(other.uniqueName()), NameOwner::Is::Owner);
}

TEST_F(NameOwnerTest, AnAnswerThatComesAfterTheBusWasGivenUpDoesNotCount) {
    other.take();
    daemon.hang();
    owner.follow(own.bus());
    owner.forget();
    daemon.goOn();
    // A question of its own on the same connection is answered after the one before it.
    NameOwner later(name);
    later.follow(own.bus());
    ASSERT_TRUE(waitUntil([&later] { return later.isKnown(); }));
    EXPECT_FALSE(owner.isKnown());
    EXPECT_THAT(changes, IsEmpty());
}

TEST_F(NameOwnerTest, ANewConnectionStartsAfresh) {
    other.take();
    owner.follow(own.bus());
    ASSERT_TRUE(waitForChanges(1));
    SessionBusDaemon second;
    const Client there(second.address());
    owner.follow(there.bus());
    EXPECT_FALSE(owner.isKnown());
    EXPECT_TRUE(owner.owner().isEmpty());
    ASSERT_TRUE(waitForChanges(2));
    EXPECT_EQ(changes.back(), std::pair(QString(), QString()));
}

TEST_F(NameOwnerTest, WithoutABusNothingIsKnown) {
    owner.follow(QDBusConnection(QString()));
    EXPECT_FALSE(owner.isKnown());
    EXPECT_THAT(changes, IsEmpty());
}

} // namespace
} // namespace korvale
