#include "model/FileProcessEvents.h"

#include "ParsedJson.h"
#include "fakes/FakeTexts.h"
#include "fakes/LogLevelScope.h"
#include "fakes/RecordingLogSink.h"
#include "fakes/RecordingTableFeed.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace korvale {
namespace {

const std::vector<RowKey> columns{RowKey::When, RowKey::Category, RowKey::Event, RowKey::Details};

class FileProcessEventsTest : public testing::Test {
protected:
    FileProcessEventsTest() { state.justStart = false; }

    bool parse(const QByteArray& text) { return events.parseFileProcessEvents(parsedJson(text)); }
    [[nodiscard]] QStringList row(std::size_t index) const { return table.row(index, columns); }

    /// Details of the only record of a list.
    QString details(const QByteArray& record) {
        table.rows.reset();
        parse("{\"key\": " + record + "}");
        return table.rows ? row(0).at(3) : QStringLiteral("no row");
    }

    QStringList calls;
    AppState state;
    RememberedEvents remembered;
    fakes::RecordingTableFeed table{QStringLiteral("events"), calls};
    FileProcessEvents events{state, remembered, table};
};

QByteArray threats(int from, int to) {
    QByteArray text = "{";
    for (int i = from; i < to; ++i) {
        text += (i == from ? "" : ",") + QByteArray("\"/tmp/file") + QByteArray::number(i) +
                R"(": {"Category": "Threat", "Event": 1, "State": 1, "When": "now"})";
    }
    return text + "}";
}

TEST_F(FileProcessEventsTest, AThreatsRowShowsItsKey) {
    EXPECT_TRUE(parse(R"({"/tmp/a.exe": {"When": "10:00", "Category": "Threat", "Event": 1,
                                         "State": 1}})"));
    EXPECT_EQ(row(0),
              QStringList({QStringLiteral("10:00"), QStringLiteral("Threat"),
                           QStringLiteral("EventStrThreat (EventThreatStringFromValueDetected)"),
                           QStringLiteral("/tmp/a.exe")}));
    EXPECT_EQ(state.eventCount, 1);
    EXPECT_EQ(calls, QStringList{QStringLiteral("events add 1")});
}

TEST_F(FileProcessEventsTest, AnExploitsRowShowsWhatWasAttempted) {
    EXPECT_TRUE(parse(R"({"k": {"When": "11:00", "Category": "Exploit", "Event": 2, "PID": 4711,
                               "ItemType": "12", "Path": "/usr/bin/thief"}})"));
    EXPECT_EQ(
        row(0),
        QStringList({QStringLiteral("11:00"), QStringLiteral("Exploit"), QStringLiteral("Blocked"),
                     QStringLiteral("EventStrExploitViolation LsassRead; HPS_ColPID: "
                                    "4711; EventStrExploitApplication /usr/bin/thief")}));
}

TEST_F(FileProcessEventsTest, TheTextsAreInTheUsersLanguage) {
    const FakeTexts texts{{"EventStrThreat", QStringLiteral("Bedrohung")},
                          {"Quarantined", QStringLiteral("In Quarantäne")},
                          {"Blocked", QStringLiteral("Blockiert")},
                          {"EventStrExploitViolation", QStringLiteral("Verstoß")},
                          {"HPS_ColPID", QStringLiteral("PID")},
                          {"EventStrExploitApplication", QStringLiteral("Programm")}};
    parse(R"({"a": {"Category": "Threat", "Event": 2},
              "b": {"Category": "Exploit", "Event": 2, "PID": 1, "ItemType": "1", "Path": "/x"}})");
    EXPECT_EQ(row(0).at(2), QStringLiteral("Bedrohung (In Quarantäne)"));
    EXPECT_EQ(row(1).at(2), QStringLiteral("Blockiert"));
    EXPECT_EQ(row(1).at(3), QStringLiteral("Verstoß StackPivot; PID: 1; Programm /x"));
}

TEST_F(FileProcessEventsTest, TheSameThreatInTwoPassesIsOneRow) {
    EXPECT_TRUE(parse(threats(0, 1)));
    EXPECT_FALSE(parse(threats(0, 1)));
    EXPECT_EQ(state.eventCount, 1);
    EXPECT_EQ(calls.size(), 1);
}

