#include "core/UserSession.h"

#include "fakes/SessionBusDaemon.h"
#include "fakes/WaitUntil.h"

#include <QCoreApplication>
#include <QDBusConnectionInterface>

#include <gtest/gtest.h>
#include <vector>

namespace korvale {
namespace {

constexpr const char* ownName = "com.korvale.ui";

class UserSessionTest : public testing::Test {
protected:
    UserSessionTest() { qputenv("DBUS_SESSION_BUS_ADDRESS", m_daemon.address().toUtf8()); }

    SessionBusDaemon m_daemon;
};

TEST_F(UserSessionTest, AnEndAskedForByTheToolkitWhileTheBusHangsIsTheEnd) {
    m_daemon.hang();
    UserSession session;
    int launches = 0;
    QObject::connect(&session, &UserSession::launch, &session, [&launches] {
        ++launches;
        QEvent end(QEvent::Quit); // as the session manager's word comes
        QCoreApplication::sendEvent(qApp, &end);
    });
    EXPECT_EQ(session.run(), UserSession::End::Terminated);
    EXPECT_EQ(launches, 1);
    m_daemon.goOn();
}

TEST_F(UserSessionTest, AfterARestartOfTheBusTheNameComesBackAndAllAreTold) {
    UserSession session;
    std::vector<bool> told;
    QObject::connect(&session, &UserSession::busDecided, &session,
                     [&](const QDBusConnection& bus) { told.push_back(bus.isConnected()); });
    QObject::connect(
        &session, &UserSession::launch, &session,
        [&] {
            m_daemon.restart();
            EXPECT_TRUE(waitUntil([&told] { return told.size() == 3; }));
            const auto observer =
                QDBusConnection::connectToBus(m_daemon.address(), QStringLiteral("observer"));
            EXPECT_TRUE(waitUntil([&observer] {
                QTimer::singleShot(20, qApp, [] {});
                return observer.interface()->isServiceRegistered(QLatin1String(ownName)).value();
            }));
            session.terminate();
        },
        Qt::QueuedConnection);
    EXPECT_EQ(session.run(), UserSession::End::Terminated);
    EXPECT_EQ(told, (std::vector{true, false, true}));
}

TEST_F(UserSessionTest, AFirstStartForAnActionGetsItOnceItIsLaunched) {
    UserSession session(QStringLiteral("scan-folder"));
    QStringList heard;
    QObject::connect(&session, &UserSession::launch, &session,
                     [&heard] { heard.append(QStringLiteral("launch")); });
    QObject::connect(&session, &UserSession::activated, &session,
                     [&](const QString& /*token*/, const QString& action) {
                         heard.append(action);
                         session.terminate();
                     });
    EXPECT_EQ(session.run(), UserSession::End::Terminated);
    EXPECT_EQ(heard, (QStringList{QStringLiteral("launch"), QStringLiteral("scan-folder")}));
}

} // namespace
} // namespace korvale
