#include "agent_link/ServiceChannel.h"

#include "agent_link/BusMessages.h"
#include "agent_link/LinkFixture.h"
#include "fakes/SilentSocket.h"

#include <QDBusArgument>
#include <QDBusVariant>
#include <QTimer>

#include <gmock/gmock.h>

namespace korvale {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ServiceChannelTest : public LinkFixture {
protected:
    /// Somebody has the service's name, is asked, and does not answer.
    void askInVain(Outcome& outcome) {
        joinBus();
        silentAgent.emplace(daemon.address());
        ASSERT_TRUE(silentAgent->takeName());
        silentAgent->answer = never;
        request(outcome);
        ASSERT_TRUE(waitUntil([this] { return silentAgent->requests.size() == 1; }));
    }

    std::optional<BusAgent> silentAgent;
};

// Requests and replies.

TEST_F(ServiceChannelTest, ARequestIsOneEntryOfBytes) {
    joinBus();
    BusAgent agent(daemon.address());
    ASSERT_TRUE(agent.takeName());
    agent.answer = answerWith(R"({"RESP":"OK","VALU":"3.1"})");
    const Outcome outcome = requestAndWait();
    EXPECT_TRUE(outcome.ok);
    EXPECT_EQ(outcome.value, QStringLiteral("3.1"));

    ASSERT_EQ(agent.requests.size(), 1U);
    const QDBusMessage& message = agent.requests.front();
    EXPECT_EQ(message.path(), QStringLiteral("/com/korvale/agent_server"));
    EXPECT_EQ(message.interface(), QStringLiteral("com.korvale.agent_server"));
    EXPECT_EQ(message.member(), QStringLiteral("Request"));
    EXPECT_EQ(message.signature(), QStringLiteral("a{sv}"));
    const auto dictionary = qdbus_cast<QVariantMap>(message.arguments().constFirst());
    ASSERT_EQ(dictionary.size(), 1);
    EXPECT_EQ(dictionary.firstKey(), QStringLiteral("<DATA>"));
    EXPECT_EQ(dictionary.first().metaType(), QMetaType::fromType<QByteArray>());
    EXPECT_EQ(dictionary.first().toByteArray(), R"({"CMD_":"CHKU"})");
}

TEST(RequestMessage, NeverStartsTheService) {
    EXPECT_FALSE(requestMessage(createXPCRequest({})).autoStartService());
}

TEST_F(ServiceChannelTest, ErrorsAndOtherSignaturesAreNoDictionary) {
    joinBus();
    BusAgent agent(daemon.address());
    ASSERT_TRUE(agent.takeName());
    const BusAgent::Answer answers[] = {
        [](const auto& request) {
            return request.createErrorReply(QStringLiteral("com.korvale.Refused"),
                                            QStringLiteral("no"));
        },
        [](const auto& request) { return request.createReply(); },
        [](const auto& request) { return request.createReply(QStringLiteral("OK")); },
        [](const auto& request) { return request.createReply(QByteArray(R"({"RESP":"OK"})")); },
        [](const auto& request) {
            return request.createReply(QVariantList{envelopeWith(R"({"RESP":"OK"})"), 1});
        },
        [](const auto& request) {
            return request.createReply(
                QVariant::fromValue(QDBusVariant(envelopeWith(R"({"RESP":"OK"})"))));
        },
    };
    for (const BusAgent::Answer& answer : answers) {
        agent.answer = answer;
        const Outcome outcome = requestAndWait();
        EXPECT_FALSE(outcome.dictionary);
        EXPECT_EQ(outcome.replies, 1);
    }
}

TEST_F(ServiceChannelTest, MalformedDataIsADictionaryWithoutAnswer) {
    joinBus();
    BusAgent agent(daemon.address());
    ASSERT_TRUE(agent.takeName());
    const QVariantMap envelopes[] = {
        {},
        {{QStringLiteral("DATA"), QByteArray(R"({"RESP":"OK"})")}},
        {{QStringLiteral("<DATA>"), QStringLiteral(R"({"RESP":"OK"})")}},
        {{QStringLiteral("<DATA>"), 5}},
        {{QStringLiteral("<DATA>"), QVariant::fromValue(QDBusVariant(QByteArray("{}")))}},
        envelopeWith("not JSON"),
        envelopeWith("{\"RESP\":\"\xc3\x28\"}"),
        envelopeWith(QByteArray("{\"RESP\":\"OK\"}\0", 14)),
        envelopeWith(QByteArray(200000, '[')),
        envelopeWith(R"(["RESP","OK"])"),
    };
    for (const QVariantMap& envelope : envelopes) {
        agent.answer = [&envelope](const auto& request) { return request.createReply(envelope); };
        const Outcome outcome = requestAndWait();
        EXPECT_TRUE(outcome.dictionary);
        EXPECT_FALSE(outcome.ok);
    }
}

TEST_F(ServiceChannelTest, AMegabyteAndASecondEntryAreRead) {
    joinBus();
    BusAgent agent(daemon.address());
    ASSERT_TRUE(agent.takeName());
    const QByteArray megabyte(1 << 20, 'x');
    agent.answer = [&megabyte](const auto& request) {
        QVariantMap envelope = envelopeWith(R"({"RESP":"OK","VALU":")" + megabyte + "\"}");
        envelope.insert(QStringLiteral("<MORE>"), QVariantList{1, QStringLiteral("two")});
        return request.createReply(envelope);
    };
    const Outcome outcome = requestAndWait();
    EXPECT_TRUE(outcome.ok);
    EXPECT_EQ(outcome.value.size(), megabyte.size());
}