TEST_F(FileProcessEventsTest, OnlyWhatIsNewIsAdded) {
    parse(threats(0, 3));
    EXPECT_TRUE(parse(threats(2, 5)));
    ASSERT_EQ(table.rows->size(), 2U);
    EXPECT_EQ(row(0).at(3), QStringLiteral("/tmp/file3"));
    EXPECT_EQ(row(1).at(3), QStringLiteral("/tmp/file4"));
    EXPECT_EQ(state.eventCount, 5);
}

TEST_F(FileProcessEventsTest, TheTimeIsNoPartOfTheIdentity) {
    EXPECT_TRUE(parse(R"({"a": {"When": "1", "Category": "Threat", "Event": 1}})"));
    EXPECT_FALSE(parse(R"({"a": {"When": "2", "Category": "Threat", "Event": 1}})"));
}

TEST_F(FileProcessEventsTest, AnotherEventOfTheSameFileIsNew) {
    EXPECT_TRUE(parse(R"({"a": {"Category": "Threat", "Event": 1}})"));
    EXPECT_TRUE(parse(R"({"a": {"Category": "Threat", "Event": 2}})"));
    EXPECT_TRUE(parse(R"({"a": {"Category": "Threat", "Event": 16, "State": 8}})"));
    EXPECT_TRUE(parse(R"({"a": {"Category": "Threat", "Event": 16, "State": 2}})"));
    EXPECT_FALSE(parse(R"({"a": {"Category": "Threat", "Event": 16, "State": 3}})"))
        << "bit 1 is cleared before it is worded";
}

TEST_F(FileProcessEventsTest, ExploitsAreIdentifiedByTheirDetails) {
    EXPECT_TRUE(parse(R"({"a": {"Category": "Exploit", "Event": 0, "PID": 1, "Path": "/x"}})"));
    EXPECT_FALSE(parse(R"({"b": {"Category": "Exploit", "Event": 0, "PID": 1, "Path": "/x"}})"));
    EXPECT_TRUE(parse(R"({"b": {"Category": "Exploit", "Event": 0, "PID": 2, "Path": "/x"}})"));
    EXPECT_TRUE(parse(R"({"b": {"Category": "Exploit", "Event": 3, "PID": 2, "Path": "/x"}})"));
}

TEST_F(FileProcessEventsTest, AThreatsWordingDoesNotKnowBitOne) {
    parse(R"({"a": {"Category": "Threat", "Event": 16, "State": 9},
              "b": {"Category": "Threat", "Event": 16, "State": 1}})");
    EXPECT_EQ(row(0).at(2), QStringLiteral("EventStrThreat (Quarantined )"));
    EXPECT_EQ(row(1).at(2), QStringLiteral("EventStrThreat (EventThreatStringFromValueNone)"));
}

TEST_F(FileProcessEventsTest, AnExploitWithoutPathShowsItsKey) {
    const QString end = QStringLiteral("EventStrExploitApplication key");
    EXPECT_TRUE(details(R"({"Category": "Exploit", "PID": 1})").endsWith(end));
    EXPECT_TRUE(details(R"({"Category": "Exploit", "PID": 2, "Path": null})").endsWith(end));
    EXPECT_TRUE(details(R"({"Category": "Exploit", "PID": 3, "Path": 5})").endsWith(end));
    EXPECT_TRUE(details(R"({"Category": "Exploit", "PID": 4, "Path": ["/x"]})").endsWith(end));
    EXPECT_TRUE(details(R"({"Category": "Exploit", "PID": 5, "Path": ""})")
                    .endsWith(QStringLiteral("EventStrExploitApplication ")));
}

TEST_F(FileProcessEventsTest, AMissingPidIsNullAndAMissingTypeNothing) {
    const QString prefix = QStringLiteral("EventStrExploitViolation ");
    const QString suffix = QStringLiteral("; EventStrExploitApplication /x");
    struct Case {
        const char* members;
        const char16_t* shown;
    };
    const Case cases[]{
        {R"("a": 0)", u"; HPS_ColPID: (null)"},
        {R"("PID": null, "ItemType": null)", u"; HPS_ColPID: (null)"},
        {R"("PID": "7", "ItemType": "23")", u"DYLDInjection; HPS_ColPID: 7"},
        {R"("PID": 1.50, "ItemType": "24")", u"; HPS_ColPID: 1.5"},
        {R"("PID": -1, "ItemType": 5)", u"; HPS_ColPID: -1"},
        {R"("PID": true, "ItemType": "05")", u"; HPS_ColPID: 1"},
        {R"("PID": [1, {"a": "b"}], "ItemType": "")", u"; HPS_ColPID: [1,{\"a\":\"b\"}]"},
        {R"("PID": 99999999999999999999, "ItemType": {})", u"; HPS_ColPID: 99999999999999999999"},
    };
    for (const Case& expected : cases) {
        const QString shown =
            details(QByteArray(R"({"Category": "Exploit", "Path": "/x", )") + expected.members +
                    ", \"Event\": " + QByteArray::number(&expected - cases) + "}");
        EXPECT_EQ(shown, prefix + QString::fromUtf16(expected.shown) + suffix) << expected.members;
    }
}

