#include "model/ProcessStateChanges.h"

#include "ParsedJson.h"
#include "fakes/FakeTexts.h"
#include "fakes/LogLevelScope.h"
#include "fakes/RecordingDisplays.h"
#include "fakes/RecordingLogSink.h"
#include "fakes/RecordingTableFeed.h"
#include "model/EventList.h"

#include <gtest/gtest.h>

namespace korvale {
namespace {

const std::vector<RowKey> columns{
    RowKey::ProcessName, RowKey::ProcessToolTip, RowKey::Category, RowKey::CategoryToolTip,
    RowKey::Found,       RowKey::FoundToolTip,   RowKey::Pid,      RowKey::PidToolTip,
};

class ProcessStateChangesTest : public testing::Test {
protected:
    ProcessStateChangesTest() { state.justStart = false; }

    void parse(const QByteArray& text) { processes.parseProcessStateChanges(parsedJson(text)); }

    /// The message of the only notification so far, which is forgotten then; "-" if there is none.
    QString notified() {
        EXPECT_LE(displays.shown.size(), 1);
        const QString shown = displays.shown.value(0, QStringLiteral("-"));
        displays.shown.clear();
        return shown;
    }

    QString exploitType;
    const FakeTexts texts{
        {"NotificationMessageExploitDetectedPID", QStringLiteral("%@ [%@] %@")},
        {"NotificationMessageNewExploit", QStringLiteral("several")},
        {"NotificationSubtitleExploitAttemptDetected", QStringLiteral("attempt")},
    };
    RecordingLogSink log;
    QStringList calls;
    AppState state;
    ProcessIds remembered;
    fakes::RecordingTableFeed table{QStringLiteral("processes"), calls};
    fakes::RecordingDisplays displays{state};
    ProcessStateChanges processes{state, remembered, table, displays,
                                  [this] { return exploitType; }};
};

constexpr const char* oneAlert =
    R"({"r": {"State": 0, "Path": "/usr/bin/thief", "PID": 100, "Count": 3}})";
const QString specific = QStringLiteral("notify thief [100] |attempt|4");

TEST_F(ProcessStateChangesTest, ARecordIsARow) {
    parse(R"({"r": {"State": 2, "Path": "/usr/bin/thief", "PID": 100, "Count": "3"}})");
    EXPECT_EQ(table.row(0, columns),
              QStringList({QStringLiteral("thief"), QStringLiteral("/usr/bin"),
                           QStringLiteral("Blocked"), QStringLiteral("CategoryTooltip"),
                           QStringLiteral("3"), QStringLiteral("FoundTooltip"),
                           QStringLiteral("100"), QStringLiteral("100")}));
    EXPECT_EQ(table.rows->text(0, RowKey::File), std::nullopt);
    EXPECT_EQ(calls, QStringList{QStringLiteral("processes load 1")});
}

TEST_F(ProcessStateChangesTest, ANewAlertIsNotifiedWithTheTypeOfTheFirstEvent) {
    exploitType = QStringLiteral("LsassRead");
    parse(oneAlert);
    EXPECT_EQ(notified(), QStringLiteral("notify thief [100] LsassRead|attempt|4"));
    EXPECT_EQ(table.rows->size(), 1U);
    EXPECT_EQ(state.exploitAttempt, 1);
    EXPECT_EQ(state.newExploitCount, 1);
}

TEST_F(ProcessStateChangesTest, WhatStaysIsNewOnEverySecondPass) {
    parse(oneAlert);
    EXPECT_EQ(notified(), specific);
    parse(oneAlert);
    EXPECT_EQ(notified(), QStringLiteral("-"));
    parse(oneAlert);
    EXPECT_EQ(notified(), specific);
}

TEST_F(ProcessStateChangesTest, TwoNewProcessesAreOneGenericNotification) {
    parse(R"({"a": {"PID": 1, "Path": "/x"}, "b": {"PID": 2, "Path": "/y"},
              "c": {"PID": 3, "Path": "/z"}})");
    EXPECT_EQ(notified(), QStringLiteral("notify several|attempt|4"));
    EXPECT_EQ(remembered.size(), 3U);
}

TEST_F(ProcessStateChangesTest, AnIdentifierThatComesTwiceIsNewTwice) {
    parse(R"({"a": {"PID": 1}, "b": {"PID": 1.0}})");
    EXPECT_EQ(notified(), QStringLiteral("notify several|attempt|4"));
    parse(R"({"a": {"PID": 1}, "b": {"PID": 1.0}})");
    EXPECT_EQ(notified(), QStringLiteral("-"));
}

TEST_F(ProcessStateChangesTest, OnlyTheNewOneOfTwoIsNamed) {
    parse(oneAlert);
    notified();
    parse(R"({"r": {"State": 0, "Path": "/usr/bin/thief", "PID": 100},
              "s": {"State": 0, "Path": "/usr/bin/robber", "PID": 101}})");
    EXPECT_EQ(notified(), QStringLiteral("notify robber [101] |attempt|4"));
    EXPECT_EQ(remembered.size(), 1U) << "100 was known and is not carried over";
}

