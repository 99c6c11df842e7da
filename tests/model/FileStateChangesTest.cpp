#include "model/FileStateChanges.h"

#include "fakes/FakeTexts.h"
#include "fakes/RecordingDisplays.h"
#include "fakes/RecordingTableFeed.h"
#include "model/ParsedJson.h"
#include "platform/SafeText.h"

#include <gtest/gtest.h>

namespace korvale {
namespace {

class FileStateChangesTest : public testing::Test {
protected:
    void parse(const QByteArray& list) { changes.parseFileStateChanges(parsedJson(list)); }

    QStringList column(RowKey key) const {
        QStringList texts;
        for (std::size_t row = 0; row < table.rows->size(); ++row) {
            texts << table.row(row, {key});
        }
        return texts;
    }
    QStringList counters() const {
        QStringList texts;
        for (const std::int64_t count :
             {state.threatDetectCount, state.threatQuarantineCount, state.threatWaiveCount,
              state.abnormalDetectCount, state.abnormalQuarantineCount, state.abnormalWaiveCount,
              state.quarantineCount, state.waiveCount, state.newThreatCount}) {
            texts << QString::number(count);
        }
        return texts;
    }
    static QStringList words(const char* text) {
        return QString::fromUtf8(text).split(QLatin1Char(' '));
    }

    FakeTexts m_texts{
        {"NotificationMessageUnsafeDetected", QStringLiteral("one unsafe: %@")},
        {"NotificationMessageUnsafesDetected", QStringLiteral("%@ unsafe")},
        {"NotificationMessageAbnormalDetected", QStringLiteral("one abnormal: %@")},
        {"NotificationMessageAbnormalsDetected", QStringLiteral("%@ abnormal")},
        {"NotificationMessageUnsafeQuarantined", QStringLiteral("one unsafe away: %@")},
        {"NotificationMessageUnsafesQuarantined", QStringLiteral("%@ unsafe away")},
        {"NotificationMessageAbnormalQuarantined", QStringLiteral("one abnormal away: %@")},
        {"NotificationMessageAbnormalsQuarantined", QStringLiteral("%@ abnormal away")},
        {"CategoryTooltip", QStringLiteral("category tip")},
        {"FoundTooltip", QStringLiteral("found tip")},
    };
    AppState state;
    QStringList calls;
    fakes::RecordingTableFeed table{QStringLiteral("files"), calls};
    fakes::RecordingDisplays displays{state};
    FileStateChanges changes{state, table, displays};
};

TEST_F(FileStateChangesTest, TwoPathsOfOneThreatMakeOneRow) {
    parse(R"({"/Tmp/Evil.EXE":{"State":9,"ID":"abc","Score":-0.5},
              "/home/b":{"State":9,"ID":"abc","Score":7}})");
    ASSERT_EQ(table.rows->size(), 1U);
    EXPECT_EQ(table.row(0, {RowKey::File, RowKey::FileToolTip, RowKey::Category,
                            RowKey::CategoryToolTip, RowKey::Found, RowKey::FoundToolTip,
                            RowKey::Id, RowKey::IdToolTip, RowKey::Score}),
              QStringList({QStringLiteral("evil.exe"), QStringLiteral("/Tmp/Evil.EXE\n\n/home/b"),
                           QStringLiteral("Quarantined"), QStringLiteral("category tip"),
                           QStringLiteral("2"), QStringLiteral("found tip"), QStringLiteral("abc"),
                           QStringLiteral("abc"), QStringLiteral("-0.5")}));
    EXPECT_EQ(table.row(0, {RowKey::ProcessName, RowKey::When}), words("- -"));
    EXPECT_EQ(state.threatQuarantineCount, 2);
}

TEST_F(FileStateChangesTest, OnlyWhatIsNewAndWasLeftIsUrgent) {
    parse(R"({"/a":{"State":1,"ID":"a"}})");
    EXPECT_EQ(displays.urgent, 0) << "found before this start";
    state.justStart = false;
    parse(R"({"/a":{"State":1,"ID":"a"},"/b":{"State":1,"ID":"b"}})");
    EXPECT_EQ(displays.urgent, 1);
    parse(R"({"/a":{"State":9,"ID":"a"},"/b":{"State":9,"ID":"b"}})");
    EXPECT_EQ(displays.urgent, 1) << "quarantined";
    EXPECT_EQ(displays.shown.size(), 3);
}

TEST_F(FileStateChangesTest, OneIdentifierInTwoStatesMakesTwoRows) {
    parse(R"({"/a":{"State":1,"ID":"x"},"/b":{"State":9,"ID":"x"}})");
    EXPECT_EQ(column(RowKey::Category), words("Unsafe Quarantined"));
}

TEST_F(FileStateChangesTest, RowsStandInTheOrderOfTheirFirstFile) {
    parse(R"({"/z":{"State":1,"ID":"3"},"/a":{"State":1,"ID":"1"},"/m":{"State":1,"ID":"3"},
              "/b":{"State":1,"ID":"2"}})");
    EXPECT_EQ(column(RowKey::File), words("z a b"));
    EXPECT_EQ(column(RowKey::Found), words("2 1 1"));
}