// Connections.

TEST_F(ServiceChannelTest, EachConnectIsAFreshConnectionWithADriverQuery) {
    int queries = 0;
    channel.setDriverQuery([&queries] { ++queries; });
    joinBus();
    EXPECT_EQ(channel.conn(), 1U);
    EXPECT_EQ(queries, 1);
    channel.connectToService();
    EXPECT_EQ(channel.conn(), 2U);
    EXPECT_EQ(queries, 2);
}

TEST_F(ServiceChannelTest, AFreshConnectionNeitherCancelsRequestsNorDoublesLines) {
    Outcome outcome;
    askInVain(outcome);
    channel.connectToService();
    silentAgent->postMessage(envelopeWith(R"({"CMD_":"SondarNotificationMessage","VALU":"once"})"));
    ASSERT_TRUE(waitUntil([&] { return !displays.shown.isEmpty(); }));
    EXPECT_EQ(outcome.replies, 0);
    silentAgent->reply(silentAgent->requests.front().createReply(envelopeWith(R"({"RESP":"OK"})")));
    EXPECT_TRUE(waitUntil([&] { return outcome.replies == 1; }));
    EXPECT_TRUE(outcome.ok);
    silentAgent->die();
    EXPECT_TRUE(waitUntil([&] { return interruptions() > 0; }));
    requestAndWait();
    EXPECT_EQ(interruptions(), 1);
    EXPECT_THAT(displays.shown, ElementsAre(QStringLiteral("sondar once")));
}