TEST_F(FileProcessEventsTest, OtherCategoriesAreNoEvents) {
    EXPECT_FALSE(parse(R"({"a": {"Category": "threat"}, "b": {"Category": "Threats"},
                           "c": {"Category": ""}, "d": {"Category": 1}, "e": {"Category": null},
                           "f": {}, "g": {"Category": ["Threat"]}})"));
    EXPECT_EQ(remembered.size(), 0U);
}

TEST_F(FileProcessEventsTest, RecordsThatAreNoObjectsAreSkipped) {
    EXPECT_TRUE(parse(R"({"a": 1, "b": "Threat", "c": null, "d": ["Category", "Threat"], "e": true,
                          "f": {"Category": "Threat"}})"));
    EXPECT_EQ(table.rows->size(), 1U);
}

TEST_F(FileProcessEventsTest, NumbersOfAnyKindAreRead) {
    struct Case {
        const char* event;
        const char16_t* text;
    };
    const Case cases[]{
        {"2", u"Quarantined"},
        {"2.9", u"Quarantined"},
        {"\" 2x\"", u"Quarantined"},
        {"true", u"EventThreatStringFromValueDetected"},
        {"4294967298", u"Quarantined"},
        {"null", u"EventThreatStringFromValueStateChange (0)"},
        {"[2]", u"EventThreatStringFromValueStateChange (0)"},
        {"-32", u"EventThreatStringFromValueStateChange (4294967264)"},
        {"1e300", u"EventThreatStringFromValueStateChange (0)"},
    };
    int number = 0;
    for (const Case& expected : cases) {
        parse("{\"" + QByteArray::number(number++) + R"(": {"Category": "Threat", "Event": )" +
              expected.event + "}}");
        EXPECT_EQ(row(0).at(2),
                  QStringLiteral("EventStrThreat (%1)").arg(QString::fromUtf16(expected.text)))
            << expected.event;
    }
}

TEST_F(FileProcessEventsTest, MissingMembersLeaveTheCellEmpty) {
    EXPECT_TRUE(parse(R"({"a": {"Category": "Threat"}})"));
    EXPECT_EQ(table.rows->text(0, RowKey::When), std::nullopt);
    EXPECT_EQ(table.rows->text(0, RowKey::Pid), std::nullopt);
    EXPECT_EQ(row(0).at(2),
              QStringLiteral("EventStrThreat (EventThreatStringFromValueStateChange (0))"));
}

TEST_F(FileProcessEventsTest, OfTwoMembersWithOneNameTheLastCounts) {
    EXPECT_TRUE(parse(R"({"a": {"Category": "Exploit"},
                          "a": {"Category": "Other", "Category": "Threat", "When": 1, "When": 2}})"));
    ASSERT_EQ(table.rows->size(), 1U);
    EXPECT_EQ(row(0).at(0), QStringLiteral("2"));
    EXPECT_EQ(row(0).at(1), QStringLiteral("Threat"));
}

TEST_F(FileProcessEventsTest, TextsFromFilesStayAsTheyAre) {
    parse(R"({"/a\nb/<b>%@\u202E&\u0000%1": {"Category": "Threat", "When": "<i>\n%s"}})");
    EXPECT_EQ(row(0).at(0), QStringLiteral("<i>\n%s"));
    EXPECT_EQ(row(0).at(3), QStringLiteral("/a\nb/<b>%@\u202E&") + QChar(0) + QStringLiteral("%1"));
    EXPECT_TRUE(
        details(R"({"Category": "Exploit", "PID": "%@", "Path": "/%@\n<u>"})")
            .endsWith(QStringLiteral("HPS_ColPID: %@; EventStrExploitApplication /%@\n<u>")));
}

