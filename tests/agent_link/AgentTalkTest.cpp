#include "agent_link/AgentTalk.h"

#include "fakes/BusAgent.h"
#include "fakes/PrivateBus.h"
#include "fakes/RecordingLogSink.h"
#include "fakes/SilentSocket.h"
#include "fakes/WaitUntil.h"

#include <QThread>

#include <csignal>
#include <gtest/gtest.h>

namespace korvale {
namespace {

using namespace std::chrono_literals;

class AgentTalkTest : public testing::Test {
protected:
    /// The outcome of one request; NoAnswer with the text "never" when there is none.
    std::pair<RequestOutcome, QString> ask(AgentTalk& talk) {
        std::optional<std::pair<RequestOutcome, QString>> outcome;
        talk.request(
            ServiceCommand::ForwardFolderScan, QStringLiteral("/a"),
            [&](RequestOutcome what, const QString& text) { outcome.emplace(what, text); });
        EXPECT_TRUE(waitUntil([&] { return outcome.has_value(); }));
        return outcome.value_or(std::pair(RequestOutcome::NoAnswer, QStringLiteral("never")));
    }
    std::pair<RequestOutcome, QString> ask() {
        AgentTalk talk(300ms);
        return ask(talk);
    }
    void startAgent(const QByteArray& reply) {
        m_daemon.start();
        m_agent.emplace(m_daemon.address());
        ASSERT_TRUE(m_agent->takeName());
        m_agent->answer = [reply](const QDBusMessage& request) {
            return request.createReply(envelopeWith(reply));
        };
    }
    /// `end` happens while an agent that never answers is asked.
    void expectNoAgentAfter(const std::function<void()>& end) {
        startAgent({});
        m_agent->answer = [&end](const QDBusMessage&) {
            QTimer::singleShot(0, qApp, end);
            return std::nullopt;
        };
        AgentTalk talk(10s);
        int left = 0;
        QObject::connect(&talk, &AgentTalk::left, &talk, [&left] { ++left; });
        EXPECT_EQ(ask(talk).first, RequestOutcome::NoAgent);
        EXPECT_TRUE(waitUntil([&left] { return left == 1; }));
    }

