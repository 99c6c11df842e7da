// Replies that come twice, to the wrong call, or from somebody who was not asked. The bus keeps
// most of them from the program; here it does not, where that is said.
#include "agent_link/BusMessages.h"
#include "agent_link/LinkFixture.h"
#include "fakes/RawBusClient.h"

#include <gmock/gmock.h>

namespace korvale {
namespace {

using testing::IsEmpty;

class LateRepliesTest : public LinkFixture {
protected:
    static constexpr int moreThanWereMade = 64;

    /// Joins the bus, and has an agent there hold back the answer to a request.
    void askAgentThatWaits(BusAgent& agent) {
        ASSERT_TRUE(agent.takeName());
        agent.answer = never;
        request(held);
        ASSERT_TRUE(waitUntil([&] { return agent.requests.size() == 1; }));
    }
    /// Answers all that the program may have asked anybody, as somebody whom it did not ask.
    void answerEverything(const BusAgent& agent) {
        RawBusClient stranger(daemon.socketPath().toUtf8());
        stranger.answerWithEnvelope(agent.requests.front().service().toUtf8(), moreThanWereMade,
                                    R"({"RESP":"OK","VALU":"forged"})");
        stranger.flush();
    }
    static QDBusMessage saying(const QDBusMessage& call, const char* value) {
        return call.createReply(
            envelopeWith(QByteArray(R"({"RESP":"OK","VALU":")") + value + "\"}"));
    }
    /// What was sent before has arrived.
    void letArrive(BusAgent& agent) {
        agent.answer = answerWith(R"({"RESP":"OK"})");
        EXPECT_TRUE(requestAndWait().ok);
    }

    Outcome held;
};

TEST_F(LateRepliesTest, OfTwoRepliesTheFirstCounts) {
    daemon.passOnEveryReply();
    joinBus();
    BusAgent agent(daemon.address());
    askAgentThatWaits(agent);
    agent.reply(saying(agent.requests.front(), "first"));
    agent.reply(saying(agent.requests.front(), "second"));
    letArrive(agent);
    EXPECT_EQ(held.replies, 1);
    EXPECT_EQ(held.value, QStringLiteral("first"));
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(LateRepliesTest, AFailedRequestStaysFailedWhateverIsAnsweredLater) {
    daemon.passOnEveryReply();
    joinBus();
    BusAgent agent(daemon.address());
    askAgentThatWaits(agent);
    agent.reply(agent.requests.front().createErrorReply(QDBusError::Failed, QStringLiteral("no")));
    agent.reply(saying(agent.requests.front(), "late"));
    letArrive(agent);
    EXPECT_EQ(held.replies, 1);
    EXPECT_FALSE(held.dictionary);
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(LateRepliesTest, NobodyElseCanAnswerOnASystemBus) {
    joinBus();
    BusAgent agent(daemon.address());
    askAgentThatWaits(agent);
    answerEverything(agent);
    agent.reply(saying(agent.requests.front(), "genuine"));
    EXPECT_TRUE(waitUntil([this] { return held.replies > 0; }));
    EXPECT_EQ(held.value, QStringLiteral("genuine"));
    EXPECT_EQ(held.replies, 1);
}

TEST_F(LateRepliesTest, WhereTheBusLetsOthersAnswerTheRequestFailsAndStaysFailed) {
    daemon.passOnEveryReply();
    joinBus();
    BusAgent agent(daemon.address());
    askAgentThatWaits(agent);
    answerEverything(agent);
    EXPECT_TRUE(waitUntil([this] { return held.replies > 0; }));
    EXPECT_FALSE(held.dictionary);
    agent.reply(saying(agent.requests.front(), "genuine"));
    letArrive(agent);
    EXPECT_EQ(held.replies, 1);
    EXPECT_EQ(interruptions() + invalidations(), 0);
}

TEST_F(LateRepliesTest, TheNextOwnerCannotHaveTheLastOnesRepliesCount) {
    daemon.passOnEveryReply();
    joinBus();
    BusAgent agent(daemon.address());
    askAgentThatWaits(agent);
    ASSERT_TRUE(agent.releaseName());
    BusAgent successor(daemon.address());
    ASSERT_TRUE(successor.takeName());
    ASSERT_TRUE(waitUntil([this] { return interruptions() == 1; }));
    successor.answer = answerWith(R"({"RESP":"OK"})");
    agent.reply(saying(agent.requests.front(), "late"));
    agent.reply(saying(agent.requests.front(), "later"));
    EXPECT_TRUE(waitUntil([this] { return held.replies > 0; }));
    EXPECT_TRUE(requestAndWait().ok);
    EXPECT_EQ(held.replies, 1);
    EXPECT_FALSE(held.dictionary);
}

// The calls that the bus allows.

TEST_F(LateRepliesTest, MoreRequestsThanTheBusAllowsFailAndLaterOnesGetThrough) {
    joinBus();
    BusAgent agent(daemon.address());
    ASSERT_TRUE(agent.takeName());
    agent.answer = never;
    std::vector<Outcome> outcomes(300);
    for (Outcome& outcome : outcomes) {
        request(outcome);
    }
    const auto answered = [&] {
        return std::count_if(outcomes.begin(), outcomes.end(),
                             [](const Outcome& outcome) { return outcome.replies == 1; });
    };
    ASSERT_TRUE(waitUntil(
        [&] { return answered() + static_cast<std::ptrdiff_t>(agent.requests.size()) == 300; }));
    EXPECT_LT(agent.requests.size(), 300U) << "this bus allows them all";
    for (const QDBusMessage& request : agent.requests) {
        agent.reply(saying(request, "at last"));
    }
    EXPECT_TRUE(waitUntil([&] { return answered() == 300; }));
    EXPECT_EQ(std::count_if(outcomes.begin(), outcomes.end(),
                            [](const Outcome& outcome) { return outcome.ok; }),
              static_cast<std::ptrdiff_t>(agent.requests.size()));
    letArrive(agent);
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(LateRepliesTest, AnotherProcessUsesUpItsOwnCallsOnly) {
    joinBus();
    BusAgent agent(daemon.address());
    ASSERT_TRUE(agent.takeName());
    agent.answer = never;
    const QString name = QStringLiteral("greedy");
    QDBusConnection greedy = QDBusConnection::connectToBus(daemon.address(), name);
    for (int call = 0; call < 300; ++call) {
        (void)greedy.asyncCall(requestMessage(envelopeWith("{}")));
    }
    ASSERT_TRUE(waitUntil([&] { return agent.requests.size() >= 100; }));
    letArrive(agent);
    QDBusConnection::disconnectFromBus(name);
}

} // namespace
} // namespace korvale