TEST_F(ProcessStateChangesTest, ANewProcessThatIsNoAlertRaisesNothing) {
    parse(R"({"r": {"State": 2, "PID": 100}, "s": {"State": 3, "PID": 101},
              "t": {"State": 9, "PID": 102}})");
    EXPECT_EQ(table.rows->size(), 3U);
    EXPECT_EQ(notified(), QStringLiteral("-"));
    EXPECT_EQ(remembered.size(), 3U);
}

TEST_F(ProcessStateChangesTest, AProcessThatIsNoAlertStillMakesTheMessageGeneric) {
    parse(R"({"r": {"State": 2, "PID": 100}, "s": {"State": 0, "PID": 101}})");
    EXPECT_EQ(notified(), QStringLiteral("notify several|attempt|4"));
}

TEST_F(ProcessStateChangesTest, AKnownAlertBesideANewBlockedOneRaisesNothing) {
    parse(oneAlert);
    notified();
    parse(R"({"r": {"State": 0, "PID": 100}, "s": {"State": 2, "PID": 101}})");
    EXPECT_EQ(notified(), QStringLiteral("-"));
}

TEST_F(ProcessStateChangesTest, IgnoredProcessesAreNotThere) {
    parse(R"({"r": {"State": 1, "PID": 100}, "s": {"State": "1", "PID": 101},
              "t": {"State": 1.9, "PID": 102}, "u": {"State": true, "PID": 103},
              "v": {"State": 4294967297, "PID": 104}})");
    EXPECT_EQ(table.rows->size(), 0U);
    EXPECT_TRUE(remembered.empty());
    EXPECT_EQ(state.exploitAttempt, 0);
    EXPECT_EQ(notified(), QStringLiteral("-"));
    EXPECT_TRUE(log.lines().empty());
}

TEST_F(ProcessStateChangesTest, AtStartUpTheListIsShownAndRememberedInSilence) {
    state.justStart = true;
    parse(oneAlert);
    EXPECT_EQ(notified(), QStringLiteral("-"));
    EXPECT_EQ(table.rows->size(), 1U);
    EXPECT_EQ(state.newExploitCount, 1);
    state.justStart = false;
    parse(oneAlert);
    EXPECT_EQ(notified(), QStringLiteral("-"));
}

TEST_F(ProcessStateChangesTest, NoListEmptiesTheTableAndKeepsWhatIsRemembered) {
    parse(R"({"a": {"PID": 1}, "b": {"PID": 2}})");
    notified();
    processes.parseProcessStateChanges(std::nullopt);
    EXPECT_EQ(calls.last(), QStringLiteral("processes load nothing"));
    EXPECT_EQ(state.exploitAttempt, 0);
    EXPECT_EQ(state.newExploitCount, 0);
    EXPECT_EQ(remembered.size(), 2U);
    parse(R"({"a": {"PID": 1}})");
    EXPECT_EQ(notified(), QStringLiteral("-"));
}

TEST_F(ProcessStateChangesTest, TheUnseenCountFollowsTheListAndMayFallBelowZero) {
    parse(R"({"a": {"PID": 1}, "b": {"PID": 2}})");
    parse(R"({"a": {"PID": 1}, "b": {"PID": 2}, "c": {"PID": 3}})");
    EXPECT_EQ(state.newExploitCount, 3);
    state.newExploitCount = 0; // the tab was shown
    parse(R"({"a": {"PID": 1}})");
    EXPECT_EQ(state.newExploitCount, -2);
    EXPECT_EQ(state.exploitAttempt, 1);
}

