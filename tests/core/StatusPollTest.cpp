#include "core/StatusPoll.h"

#include "agent_link/ServiceCommands.h"
#include "fakes/FakeClock.h"
#include "fakes/FakeRequestChannel.h"
#include "fakes/MemoryUserDefaults.h"
#include "fakes/RecordingDisplays.h"
#include "fakes/RecordingLogSink.h"
#include "fakes/UpdaterMessage.h"
#include "model/HostCache.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <sys/stat.h>

namespace korvale {
namespace {

const QDate today(2024, 5, 17);

/// Writes down the device names shown and the marks set.
class RecordingMarks final : public DeviceNameDisplay, public NotificationMark {
public:
    explicit RecordingMarks(const AppState& state) : m_state(state) {}
    void showDeviceName() override { deviceNames << m_state.customName; }
    void setShowNotificationsMark(bool isOn) override { checks.push_back(isOn); }

    QStringList deviceNames;
    std::vector<bool> checks;

private:
    const AppState& m_state;
};

class StatusPollTest : public testing::Test {
protected:
    StatusPollTest() {
        clock.wallClock = QDateTime(today, QTime(12, 0));
        state.lastAgentReportTime = clock.seconds;
        state.lastStatusReportTime = clock.seconds;
    }

    void writeStatus(const QString& name, const QString& content) const {
        QFile file(folder.filePath(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content.toUtf8());
    }
    void writeMessage(const QString& name, const QString& text) const {
        writeStatus(name, fakes::updaterMessage(text, today));
    }

    /// What one tick displays.
    QStringList tick(double secondsLater = 0) {
        clock.seconds += secondsLater;
        displays.shown.clear();
        poll.timerFired();
        return displays.shown;
    }

    /// Answers the request that the first tick sends at `position`.
    void answer(std::size_t position, const QByteArray& json) {
        const ServiceReply reply(QVariantMap{{QStringLiteral("<DATA>"), json}});
        channel.requests.at(position).handler(&reply);
    }
    void answerCustomName(const QByteArray& json) { answer(0, json); }
    void answerPolicy(const QByteArray& json) { answer(1, json); }
    void answerPolicyTime(const QByteArray& json) { answer(2, json); }

    RecordingLogSink log;
    QTemporaryDir folder;
    AppState state = [] {
        AppState initial;
        initial.statusState = StatusState::Running;
        initial.customName = QStringLiteral("host");
        return initial;
    }();
    fakes::FakeClock clock;
    fakes::MemoryUserDefaults defaults;
    HostCache hostCache{defaults, folder.path()};
    fakes::FakeRequestChannel channel;
    fakes::RecordingDisplays displays{state};
    ServiceCommands service{state, channel, displays, displays};
    RecordingMarks marks{state};
    QStringList& deviceNames = marks.deviceNames;
    std::vector<bool>& checks = marks.checks;
    StatusPoll poll{state,
                    {clock, hostCache, service, displays, marks, marks},
                    UpdaterStatusFolder(folder.path())};
};

const QString notRunning = QStringLiteral("status 0");
const QString updaterMessage = QStringLiteral("status 4");
const QString running = QStringLiteral("status 5");

// --- updater messages

TEST_F(StatusPollTest, AnUpdaterMessageIsShownAndEndsTheTick) {
    writeMessage(QStringLiteral("1.kvupupdate"), QStringLiteral("Installing"));
    EXPECT_EQ(tick(400), QStringList{updaterMessage});
    EXPECT_EQ(state.updateStatus, QStringLiteral("Installing"));
    EXPECT_TRUE(channel.requests.empty());
    EXPECT_EQ(log.lines(),
              std::vector<std::string>{"INFO \"Displaying (" + folder.path().toStdString() +
                                       "/1.kvupupdate)\""});
}

TEST_F(StatusPollTest, TwoMessagesTakeTwoTicksAndTheThirdDoesTheRest) {
    writeMessage(QStringLiteral("20240517-2.kvupupdate"), QStringLiteral("two"));
    writeMessage(QStringLiteral("20240517-1.kvupupdate"), QStringLiteral("one"));
    EXPECT_EQ(tick(), QStringList{updaterMessage});
    EXPECT_EQ(state.updateStatus, QStringLiteral("one"));
    EXPECT_EQ(tick(), QStringList{updaterMessage});
    EXPECT_EQ(state.updateStatus, QStringLiteral("two"));
    EXPECT_TRUE(channel.requests.empty());
    tick();
    EXPECT_EQ(channel.requests.size(), 4U);
}

TEST_F(StatusPollTest, AFileNamedZeroWithTheExtensionIsShown) {
    writeMessage(QStringLiteral("0.kvupupdate"), QStringLiteral("zero"));
    writeMessage(QStringLiteral("0"), QStringLiteral("never"));
    writeMessage(QStringLiteral("5.txt"), QStringLiteral("never"));
    EXPECT_EQ(tick(), QStringList{updaterMessage});
    EXPECT_EQ(state.updateStatus, QStringLiteral("zero"));
    EXPECT_EQ(tick(), QStringList());
}

TEST_F(StatusPollTest, AMessageThatCannotBeDecryptedShowsNone) {
    state.updateStatus = QStringLiteral("before");
    writeStatus(QStringLiteral("1.kvupupdate"), QStringLiteral("no cipher"));
    EXPECT_EQ(tick(), QStringList{updaterMessage});
    EXPECT_TRUE(state.updateStatus.isNull());
}

TEST_F(StatusPollTest, AnEmptyMessageIsOne) {
    writeMessage(QStringLiteral("1.kvupupdate"), QStringLiteral(""));
    tick();
    EXPECT_TRUE(state.updateStatus.isEmpty());
    EXPECT_FALSE(state.updateStatus.isNull());
}

TEST_F(StatusPollTest, AMessageOfYesterdayShowsNone) {
    writeStatus(
        QStringLiteral("1.kvupupdate"),
        fakes::updaterMessage(QStringLiteral("a message of some length"), today.addDays(-1)));
    tick();
    EXPECT_TRUE(state.updateStatus.isNull());
}

TEST_F(StatusPollTest, AFileThatCannotBeReadChangesNothingAndIsNotTriedAgain) {
    state.updateStatus = QStringLiteral("before");
    QFile file(folder.filePath(QStringLiteral("1.kvupupdate")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("\xFF\xFE");
    file.close();
    EXPECT_EQ(tick(400), QStringList()) << "the tick ends all the same";
    EXPECT_EQ(log.lines().size(), 1U);
    EXPECT_EQ(state.updateStatus, QStringLiteral("before"));
    EXPECT_TRUE(channel.requests.empty());
    EXPECT_FALSE(tick().isEmpty());
    EXPECT_EQ(log.lines().size(), 1U);
}

TEST_F(StatusPollTest, AFifoDoesNotHoldUpTheTick) {
    ASSERT_EQ(mkfifo(QFile::encodeName(folder.filePath(QStringLiteral("1.kvupupdate"))), 0600), 0);
    tick();
    EXPECT_EQ(channel.requests.size(), 4U);
    EXPECT_TRUE(log.lines().empty());
}

// --- silence, queries, refresh

TEST_F(StatusPollTest, TheAgentIsSilentAfterThreeHundredSeconds) {
    EXPECT_FALSE(tick(299.9).contains(notRunning));
    EXPECT_TRUE(tick(0.1).contains(notRunning));
}

TEST_F(StatusPollTest, ASilentAgentIsAway) {
    state.agentIsAway = false;
    tick(299);
    EXPECT_FALSE(state.agentIsAway);
    tick(1);
    EXPECT_TRUE(state.agentIsAway);
}

TEST_F(StatusPollTest, SilenceIsRepeatedUntilTheAgentReports) {
    EXPECT_TRUE(tick(300).contains(notRunning));
    state.lastStatusReportTime = clock.seconds;
    EXPECT_EQ(tick(1), QStringList{notRunning});
    state.lastAgentReportTime = clock.seconds;
    EXPECT_EQ(tick(1), QStringList());
}

TEST_F(StatusPollTest, AfterItWasStoppedItAsksOnce) {
    tick();
    for (const auto& request : std::vector(channel.requests)) {
        request.handler(nullptr); // what is unanswered is not asked again
    }
    tick(3600);
    EXPECT_EQ(channel.requests.size(), 8U);
    tick(2.5);
    EXPECT_EQ(channel.requests.size(), 8U);
}

TEST_F(StatusPollTest, AWallClockThatIsSetMakesNoDifference) {
    tick();
    state.agentIsAway = false;
    for (const int years : {1, -2, 1}) {
        clock.wallClock = clock.wallClock.addYears(years);
        EXPECT_EQ(tick(2.5), QStringList());
        state.lastStatusReportTime = clock.seconds;
    }
    EXPECT_FALSE(state.agentIsAway);
    EXPECT_EQ(channel.requests.size(), 4U);
}

TEST_F(StatusPollTest, TheFirstTickAsksInOrderWithoutWaiting) {
    tick();
    EXPECT_EQ(channel.sent(),
              (std::vector<QByteArray>{R"({"CMD_":"CUST"})", R"({"CMD_":"POLY"})",
                                       R"({"CMD_":"GPUT"})", R"({"CMD_":"GOPV"})"}));
    for (const auto& request : channel.requests) {
        EXPECT_FALSE(request.onPrivateQueue);
    }
}

TEST_F(StatusPollTest, AsksOnceAMinute) {
    tick();
    tick(59.9);
    EXPECT_EQ(channel.requests.size(), 4U);
    for (const auto& request : channel.requests) {
        request.handler(nullptr); // what is unanswered is not asked again
    }
    tick(0.1);
    EXPECT_EQ(channel.requests.size(), 8U);
    tick(2.5);
    EXPECT_EQ(channel.requests.size(), 8U);
}

TEST_F(StatusPollTest, AClockThatStartsAtZeroIsAskedAtOnceToo) {
    clock.seconds = 0;
    state.lastAgentReportTime = 0;
    state.lastStatusReportTime = 0;
    tick();
    EXPECT_EQ(channel.requests.size(), 4U);
}

TEST_F(StatusPollTest, TheStatusIsRefreshedAfterMoreThanThePeriod) {
    EXPECT_EQ(tick(2.5), QStringList());
    EXPECT_EQ(tick(0.25), QStringList{running});
    state.lastStatusReportTime = std::nullopt;
    EXPECT_EQ(tick(), QStringList{running}) << "never shown yet";
}

TEST_F(StatusPollTest, ASilentAgentsStatusIsWhatIsRefreshed) {
    EXPECT_EQ(tick(300), QStringList({notRunning, notRunning}))
        << "the fake does not note the time: the refresh shows the new state";
}

TEST_F(StatusPollTest, RepliesThatAreNoDictionaryChangeNothing) {
    tick();
    for (const auto& request : channel.requests) {
        request.handler(nullptr);
    }
    tick(1);
    EXPECT_EQ(state.customName, QStringLiteral("host"));
    EXPECT_TRUE(deviceNames.isEmpty());
    EXPECT_TRUE(state.policyName.isNull());
    EXPECT_TRUE(checks.empty());
}

// --- "CUST"

TEST_F(StatusPollTest, TheDeviceNameReachesTheWindowAtALaterTick) {
    tick();
    answerCustomName(R"({"VALU": "Reception"})");
    EXPECT_EQ(state.customName, QStringLiteral("Reception"));
    EXPECT_TRUE(deviceNames.isEmpty());
    tick();
    tick();
    EXPECT_EQ(deviceNames, QStringList{QStringLiteral("Reception")});
}

TEST_F(StatusPollTest, OnlyATextIsADeviceName) {
    tick();
    for (const char* reply :
         {"{}", R"({"VALU": null})", R"({"VALU": 5})", R"({"RESP": "OK"})", "broken", "[]"}) {
        answerCustomName(reply);
        EXPECT_EQ(state.customName, QStringLiteral("host")) << reply;
    }
    answerCustomName(R"({"RESP": "FAIL", "VALU": ""})");
    EXPECT_EQ(state.customName, QString()) << "the status is not looked at";
}

// --- "POLY"

TEST_F(StatusPollTest, APolicyIsTakenMemberByMember) {
    tick();
    state.policyMode = QStringLiteral("mode");
    answerPolicy(R"({"PNAME": "Strict", "RESP": "FAIL"})");
    EXPECT_EQ(state.policyName, QStringLiteral("Strict"));
    EXPECT_EQ(state.policyMode, QStringLiteral("mode"));
    answerPolicy(R"({"PMODE": "Remote"})");
    EXPECT_EQ(state.policyMode, QStringLiteral("Remote"));
    answerPolicy(R"({"PNAME": 1, "PMODE": null, "PNOTF": true})");
    EXPECT_EQ(state.policyName, QStringLiteral("Strict"));
    EXPECT_EQ(state.policyMode, QStringLiteral("Remote"));
    EXPECT_TRUE(checks.empty());
}

TEST_F(StatusPollTest, ALocalPolicyMeansNoConnectionOnceThereIsAColour) {
    struct Case {
        IconColor color;
        const char* mode;
        bool connected;
    };
    static constexpr Case cases[]{
        {IconColor::Red, "Local Policy", true},    {IconColor::Yellow, "Local Policy", false},
        {IconColor::Green, "Local Policy", false}, {IconColor::Green, "local policy", true},
        {IconColor::Green, "Local Policy ", true}, {IconColor::Green, "Remote", true},
    };
    tick();
    for (const Case& expected : cases) {
        state.curIconDispColor = expected.color;
        state.halyxConnected = true;
        state.quillmarConnected = true;
        displays.shown.clear();
        answerPolicy(QByteArray(R"({"PMODE": ")") + expected.mode + "\"}");
        EXPECT_EQ(state.halyxConnected, expected.connected) << expected.mode;
        EXPECT_EQ(state.quillmarConnected, expected.connected) << expected.mode;
        EXPECT_TRUE(displays.shown.isEmpty()) << "the icon is not touched";
    }
}

TEST_F(StatusPollTest, ThePolicyDecidesOnNotificationsUntilTheUserDoes) {
    tick();
    answerPolicy(R"({"PNOTF": "OK"})");
    EXPECT_TRUE(state.policyShowNotifications);
    EXPECT_TRUE(state.showNotifications);
    answerPolicy(R"({"PNOTF": "ok"})");
    EXPECT_FALSE(state.policyShowNotifications);
    EXPECT_FALSE(state.showNotifications);
    EXPECT_EQ(checks, (std::vector<bool>{true, false}));

    hostCache.setCurrentUserNotification(false, true);
    answerPolicy(R"({"PNOTF": "OK"})");
    EXPECT_TRUE(state.policyShowNotifications);
    EXPECT_FALSE(state.showNotifications);
    EXPECT_EQ(checks.size(), 2U);
}

TEST_F(StatusPollTest, WithoutPnotfNotificationsStayAsTheyAre) {
    tick();
    answerPolicy(R"({"PNOTF": "OK"})");
    answerPolicy(R"({"PNAME": "x"})");
    answerPolicy(R"({"PNOTF": null})");
    EXPECT_TRUE(state.policyShowNotifications);
    EXPECT_EQ(checks.size(), 1U);
}

// --- "GPUT"

TEST_F(StatusPollTest, ThePolicysTimeNeedsAnOk) {
    tick();
    answerPolicyTime(R"({"RESP": "OK", "VALU": "Friday"})");
    EXPECT_EQ(state.policyLastUpdateTime, QStringLiteral("Friday"));
    for (const char* reply :
         {R"({"VALU": "x"})", R"({"RESP": "ok", "VALU": "x"})", R"({"RESP": true, "VALU": "x"})"}) {
        answerPolicyTime(reply);
        EXPECT_EQ(state.policyLastUpdateTime, QStringLiteral("Friday")) << reply;
    }
    answerPolicyTime(R"({"RESP": "OK"})");
    EXPECT_EQ(state.policyLastUpdateTime, QString());
}

TEST_F(StatusPollTest, TheCompanionsVersionIsAskedForLast) {
    tick();
    channel.answer(R"({"RESP": "OK", "VALU": "3.1"})");
    EXPECT_EQ(state.sondarVersionNumberString, QStringLiteral("3.1"));
}

} // namespace
} // namespace korvale
