#include "agent_link/ServiceCommands.h"

#include "agent_link/Envelope.h"
#include "fakes/FakeRequestChannel.h"
#include "fakes/RecordingDisplays.h"
#include "fakes/RecordingLogSink.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <utility>

namespace korvale {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ServiceCommandsTest : public testing::Test {
protected:
    AppState state;
    fakes::FakeRequestChannel channel;
    fakes::RecordingDisplays displays{state};
    RecordingLogSink log;
    std::vector<std::pair<int, int>> marks;
    LogLevelApplied applied = [this](int previous, int level) {
        marks.emplace_back(previous, level);
    };
    ServiceCommands commands{state, channel, displays, displays};
};

struct UserCommandCase {
    void (*send)(ServiceCommands&);
    const char* request;
    const char* name;
};

const UserCommandCase userCommands[] = {
    {[](ServiceCommands& commands) {
         commands.forwardFolderScan(QStringLiteral("/home/\u00e4 b/\u4e2d"));
     },
     "{\"CMD_\":\"SCAN\",\"START\":\"/home/\u00e4 b/\u4e2d\"}", "forwardFolderScan"},
    {[](ServiceCommands& commands) { commands.scanBackground(); }, R"({"CMD_":"SCAN","START":" "})",
     "scanBackground"},
    {[](ServiceCommands& commands) { commands.stopScan(); }, R"({"CMD_":"SCAN","STOP":" "})",
     "stopScan"},
    {[](ServiceCommands& commands) { commands.checkUpdates(); }, R"({"CMD_":"CHKU"})",
     "checkUpdates"},
    {[](ServiceCommands& commands) { commands.checkPolicyUpdates(); }, R"({"CMD_":"PLYU"})",
     "checkPolicyUpdates"},
};

class UserCommandTest : public ServiceCommandsTest,
                        public testing::WithParamInterface<UserCommandCase> {
protected:
    [[nodiscard]] std::string successLine() const {
        return std::string("INFO \"Service returned 'OK' for ") + GetParam().name + ".\"";
    }
    [[nodiscard]] std::string failureLine() const {
        return std::string("ERROR \"Service returned bad status for ") + GetParam().name + ".\"";
    }
};

TEST_P(UserCommandTest, SendsItsRequestAndLogsTheOutcome) {
    GetParam().send(commands);
    EXPECT_THAT(channel.sent(), ElementsAre(QByteArray(GetParam().request)));
    EXPECT_FALSE(channel.requests.front().onPrivateQueue);
    channel.answer(R"({"RESP":"OK"})");
    channel.answer(R"({"RESP":"ok"})");
    channel.answer(R"({"RESP":5})");
    channel.answer("not JSON");
    EXPECT_THAT(log.lines(),
                ElementsAre(successLine(), failureLine(), failureLine(), failureLine()));
    EXPECT_THAT(displays.shown, IsEmpty());
}

TEST_P(UserCommandTest, SaysNothingWhenTheReplyIsNoDictionary) {
    GetParam().send(commands);
    channel.answerWithError();
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_P(UserCommandTest, InAutomationModeEndsTheProgramWithoutAReplyAfter15Sleeps) {
    int sleeps = 0;
    int ends = 0;
    AutomationMode automation{true, [&] { ++sleeps; }, [&] { ++ends; }};
    ServiceCommands oneShot(state, channel, displays, displays, automation);
    GetParam().send(oneShot);
    EXPECT_THAT(channel.sent(), ElementsAre(QByteArray(GetParam().request)));
    EXPECT_TRUE(channel.requests.front().onPrivateQueue);
    EXPECT_EQ(sleeps, 15);
    EXPECT_EQ(ends, 1);
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_P(UserCommandTest, InAutomationModeEndsTheProgramOnceTheReplyWasHandled) {
    int sleeps = 0;
    std::vector<std::string> linesAtEnd;
    AutomationMode automation;
    automation.on = true;
    automation.sleepOneSecond = [&] {
        if (++sleeps == 3) {
            channel.answer(R"({"RESP":"OK"})");
        }
    };
    automation.terminate = [&] { linesAtEnd = log.lines(); };
    ServiceCommands oneShot(state, channel, displays, displays, automation);
    GetParam().send(oneShot);
    EXPECT_EQ(sleeps, 3);
    EXPECT_THAT(linesAtEnd, ElementsAre(successLine()));
}

TEST_P(UserCommandTest, InAutomationModeTheWayToTheBusCountsAmongThe15Seconds) {
    int sleeps = 0;
    double seconds = 100;
    channel.setUp = [&seconds] { seconds += 1.9; };
    AutomationMode automation{true, [&] { ++sleeps; }, [] {}, [&seconds] { return seconds; }};
    ServiceCommands oneShot(state, channel, displays, displays, automation);
    GetParam().send(oneShot);
    EXPECT_EQ(sleeps, 13);
}

TEST_P(UserCommandTest, InAutomationModeEndsTheProgramAtOnceWithoutAConnection) {
    channel.failsAtOnce = true;
    int ends = 0;
    AutomationMode automation{true, [] { ADD_FAILURE() << "slept"; }, [&] { ++ends; }};
    ServiceCommands oneShot(state, channel, displays, displays, automation);
    GetParam().send(oneShot);
    EXPECT_EQ(ends, 1);
}

INSTANTIATE_TEST_SUITE_P(All, UserCommandTest, testing::ValuesIn(userCommands),
                         [](const auto& tested) { return std::string(tested.param.name); });

TEST(ServiceCommandTable, IsInTheOrderOfItsIndex) {
    std::size_t index = 0;
    for (const ServiceCommandRow& row : serviceCommandTable) {
        EXPECT_EQ(&serviceCommandRow(row.command), &serviceCommandTable[index++]) << row.code;
    }
}

TEST_F(ServiceCommandsTest, TheOtherRequestsCarryOnlyTheirCode) {
    commands.readLogLevel(-1, applied);
    commands.checkDriverConnection();
    commands.getSondarVersion();
    for (const ServiceCommand command : {ServiceCommand::GetCustomName, ServiceCommand::GetPolicy,
                                         ServiceCommand::GetPolicyUpdateTime}) {
        commands.request(command, [](const ServiceReply*) {});
    }
    EXPECT_THAT(channel.sent(),
                ElementsAre(R"({"CMD_":"GLOG"})", R"({"CMD_":"GDRV"})", R"({"CMD_":"GOPV"})",
                            R"({"CMD_":"CUST"})", R"({"CMD_":"POLY"})", R"({"CMD_":"GPUT"})"));
}

TEST_F(ServiceCommandsTest, AutomationModeLeavesTheQueriesOnTheMainQueue) {
    ServiceCommands oneShot(state, channel, displays, displays,
                            {true, [] { ADD_FAILURE(); }, [] { ADD_FAILURE(); }});
    oneShot.checkDriverConnection();
    oneShot.getSondarVersion();
    oneShot.readLogLevel(-1, applied);
    oneShot.logging(2, applied);
    for (const auto& request : channel.requests) {
        EXPECT_FALSE(request.onPrivateQueue) << request.json.toStdString();
    }
}

// The agent's log level.

TEST_F(ServiceCommandsTest, TheLogLevelReadMovesTheMark) {
    commands.readLogLevel(0, applied);
    channel.answer(R"({"VALU":"2"})"); // no status is asked for
    EXPECT_THAT(marks, ElementsAre(std::pair(0, 2)));
    EXPECT_EQ(state.currentLogLevel, 2);
}

TEST_F(ServiceCommandsTest, TheLogLevelThatIsCheckedAlreadyChangesNothing) {
    commands.readLogLevel(2, applied);
    channel.answer(R"({"RESP":"OK","VALU":"2"})");
    EXPECT_THAT(marks, IsEmpty());
    EXPECT_EQ(state.currentLogLevel, -1);
}

TEST_F(ServiceCommandsTest, ALogLevelReplyWithoutValueReadsAsZero) {
    for (const char* reply : {R"({"RESP":"OK"})", "{}", "not JSON", R"({"VALU":null})"}) {
        marks.clear();
        commands.readLogLevel(-1, applied);
        channel.answer(reply);
        EXPECT_THAT(marks, ElementsAre(std::pair(-1, 0))) << reply;
        EXPECT_EQ(state.currentLogLevel, 0);
    }
}

TEST_F(ServiceCommandsTest, ALogLevelOutOfRangeIsTakenAsItIs) {
    commands.readLogLevel(1, applied);
    channel.answer(R"({"VALU":"99"})");
    EXPECT_THAT(marks, ElementsAre(std::pair(1, 99)));
    EXPECT_EQ(state.currentLogLevel, 99);
}

TEST_F(ServiceCommandsTest, AnErrorInsteadOfTheLogLevelChangesNothing) {
    commands.readLogLevel(1, applied);
    channel.answerWithError();
    EXPECT_THAT(marks, IsEmpty());
    EXPECT_EQ(state.currentLogLevel, -1);
}

TEST_F(ServiceCommandsTest, SettingTheLogLevelWaitsForTheAgentToAgree) {
    commands.logging(3, applied);
    EXPECT_THAT(channel.sent(), ElementsAre(R"({"CMD_":"SLOG","VALU":"3"})"));
    EXPECT_THAT(marks, IsEmpty());
    channel.answer(R"({"RESP":"OK"})");
    EXPECT_THAT(marks, ElementsAre(std::pair(-1, 3)));
    EXPECT_EQ(state.currentLogLevel, 3);

    commands.logging(0, applied);
    channel.answer(R"({"RESP":"OK"})");
    EXPECT_THAT(marks, ElementsAre(std::pair(-1, 3), std::pair(3, 0)));
}

TEST_F(ServiceCommandsTest, ChoosingTheCheckedLogLevelSendsNothing) {
    state.currentLogLevel = 1;
    commands.logging(1, applied);
    EXPECT_THAT(channel.sent(), IsEmpty());
}

TEST_F(ServiceCommandsTest, ARefusedLogLevelChangesNothingAndIsNotLogged) {
    state.currentLogLevel = 1;
    commands.logging(2, applied);
    channel.answer(R"({"RESP":"ok"})");
    channel.answer("not JSON");
    channel.answerWithError();
    EXPECT_THAT(marks, IsEmpty());
    EXPECT_EQ(state.currentLogLevel, 1);
    EXPECT_THAT(log.lines(), IsEmpty());
}

// The driver.

TEST_F(ServiceCommandsTest, OnlyTheTextZeroMeansThatTheDriverIsNotConnected) {
    for (const char* reply : {R"({"VALU":"1"})", R"({"VALU":0})", R"({"VALU":"00"})",
                              R"({"VALU":" 0"})", R"({"VALU":false})", R"({"RESP":"OK"})", "bad"}) {
        commands.checkDriverConnection();
        channel.answer(reply);
        EXPECT_TRUE(state.driverConnected) << reply;
    }
    commands.checkDriverConnection();
    channel.answerWithError();
    EXPECT_TRUE(state.driverConnected);
    EXPECT_THAT(displays.shown, IsEmpty());

    commands.checkDriverConnection();
    channel.answer(R"({"VALU":"0"})");
    EXPECT_FALSE(state.driverConnected);
    EXPECT_THAT(displays.shown, ElementsAre(QStringLiteral("status 6"), QStringLiteral("icon 0")));
}

TEST_F(ServiceCommandsTest, AReplyNeverConnectsTheDriverAgain) {
    state.driverConnected = false;
    commands.checkDriverConnection();
    channel.answer(R"({"RESP":"OK","VALU":"1"})");
    EXPECT_FALSE(state.driverConnected);
}

// The companion product's version.

TEST_F(ServiceCommandsTest, TheSondarVersionFollowsTheReply) {
    struct Case {
        const char* reply; ///< nullptr: no dictionary
        const char* version;
    };
    for (const Case& tested : {
             Case{R"({"RESP":"OK","VALU":"2.0"})", "2.0"},
             Case{R"({"RESP":"OK"})", ""},
             Case{R"({"RESP":"no"})", ""},
             Case{R"({"RESP":"OK","VALU":20})", ""},
             Case{"bad", ""},
             Case{R"({"RESP":"no","VALU":"2.0"})", "1.0"},
             Case{R"({"VALU":"2.0"})", "1.0"},
             Case{nullptr, "1.0"},
         }) {
        state.sondarVersionNumberString = QStringLiteral("1.0");
        commands.getSondarVersion();
        if (tested.reply != nullptr) {
            channel.answer(tested.reply);
        } else {
            channel.answerWithError();
        }
        EXPECT_EQ(state.sondarVersionNumberString, QLatin1String(tested.version))
            << (tested.reply != nullptr ? tested.reply : "error");
    }
}

TEST_F(ServiceCommandsTest, AQueryIsNotSentAgainWhileTheSameServiceHasNotAnsweredIt) {
    const auto askAll = [this] {
        commands.readLogLevel(-1, applied);
        commands.checkDriverConnection();
        commands.getSondarVersion();
        commands.request(ServiceCommand::GetPolicy, [](const ServiceReply*) {});
    };
    askAll();
    askAll();
    EXPECT_EQ(channel.requests.size(), 4U);
    channel.answerWithError(); // the latest, the policy
    askAll();
    EXPECT_EQ(channel.requests.size(), 5U);
    EXPECT_EQ(channel.requests.back().json, R"({"CMD_":"POLY"})");
    ++channel.life;
    askAll();
    EXPECT_EQ(channel.requests.size(), 9U);
    askAll();
    EXPECT_EQ(channel.requests.size(), 9U);
}

TEST_F(ServiceCommandsTest, AnAnswerFromAnEarlierLifeDoesNotFreeAQueryOfThePresentOne) {
    commands.getSondarVersion();
    ++channel.life;
    commands.getSondarVersion();
    channel.requests.front().handler(nullptr);
    commands.getSondarVersion();
    EXPECT_EQ(channel.requests.size(), 2U);
}

TEST_F(ServiceCommandsTest, UserCommandsAreSentEachTime) {
    for (int i = 0; i < 3; ++i) {
        commands.checkUpdates();
        commands.logging(2, applied);
    }
    EXPECT_EQ(channel.requests.size(), 6U);
}

} // namespace
} // namespace korvale