TEST_F(ProcessStateChangesTest, AListOnTopHasNoRecords) {
    parse(oneAlert);
    notified();
    parse(R"([{"PID": 1}])");
    EXPECT_EQ(calls.last(), QStringLiteral("processes load 0"));
    EXPECT_TRUE(remembered.empty());
}

TEST_F(ProcessStateChangesTest, RecordsThatAreNoObjectsAreSkipped) {
    parse(R"({"a": 1, "b": "x", "c": null, "d": [{"PID": 1}], "e": {"PID": 1}})");
    EXPECT_EQ(table.rows->size(), 1U);
    EXPECT_EQ(state.exploitAttempt, 1);
}

TEST_F(ProcessStateChangesTest, AnEmptyRecordIsAnAlertWithEmptyCells) {
    parse(R"({"a": {}})");
    for (const RowKey key : {RowKey::ProcessName, RowKey::ProcessToolTip, RowKey::Found,
                             RowKey::Pid, RowKey::PidToolTip}) {
        EXPECT_EQ(table.rows->text(0, key), std::nullopt);
    }
    EXPECT_EQ(table.rows->text(0, RowKey::Category), QStringLiteral("Alert"));
    EXPECT_EQ(notified(), QStringLiteral("notify (null) [(null)] |attempt|4"));
}

TEST_F(ProcessStateChangesTest, ARecordWithoutIdentifierIsNewEachTimeAndNotRemembered) {
    for (const char* list : {R"({"a": {}})", R"({"a": {"PID": null}})", R"({"b": {}})"}) {
        parse(list);
        EXPECT_EQ(notified(), QStringLiteral("notify (null) [(null)] |attempt|4")) << list;
        EXPECT_TRUE(remembered.empty());
    }
}

TEST_F(ProcessStateChangesTest, ValuesOfAnyTypeAreShownAsTheyAre) {
    parse(R"({"a": {"State": -1, "Path": 5, "PID": [1, {"b": 2}], "Count": true},
              "b": {"State": 99999999999999999999, "Path": ["/x"], "PID": 1.50, "Count": -7},
              "c": {"State": "3", "Path": "/", "PID": "12", "Count": {"n": null}},
              "d": {"State": [3], "Path": "", "PID": false, "Count": 123456789012345678901234567890}
             })");
    const std::vector<RowKey> some{RowKey::ProcessName, RowKey::ProcessToolTip, RowKey::Category,
                                   RowKey::Pid, RowKey::Found};
    const auto row = [&](std::size_t index) { return table.row(index, some).join(u'|'); };
    EXPECT_EQ(row(0), QStringLiteral("-|-|Unknown|[1,{\"b\":2}]|1"));
    EXPECT_EQ(row(1), QStringLiteral("-|-|Unknown|1.5|-7"));
    EXPECT_EQ(row(2), QStringLiteral("/|/|Terminated|12|{\"n\":null}"));
    EXPECT_EQ(row(3), QStringLiteral("||Alert|0|123456789012345678901234567890"));
}

TEST_F(ProcessStateChangesTest, IdentifiersAreComparedByValue) {
    struct Case {
        const char* before;
        const char* now;
        bool known;
    };
    static constexpr Case cases[]{
        {"1", "1.0", true},
        {"10", "1e1", true},
        {"1", "\"1\"", false},
        {"\"a\"", "\"\\u0061\"", true},
        {"\"a\"", "\"A\"", false},
        {"[1]", "[1.0]", true},
        {"[1]", "[1,1]", false},
        {"true", "1", true},
        {"1.0", "true", true},
        {"false", "0", true},
        {"true", "false", false},
        {"true", "\"1\"", false},
        {"[true]", "[1]", true},
        {"{\"a\":1,\"b\":2}", "{\"b\":2,\"a\":1}", true},
        {"9007199254740993", "9007199254740992", false},
    };
    for (const Case& pair : cases) {
        remembered.clear();
        parse(QByteArray(R"({"a": {"PID": )") + pair.before + "}}");
        displays.shown.clear();
        parse(QByteArray(R"({"a": {"PID": )") + pair.now + "}}");
        EXPECT_EQ(notified() == QStringLiteral("-"), pair.known) << pair.before << ' ' << pair.now;
    }
}

