#include "agent_link/LinkFixture.h"

#include <QProcess>

#include <gmock/gmock.h>
#include <unistd.h>

namespace korvale {
namespace {

using testing::HasSubstr;

/// What dbus-send prints when run by someone who is not root: "nobody" when the tests are root.
std::string sentByAnOrdinaryUser(const PrivateBus& daemon, const QStringList& message) {
    QStringList command{QStringLiteral("dbus-send"), QStringLiteral("--bus=") + daemon.address(),
                        QStringLiteral("--print-reply")};
    if (geteuid() == 0) {
        command = QStringList{QStringLiteral("setpriv"), QStringLiteral("--reuid=nobody"),
                              QStringLiteral("--regid=nogroup"), QStringLiteral("--clear-groups")} +
                  command;
    }
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    const QString program = command.takeFirst();
    process.start(program, command + message);
    // The agent that answers lives in this thread.
    EXPECT_TRUE(waitUntil([&process] { return process.state() == QProcess::NotRunning; }));
    return process.readAll().toStdString();
}

QStringList requestName() {
    return {QStringLiteral("--dest=org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
            QStringLiteral("org.freedesktop.DBus.RequestName"),
            QStringLiteral("string:com.korvale.agent_server"), QStringLiteral("uint32:0")};
}

QStringList callAgent(const char* method) {
    return {QStringLiteral("--dest=com.korvale.agent_server"),
            QStringLiteral("/com/korvale/agent_server"), QString::fromLatin1(method)};
}

TEST(BusPolicy, AnImpostorIsRefusedTheName) {
    PrivateBus daemon(PrivateBus::Owner::AsPackaged);
    daemon.start();
    EXPECT_THAT(sentByAnOrdinaryUser(daemon, requestName()), HasSubstr("AccessDenied"));
}

TEST(BusPolicy, OnlyRootOwnsTheName) {
    PrivateBus daemon(PrivateBus::Owner::AsPackaged);
    daemon.start();
    BusAgent agent(daemon.address());
    ASSERT_TRUE(agent.isConnected());
    EXPECT_EQ(agent.takeName(), geteuid() == 0);
}

TEST(BusPolicy, EveryoneMaySendRequestsAndIntrospectAndNothingElse) {
    PrivateBus daemon;
    daemon.start();
    BusAgent agent(daemon.address());
    ASSERT_TRUE(agent.takeName());
    EXPECT_THAT(sentByAnOrdinaryUser(daemon, callAgent("com.korvale.agent_server.Request")),
                HasSubstr("method return"));
    EXPECT_THAT(
        sentByAnOrdinaryUser(daemon, callAgent("org.freedesktop.DBus.Introspectable.Introspect")),
        HasSubstr("method return"));
    for (const char* method : {"com.korvale.agent_server.Other", "com.korvale.other.Request",
                               "org.freedesktop.DBus.Properties.GetAll"}) {
        EXPECT_THAT(sentByAnOrdinaryUser(daemon, callAgent(method)), HasSubstr("AccessDenied"))
            << method;
    }
}

} // namespace
} // namespace korvale
