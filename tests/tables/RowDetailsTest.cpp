// What is said of one row, and how it is found again.
#include "tables/RowDetails.h"

#include "fakes/FakeTexts.h"
#include "fakes/RecordingDisplays.h"
#include "fakes/RecordingRowBatch.h"
#include "model/ExternalDevicesEvents.h"
#include "model/FileProcessEvents.h"
#include "model/FileThreatGroups.h"
#include "model/JsonValue.h"
#include "model/ProcessStateChanges.h"
#include "model/RowMeaning.h"
#include "model/StateVocabulary.h"
#include "tables/EventsTable.h"
#include "tables/ExternalDevicesTable.h"
#include "tables/FileThreatsTable.h"
#include "tables/FollowedRow.h"
#include "tables/ProcessThreatsTable.h"
#include "tables/RowCopy.h"

#include <QElapsedTimer>

#include <gtest/gtest.h>

namespace korvale {
namespace {

using namespace Qt::StringLiterals;

RowBatchPtr threats(const QByteArray& list) {
    return groupFileThreats(*JsonValue::parse(list)).rows;
}

RowBatchPtr processes(const QByteArray& list) {
    return processPass(*JsonValue::parse(list), {}, [] { return QString(); }).rows;
}

struct RowDetailsTest : testing::Test {
    static QStringList lines(const RowBatchPtr& batch, const ThreatsTableController& table,
                             std::size_t index = 0) {
        QStringList lines;
        for (const auto& [label, text, path] :
             rowDetails(*batch, index, table.description()).lines) {
            lines << label + u"|"_s + text + (path.isEmpty() ? QString() : u" ->"_s + path);
        }
        return lines;
    }

    RememberedSelections selections;
    FileThreatsTable files{selections};
    ProcessThreatsTable programs{selections};
    EventsTable events{selections};
    ExternalDevicesTable devices{selections};
    FakeTexts texts{{"HPS_PaneMore", u"and %@ more"_s}};
};

TEST_F(RowDetailsTest, AThreatHasEveryFieldAndEachPathALine) {
    const auto rows = threats(R"({"/home/me/One.exe":{"State":9,"ID":"abc","Score":-0.5},
                                  "/home/me/Two.exe":{"State":9,"ID":"abc","Score":7}})");
    EXPECT_EQ(
        lines(rows, files),
        (QStringList{u"HPS_ColFile|one.exe"_s, u"HPS_ColCategory|Quarantined"_s,
                     u"HPS_PaneMeans|HPS_MeansQuarantined"_s, u"HPS_PaneDo|HPS_DoQuarantined"_s,
                     u"HPS_PanePath|/home/me/One.exe ->/home/me/One.exe"_s,
                     u"|/home/me/Two.exe ->/home/me/Two.exe"_s, u"HPS_ColFound|2"_s,
                     u"HPS_ColID|abc"_s, u"HPS_ColScore|-0.5"_s}));
}

TEST_F(RowDetailsTest, AProcessHasItsProgramsWholePath) {
    const auto rows =
        processes(R"({"r":{"State":2,"Path":"/usr/bin/thief","PID":100,"Count":"3"}})");
    EXPECT_EQ(lines(rows, programs),
              (QStringList{u"HPS_ColProcess|thief"_s, u"HPS_ColCategory|Blocked"_s,
                           u"HPS_PaneMeans|HPS_MeansBlocked"_s, u"HPS_PaneDo|HPS_DoStopped"_s,
                           u"HPS_PanePath|/usr/bin/thief ->/usr/bin/thief"_s, u"HPS_ColFound|3"_s,
                           u"HPS_ColPID|100"_s}));
}

TEST_F(RowDetailsTest, AnEventNamesItsFileOnce) {
    RememberedEvents remembered;
    const auto rows =
        newEventRows(*JsonValue::parse(
                         R"({"/tmp/x.exe":{"When":"now","Category":"Threat","State":1,"Event":1},
                "e":{"When":"then","Category":"Exploit","Event":3,"ItemType":"1","PID":5,
                     "Path":"/usr/bin/p"},
                "no path":{"Category":"Threat","Event":8}})"),
                     remembered);
    EXPECT_EQ(lines(rows, events),
              (QStringList{u"HPS_ColWhen|now"_s, u"HPS_ColCategory|Threat"_s,
                           u"HPS_ColEvent|EventStrThreat (EventThreatStringFromValueDetected)"_s,
                           u"HPS_PaneMeans|HPS_MeansDetected"_s, u"HPS_PaneDo|HPS_DoEvent"_s,
                           u"HPS_ColDetails|/tmp/x.exe ->/tmp/x.exe"_s}));
    const QStringList exploit = lines(rows, events, 1);
    EXPECT_EQ(exploit.at(3), u"HPS_PaneMeans|HPS_MeansTerminated"_s);
    EXPECT_EQ(exploit.last(), u"HPS_PanePath|/usr/bin/p ->/usr/bin/p"_s);
    const QStringList pathless = lines(rows, events, 2);
    EXPECT_EQ(pathless.first(), u"HPS_ColWhen|–"_s); // the record has none
    EXPECT_EQ(pathless.last(), u"HPS_ColDetails|no path"_s);
    EXPECT_EQ(pathless.at(3), u"HPS_PaneMeans|HPS_MeansRemoved"_s);
}

