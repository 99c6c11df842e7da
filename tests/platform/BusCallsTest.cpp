#include "platform/BusCalls.h"

#include "fakes/SessionBusDaemon.h"
#include "fakes/WaitUntil.h"

#include <QDBusConnection>
#include <QDBusPendingCallWatcher>
#include <QDeadlineTimer>
#include <QThread>

#include <gtest/gtest.h>

namespace korvale {
namespace {

/// Answered, and nobody has looked yet.
QDBusPendingCall answeredAtOnce(const QDBusConnection& bus, const QDBusMessage& message) {
    QDBusPendingCall call = bus.asyncCall(message, noTimeout);
    const QDeadlineTimer limit(20'000);
    while (!call.isFinished() && !limit.hasExpired()) {
        QThread::msleep(1);
    }
    EXPECT_TRUE(call.isFinished());
    return call;
}

TEST(BusCalls, AnAnswerThatIsThereAtOnceIsNoFailureThoughItIsAnError) {
    const SessionBusDaemon daemon;
    const QString name = QStringLiteral("bus-calls-test");
    const QDBusConnection bus = QDBusConnection::connectToBus(daemon.address(), name);
    EXPECT_FALSE(hasFailedAtOnce(answeredAtOnce(bus, busCall("GetId"))));
    QDBusMessage question = busCall("GetNameOwner");
    question << QStringLiteral("none.such");
    const QDBusPendingCall refused = answeredAtOnce(bus, question);
    EXPECT_TRUE(refused.isError());
    EXPECT_FALSE(hasFailedAtOnce(refused));
    const QDBusPendingCallWatcher watcher(refused);
    bool isTold = false;
    QObject::connect(&watcher, &QDBusPendingCallWatcher::finished, &watcher,
                     [&isTold] { isTold = true; });
    EXPECT_TRUE(waitUntil([&isTold] { return isTold; }));
    QDBusConnection::disconnectFromBus(name);
}

TEST(BusCalls, WithoutABusACallHasFailedAtOnce) {
    EXPECT_TRUE(hasFailedAtOnce(QDBusConnection(QString()).asyncCall(busCall("GetId"))));
}

} // namespace
} // namespace korvale