TEST_F(ProcessStateChangesTest, TextsFromFilesStayAsTheyAre) {
    parse(R"({"a": {"Path": "/tmp/a\nb/%@<b>\u202Egpj.exe", "PID": "%@"}})");
    EXPECT_EQ(notified(), QStringLiteral("notify %@<b>\u202Egpj.exe [%@] |attempt|4"));
    EXPECT_EQ(table.rows->text(0, RowKey::ProcessToolTip), QStringLiteral("/tmp/a\nb"));
}

TEST_F(ProcessStateChangesTest, OfTwoMembersWithOneNameTheLastCounts) {
    parse(R"({"a": {"PID": 1}, "a": {"PID": 2, "State": 1, "State": 2}})");
    ASSERT_EQ(table.rows->size(), 1U);
    EXPECT_EQ(table.rows->text(0, RowKey::Pid), QStringLiteral("2"));
    EXPECT_EQ(table.rows->text(0, RowKey::Category), QStringLiteral("Blocked"));
}

TEST_F(ProcessStateChangesTest, EachProcessIsLogged) {
    parse(R"({"k\n": {"State": 2, "PID": 1}, "l": {"PID": 2}})");
    EXPECT_EQ(log.lines(), (std::vector<std::string>{"INFO \"Processing {k\\x0a}, state(p)=2\"",
                                                     "INFO \"Processing {l}, state(p)=(null)\""}));
    const fakes::LogLevelScope level(LogLevel::Warn);
    parse(oneAlert);
    EXPECT_EQ(log.lines().size(), 2U);
}

TEST_F(ProcessStateChangesTest, HundredThousandRecordsAreBorne) {
    QByteArray text = "{";
    for (int i = 0; i < 100'000; ++i) {
        text += (i == 0 ? "\"" : ",\"") + QByteArray::number(i) + "\": {\"PID\": [" +
                QByteArray::number(i) + "], \"Path\": \"/bin/x\"}";
    }
    text += "}";
    parse(text);
    EXPECT_EQ(notified(), QStringLiteral("notify several|attempt|4"));
    EXPECT_EQ(table.rows->size(), 100'000U);
    EXPECT_EQ(state.exploitAttempt, 100'000);
    parse(text);
    EXPECT_EQ(notified(), QStringLiteral("-"));
    EXPECT_EQ(table.rows->text(99'999, RowKey::Pid), QStringLiteral("[99999]"));
}

TEST(FirstExploitTypeName, IsThatOfTheFirstRecord) {
    const auto name = [](const char* events) { return firstExploitTypeName(parsedJson(events)); };
    EXPECT_EQ(name("{}"), QString());
    EXPECT_EQ(name(R"([{"ItemType": "1"}])"), QString());
    EXPECT_EQ(name(R"({"z": {"ItemType": "1"}, "a": {"ItemType": "2"}})"),
              QStringLiteral("StackPivot"));
    EXPECT_EQ(name(R"({"z": {}, "a": {"ItemType": "2"}})"), QString());
    EXPECT_EQ(name(R"({"z": {"ItemType": 1}})"), QString());
    EXPECT_EQ(name(R"({"z": {"ItemType": "99"}})"), QString());
    EXPECT_EQ(name(R"({"y": null, "z": 5, "a": {"ItemType": "2"}})"),
              QStringLiteral("StackProtect"));
}

TEST(ProcessPass, AsksForTheTypeOnceAndOnlyForSomethingNew) {
    const RecordingLogSink log;
    int asked = 0;
    const auto type = [&asked] {
        ++asked;
        return QStringLiteral("T");
    };
    const JsonValue list = parsedJson(R"({"a": {"PID": 1}, "b": {"PID": 2}})");
    const ProcessPass first = processPass(list, {}, type);
    EXPECT_EQ(asked, 1);
    EXPECT_EQ(processPass(list, first.newProcesses, type).message, std::nullopt);
    EXPECT_EQ(asked, 1);
}

} // namespace
} // namespace korvale