TEST_F(RowDetailsTest, ADeviceSaysWhetherItMayBeUsed) {
    const auto rows = deviceRows(*JsonValue::parse(
        R"({"a":{"Device Type":"USB","When":"now","Vendor ID":1,"Product ID":2,
                 "Serial Number":"S","Action":"Block"},
            "b":{"Action":"FullAccess"},"c":{"Action":"Else"}})"));
    EXPECT_EQ(lines(rows, devices),
              (QStringList{
                  u"HPS_ColDeviceType|USB"_s, u"HPS_ColVendorID|1"_s, u"HPS_ColProductID|2"_s,
                  u"HPS_ColSerialNumber|S"_s, u"HPS_ColWhen|now"_s, u"HPS_ColAction|Blocked"_s,
                  u"HPS_PaneMeans|HPS_MeansDeviceBlocked"_s, u"HPS_PaneDo|HPS_DoDeviceBlocked"_s}));
    EXPECT_TRUE(lines(rows, devices, 1).contains(u"HPS_PaneMeans|HPS_MeansDeviceAllowed"_s));
    EXPECT_TRUE(lines(rows, devices, 2).contains(u"HPS_PaneMeans|HPS_MeansUnknown"_s));
}

TEST_F(RowDetailsTest, EveryStateHasAMeaning) {
    QStringList names;
    for (const std::uint32_t state : {1U, 2U, 4U, 8U}) {
        names << QString::fromLatin1(stateKeyFromValue(state));
    }
    for (const std::uint32_t state : {0U, 1U, 2U, 3U}) {
        names << QString::fromLatin1(procStateKeyFromValue(state));
    }
    for (const std::uint32_t event : {1U, 2U, 4U, 8U, 16U, 0U}) {
        names << QString::fromLatin1(eventKeyFromValue(event));
    }
    for (const QString& name : names) {
        EXPECT_EQ(rowMeaning(name).name, name);
    }
    EXPECT_EQ(rowMeaning(u"none").name, u"Unknown");
    EXPECT_EQ(rowMeaning(QString::fromLatin1(stateKeyFromValue(32))).name, u"Unknown");
}

TEST_F(RowDetailsTest, WhatDeceivesOrBreaksALineIsVisibleAndThePathStaysAsItIs) {
    const auto rows = threats(QByteArray("{\"/tmp/a\\nb\\tc\xE2\x80\xAE"
                                         "exe.<b>&amp;\":{\"State\":1,\"ID\":\"x\"}}"));
    const RowDetails details = rowDetails(*rows, 0, files.description());
    EXPECT_EQ(details.lines[4].text, u"/tmp/a[U+000A]b[U+0009]c[U+202E]exe.<b>&amp;"_s);
    EXPECT_EQ(details.firstPath(), u"/tmp/a\nb\tc\u202Eexe.<b>&amp;"_s);
}

TEST_F(RowDetailsTest, EveryPathThatCanBeOpenedIsWhole) {
    const QByteArray path = '/' + QByteArray(4094, 'x'); // as long as the system's limit
    const auto rows = threats("{\"" + path + "\":{\"State\":1}}");
    const RowDetails details = rowDetails(*rows, 0, files.description());
    EXPECT_EQ(details.lines[4].text, QString::fromLatin1(path));
}

TEST_F(RowDetailsTest, AMegabyteIsShortenedAndThatIsSaid) {
    const QByteArray path = '/' + QByteArray(1024 * 1024, 'x');
    const auto rows = threats("{\"" + path + "\":{\"State\":1}}");
    const RowDetails details = rowDetails(*rows, 0, files.description());
    EXPECT_EQ(details.lines[4].text.size(), 4097);
    EXPECT_EQ(details.lines[4].path.size(), path.size());
    EXPECT_EQ(details.lines.back().text, u"HPS_PaneCut"_s);
    EXPECT_EQ(copiedPaths(*rows, 0), QString::fromLatin1(path));
}

