#include "agent/app/Requests.h"

#include "../bus/BusTest.h"
#include "FakeTasks.h"
#include "agent/app/Gatekeeper.h"
#include "agent/bus/AgentObject.h"
#include "agent/bus/Envelope.h"
#include "agent/bus/RequestPort.h"
#include "agent/fakes/Needs.h"

#include <QDBusPendingCallWatcher>
#include <QJsonDocument>

#include <unistd.h>

namespace korvale::agent {
namespace {

/// The agent's object on a private bus. The caller is root where the tests are: what others may is
/// tested with the user "nobody".
class RequestsTest : public BusTest {
protected:
    void SetUp() override {
        BusTest::SetUp();
        serve(m_object);
    }

    QJsonObject ask(const QByteArray& data) {
        const QDBusMessage answer = callAgent(QStringLiteral("com.korvale.agent_server"),
                                              QStringLiteral("Request"), {envelope(data)});
        const std::optional<QByteArray> reply = envelopeData(answer);
        EXPECT_TRUE(reply.has_value()) << answer.errorMessage().toStdString();
        return QJsonDocument::fromJson(reply.value_or(QByteArray())).object();
    }
    QString resp(const QByteArray& data) {
        return ask(data).value(QStringLiteral("RESP")).toString();
    }

    FakeTasks m_tasks;
    Gatekeeper m_gatekeeper;
    Requests m_requests{m_gatekeeper, m_tasks};
    RequestPort m_port{m_requests};
    AgentObject m_object{{&m_port}};
};

TEST_F(RequestsTest, QuestionsAreAnsweredFromTheFacts) {
    m_tasks.currentFacts = {QStringLiteral("host"),
                            QStringLiteral("policy"),
                            QStringLiteral("mode"),
                            QStringLiteral("time"),
                            QStringLiteral("1.2"),
                            false,
                            false,
                            LogLevel::Debug};
    const auto value = [this](const QByteArray& command) {
        const QJsonObject reply = ask("{\"CMD_\":\"" + command + "\"}");
        EXPECT_EQ(reply.value(QStringLiteral("RESP")), QStringLiteral("OK"));
        return reply.value(QStringLiteral("VALU")).toString();
    };
    EXPECT_EQ(value("CUST"), QStringLiteral("host"));
    EXPECT_EQ(value("GPUT"), QStringLiteral("time"));
    EXPECT_EQ(value("GOPV"), QStringLiteral("1.2"));
    EXPECT_EQ(value("GDRV"), QStringLiteral("0"));
    EXPECT_EQ(value("GLOG"), QStringLiteral("3"));
    EXPECT_EQ(QJsonDocument(ask(R"({"CMD_":"POLY"})")).toJson(QJsonDocument::Compact),
              R"({"PMODE":"mode","PNAME":"policy","PNOTF":"NO","RESP":"OK"})");
    EXPECT_EQ(m_tasks.did, QStringList{QStringLiteral("greet")}) << "GDRV: a program connected";
}

TEST_F(RequestsTest, CommandsAreDoneAndSayWhyNot) {
    KORVALE_NEEDS(root()); // without polkit nobody else may do these
    EXPECT_EQ(resp(R"({"CMD_":"SCAN","START":"/home/ada/D o ✓"})"), QStringLiteral("OK"));
    EXPECT_EQ(resp(R"({"CMD_":"SCAN","START":" "})"), QStringLiteral("OK"));
    EXPECT_EQ(resp(R"({"CMD_":"SCAN","STOP":" "})"), QStringLiteral("OK"));
    EXPECT_EQ(resp(R"({"CMD_":"CHKU"})"), QStringLiteral("OK"));
    EXPECT_EQ(resp(R"({"CMD_":"SLOG","VALU":"1"})"), QStringLiteral("OK"));
    m_tasks.refusal = QStringLiteral("The file is wrong.");
    EXPECT_EQ(resp(R"({"CMD_":"PLYU"})"), QStringLiteral("The file is wrong."));
    EXPECT_EQ(m_tasks.did,
              QStringList({QStringLiteral("scan /home/ada/D o ✓ for 0"),
                           QStringLiteral("background scan for 0"), QStringLiteral("stop"),
                           QStringLiteral("update"), QStringLiteral("level 1"),
                           QStringLiteral("configuration")}));
}

TEST_F(RequestsTest, WhateverARequestHoldsItGetsAReply) {
    for (const char* data :
         {"", "{", "[]", "5", R"({"CMD_":5})", R"({"CMD_":"NONE"})", R"({"CMD_":"SCAN"})",
          R"({"CMD_":"SCAN","START":"relative"})", R"({"CMD_":"SCAN","START":["/"]})",
          R"({"CMD_":"SCAN","START":"/a\u0000b"})", R"({"CMD_":"SLOG"})",
          R"({"CMD_":"SLOG","VALU":"4"})", R"({"CMD_":"SLOG","VALU":"-1"})",
          R"({"CMD_":"SLOG","VALU":1})", "{\"CMD_\":\"SC\xff\"}"}) {
        const QString reply = resp(data);
        EXPECT_FALSE(reply.isEmpty()) << data;
        EXPECT_NE(reply, QStringLiteral("OK")) << data;
    }
    EXPECT_TRUE(m_tasks.did.isEmpty());
}

} // namespace
} // namespace korvale::agent