TEST_F(ServiceChannelTest, AnAbsentServiceIsAnsweredForAtOnce) {
    joinBus();
    const Outcome outcome = requestAndWait();
    EXPECT_FALSE(outcome.dictionary);
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(ServiceChannelTest, WithoutEverConnectingThereIsNoConnection) {
    daemon.start();
    bus.start();
    ASSERT_TRUE(waitUntil([this] { return bus.state() == SystemBus::State::Connected; }));
    Outcome outcome;
    request(outcome);
    EXPECT_EQ(outcome.replies, 1);
    EXPECT_FALSE(outcome.dictionary);
}

TEST_F(ServiceChannelTest, ARequestMadeBeforeTheBusIsReachedIsSentOnceItIs) {
    daemon.start();
    BusAgent agent(daemon.address());
    ASSERT_TRUE(agent.takeName());
    bus.start();
    channel.connectToService();
    Outcome outcome;
    request(outcome);
    EXPECT_EQ(outcome.replies, 0);
    EXPECT_TRUE(waitUntil([&] { return outcome.replies == 1; }));
    EXPECT_TRUE(outcome.dictionary);
}

TEST_F(ServiceChannelTest, WithoutABusRequestsFailAndNothingIsLogged) {
    bus.start();
    channel.connectToService();
    const Outcome waiting = requestAndWait();
    EXPECT_FALSE(waiting.dictionary);
    Outcome atOnce;
    request(atOnce);
    EXPECT_EQ(atOnce.replies, 1);
    EXPECT_FALSE(atOnce.dictionary);
    EXPECT_THAT(log.lines(), IsEmpty());
}

// Life of the service.

TEST_F(ServiceChannelTest, AServiceKilledInMidReplyIsNoDictionaryAndAnInterruption) {
    Outcome outcome;
    askInVain(outcome);
    silentAgent->die();
    EXPECT_TRUE(waitUntil([&] { return outcome.replies == 1; }));
    EXPECT_FALSE(outcome.dictionary);
    EXPECT_TRUE(waitUntil([&] { return interruptions() == 1; }));
}

TEST_F(ServiceChannelTest, AHangingServiceHoldsUpNothing) {
    Outcome outcome;
    askInVain(outcome);
    int ticks = 0;
    QTimer ticking;
    QObject::connect(&ticking, &QTimer::timeout, &ticking, [&ticks] { ++ticks; });
    ticking.start(1);
    EXPECT_TRUE(waitUntil([&ticks] { return ticks >= 20; }));
    silentAgent->postMessage(
        envelopeWith(R"({"CMD_":"SondarNotificationMessage","VALU":"alive"})"));
    EXPECT_TRUE(waitUntil([&] { return !displays.shown.isEmpty(); }));
    EXPECT_THAT(displays.shown, ElementsAre(QStringLiteral("sondar alive")));
    EXPECT_EQ(outcome.replies, 0);
}

TEST_F(ServiceChannelTest, ARestartedServiceIsUsedAgain) {
    joinBus();
    for (int life = 1; life <= 3; ++life) {
        BusAgent agent(daemon.address());
        ASSERT_TRUE(agent.takeName());
        agent.answer = answerWith(R"({"RESP":"OK"})");
        EXPECT_TRUE(requestAndWait().ok);
        agent.die();
        ASSERT_TRUE(waitUntil([&] { return interruptions() == life; }));
    }
}

TEST_F(ServiceChannelTest, AServiceThatGivesUpItsNameIsInterrupted) {
    joinBus();
    BusAgent agent(daemon.address());
    ASSERT_TRUE(agent.takeName());
    ASSERT_TRUE(agent.releaseName());
    EXPECT_TRUE(waitUntil([&] { return interruptions() == 1; }));
}

TEST_F(ServiceChannelTest, AReplyOfAProcessThatHasLostTheNameDoesNotCount) {
    Outcome outcome;
    askInVain(outcome);
    ASSERT_TRUE(silentAgent->releaseName());
    silentAgent->reply(silentAgent->requests.front().createReply(envelopeWith(R"({"RESP":"OK"})")));
    EXPECT_TRUE(waitUntil([&] { return outcome.replies == 1; }));
    EXPECT_FALSE(outcome.dictionary);
}

// Life of the bus.

TEST_F(ServiceChannelTest, ABusThatDiesIsOneLineAndEndsPendingRequests) {
    Outcome outcome;
    askInVain(outcome);
    daemon.kill();
    EXPECT_TRUE(waitUntil([&] { return outcome.replies == 1 && invalidations() == 1; }));
    EXPECT_FALSE(outcome.dictionary);
    EXPECT_EQ(interruptions(), 0);
    Outcome later;
    request(later);
    EXPECT_EQ(later.replies, 1);
    EXPECT_FALSE(later.dictionary);
}

TEST_F(ServiceChannelTest, AfterABusRestartEverythingWorksAgain) {
    joinBus();
    for (int life = 1; life <= 2; ++life) {
        daemon.kill();
        ASSERT_TRUE(waitUntil([&] { return invalidations() == life; }));
        daemon.start();
        BusAgent agent(daemon.address());
        ASSERT_TRUE(agent.takeName());
        ASSERT_TRUE(waitUntil([this] { return bus.state() == SystemBus::State::Connected; }));
        agent.answer = answerWith(R"({"RESP":"OK"})");
        EXPECT_TRUE(requestAndWait().ok);
        displays.shown.clear();
        agent.postMessage(envelopeWith(R"({"CMD_":"SondarNotificationMessage","VALU":"back"})"));
        EXPECT_TRUE(waitUntil([&] { return !displays.shown.isEmpty(); }));
    }
}

TEST_F(ServiceChannelTest, ABusThatAcceptsAndNeverAnswersHoldsUpNothing) {
    SilentSocket silent(daemon.socketPath().toUtf8());
    bus.start();
    channel.connectToService();
    Outcome outcome;
    request(outcome);
    bool turned = false;
    QTimer::singleShot(0, &channel, [&turned] { turned = true; });
    EXPECT_TRUE(waitUntil([&turned] { return turned; }));
    EXPECT_EQ(outcome.replies, 0);
    // The request outlives the wait: it goes out when a bus takes the place.
    silent.hangUp();
    EXPECT_TRUE(waitUntil([&] { return outcome.replies == 1; }));
    EXPECT_FALSE(outcome.dictionary);
}

// Unsolicited messages.

TEST_F(ServiceChannelTest, OnlyTheSondarMessageWithAValueIsShown) {
    joinBus();
    BusAgent agent(daemon.address());
    ASSERT_TRUE(agent.takeName());
    for (const char* json : {
             R"({"CMD_":"SondarNotificationMessage"})",
             R"({"CMD_":"SondarNotificationMessage","VALU":null})",
             R"({"CMD_":"SondarNotificationMessage","VALU":5})",
             R"({"CMD_":"sondarnotificationmessage","VALU":"x"})",
             R"({"CMD_":"SCAN","VALU":"x"})",
             R"({"CMD_":["SondarNotificationMessage"],"VALU":"x"})",
             R"({"VALU":"x"})",
             R"(["SondarNotificationMessage"])",
             "not JSON",
             "",
         }) {
        agent.postMessage(envelopeWith(json));
    }
    const QString message = QStringLiteral("com.korvale.agent_server.Message");
    const QByteArray valid = R"({"CMD_":"SondarNotificationMessage","VALU":"x"})";
    agent.postMessage({{QStringLiteral("DATA"), valid}});
    agent.postMessage({{QStringLiteral("<DATA>"), QString::fromLatin1(valid)}});
    agent.post(message);
    agent.post(message, {valid});
    agent.post(message, {envelopeWith(valid), 1});
    agent.post(QStringLiteral("com.korvale.agent_server.Other"), {envelopeWith(valid)});
    agent.post(QStringLiteral("com.korvale.other.Message"), {envelopeWith(valid)});
    agent.postMessage(
        envelopeWith(R"({"CMD_":"SondarNotificationMessage","VALU":"<b>shown</b>"})"));
    EXPECT_TRUE(waitUntil([&] { return !displays.shown.isEmpty(); }));
    EXPECT_THAT(displays.shown, ElementsAre(QStringLiteral("sondar <b>shown</b>")));
}

TEST_F(ServiceChannelTest, MessagesKeepTheirOrderAndAMegabyteIsShown) {
    joinBus();
    BusAgent agent(daemon.address());
    ASSERT_TRUE(agent.takeName());
    const QByteArray megabyte(1 << 20, 'x');
    QStringList expected;
    for (int i = 0; i < 100; ++i) {
        const QByteArray text = i == 50 ? megabyte : QByteArray::number(i);
        agent.postMessage(
            envelopeWith(R"({"CMD_":"SondarNotificationMessage","VALU":")" + text + "\"}"));
        expected << QStringLiteral("sondar ") + QString::fromLatin1(text);
    }
    EXPECT_TRUE(waitUntil([&] { return displays.shown.size() == expected.size(); }));
    EXPECT_EQ(displays.shown, expected);
}

