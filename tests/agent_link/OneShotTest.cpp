#include "agent_link/LinkFixture.h"
#include "agent_link/ServiceCommands.h"
#include "fakes/SilentSocket.h"
#include "platform/BusCalls.h"

#include <QMutex>
#include <QSemaphore>
#include <QThread>

#include <csignal>
#include <gmock/gmock.h>
#include <utility>

namespace korvale {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// An agent that answers while the main thread sleeps.
class AgentThread final : public QThread {
public:
    /// `first` sees each request before it is answered.
    AgentThread(QString address, BusAgent::Answer answer,
                std::function<void(BusAgent&, const QByteArray& json)> first = {})
        : m_address(std::move(address)), m_answer(std::move(answer)), m_first(std::move(first)) {
        start();
        m_ready.acquire();
    }
    ~AgentThread() override {
        quit();
        wait();
    }

    /// The JSON of all requests so far.
    std::vector<QByteArray> requests() {
        const QMutexLocker lock(&m_mutex);
        return m_requests;
    }

protected:
    void run() override {
        BusAgent agent(m_address);
        agent.answer = [this, &agent](const QDBusMessage& message) {
            return answer(agent, message);
        };
        EXPECT_TRUE(agent.takeName());
        m_ready.release();
        exec();
    }

private:
    std::optional<QDBusMessage> answer(BusAgent& agent, const QDBusMessage& message) {
        const auto envelope = qdbus_cast<QVariantMap>(message.arguments().constFirst());
        const QByteArray json = envelope.value(QStringLiteral("<DATA>")).toByteArray();
        const QMutexLocker lock(&m_mutex);
        m_requests.push_back(json);
        if (m_first) {
            m_first(agent, json);
        }
        return m_answer(message);
    }

    QString m_address;
    BusAgent::Answer m_answer;
    std::function<void(BusAgent&, const QByteArray&)> m_first;
    QSemaphore m_ready;
    QMutex m_mutex;
    std::vector<QByteArray> m_requests;
};

/// Says on which thread each line was written.
class ThreadNamingSink final : public LogSink {
public:
    ThreadNamingSink() { setLogSink(this); }
    ~ThreadNamingSink() override { setLogSink(nullptr); }
    ThreadNamingSink(const ThreadNamingSink&) = delete;
    ThreadNamingSink& operator=(const ThreadNamingSink&) = delete;
    void write(LogLevel /*level*/, const QByteArray& line) override {
        entry = (QThread::currentThread()->objectName() + u' ').toStdString() + line.toStdString();
    }
    std::string entry;
};

class OneShotTest : public LinkFixture {
protected:
    /// As the launch does it: everything in one go, without the event loop having turned.
    void checkUpdates() {
        channel.setDriverQuery([this] { commands.checkDriverConnection(); });
        bus.start();
        channel.connectToService();
        commands.checkUpdates();
    }

    static bool isUpdateCheck(const QByteArray& json) { return json.contains("CHKU"); }