TEST_F(FileProcessEventsTest, NothingEmptyOrAListOnTopIsNoEvent) {
    EXPECT_FALSE(events.parseFileProcessEvents(std::nullopt));
    EXPECT_FALSE(parse("{}"));
    EXPECT_FALSE(parse("[]"));
    EXPECT_FALSE(parse(R"([{"Category": "Threat"}])"));
    EXPECT_TRUE(calls.isEmpty());
    EXPECT_EQ(state.eventCount, 0);
}

TEST_F(FileProcessEventsTest, AtMostAThousandRowsAPassAndTheRestNextTime) {
    EXPECT_TRUE(parse(threats(0, 1500)));
    EXPECT_EQ(table.rows->size(), 1000U);
    EXPECT_EQ(state.eventCount, 1000);
    EXPECT_TRUE(parse(threats(0, 1501)));
    ASSERT_EQ(table.rows->size(), 501U);
    EXPECT_EQ(row(0).at(3), QStringLiteral("/tmp/file1000"));
    EXPECT_EQ(state.eventCount, 1501);
    EXPECT_FALSE(parse(threats(0, 1501)));
}

TEST_F(FileProcessEventsTest, EventsAtStartUpAreRememberedButNotShown) {
    state.justStart = true;
    EXPECT_FALSE(parse(threats(0, 3)));
    state.justStart = false;
    EXPECT_FALSE(parse(threats(0, 3)));
    EXPECT_TRUE(calls.isEmpty());
    EXPECT_EQ(state.eventCount, 0);
    EXPECT_TRUE(parse(threats(0, 4)));
    EXPECT_EQ(table.rows->size(), 1U);
}

TEST_F(FileProcessEventsTest, TheCapCountsAtStartUpToo) {
    state.justStart = true;
    EXPECT_FALSE(parse(threats(0, 1500)));
    EXPECT_EQ(remembered.size(), 1000U);
    state.justStart = false;
    EXPECT_TRUE(parse(threats(0, 1500)));
    EXPECT_EQ(table.rows->size(), 500U);
}

TEST_F(FileProcessEventsTest, HundredThousandRecordsAreTakenInPasses) {
    const JsonValue list = parsedJson(threats(0, 100'000));
    for (int pass = 1; pass <= 5; ++pass) {
        EXPECT_TRUE(events.parseFileProcessEvents(list));
        EXPECT_EQ(state.eventCount, pass * 1000);
    }
    EXPECT_EQ(row(999).at(3), QStringLiteral("/tmp/file4999"));
}

TEST_F(FileProcessEventsTest, TheDebugLogCountsTheRounds) {
    const fakes::LogLevelScope level(LogLevel::Debug);
    const RecordingLogSink log;
    parse(R"({"a": {"Category": "Threat"}, "b": {"Category": "None"}})");
    parse(R"({"a": {"Category": "Threat"}})");
    EXPECT_EQ(log.lines(),
              (std::vector<std::string>{"DEBUG \"another round...\"", "DEBUG \"Event!!\"",
                                        "DEBUG \"another round...\""}));
}

TEST_F(FileProcessEventsTest, TheOrdinaryLogSaysNothing) {
    const RecordingLogSink log;
    parse(threats(0, 2));
    EXPECT_TRUE(log.lines().empty());
}

TEST(RememberedEvents, AnIdentityIsTheWholeTextHoweverItIsCut) {
    RememberedEvents events;
    EXPECT_TRUE(events.insert({"Threat-", "a", "-", "b"}));
    EXPECT_FALSE(events.insert({"Threat-a-b"}));
    EXPECT_TRUE(events.insert({"Threat-a-B"}));
    EXPECT_TRUE(events.insert({QByteArrayView("Threat-a-b\0", 11)}));
    EXPECT_TRUE(events.insert({}));
    EXPECT_EQ(events.size(), 4U);
}

TEST(RememberedEvents, NoneOfManyIsTakenForAnother) {
    RememberedEvents events;
    for (int i = 0; i < 200'000; ++i) {
        ASSERT_TRUE(events.insert({QByteArray::number(i)}));
    }
    for (int i = 0; i < 200'000; i += 1000) {
        EXPECT_FALSE(events.insert({QByteArray::number(i)}));
    }
    EXPECT_EQ(events.size(), 200'000U);
}

} // namespace
} // namespace korvale