    RecordingLogSink m_log;
    PrivateBus m_daemon;
    std::optional<BusAgent> m_agent;
};

TEST_F(AgentTalkTest, AnAgentThatSaysOkHasAccepted) {
    startAgent(R"({"RESP":"OK"})");
    EXPECT_EQ(ask().first, RequestOutcome::Accepted);
    ASSERT_EQ(m_agent->requests.size(), 1U);
    const QVariantMap envelope =
        qdbus_cast<QVariantMap>(m_agent->requests.front().arguments().value(0));
    EXPECT_EQ(envelope.value(QStringLiteral("<DATA>")).toByteArray(),
              QByteArray(R"({"CMD_":"SCAN","START":"/a"})"));
}

TEST_F(AgentTalkTest, SeveralRequestsAreAskedOneAfterTheOther) {
    startAgent(R"({"RESP":"OK"})");
    AgentTalk talk(5s);
    EXPECT_EQ(ask(talk).first, RequestOutcome::Accepted);
    EXPECT_EQ(ask(talk).first, RequestOutcome::Accepted);
    EXPECT_EQ(m_agent->requests.size(), 2U);
}

TEST_F(AgentTalkTest, AnyOtherTextIsARefusal) {
    startAgent(R"({"RESP":"not now"})");
    EXPECT_EQ(ask(), std::pair(RequestOutcome::Refused, QStringLiteral("not now")));
}

TEST_F(AgentTalkTest, AReplyWithoutOneAndAnErrorAreNotUnderstood) {
    startAgent("{}");
    AgentTalk talk(5s);
    EXPECT_EQ(ask(talk).first, RequestOutcome::NotUnderstood);
    m_agent->answer = [](const QDBusMessage& request) {
        return request.createErrorReply(QDBusError::Failed, QStringLiteral("no"));
    };
    EXPECT_EQ(ask(talk).first, RequestOutcome::NotUnderstood);
}

TEST_F(AgentTalkTest, NobodyWithTheNameIsNoAgent) {
    m_daemon.start();
    AgentTalk talk(5s);
    EXPECT_EQ(ask(talk).first, RequestOutcome::NoAgent);
}

TEST_F(AgentTalkTest, NoBusIsNoAgent) {
    AgentTalk talk(5s);
    EXPECT_EQ(ask(talk).first, RequestOutcome::NoAgent);
    EXPECT_EQ(ask(talk).first, RequestOutcome::NoAgent) << "also the second time";
}

TEST_F(AgentTalkTest, AnAgentThatHangsGivesNoAnswer) {
    startAgent({});
    m_agent->answer = [](const QDBusMessage&) { return std::nullopt; };
    EXPECT_EQ(ask(), std::pair(RequestOutcome::NoAnswer, QString()));
}

TEST_F(AgentTalkTest, AnAnswerThatComesTooLateIsNotTakenForThatToTheNextRequest) {
    startAgent({});
    m_agent->answer = [](const QDBusMessage&) { return std::nullopt; };
    AgentTalk talk(300ms);
    EXPECT_EQ(ask(talk).first, RequestOutcome::NoAnswer);
    ASSERT_TRUE(waitUntil([this] { return m_agent->requests.size() == 1; }));
    m_agent->answer = [this](const QDBusMessage& request) {
        m_agent->reply(m_agent->requests.front().createReply(envelopeWith(R"({"RESP":"OK"})")));
        return request.createReply(envelopeWith(R"({"RESP":"not now"})"));
    };
    EXPECT_EQ(ask(talk), std::pair(RequestOutcome::Refused, QStringLiteral("not now")));
}

TEST_F(AgentTalkTest, AnAnswerThatCameWhileItWasStoppedCounts) {
    startAgent({});
    const auto signalBus = [this](int signal) {
        EXPECT_EQ(::kill(static_cast<pid_t>(m_daemon.pid()), signal), 0);
    };
    m_agent->answer = [&](const QDBusMessage& request) {
        signalBus(SIGSTOP); // so that the answer has not arrived when the limit has passed
        m_agent->reply(request.createReply(envelopeWith(R"({"RESP":"OK"})")));
        QThread::sleep(3);
        QTimer::singleShot(100, qApp, [&] { signalBus(SIGCONT); });
        return std::nullopt;
    };
    EXPECT_EQ(ask().first, RequestOutcome::Accepted);
}

TEST_F(AgentTalkTest, ABusThatHangsGivesNoAnswer) {
    QDir().mkpath(QFileInfo(m_daemon.socketPath()).path());
    const SilentSocket silent(m_daemon.socketPath().toUtf8());
    EXPECT_EQ(ask(), std::pair(RequestOutcome::NoAnswer, QString()));
}

TEST_F(AgentTalkTest, AnAgentThatDiesWhileItIsAskedIsNoAgentAndHasLeft) {
    expectNoAgentAfter([this] { m_agent->die(); });
}

TEST_F(AgentTalkTest, ABusThatDiesIsNoAgentToo) {
    expectNoAgentAfter([this] { m_daemon.kill(); });
}

TEST_F(AgentTalkTest, OnlyTheAgentsNotificationsAreHeard) {
    startAgent(R"({"RESP":"OK"})");
    BusAgent stranger(m_daemon.address());
    AgentTalk talk(5s);
    std::vector<AgentNotification> heard;
    QObject::connect(&talk, &AgentTalk::told, &talk,
                     [&heard](AgentNotification what) { heard.push_back(what); });
    ASSERT_EQ(ask(talk).first, RequestOutcome::Accepted);
    stranger.post(QStringLiteral("com.korvale.btdscancomplete"));
    stranger.flush();
    m_agent->post(QStringLiteral("com.korvale.nothing.known"));
    m_agent->post(QStringLiteral("com.korvale.analyzerstatus_messages"));
    m_agent->post(QStringLiteral("com.korvale.timer.aggregated_messages"));
    ASSERT_TRUE(waitUntil([&heard] { return heard.size() >= 2; }));
    EXPECT_EQ(heard, (std::vector{AgentNotification::AnalyzerStatus,
                                  AgentNotification::TimerAggregatedMessage}));
}

} // namespace
} // namespace korvale
