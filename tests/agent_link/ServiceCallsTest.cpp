#include "agent_link/ServiceCalls.h"

#include "agent_link/LinkFixture.h"

#include <QDBusPendingCallWatcher>

#include <csignal>

namespace korvale {
namespace {

/// What the bus has not said yet, it cannot say while it is stopped.
class ServiceCallsTest : public LinkFixture {
protected:
    /// A reply that `agent` has sent to another client.
    QDBusMessage replyOf(BusAgent& agent) {
        agent.answer = answerWith(R"({"RESP":"OK"})");
        QDBusMessage call = QDBusMessage::createMethodCall(
            agent.uniqueName(), QStringLiteral("/com/korvale/agent_server"),
            QStringLiteral("com.korvale.agent_server"), QStringLiteral("Request"));
        call << envelopeWith("{}");
        const QDBusPendingCallWatcher answer(m_client.asyncCall(call)); // wakes the event loop
        EXPECT_TRUE(waitUntil([&answer] { return answer.isFinished(); }));
        return answer.reply();
    }
    void deliver(const QDBusMessage& reply) {
        calls.deliver(reply, [this](const ServiceReply* dictionary) {
            ++handled;
            isOk = dictionary != nullptr && dictionary->isOk();
        });
    }
    void stop(int signal) const { ASSERT_EQ(::kill(static_cast<pid_t>(daemon.pid()), signal), 0); }

    void SetUp() override {
        daemon.start();
        m_client = QDBusConnection::connectToBus(daemon.address(), QStringLiteral("client"));
        m_own = QDBusConnection::connectToBus(daemon.address(), QStringLiteral("own"));
    }
    void TearDown() override {
        calls.forget();
        for (const char* name : {"client", "own"}) {
            QDBusConnection::disconnectFromBus(QString::fromLatin1(name));
        }
    }

    ServiceCalls calls;
    QDBusConnection m_client{QString()};
    QDBusConnection m_own{QString()};
    int handled = 0;
    bool isOk = false;
};

TEST_F(ServiceCallsTest, AReplyWaitsWhileTheOwnerIsNotKnownYet) {
    BusAgent agent(daemon.address());
    ASSERT_TRUE(agent.takeName());
    const QDBusMessage reply = replyOf(agent);
    stop(SIGSTOP);
    calls.follow(m_own);
    deliver(reply);
    EXPECT_EQ(handled, 0) << "not known is not another";
    stop(SIGCONT);
    EXPECT_TRUE(waitUntil([this] { return handled == 1; }));
    EXPECT_TRUE(isOk);
}

TEST_F(ServiceCallsTest, AReplyOfAnotherThatWaitedDoesNotCount) {
    BusAgent agent(daemon.address());
    ASSERT_TRUE(agent.takeName());
    BusAgent impostor(daemon.address());
    const QDBusMessage reply = replyOf(impostor);
    stop(SIGSTOP);
    calls.follow(m_own);
    deliver(reply);
    stop(SIGCONT);
    EXPECT_TRUE(waitUntil([this] { return handled == 1; }));
    EXPECT_FALSE(isOk);
}

TEST_F(ServiceCallsTest, ABusThatGoesEndsTheWait) {
    BusAgent agent(daemon.address());
    ASSERT_TRUE(agent.takeName());
    const QDBusMessage reply = replyOf(agent);
    stop(SIGSTOP);
    calls.follow(m_own);
    deliver(reply);
    calls.busLost();
    EXPECT_EQ(handled, 1);
    EXPECT_FALSE(isOk);
    EXPECT_EQ(invalidations(), 1);
    stop(SIGCONT);
}

} // namespace
} // namespace korvale