TEST_F(ServiceChannelTest, MessagesOfOtherProcessesAreIgnored) {
    joinBus();
    const auto sondar = [](const char* text) {
        return envelopeWith(QByteArray(R"({"CMD_":"SondarNotificationMessage","VALU":")") + text +
                            "\"}");
    };
    BusAgent impostor(daemon.address());
    impostor.postMessage(sondar("while the service is absent"));
    impostor.flush();
    BusAgent agent(daemon.address());
    ASSERT_TRUE(agent.takeName());
    impostor.postMessage(sondar("while the service runs"));
    impostor.flush();
    agent.postMessage(sondar("genuine"));
    EXPECT_TRUE(waitUntil([&] { return !displays.shown.isEmpty(); }));
    EXPECT_THAT(displays.shown, ElementsAre(QStringLiteral("sondar genuine")));
}

TEST_F(ServiceChannelTest, AnOwnerChangeThatTheBusDidNotAnnounceIsIgnored) {
    joinBus();
    BusAgent agent(daemon.address());
    ASSERT_TRUE(agent.takeName());
    agent.answer = answerWith(R"({"RESP":"OK"})");
    BusAgent impostor(daemon.address());
    impostor.postOwnerChange(QStringLiteral("com.korvale.agent_server"), QStringLiteral(":1.1"),
                             QString());
    impostor.flush();
    EXPECT_TRUE(requestAndWait().ok);
    EXPECT_EQ(interruptions(), 0);
}

} // namespace
} // namespace korvale
