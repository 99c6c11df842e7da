#include "model/ExternalDevicesEvents.h"

#include "ParsedJson.h"
#include "fakes/FakeTexts.h"
#include "fakes/RecordingLogSink.h"
#include "fakes/RecordingTableFeed.h"

#include <gtest/gtest.h>

namespace korvale {
namespace {

const std::vector<RowKey> columns{RowKey::DeviceType, RowKey::When,         RowKey::VendorId,
                                  RowKey::ProductId,  RowKey::SerialNumber, RowKey::Action};

class ExternalDevicesEventsTest : public testing::Test {
protected:
    ExternalDevicesEventsTest() { state.justStart = false; }

    bool parse(const QByteArray& text) {
        return devices.parseExternalDevicesEvents(parsedJson(text));
    }
    [[nodiscard]] QString row(std::size_t index) const {
        return table.row(index, columns).join(QStringLiteral("|"));
    }

    RecordingLogSink log;
    QStringList calls;
    AppState state;
    fakes::RecordingTableFeed table{QStringLiteral("devices"), calls};
    ExternalDevicesEvents devices{state, table};
};

QByteArray manyDevices(int count) {
    QByteArray text = "{";
    for (int i = 0; i < count; ++i) {
        text += (i == 0 ? "\"" : ",\"") + QByteArray::number(i) +
                "\": {\"When\": " + QByteArray::number(i) + "}";
    }
    return text + "}";
}

TEST_F(ExternalDevicesEventsTest, ARecordIsARow) {
    EXPECT_TRUE(parse(R"({"k": {"Device Type": "USB", "When": "10:00", "Vendor ID": 1133,
        "Product ID": "C52B", "Serial Number": "123", "Action": "Block"}})"));
    EXPECT_EQ(row(0), QStringLiteral("USB|10:00|1133|C52B|123|Blocked"));
    EXPECT_EQ(state.externalDevicesCount, 1);
    EXPECT_EQ(calls, QStringList{QStringLiteral("devices add 1")});
}

TEST_F(ExternalDevicesEventsTest, ActionsAreInTheUsersLanguage) {
    const FakeTexts texts{{"Blocked", QStringLiteral("Blockiert")},
                          {"FullAccess", QStringLiteral("Vollzugriff")}};
    parse(R"({"a": {"Action": "Block"}, "b": {"Action": "FullAccess"}})");
    EXPECT_EQ(row(0), QStringLiteral("-|-|-|-|-|Blockiert"));
    EXPECT_EQ(row(1), QStringLiteral("-|-|-|-|-|Vollzugriff"));
}

TEST_F(ExternalDevicesEventsTest, AnUnknownActionIsNone) {
    parse(R"({"a": {"Action": "block"}, "b": {"Action": ""}, "c": {"Action": 1},
              "d": {"Action": null}, "e": {}, "f": {"Action": ["Block"]}})");
    ASSERT_EQ(table.rows->size(), 6U);
    for (std::size_t i = 0; i < 6; ++i) {
        EXPECT_EQ(table.rows->text(i, RowKey::Action), std::nullopt);
    }
}

TEST_F(ExternalDevicesEventsTest, ValuesOfAnyTypeAreShownAsTheyAre) {
    parse(R"({"a": {"Device Type": true, "When": 1.250, "Vendor ID": [1, "x"],
              "Product ID": -99999999999999999999, "Serial Number": null, "Serial number": 1}})");
    EXPECT_EQ(row(0), QStringLiteral("1|1.25|[1,\"x\"]|-99999999999999999999|-|-"));
}

TEST_F(ExternalDevicesEventsTest, TextsFromFilesStayAsTheyAre) {
    parse(R"({"a": {"Device Type": "<b>\n%@\u202E", "Action": "Block"}})");
    EXPECT_EQ(row(0), QStringLiteral("<b>\n%@\u202E|-|-|-|-|Blocked"));
}

TEST_F(ExternalDevicesEventsTest, EveryRecordOfAChangedFileIsARowAgain) {
    parse(R"({"a": {"When": 1}, "b": {"When": 2}})");
    parse(R"({"a": {"When": 1}, "b": {"When": 2}, "c": {"When": 3}})");
    EXPECT_EQ(calls,
              QStringList({QStringLiteral("devices add 2"), QStringLiteral("devices add 3")}));
    EXPECT_EQ(state.externalDevicesCount, 5);
}

TEST_F(ExternalDevicesEventsTest, RowsAreAddedAtStartUpToo) {
    state.justStart = true;
    EXPECT_TRUE(parse(manyDevices(2)));
    EXPECT_EQ(state.externalDevicesCount, 2);
}

TEST_F(ExternalDevicesEventsTest, AtMostAThousandRowsTheFirstOnes) {
    EXPECT_TRUE(parse(manyDevices(1500)));
    ASSERT_EQ(table.rows->size(), 1000U);
    EXPECT_EQ(table.rows->text(999, RowKey::When), QStringLiteral("999"));
    EXPECT_EQ(state.externalDevicesCount, 1000);
}

TEST_F(ExternalDevicesEventsTest, HundredThousandRecordsAreBorne) {
    EXPECT_TRUE(parse(manyDevices(100'000)));
    EXPECT_EQ(table.rows->size(), 1000U);
    EXPECT_EQ(log.lines().size(), 200'000U);
}

TEST_F(ExternalDevicesEventsTest, RecordsThatAreNoObjectsAreSkipped) {
    EXPECT_TRUE(parse(R"({"a": 1, "b": "x", "c": null, "d": [{}], "e": {"When": "e"}})"));
    ASSERT_EQ(table.rows->size(), 1U);
    EXPECT_EQ(row(0), QStringLiteral("-|e|-|-|-|-"));
    EXPECT_FALSE(parse(R"({"a": 1})"));
    EXPECT_EQ(state.externalDevicesCount, 1);
}

TEST_F(ExternalDevicesEventsTest, NothingEmptyOrAListOnTopIsNoDevice) {
    EXPECT_FALSE(devices.parseExternalDevicesEvents(std::nullopt));
    EXPECT_FALSE(parse("{}"));
    EXPECT_FALSE(parse("[]"));
    EXPECT_FALSE(parse(R"([{"When": 1}])"));
    EXPECT_TRUE(calls.isEmpty());
    EXPECT_TRUE(log.lines().empty());
}

TEST_F(ExternalDevicesEventsTest, TheTraceListsTheValuesThenTheRecords) {
    parse(R"({"a": {"When": "1"}, "b": null, "c": "x\ny"})");
    EXPECT_EQ(log.lines(), (std::vector<std::string>{
                               R"({"When":"1"})", "(null)", "x\\x0ay",
                               R"(dictkey=a dictvalue={"When":"1"})", "dictkey=b dictvalue=(null)",
                               " the theData is nil", "dictkey=c dictvalue=x\\x0ay"}));
}

} // namespace
} // namespace korvale
