#include "agent/bus/AgentObject.h"
#include "agent/bus/ControlPort.h"
#include "fakes/PrivateBus.h"
#include "fakes/WaitUntil.h"

#include <QProcess>

#include <gtest/gtest.h>

namespace korvale::agent {
namespace {

/// The built program against an agent's object on a private bus with the packaged policy.
class ProgramTest : public testing::Test, public ControlHandler {
protected:
    void SetUp() override { m_bus.start(); }
    void TearDown() override { leave(); }

    void appear() {
        QDBusConnection bus =
            QDBusConnection::connectToBus(m_bus.address(), QStringLiteral("agent side"));
        ASSERT_TRUE(
            bus.registerVirtualObject(QStringLiteral("/com/korvale/agent_server"), &m_object));
        ASSERT_TRUE(bus.registerService(QStringLiteral("com.korvale.agent_server")));
    }
    static void leave() { QDBusConnection::disconnectFromBus(QStringLiteral("agent side")); }

    void control(const ControlCall& call) override {
        m_calls += QString::fromUtf8(call.method->name.data(),
                                     static_cast<qsizetype>(call.method->name.size()));
        m_arguments = call.arguments;
        if (m_answers) {
            call.succeed({{QStringLiteral("scan"), 7}});
        } else {
            leave();
        }
    }

    /// Its exit status.
    int run(const QStringList& arguments) {
        m_process.start(QStringLiteral(KORVALE_AGENTCTL), arguments);
        EXPECT_TRUE(m_process.waitForStarted());
        EXPECT_TRUE(waitUntil([this] { return m_process.state() == QProcess::NotRunning; }));
        return m_process.exitCode();
    }

    PrivateBus m_bus;
    ControlPort m_port{*this};
    AgentObject m_object{{&m_port}};
    QProcess m_process;
    QStringList m_calls;
    QJsonObject m_arguments;
    bool m_answers = true;
};

TEST_F(ProgramTest, AsksTheAgentOnTheSystemBus) {
    appear();
    EXPECT_EQ(run({QStringLiteral("scan"), QStringLiteral("/tmp")}), 0);
    EXPECT_EQ(m_process.readAllStandardOutput(), "Scan 7 has been asked for.\n");
    EXPECT_EQ(m_calls, QStringList{QStringLiteral("Scan")});
    EXPECT_EQ(m_arguments.value(QStringLiteral("uri")).toString(), QStringLiteral("file:///tmp"));
}

TEST_F(ProgramTest, SaysThatNoAgentRuns) {
    EXPECT_EQ(run({QStringLiteral("status")}), 3);
    EXPECT_EQ(m_process.readAllStandardError().toStdString(),
              "korvale-agentctl: korvale-agent does not run.\n");
    m_bus.kill();
    EXPECT_EQ(run({QStringLiteral("status")}), 3);
}

TEST_F(ProgramTest, DoesNotWaitForAnAgentThatEndedMeanwhile) {
    appear();
    m_answers = false;
    EXPECT_EQ(run({QStringLiteral("status")}), 3);
}

TEST_F(ProgramTest, HelpsWithoutABus) {
    m_bus.kill();
    EXPECT_EQ(run({QStringLiteral("--help")}), 0);
    EXPECT_TRUE(m_process.readAllStandardOutput().startsWith("Usage: korvale-agentctl"));
    EXPECT_EQ(run({QStringLiteral("--version")}), 0);
    EXPECT_EQ(run({QStringLiteral("nonsense")}), 2);
}

} // namespace
} // namespace korvale::agent
