#include "AgentSimFixture.h"

namespace korvale::sim {
namespace {

struct SignalCase {
    const char* command;
    const char* signal;
};

TEST_F(AgentSimTest, EachCommandPostsItsNotification) {
    const SignalCase cases[] = {
        {"start", "com.korvale.agent.started"},
        {"stop", "com.korvale.agent.stopped"},
        {"running", "com.korvale.agent.running"},
        {"halyx on", "com.korvale.halyx.connected"},
        {"halyx off", "com.korvale.halyx.notconnected"},
        {"quillmar on", "com.korvale.quillmar.connected"},
        {"quillmar off", "com.korvale.quillmar.notconnected"},
        {"driver connected", "com.korvale.driver.connected"},
        {"driver lost", "com.korvale.driver.notconnected"},
        {"consumer-notification \"a b\" https://x", "com.korvale.consumer_notification"},
        {"exe-blocked /a b", "com.korvale.exe.blocked"},
        {"publish", "com.korvale.timer.aggregated_messages"},
        {"process-terminated /a", "com.korvale.process.terminated"},
        {"process-blocked /a", "com.korvale.process.blocked"},
        {"analyzer /a", "com.korvale.analyzerstatus_messages"},
        {"policy expired", "com.korvale.policy.expired"},
        {"policy invalid-company", "com.korvale.policy.invalidcompanyid"},
        {"policy invalid-signature", "com.korvale.policy.invalidsignature"},
        {"post btdscancomplete", "com.korvale.btdscancomplete"},
        {"post com.korvale.devicecontrol.event", "com.korvale.devicecontrol.event"},
    };
    QStringList expected;
    for (const SignalCase& test : cases) {
        EXPECT_TRUE(tell(QLatin1String(test.command)).startsWith(QLatin1String("ok ")))
            << test.command;
        expected.append(QLatin1String(test.signal));
    }
    EXPECT_TRUE(waitUntil([&] { return m_ear->heard.size() >= expected.size(); }));
    EXPECT_EQ(m_ear->heard.join(u'\n').toStdString(), expected.join(u'\n').toStdString());
}

TEST_F(AgentSimTest, TheMessagesFilesHoldWhatWasSaid) {
    tell(QStringLiteral("exe-blocked /opt/My Program/x"));
    tell(QStringLiteral("process-terminated /bin/y"));
    tell(QStringLiteral("process-blocked /bin/z"));
    tell(QStringLiteral("analyzer /bin/ä"));
    tell(QStringLiteral("consumer-notification \"two words\" https://example.com/"));
    EXPECT_EQ(hostCacheFile("exe_blocked.log")[QStringLiteral("BlockedExePath")].toString(),
              QStringLiteral("/opt/My Program/x"));
    EXPECT_EQ(
        hostCacheFile("process_terminated.log")[QStringLiteral("ProcessTerminated")].toString(),
        QStringLiteral("/bin/y"));
    EXPECT_EQ(
        hostCacheFile("process_blocked.log")[QStringLiteral("ProcessActionBlocked")].toString(),
        QStringLiteral("/bin/z"));
    EXPECT_EQ(hostCacheFile("analyzer_status.log")[QStringLiteral("CurrentFile")].toString(),
              QStringLiteral("/bin/ä"));
    EXPECT_EQ(m_root.read(cachePath("consumer_notification.log")),
              R"({"ConsumerNotificationMessage":"two words",)"
              R"("ConsumerNotificationUrl":"https://example.com/"})");
}

TEST_F(AgentSimTest, UnsolicitedMessagesAreSent) {
    EXPECT_EQ(tell(QStringLiteral("sondar Two \"words\"")), QStringLiteral("ok sondar"));
    EXPECT_EQ(tell(QStringLiteral("message {nothing}")), QStringLiteral("ok message"));
    ASSERT_TRUE(waitUntil([this] { return m_ear->messages.size() == 2; }));
    EXPECT_EQ(m_ear->messages[0].signature(), QStringLiteral("a{sv}"));
    const auto data = [this](int number) {
        return qdbus_cast<QVariantMap>(m_ear->messages[number].arguments().constFirst())
            .value(QStringLiteral("<DATA>"))
            .toByteArray();
    };
    EXPECT_EQ(data(0), R"({"CMD_":"SondarNotificationMessage","VALU":"Two \"words\""})");
    EXPECT_EQ(data(1), "{nothing}");
}

TEST_F(AgentSimTest, UnknownNotificationsAreRefused) {
    EXPECT_TRUE(tell(QStringLiteral("post nothing")).startsWith(QLatin1String("error post ")));
    EXPECT_TRUE(tell(QStringLiteral("nonsense")).startsWith(QLatin1String("error ")));
    EXPECT_TRUE(m_ear->heard.isEmpty());
}

} // namespace
} // namespace korvale::sim