TEST_F(FileStateChangesTest, Bit16IsRemovedBeforeAnythingLooksAtTheState) {
    parse(R"({"/a":{"State":17,"ID":"x"},"/b":{"State":1,"ID":"x"},"/c":{"State":16,"ID":"x"},
              "/d":{"State":0,"ID":"x"}})");
    EXPECT_EQ(column(RowKey::Found), words("2"));
    EXPECT_EQ(state.threatDetectCount, 2);
}

TEST_F(FileStateChangesTest, AStateWithoutUnsafeAndAbnormalIsShownButNotCounted) {
    parse(R"({"/a":{"State":4,"ID":"x"},"/b":{"State":8,"ID":"x"},"/c":{"State":32,"ID":"x"}})");
    EXPECT_EQ(column(RowKey::Category), words("Waived Quarantined Unknown"));
    EXPECT_EQ(counters(), words("0 0 0 0 0 0 0 0 0"));
    EXPECT_EQ(displays.shown, QStringList());
}

TEST_F(FileStateChangesTest, UnsafeWinsOverAbnormalAndQuarantinedOverWaived) {
    parse(R"({"/1":{"State":1},"/2":{"State":3},"/3":{"State":9},"/4":{"State":13},"/5":{"State":5},
              "/6":{"State":7},"/7":{"State":2},"/8":{"State":10},"/9":{"State":14},
              "/10":{"State":6},"/11":{"State":15}})");
    // Detected counts all that is not waived.
    EXPECT_EQ(counters(), words("8 3 2 1 2 1 5 3 8"));
}

TEST_F(FileStateChangesTest, RecordsOfOtherTypesAreReadAsFarAsTheyGo) {
    parse(R"({"/a":5,"/b":[{"State":1}],"/c":null,"/d":"x","/e":{"ID":"x"},"/f":{"State":null},
              "/g":{"State":"1"},"/h":{"State":true},"/i":{"State":1.9},"/j":{"State":{}},
              "/k":{"State":4294967297},"/l":{"State":-1},"/m":{"State":1e400}})");
    EXPECT_EQ(column(RowKey::FileToolTip),
              QStringList({QStringLiteral("/g\n\n/h\n\n/i\n\n/k"), QStringLiteral("/l")}));
    EXPECT_EQ(column(RowKey::Id), words("- -"));
    EXPECT_EQ(column(RowKey::Score), words("- -"));
    EXPECT_EQ(column(RowKey::Category), words("Unsafe Quarantined"));
}

TEST_F(FileStateChangesTest, WithoutAnIdentifierTheStateAloneIsTheKey) {
    parse(R"({"/a":{"State":1},"/b":{"State":1,"ID":null},"/c":{"State":1,"ID":""},
              "/d":{"State":2}})");
    EXPECT_EQ(column(RowKey::Found), words("3 1"));
}

TEST_F(FileStateChangesTest, IdentifiersOfAnyTypeAreKeysAsTheyAreWritten) {
    parse(R"({"/a":{"State":1,"ID":5},"/b":{"State":1,"ID":"5"},"/c":{"State":1,"ID":5.0},
              "/d":{"State":1,"ID":[1, 2]},"/e":{"State":1,"ID":"[1,2]"},
              "/f":{"State":1,"ID":{"k":true}},"/g":{"State":1,"ID":true},"/h":{"State":1,"ID":"1"}})");
    EXPECT_EQ(column(RowKey::Found), words("3 2 1 2"));
    EXPECT_EQ(column(RowKey::Id), words("5 [1,2] {\"k\":true} 1"));
}

TEST_F(FileStateChangesTest, TheKeyIsOneTextOfStateAndIdentifier) {
    parse(R"({"/a":{"State":1,"ID":"12"},"/b":{"State":11,"ID":"2"},"/c":{"State":1,"ID":"3"},
              "/d":{"State":13}})");
    EXPECT_EQ(column(RowKey::Found), words("2 2"));
    EXPECT_EQ(column(RowKey::Category), words("Unsafe Unsafe"));
}

TEST_F(FileStateChangesTest, ScoresArePassedOnAsTheyAre) {
    parse(R"({"/a":{"State":1,"ID":"1","Score":{"x":[1.0,"q\""]}},
              "/b":{"State":1,"ID":"2","Score":"high"},"/c":{"State":1,"ID":"3","Score":null},
              "/d":{"State":1,"ID":"4","Score":true},
              "/e":{"State":1,"ID":"5","Score":123456789012345678901234567890}})");
    EXPECT_EQ(column(RowKey::Score),
              words("{\"x\":[1,\"q\\\"\"]} high - 1 123456789012345678901234567890"));
}

