#include "agent/bus/ControlPort.h"

#include "BusTest.h"
#include "agent/bus/AgentObject.h"

#include <QDBusPendingCallWatcher>
#include <QJsonDocument>

namespace korvale::agent {
namespace {

class ControlPortTest : public BusTest, public ControlHandler {
protected:
    void SetUp() override {
        BusTest::SetUp();
        serve(m_object);
    }

    void control(const ControlCall& call) override {
        m_calls.append(call.caller() + u' ' +
                       QString::fromUtf8(call.method->name.data(),
                                         static_cast<qsizetype>(call.method->name.size())));
        call.succeed({{QStringLiteral("echo"), call.arguments}});
    }

    QDBusMessage call(const QString& method, const QVariantList& arguments) {
        return callAgent(QStringLiteral("com.korvale.agent_control"), method, arguments);
    }
    QJsonObject answer(const QString& method, const QString& arguments) {
        const QDBusMessage reply = call(method, {arguments});
        EXPECT_EQ(reply.signature(), QStringLiteral("s")) << reply.errorMessage().toStdString();
        return QJsonDocument::fromJson(reply.arguments().value(0).toString().toUtf8()).object();
    }

    ControlPort m_port{*this};
    AgentObject m_object{{&m_port}};
    QStringList m_calls;
};

TEST_F(ControlPortTest, AMethodGetsItsArgumentsAndAnswersWithOk) {
    const QJsonObject reply = answer(QStringLiteral("Threats"), QStringLiteral(R"({"all":true})"));
    EXPECT_EQ(QJsonDocument(reply).toJson(QJsonDocument::Compact),
              R"({"echo":{"all":true},"ok":true})");
    EXPECT_EQ(m_calls, QStringList{m_caller->baseService() + QStringLiteral(" Threats")});
}

TEST_F(ControlPortTest, ArgumentsThatAreNoObjectAreAnsweredWithAReason) {
    for (const char* bad : {"", "[]", "{", "{\"a\":}", "null"}) {
        const QJsonObject reply = answer(QStringLiteral("Status"), QLatin1String(bad));
        EXPECT_EQ(reply.value(QStringLiteral("ok")), false) << bad;
        EXPECT_EQ(reply.value(QStringLiteral("code")), QStringLiteral("arguments")) << bad;
    }
    EXPECT_TRUE(m_calls.isEmpty());
}

TEST_F(ControlPortTest, OtherMethodsAndOtherTypesAreErrors) {
    EXPECT_EQ(call(QStringLiteral("Shutdown"), {QStringLiteral("{}")}).type(),
              QDBusMessage::ErrorMessage);
    EXPECT_EQ(call(QStringLiteral("Status"), {5}).type(), QDBusMessage::ErrorMessage);
    EXPECT_EQ(call(QStringLiteral("Status"), {}).type(), QDBusMessage::ErrorMessage);
    EXPECT_TRUE(m_calls.isEmpty());
}

} // namespace
} // namespace korvale::agent
