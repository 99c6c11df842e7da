#include "AgentSimFixture.h"

namespace korvale::sim {
namespace {

TEST_F(AgentSimTest, AnswersWhatWasSet) {
    tell(QStringLiteral("set device-name My \"own\" machine"));
    tell(QStringLiteral("policy name Strict one"));
    tell(QStringLiteral("policy mode Local Policy"));
    tell(QStringLiteral("policy notifications off"));
    tell(QStringLiteral("driver value 0"));
    EXPECT_EQ(ask("CUST"), R"({"RESP":"OK","VALU":"My \"own\" machine"})");
    EXPECT_EQ(ask("POLY"),
              R"({"PMODE":"Local Policy","PNAME":"Strict one","PNOTF":"NO","RESP":"OK"})");
    EXPECT_EQ(ask("GDRV"), R"({"RESP":"OK","VALU":"0"})");
    EXPECT_TRUE(m_ear->heard.isEmpty()) << "a value alone posts nothing";
}

TEST_F(AgentSimTest, RecordsWhatItWasAsked) {
    (void)ask("CUST");
    (void)call(R"({"CMD_":"SLOG","VALU":"3"})");
    (void)call("not JSON");
    EXPECT_EQ(tell(QStringLiteral("requests")), QStringLiteral("ok requests 3"));
    const QStringList& lines = m_sim.lines();
    EXPECT_EQ(lines.filter(QStringLiteral(R"("request":{"CMD_":"SLOG","VALU":"3"}})")).size(), 1);
    EXPECT_EQ(lines.filter(QStringLiteral(R"("malformed":"bm90IEpTT04=")")).size(), 1);
    EXPECT_EQ(m_sim.printed(QStringLiteral("note request CUST")), 1);
    EXPECT_EQ(tell(QStringLiteral("wait-request SLOG")), QStringLiteral("ok wait-request SLOG"));
    EXPECT_EQ(tell(QStringLiteral("wait-request SLOG 0")),
              QStringLiteral("error wait-request no such request came"));
    EXPECT_EQ(tell(QStringLiteral("requests clear")), QStringLiteral("ok requests"));
    EXPECT_EQ(tell(QStringLiteral("requests")), QStringLiteral("ok requests 0"));
}

TEST_F(AgentSimTest, WaitRequestAnswersWhenTheRequestComes) {
    m_sim.write(QStringLiteral("wait-request GPUT"));
    (void)ask("GPUT");
    EXPECT_TRUE(m_sim.waitFor(QStringLiteral("ok wait-request GPUT")));
}

TEST_F(AgentSimTest, RepliesCanBeReplaced) {
    EXPECT_EQ(tell(QStringLiteral("set-reply CUST {\"VALU\": [1, \"b c\"]}")),
              QStringLiteral("ok set-reply"));
    EXPECT_EQ(tell(QStringLiteral("raw-reply GLOG {broken")), QStringLiteral("ok raw-reply"));
    EXPECT_TRUE(tell(QStringLiteral("set-reply CUST nonsense")).startsWith(u"error "));
    EXPECT_EQ(ask("CUST"), R"({"VALU":[1,"b c"]})");
    EXPECT_EQ(ask("GLOG"), "{broken");
    tell(QStringLiteral("normal-replies"));
    EXPECT_EQ(ask("GLOG"), R"({"RESP":"OK","VALU":"2"})");
}

TEST_F(AgentSimTest, MalformedRepliesArriveAsSuch) {
    tell(QStringLiteral("malformed-reply not-dictionary"));
    EXPECT_EQ(call("{}")->signature(), QStringLiteral("s"));
    tell(QStringLiteral("malformed-reply wrong-signature"));
    EXPECT_EQ(call("{}")->signature(), QStringLiteral("a{sv}s"));
    tell(QStringLiteral("malformed-reply no-data"));
    EXPECT_EQ(call("{}")->signature(), QStringLiteral("a{sv}"));
    EXPECT_EQ(ask("CUST"), "");
    tell(QStringLiteral("malformed-reply error"));
    EXPECT_EQ(call("{}")->type(), QDBusMessage::ErrorMessage);
    tell(QStringLiteral("malformed-reply off"));
    EXPECT_TRUE(ask("CUST").contains("OK"));
    EXPECT_TRUE(tell(QStringLiteral("malformed-reply nonsense")).startsWith(u"error "));
}

TEST_F(AgentSimTest, AHangingAgentAcceptsAndNeverAnswers) {
    tell(QStringLiteral("hang on"));
    const std::optional<QDBusMessage> reply = call(R"({"CMD_":"CHKU"})", 300);
    ASSERT_TRUE(reply.has_value());
    EXPECT_EQ(reply->errorName(), QStringLiteral("org.freedesktop.DBus.Error.NoReply"));
    EXPECT_EQ(tell(QStringLiteral("requests")), QStringLiteral("ok requests 1"));
    tell(QStringLiteral("hang off"));
    EXPECT_EQ(ask("CHKU"), R"({"RESP":"OK"})");
}

TEST_F(AgentSimTest, ALateReplyComes) {
    tell(QStringLiteral("reply-delay 400"));
    EXPECT_EQ(call(R"({"CMD_":"CHKU"})", 50)->errorName(),
              QStringLiteral("org.freedesktop.DBus.Error.NoReply"));
    EXPECT_EQ(ask("CHKU"), R"({"RESP":"OK"})");
}

TEST_F(AgentSimTest, RequestsOfAnotherShapeAreErrors) {
    QDBusMessage message = QDBusMessage::createMethodCall(
        QStringLiteral("com.korvale.agent_server"), QStringLiteral("/com/korvale/agent_server"),
        QStringLiteral("com.korvale.agent_server"), QStringLiteral("Request"));
    message << QStringLiteral("text");
    const QDBusPendingCallWatcher watcher(m_ear->bus().asyncCall(message));
    ASSERT_TRUE(waitUntil([&watcher] { return watcher.isFinished(); }));
    EXPECT_EQ(watcher.reply().errorName(),
              QStringLiteral("org.freedesktop.DBus.Error.InvalidArgs"));
}

} // namespace
} // namespace korvale::sim