TEST_F(FileStateChangesTest, OfTwoRecordsWithOnePathTheLastCounts) {
    parse(
        R"({"/a":{"State":1,"ID":"1"},"/b":{"State":2,"ID":"2","State":10},"/\u0061":{"State":9,"ID":"3"}})");
    EXPECT_EQ(column(RowKey::Id), words("2 3"));
    EXPECT_EQ(counters(), words("2 1 0 0 1 0 2 0 2"));
}

TEST_F(FileStateChangesTest, StrangePathsStayAsTheyAre) {
    parse(
        R"({"":{"State":1,"ID":"1"},"/":{"State":1,"ID":"2"},"/x/ÄÖ\n<b>\u202E.Exe":{"State":1,"ID":"3"},
              "/d/":{"State":1,"ID":"4"},"a\u0000b":{"State":1,"ID":"5"}})");
    EXPECT_EQ(column(RowKey::File),
              QStringList({QString(), QStringLiteral("/"), QStringLiteral("äö\n<b>\u202E.exe"),
                           QStringLiteral("d"), QString::fromUtf8("a\0b", 3)}));
    EXPECT_EQ(column(RowKey::FileToolTip)[2], QStringLiteral("/x/ÄÖ\n<b>\u202E.Exe"));
}

TEST_F(FileStateChangesTest, AJsonListHasNoRecords) {
    parse(R"([{"State":1}])");
    EXPECT_EQ(calls, QStringList(QStringLiteral("files load 0")));
}

TEST_F(FileStateChangesTest, RowsOutliveTheListAndItsFile) {
    parse(R"({"/a":{"State":1,"ID":"first"}})");
    const RowBatchPtr first = table.rows;
    parse(R"({"/b":{"State":1,"ID":"second"}})");
    EXPECT_EQ(first->text(0, RowKey::Id), QStringLiteral("first"));
}

TEST_F(FileStateChangesTest, AnAbsentListEmptiesTheTableAndDropsTheCounters) {
    parse(R"({"/a":{"State":1},"/b":{"State":10},"/c":{"State":5}})");
    displays.shown.clear();
    calls.clear();
    changes.parseFileStateChanges(std::nullopt);
    EXPECT_EQ(calls, QStringList(QStringLiteral("files load nothing")));
    EXPECT_EQ(counters(), words("0 0 0 0 0 0 0 0 0"));
    changes.parseFileStateChanges(std::nullopt);
    EXPECT_EQ(calls.size(), 2);
    EXPECT_EQ(displays.shown, QStringList());
}

TEST_F(FileStateChangesTest, TheUnseenCountFallsBelowZeroWhenSeenThreatsDisappear) {
    parse(R"({"/a":{"State":1},"/b":{"State":1}})");
    EXPECT_EQ(state.newThreatCount, 2);
    state.newThreatCount = 0; // the user looks
    parse(R"({"/a":{"State":5}})");
    EXPECT_EQ(state.newThreatCount, -2);
}

TEST_F(FileStateChangesTest, TwoUnsafeDetectionsAtFirstAreToldInThePlural) {
    parse(R"({"/a":{"State":1},"/b":{"State":1}})");
    EXPECT_EQ(displays.shown,
              QStringList(QStringLiteral("notify 2 unsafe|NotificationSubtitleUnsafesDetected|4")));
}

TEST_F(FileStateChangesTest, ADetectionAndAnAbnormalQuarantineCountTogether) {
    parse(R"({"/a":{"State":1},"/b":{"State":10}})");
    EXPECT_EQ(displays.shown,
              QStringList(QStringLiteral("notify 2 unsafe|NotificationSubtitleUnsafesDetected|4")));
}

TEST_F(FileStateChangesTest, OneDetectionAmongMorePreviousThreatsIsNotTold) {
    parse(R"({"/a":{"State":1},"/b":{"State":9},"/c":{"State":9},"/d":{"State":9}})");
    displays.shown.clear();
    parse(
        R"({"/a":{"State":1},"/b":{"State":9},"/c":{"State":9},"/d":{"State":9},"/e":{"State":1}})");
    EXPECT_EQ(displays.shown, QStringList());
    EXPECT_EQ(state.threatDetectCount, 5);
}

struct RuleCase {
    const char* before;
    const char* now;
    const char* shown;
};

class NotificationRule : public FileStateChangesTest,
                         public testing::WithParamInterface<RuleCase> {};

TEST_P(NotificationRule, TellsTheMostSeriousGrowth) {
    parse(GetParam().before);
    displays.shown.clear();
    parse(GetParam().now);
    EXPECT_EQ(displays.shown.join(u'\n').toStdString(), GetParam().shown);
}