TEST_F(RowDetailsTest, OfVeryManyPathsTheFirstAreShownAndAllAreCopied) {
    QByteArray list = "{";
    for (int i = 0; i < 2500; ++i) {
        list += (i == 0 ? "\"/tmp/" : ",\"/tmp/") + QByteArray::number(i) + R"(":{"State":1})";
    }
    const auto rows = threats(list + "}");
    const RowDetails details = rowDetails(*rows, 0, files.description());
    const auto shown = std::ranges::count_if(
        details.lines, [](const RowDetails::Line& line) { return !line.path.isEmpty(); });
    EXPECT_EQ(shown, 1000);
    EXPECT_EQ(details.lines[4 + 1000].text, u"and 1,500 more"_s);
    EXPECT_EQ(copiedPaths(*rows, 0).count(u'\n'), 2499);
    EXPECT_TRUE(copiedPaths(*rows, 0).endsWith(u"/tmp/2499"_s));
}

TEST_F(RowDetailsTest, CopyOfOneRowIsWhatTheCopyKeyMakesOfIt) {
    const auto rows = threats(R"({"/a/b":{"State":1,"ID":"x"},"/c\nd":{"State":1,"ID":"x"}})");
    const RowIndexes first({{0, 0}});
    EXPECT_EQ(copiedRow(*rows, 0, files.description()),
              copiedText(RowList(rows), files.description(), first));
    EXPECT_EQ(copiedPaths(*rows, 0), u"/a/b\n/c[U+000A]d"_s);
}

// Found again

TEST(FollowedRowTest, AThreatIsFoundByItsNameWhereverItStands) {
    const auto before = threats(R"({"/a":{"State":1,"ID":"a"},"/b":{"State":1,"ID":"b"}})");
    FollowedRow row(RowList(before), 1);
    EXPECT_EQ(row.find(RowList(before)), 1U);
    const auto after = threats(R"({"/c":{"State":2,"ID":"b"},"/b":{"State":1,"ID":"b"},
                                   "/x":{"State":1,"ID":"a"}})");
    EXPECT_EQ(row.find(RowList(after)), 1U); // the same name in the same state
}

TEST(FollowedRowTest, AThreatThatWasQuarantinedIsTheSame) {
    FollowedRow row(RowList(threats(R"({"/a":{"State":1,"ID":"a"}})")), 0);
    const RowList after(threats(R"({"/q":{"State":9,"ID":"a"},"/a":{"State":8,"ID":"a"}})"));
    EXPECT_EQ(row.find(after), 1U);
    EXPECT_EQ(row.find(RowList(threats(R"({"/other":{"State":9,"ID":"a"}})"))), std::nullopt);
}

TEST(FollowedRowTest, WhatHasGoneMayComeBack) {
    FollowedRow row(RowList(threats(R"({"/a":{"State":1,"ID":"a"}})")), 0);
    EXPECT_EQ(row.find(RowList()), std::nullopt);
    EXPECT_EQ(row.find(RowList(threats(R"({"/b":{"State":1,"ID":"b"}})"))), std::nullopt);
    EXPECT_EQ(row.find(RowList(threats(R"({"/a":{"State":1,"ID":"a"}})"))), 0U);
}

TEST(FollowedRowTest, AThreatWhoseNameIsNoTextIsFound) {
    const char* list = R"({"/n":{"State":1,"ID":null},"/l":{"State":1,"ID":[1,"x"]},
                           "/i":{"State":1,"ID":7}})";
    const RowList rows(threats(list));
    for (std::size_t i = 0; i < rows.size(); ++i) {
        FollowedRow row(rows, i);
        EXPECT_EQ(row.find(RowList(threats(list))), i);
    }
}

TEST(FollowedRowTest, AProcessIsFoundByItsRecord) {
    FollowedRow row(RowList(processes(R"({"a":{"State":0,"Path":"/x"},"b":{"Path":"/y"}})")), 1);
    EXPECT_EQ(row.find(RowList(processes(R"({"b":{"State":3,"Path":"/z"}})"))), 0U);
    EXPECT_EQ(row.find(RowList(processes(R"({"c":{"Path":"/y"}})"))), std::nullopt);
}

TEST(FollowedRowTest, AnAddedRowIsFoundWhileItIsThere) {
    const auto first = numberedRows(600);
    RowList rows(first);
    FollowedRow row(rows, 599);
    rows.prepend(numberedRows(2));
    EXPECT_EQ(row.find(rows), 601U);
    rows.truncate(601);
    EXPECT_EQ(row.find(rows), std::nullopt);
}

TEST(FollowedRowTest, NothingIsKeptAliveByIt) {
    std::weak_ptr<const RowBatch> batch;
    FollowedRow row;
    {
        const RowBatchPtr rows = numberedRows(3);
        batch = rows;
        row = FollowedRow(RowList(rows), 2);
    }
    EXPECT_TRUE(batch.expired());
    EXPECT_EQ(row.find(RowList()), std::nullopt);
}

} // namespace
} // namespace korvale
