#include "agent/app/Life.h"

#include "NotifySocket.h"
#include "fakes/WaitUntil.h"

#include <csignal>

namespace korvale::agent {
namespace {

class LifeTest : public testing::Test {
protected:
    LifeTest() {
        Life::blockSignals();
        qputenv("NOTIFY_SOCKET", m_manager.path());
    }
    ~LifeTest() override {
        qunsetenv("NOTIFY_SOCKET");
        qunsetenv("WATCHDOG_USEC");
        qunsetenv("WATCHDOG_PID");
    }

    NotifySocket m_manager;
};

TEST_F(LifeTest, TheManagerHearsOfReadinessReloadAndEnd) {
    Life life;
    life.ready();
    life.reloading();
    life.reloaded();
    life.stopping();
    const QByteArrayList told = m_manager.told();
    ASSERT_EQ(told.size(), 4);
    EXPECT_EQ(told[0], "READY=1");
    EXPECT_TRUE(told[1].startsWith("RELOADING=1\nMONOTONIC_USEC="));
    EXPECT_EQ(told[2], "READY=1");
    EXPECT_EQ(told[3], "STOPPING=1");
}

TEST_F(LifeTest, TheWatchdogIsFedWhileTheEventLoopTurns) {
    qputenv("WATCHDOG_USEC", "100000");
    Life life;
    life.ready();
    EXPECT_TRUE(waitUntil([&] { return m_manager.told().count("WATCHDOG=1") >= 3; }));
}

TEST_F(LifeTest, SignalsComeThroughTheEventLoop) {
    Life life;
    QStringList wanted;
    QObject::connect(&life, &Life::endWanted, &life, [&] { wanted.append(QStringLiteral("end")); });
    QObject::connect(&life, &Life::reloadWanted, &life,
                     [&] { wanted.append(QStringLiteral("reload")); });
    ::raise(SIGHUP); // to this thread: others of this process were there before
    ASSERT_TRUE(waitUntil([&] { return wanted.size() == 1; }));
    ::raise(SIGTERM); // to this thread: others of this process were there before
    ASSERT_TRUE(waitUntil([&] { return wanted.size() == 2; }));
    EXPECT_EQ(wanted, QStringList({QStringLiteral("reload"), QStringLiteral("end")}));
}

} // namespace
} // namespace korvale::agent