INSTANTIATE_TEST_SUITE_P(
    AllRules, NotificationRule,
    testing::Values(
        RuleCase{"{}", R"({"/D/Evil.exe":{"State":1}})",
                 "notify one unsafe: evil.exe|NotificationSubtitleUnsafeDetected|4"},
        RuleCase{"{}", R"({"/D/Odd.exe":{"State":2}})",
                 "notify one abnormal: odd.exe|NotificationSubtitleAbnormalDetected|4"},
        RuleCase{"{}", R"({"/a":{"State":2},"/b":{"State":2}})",
                 "notify 2 abnormal|NotificationSubtitleAbnormalsDetected|4"},
        RuleCase{"{}", R"({"/D/Evil.exe":{"State":9}})",
                 "notify one unsafe away: evil.exe|NotificationSubtitleUnsafeQuarantined|4"},
        RuleCase{"{}", R"({"/a":{"State":9},"/b":{"State":9}})",
                 "notify 2 unsafe away|NotificationSubtitleUnsafesQuarantined|4"},
        RuleCase{"{}", R"({"/D/Odd.exe":{"State":10}})",
                 "notify one abnormal away: odd.exe|NotificationSubtitleAbnormalQuarantined|4"},
        RuleCase{"{}", R"({"/a":{"State":10},"/b":{"State":10}})",
                 "notify 2 abnormal away|NotificationSubtitleAbnormalsQuarantined|4"},
        // The name is that of the last such file, of whatever state.
        RuleCase{"{}", R"({"/first":{"State":1},"/last":{"State":5}})",
                 "notify one unsafe: last|NotificationSubtitleUnsafeDetected|4"},
        // A detection that moves into quarantine: the drop of the detections does not count.
        RuleCase{R"({"/a":{"State":1}})", R"({"/a":{"State":9}})",
                 "notify one unsafe away: a|NotificationSubtitleUnsafeQuarantined|4"},
        // The previous total counts against it: 0 speaks in the plural.
        RuleCase{R"({"/a":{"State":10}})", R"({"/a":{"State":10},"/b":{"State":2}})",
                 "notify 0 abnormal|NotificationSubtitleAbnormalsDetected|4"},
        // And so does a number below 0.
        RuleCase{R"({"/a":{"State":10},"/b":{"State":10},"/c":{"State":9}})",
                 R"({"/d":{"State":2}})",
                 "notify -3 abnormal|NotificationSubtitleAbnormalsDetected|4"},
        RuleCase{R"({"/a":{"State":1}})", R"({"/a":{"State":1}})", ""},
        RuleCase{R"({"/a":{"State":1}})", R"({"/a":{"State":5}})", ""},
        RuleCase{"{}", R"({"/a":{"State":6}})", ""}));

TEST_F(FileStateChangesTest, ToolTipsHoldNoMorePathsThanAreShown) {
    QByteArray list = "{";
    for (int i = 0; i < 10'000; ++i) {
        list += (i == 0 ? "\"/file" : ",\"/file") + QByteArray::number(i) + "\":{\"State\":1}";
    }
    parse((list + "}").constData());
    ASSERT_EQ(table.rows->size(), 1U);
    const QString toolTip = table.rows->text(0, RowKey::FileToolTip).value();
    EXPECT_GT(toolTip.size(), longestShownText) << "or it would not be seen that there are more";
    EXPECT_LT(toolTip.size(), longestShownText + 20);
    EXPECT_TRUE(toolTip.startsWith(QStringLiteral("/file0\n\n/file1\n\n")));
    EXPECT_EQ(table.rows->text(0, RowKey::Found), QStringLiteral("10000"));
}

TEST_F(FileStateChangesTest, EveryPathCanBeCopiedAndEachIsOneLine) {
    QByteArray list = "{\"/a\\nforged\":{\"State\":1}";
    for (int i = 0; i < 1'000; ++i) {
        list += ",\"/file" + QByteArray::number(i) + "\":{\"State\":1}";
    }
    parse((list + "}").constData());
    const QString paths = table.rows->text(0, RowKey::EveryPath).value();
    EXPECT_EQ(paths.count(QStringLiteral("\n\n")), 1'000);
    EXPECT_EQ(paths.count(u'\n'), 2'000);
    EXPECT_TRUE(paths.startsWith(QStringLiteral("/a[U+000A]forged\n\n/file0\n\n")));
    EXPECT_TRUE(paths.endsWith(QStringLiteral("/file999")));
}

TEST_F(FileStateChangesTest, AFileNameIsNeverTakenForAPlaceholder) {
    parse(R"({"/%@ %s":{"State":1}})");
    EXPECT_EQ(displays.shown,
              QStringList(
                  QStringLiteral("notify one unsafe: %@ %s|NotificationSubtitleUnsafeDetected|4")));
}

} // namespace
} // namespace korvale