    int sleeps = 0;
    int ends = 0;
    std::function<void()> sleep = [] {};
    ServiceCommands commands{state,
                             channel,
                             displays,
                             displays,
                             {true,
                              [this] {
                                  ++sleeps;
                                  sleep();
                              },
                              [this] { ++ends; }}};
};

TEST_F(OneShotTest, AnAnsweringServiceIsAskedAndHeardWhileTheMainThreadSleeps) {
    daemon.start();
    AgentThread agent(daemon.address(), answerWith(R"({"RESP":"OK"})"));
    const ThreadNamingSink sink;
    sleep = [] { QThread::msleep(100); };
    checkUpdates();
    EXPECT_EQ(ends, 1);
    EXPECT_LT(sleeps, 15);
    EXPECT_EQ(sink.entry, "com.korvale.uirevrevs INFO \"Service returned 'OK' for checkUpdates.\"");
    EXPECT_THAT(agent.requests(), ElementsAre(R"({"CMD_":"GDRV"})", R"({"CMD_":"CHKU"})"));
}

TEST_F(OneShotTest, ARefusingServiceIsLoggedAsAFailure) {
    daemon.start();
    const AgentThread agent(daemon.address(), answerWith(R"({"RESP":"no"})"));
    sleep = [] { QThread::msleep(100); };
    checkUpdates();
    EXPECT_EQ(ends, 1);
    EXPECT_LT(sleeps, 15);
    EXPECT_THAT(log.lines(),
                ElementsAre("ERROR \"Service returned bad status for checkUpdates.\""));
}

TEST_F(OneShotTest, ASilentServiceEndsTheProgramAfter15Sleeps) {
    daemon.start();
    const AgentThread agent(daemon.address(), never);
    checkUpdates();
    EXPECT_EQ(sleeps, 15);
    EXPECT_EQ(ends, 1);
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(OneShotTest, AnAnswerAfterTheLastSleepIsNotHeard) {
    daemon.start();
    QSemaphore isOver;
    QSemaphore answered;
    AgentThread agent(daemon.address(), never, [&](BusAgent& self, const QByteArray& json) {
        if (isUpdateCheck(json)) {
            QTimer::singleShot(0, &self, [&] {
                isOver.acquire();
                self.reply(self.requests.back().createReply(envelopeWith(R"({"RESP":"OK"})")));
                self.flush();
                answered.release();
            });
        }
    });
    sleep = [&] {
        for (int i = 0; i < 100 && agent.requests().size() < 2; ++i) {
            QThread::msleep(50);
        }
    };
    checkUpdates();
    EXPECT_EQ(ends, 1);
    isOver.release();
    ASSERT_TRUE(answered.tryAcquire(1, 20'000));
    // What was sent to this connection before has been received when this is answered.
    (void)bus.connection().call(busCall("GetId"));
    QCoreApplication::processEvents(); // whatever has arrived
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(OneShotTest, AnAbsentServiceEndsTheProgramLongBefore15Sleeps) {
    daemon.start();
    sleep = [] { QThread::msleep(100); };
    checkUpdates();
    EXPECT_EQ(ends, 1);
    EXPECT_LT(sleeps, 15);
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(OneShotTest, AnAbsentBusEndsTheProgramWithoutASleep) {
    checkUpdates();
    EXPECT_EQ(ends, 1);
    EXPECT_EQ(sleeps, 0);
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(OneShotTest, ABusThatNeverAnswersEndsTheProgramToo) {
    const SilentSocket silent(daemon.socketPath().toUtf8());
    checkUpdates();
    EXPECT_EQ(ends, 1);
    EXPECT_EQ(sleeps, 0);
}

TEST_F(OneShotTest, AnAgentThatDiesInMidRequestIsLogged) {
    daemon.start();
    const AgentThread agent(daemon.address(), never, [](BusAgent& self, const QByteArray& json) {
        if (isUpdateCheck(json)) {
            self.die();
        }
    });
    sleep = [] { QThread::msleep(100); };
    checkUpdates();
    EXPECT_LT(sleeps, 15);
    EXPECT_EQ(interruptions(), 1);
    requestAndWait(); // the event loop turns: nothing is said twice
    EXPECT_THAT(log.lines(), ElementsAre("INFO \"client received event: Connection interrupted\""));
}

TEST_F(OneShotTest, ABusThatDiesInMidRequestIsLogged) {
    daemon.start();
    const AgentThread agent(daemon.address(), never, [this](BusAgent&, const QByteArray& json) {
        if (isUpdateCheck(json)) {
            ::kill(static_cast<pid_t>(daemon.pid()), SIGKILL);
        }
    });
    sleep = [] { QThread::msleep(100); };
    checkUpdates();
    EXPECT_LT(sleeps, 15);
    EXPECT_EQ(invalidations(), 1);
    EXPECT_TRUE(waitUntil([this] { return bus.state() == SystemBus::State::Absent; }));
    EXPECT_THAT(log.lines(), ElementsAre("INFO \"client received event: Connection invalid\""));
}

TEST_F(OneShotTest, AReplyOfAProcessThatHasLostTheNameDoesNotCount) {
    daemon.start();
    const AgentThread agent(daemon.address(), answerWith(R"({"RESP":"OK"})"),
                            [](BusAgent& self, const QByteArray& json) {
                                if (isUpdateCheck(json)) {
                                    EXPECT_TRUE(self.releaseName());
                                }
                            });
    sleep = [] { QThread::msleep(100); };
    checkUpdates();
    EXPECT_LT(sleeps, 15);
    EXPECT_THAT(log.lines(), ElementsAre("INFO \"client received event: Connection interrupted\""));
}

TEST_F(OneShotTest, AMalformedReplyCompletesTheRequest) {
    daemon.start();
    const AgentThread agent(daemon.address(), [](const QDBusMessage& request) {
        return std::optional(request.createReply(QStringLiteral("OK")));
    });
    sleep = [] { QThread::msleep(100); };
    checkUpdates();
    EXPECT_EQ(ends, 1);
    EXPECT_LT(sleeps, 15);
    EXPECT_THAT(log.lines(), IsEmpty());
}

} // namespace
} // namespace korvale
