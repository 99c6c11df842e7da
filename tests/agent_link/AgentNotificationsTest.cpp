#include "agent_link/AgentNotifications.h"

#include "fakes/FakeClock.h"
#include "fakes/RecordingDisplays.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <map>
#include <string>

namespace korvale {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class AgentNotificationsTest : public testing::Test {
protected:
    AgentNotificationsTest() { state.curIconDispColor = IconColor::Yellow; }

    /// What the notification shows, in order.
    std::vector<std::string> shownBy(AgentNotification code) {
        displays.shown.clear();
        notifications.HandleAgentNotification(static_cast<std::uint32_t>(code));
        std::vector<std::string> lines;
        for (const QString& line : displays.shown) {
            lines.push_back(line.toStdString());
        }
        return lines;
    }
    std::optional<JsonValue> readFile(const QString& name) {
        const auto file = files.find(name.toStdString());
        return file == files.end() ? std::nullopt : JsonValue::parse(file->second);
    }

    AppState state;
    fakes::FakeClock clock;
    fakes::RecordingDisplays displays{state};
    std::map<std::string, QByteArray> files;
    AgentNotifications notifications{{
        state,
        clock,
        displays,
        displays,
        displays,
        [this](const QString& name) { return readFile(name); },
        [this] { displays.shown << QStringLiteral("connect"); },
        [this] { displays.shown << QStringLiteral("parse"); },
    }};
};

TEST_F(AgentNotificationsTest, EveryCodeIsASignOfLife) {
    for (std::uint32_t code = 0; code < 30; ++code) {
        clock.seconds += 1;
        notifications.HandleAgentNotification(code);
        EXPECT_EQ(state.lastAgentReportTime, clock.seconds) << code;
    }
    clock.seconds += 1;
    notifications.HandleAgentNotification(0xffffffffU);
    EXPECT_EQ(state.lastAgentReportTime, clock.seconds);
}

TEST_F(AgentNotificationsTest, DeviceControlEventAndUnknownCodesAreOnlySignsOfLife) {
    EXPECT_THAT(shownBy(AgentNotification::DeviceControlEvent), IsEmpty());
    for (const std::uint32_t code : {17U, 18U, 22U, 1000U, 0xffffffffU}) {
        EXPECT_THAT(shownBy(static_cast<AgentNotification>(code)), IsEmpty()) << code;
    }
}

TEST_F(AgentNotificationsTest, AgentStartedConnectsAndShowsItRunning) {
    EXPECT_THAT(shownBy(AgentNotification::AgentStarted),
                ElementsAre("connect", "status 5", "icon 1"));
    state.halyxConnected = true;
    EXPECT_THAT(shownBy(AgentNotification::AgentStarted),
                ElementsAre("connect", "status 5", "icon 2"));
    state.curIconDispColor = IconColor::Red;
    EXPECT_THAT(shownBy(AgentNotification::AgentStarted), ElementsAre("connect", "status 5"));
}

TEST_F(AgentNotificationsTest, AgentStoppedForgetsItsConnections) {
    state.halyxConnected = state.quillmarConnected = true;
    state.driverConnected = false;
    state.statusState = StatusState::Running;
    EXPECT_THAT(shownBy(AgentNotification::AgentStopped), ElementsAre("status 0", "icon 1"));
    EXPECT_FALSE(state.halyxConnected);
    EXPECT_FALSE(state.quillmarConnected);
    EXPECT_TRUE(state.driverConnected);
    EXPECT_EQ(state.statusState, StatusState::NotRunning);
}

TEST_F(AgentNotificationsTest, AnAgentThatReportsIsThereUntilItStops) {
    EXPECT_TRUE(state.agentIsAway);
    shownBy(AgentNotification::HalyxConnected);
    EXPECT_FALSE(state.agentIsAway);
    shownBy(AgentNotification::AgentStopped);
    EXPECT_TRUE(state.agentIsAway);
    shownBy(AgentNotification::AgentStarted);
    EXPECT_FALSE(state.agentIsAway);
}

TEST_F(AgentNotificationsTest, StoppedThenRunningIsYellow) {
    state.halyxConnected = true;
    state.curIconDispColor = IconColor::Green;
    shownBy(AgentNotification::AgentStopped);
    EXPECT_THAT(shownBy(AgentNotification::AgentRunning), ElementsAre("icon 1"));
}

TEST_F(AgentNotificationsTest, RunningAppliesItsColourAgainAndAgain) {
    state.quillmarConnected = true;
    EXPECT_THAT(shownBy(AgentNotification::AgentRunning), ElementsAre("icon 2"));
    EXPECT_THAT(shownBy(AgentNotification::AgentRunning), ElementsAre("icon 2"));
    state.curIconDispColor = IconColor::Red;
    EXPECT_THAT(shownBy(AgentNotification::AgentRunning), IsEmpty());
}

struct ConnectionCase {
    AgentNotification code;
    bool halyx, quillmar, driver; ///< before
    IconColor color;              ///< before
    bool halyxAfter, quillmarAfter, driverAfter;
    std::vector<std::string> shown;
};

TEST_F(AgentNotificationsTest, ConnectionsDecideStatusAndColour) {
    using Code = AgentNotification;
    constexpr auto red = IconColor::Red;
    constexpr auto yellow = IconColor::Yellow;
    constexpr auto green = IconColor::Green;
    const ConnectionCase cases[] = {
        {Code::HalyxConnected, false, false, true, yellow, true, false, true, {"icon 2"}},
        {Code::HalyxConnected, false, false, true, green, true, false, true, {}},
        // Red is also "no colour yet": the flag is set, the icon left alone.
        {Code::HalyxConnected, false, false, true, red, true, false, true, {}},
        {Code::HalyxNotConnected, true, true, true, green, false, true, true, {}},
        {Code::HalyxNotConnected,
         true,
         false,
         true,
         green,
         false,
         false,
         true,
         {"status 2", "icon 1"}},
        {Code::HalyxNotConnected, false, false, true, yellow, false, false, true, {"status 2"}},
        {Code::HalyxNotConnected, true, false, true, red, false, false, true, {"status 2"}},
        {Code::QuillmarConnected, false, false, true, yellow, false, true, true, {"icon 2"}},
        {Code::QuillmarNotConnected, true, true, true, green, true, false, true, {}},
        {Code::QuillmarNotConnected,
         false,
         true,
         true,
         green,
         false,
         false,
         true,
         {"status 2", "icon 1"}},
        {Code::DriverConnected, false, false, false, yellow, false, false, true, {"status 2"}},
        {Code::DriverConnected, true, false, false, yellow, true, false, true, {"icon 2"}},
        {Code::DriverConnected, true, false, false, red, true, false, true, {}},
        {Code::DriverNotConnected,
         true,
         true,
         true,
         green,
         true,
         true,
         false,
         {"status 6", "icon 0"}},
        {Code::DriverNotConnected,
         false,
         false,
         false,
         red,
         false,
         false,
         false,
         {"status 6", "icon 0"}},
    };
    int row = 0;
    for (const ConnectionCase& tested : cases) {
        SCOPED_TRACE(row++);
        state.halyxConnected = tested.halyx;
        state.quillmarConnected = tested.quillmar;
        state.driverConnected = tested.driver;
        state.curIconDispColor = tested.color;
        EXPECT_EQ(shownBy(tested.code), tested.shown);
        EXPECT_EQ(state.halyxConnected, tested.halyxAfter);
        EXPECT_EQ(state.quillmarConnected, tested.quillmarAfter);
        EXPECT_EQ(state.driverConnected, tested.driverAfter);
    }
}

TEST_F(AgentNotificationsTest, AnIconOfAnUnknownColourIsCorrected) {
    state.curIconDispColor = static_cast<IconColor>(7);
    EXPECT_THAT(shownBy(AgentNotification::HalyxConnected), ElementsAre("icon 2"));
}

struct BlockedFileCase {
    AgentNotification code;
    const char* file;
    const char* member;
    const char* subtitleKey;
};

const BlockedFileCase blockedFiles[] = {
    {AgentNotification::ExeBlocked, "exe_blocked.log", "BlockedExePath",
     "NotificationSubtitleExecutionBlock"},
    {AgentNotification::ProcessTerminatedMessage, "process_terminated.log", "ProcessTerminated",
     "NotificationSubtitleProcessTerminated"},
    {AgentNotification::ProcessBlockedMessage, "process_blocked.log", "ProcessActionBlocked",
     "NotificationSubtitleProcessActionBlocked"},
};

TEST_F(AgentNotificationsTest, BlockedFilesAreNamedByTheirLastComponent) {
    for (const BlockedFileCase& tested : blockedFiles) {
        const std::pair<const char*, const char*> paths[] = {
            {"\"/usr/bin/evil\"", "evil"},      {"\"evil\"", "evil"},
            {"\"/opt/evil app/\"", "evil app"}, {"\"/\"", "/"},
            {"\"/a/<b>%@\"", "<b>%@"},
        };
        for (const auto& [path, name] : paths) {
            files[tested.file] = "{\"" + QByteArray(tested.member) + "\":" + path + "}";
            EXPECT_THAT(shownBy(tested.code), ElementsAre(std::string("notify ") + name + "|" +
                                                          tested.subtitleKey + "|-1"));
        }
    }
}

TEST_F(AgentNotificationsTest, BlockedFilesWithoutANameShowNothing) {
    for (const BlockedFileCase& tested : blockedFiles) {
        files.clear();
        EXPECT_THAT(shownBy(tested.code), IsEmpty()) << "no file";
        for (const char* value : {"\"\"", "null", "5", "[\"/usr/bin/evil\"]", "true"}) {
            files[tested.file] = "{\"" + QByteArray(tested.member) + "\":" + value + "}";
            EXPECT_THAT(shownBy(tested.code), IsEmpty()) << value;
        }
        for (const char* content : {"{}", "[]", "", "{\"", R"(["/usr/bin/evil"])"}) {
            files[tested.file] = content;
            EXPECT_THAT(shownBy(tested.code), IsEmpty()) << content;
        }
    }
}

TEST_F(AgentNotificationsTest, AggregatedMessagesAreParsed) {
    EXPECT_THAT(shownBy(AgentNotification::TimerAggregatedMessage), ElementsAre("parse"));
}

TEST_F(AgentNotificationsTest, TheAnalyzedFileIsShown) {
    files["analyzer_status.log"] = R"({"CurrentFile":"/home/a b"})";
    EXPECT_THAT(shownBy(AgentNotification::AnalyzerStatus), ElementsAre("status 3"));
    EXPECT_EQ(state.currentScanItem, QStringLiteral("/home/a b"));
    EXPECT_EQ(state.currentScanItemStartTime, clock.seconds);
}

TEST_F(AgentNotificationsTest, WithoutAnAnalyzedFileTheFormerOneIsForgotten) {
    for (const char* content :
         {"{}", "[]", R"({"CurrentFile":null})", R"({"CurrentFile":5})", "not JSON", ""}) {
        state.currentScanItem = QStringLiteral("/before");
        state.currentScanItemStartTime = 1;
        files["analyzer_status.log"] = content;
        EXPECT_THAT(shownBy(AgentNotification::AnalyzerStatus), IsEmpty()) << content;
        EXPECT_TRUE(state.currentScanItem.isNull()) << content;
        EXPECT_EQ(state.currentScanItemStartTime, 1) << content;
    }
    state.currentScanItem = QStringLiteral("/before");
    files.clear();
    EXPECT_THAT(shownBy(AgentNotification::AnalyzerStatus), IsEmpty());
    EXPECT_TRUE(state.currentScanItem.isNull());
}

TEST_F(AgentNotificationsTest, AnEmptyAnalyzedFileIsAFile) {
    files["analyzer_status.log"] = R"({"CurrentFile":""})";
    EXPECT_THAT(shownBy(AgentNotification::AnalyzerStatus), ElementsAre("status 3"));
    EXPECT_FALSE(state.currentScanItem.isNull());
}

TEST_F(AgentNotificationsTest, PolicyProblemsAndFinishedScansHaveFixedTexts) {
    EXPECT_THAT(shownBy(AgentNotification::PolicyExpired),
                ElementsAre("notify NotificationMessagePolicyExpired|"
                            "NotificationSubtitlePolicyExpired|-1"));
    EXPECT_THAT(shownBy(AgentNotification::PolicyInvalidCompanyId),
                ElementsAre("notify NotificationMessagePolicyInvalidCompanyId|"
                            "NotificationSubtitlePolicyInvalidCompanyId|-1"));
    EXPECT_THAT(shownBy(AgentNotification::PolicyInvalidSignature),
                ElementsAre("notify NotificationMessagePolicyInvalidSignature|"
                            "NotificationSubtitlePolicyInvalidSignature|-1"));
    EXPECT_THAT(shownBy(AgentNotification::BTDScanComplete),
                ElementsAre("notify BTDFinishedScanningMessage|BTDFinishedScanningTitle|-1"));
}

TEST_F(AgentNotificationsTest, TheLastScanIsTheOneToldLastThoughTheClockWasSetBack) {
    clock.wallClock = QDateTime(QDate(2024, 5, 17), QTime(12, 0));
    shownBy(AgentNotification::BTDScanComplete);
    clock.wallClock = clock.wallClock.addYears(-1);
    shownBy(AgentNotification::BTDScanComplete);
    EXPECT_EQ(state.lastScanEnd, clock.wallClock);
    EXPECT_EQ(state.lastAgentReportTime, clock.seconds);
}

TEST_F(AgentNotificationsTest, ConsumerNotificationsNeedAMessageButNoLink) {
    const std::pair<const char*, std::vector<std::string>> cases[] = {
        {R"({"ConsumerNotificationMessage":"hello","ConsumerNotificationUrl":"https://a.b/"})",
         {"consumer hello|https://a.b/"}},
        {R"({"ConsumerNotificationMessage":"hello"})", {"consumer hello|-"}},
        {R"({"ConsumerNotificationMessage":"hello","ConsumerNotificationUrl":5})",
         {"consumer hello|-"}},
        {R"({"ConsumerNotificationMessage":"","ConsumerNotificationUrl":"https://a.b/"})", {}},
        {R"({"ConsumerNotificationUrl":"https://a.b/"})", {}},
        {R"({"ConsumerNotificationMessage":5})", {}},
        {"[]", {}},
        {"not JSON", {}},
    };
    EXPECT_THAT(shownBy(AgentNotification::ConsumerNotification), IsEmpty());
    for (const auto& [content, shown] : cases) {
        files["consumer_notification.log"] = content;
        EXPECT_EQ(shownBy(AgentNotification::ConsumerNotification), shown) << content;
    }
}

// The table and its callbacks.

class RecordingHandler final : public AgentNotificationHandler {
public:
    RecordingHandler() { setSharedController(this); }
    ~RecordingHandler() override { setSharedController(nullptr); }
    RecordingHandler(const RecordingHandler&) = delete;
    RecordingHandler& operator=(const RecordingHandler&) = delete;
    void HandleAgentNotification(std::uint32_t code) override { codes.push_back(code); }
    std::vector<std::uint32_t> codes;
};

TEST(AgentNotificationTable, HasTheTwentyNamesInOrder) {
    const std::pair<const char*, std::uint32_t> rows[] = {
        {"com.korvale.agent.started", 0},
        {"com.korvale.agent.stopped", 1},
        {"com.korvale.agent.running", 2},
        {"com.korvale.halyx.connected", 3},
        {"com.korvale.halyx.notconnected", 4},
        {"com.korvale.quillmar.connected", 5},
        {"com.korvale.quillmar.notconnected", 6},
        {"com.korvale.driver.connected", 15},
        {"com.korvale.driver.notconnected", 16},
        {"com.korvale.consumer_notification", 19},
        {"com.korvale.exe.blocked", 7},
        {"com.korvale.timer.aggregated_messages", 8},
        {"com.korvale.process.terminated", 9},
        {"com.korvale.process.blocked", 10},
        {"com.korvale.analyzerstatus_messages", 11},
        {"com.korvale.policy.expired", 12},
        {"com.korvale.policy.invalidcompanyid", 13},
        {"com.korvale.policy.invalidsignature", 14},
        {"com.korvale.btdscancomplete", 20},
        {"com.korvale.devicecontrol.event", 21},
    };
    ASSERT_EQ(agentNotificationTable.size(), std::size(rows));
    for (std::size_t i = 0; i < std::size(rows); ++i) {
        EXPECT_STREQ(agentNotificationTable[i].name, rows[i].first);
        EXPECT_EQ(static_cast<std::uint32_t>(agentNotificationTable[i].code), rows[i].second);
    }
}

TEST(AgentNotificationTable, EachCallbackHandsItsCodeToTheSharedController) {
    RecordingHandler handler;
    for (const AgentNotificationRow& row : agentNotificationTable) {
        handler.codes.clear();
        row.callback();
        EXPECT_THAT(handler.codes, ElementsAre(static_cast<std::uint32_t>(row.code))) << row.name;
    }
}

TEST(AgentNotificationTable, CallbacksWithoutASharedControllerDoNothing) {
    ASSERT_EQ(sharedController(), nullptr);
    for (const AgentNotificationRow& row : agentNotificationTable) {
        row.callback();
    }
    EXPECT_EQ(sharedController(), nullptr);
}

} // namespace
} // namespace korvale
