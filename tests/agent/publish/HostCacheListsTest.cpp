#include "agent/publish/HostCacheLists.h"

#include "agent/publish/HostCacheNames.h"
#include "agent/publish/HostCacheWriter.h"
#include "fakes/TestFolder.h"

namespace korvale::agent {
namespace {

class HostCacheListsTest : public testing::Test {
protected:
    void publish() {
        HostCacheWriter writer(m_folder.path());
        ASSERT_TRUE(m_model.publish(writer)) << writer.error().toStdString();
    }
    [[nodiscard]] int mask() const {
        return m_folder.readJson(QStringLiteral("header.log"))
            .value(QStringLiteral("MessageMask"))
            .toInt(-1);
    }

    TestFolder m_folder;
    HostCacheLists m_model;
};

TEST_F(HostCacheListsTest, TheMaskNamesExactlyWhatChanged) {
    m_model.setFile(QStringLiteral("/a"), {1, QStringLiteral("id"), 5});
    m_model.addAnalysed(3);
    publish();
    EXPECT_EQ(mask(), 1 + 4);
    EXPECT_EQ(m_folder.names(),
              QStringList({QStringLiteral("analysis_count.log"), QStringLiteral("file_states.log"),
                           QStringLiteral("header.log")}));
    m_model.addExploit({7, QStringLiteral("/p"), 0, QStringLiteral("1"), QStringLiteral("1")});
    publish();
    EXPECT_EQ(mask(), 16);
    m_model.addDeviceEvent({QStringLiteral("USB"), QStringLiteral("Block"), {}, {}, {}});
    m_model.setScanning(true);
    publish();
    EXPECT_EQ(mask(), 2048 + 2);
    publish();
    EXPECT_EQ(mask(), 0);
}

TEST_F(HostCacheListsTest, AMaskThatIsGivenReplacesTheTrueOne) {
    HostCacheWriter writer(m_folder.path());
    ASSERT_TRUE(m_model.publish(writer, 0xffffffffU));
    EXPECT_EQ(m_folder.read(QStringLiteral("header.log")), R"({"MessageMask":4294967295})");
}

TEST_F(HostCacheListsTest, FileRecordsHaveStateIdentifierAndScore) {
    m_model.setFile(QStringLiteral("/z"), {9, QStringLiteral("two"), QStringLiteral("high")});
    m_model.setFile(QStringLiteral("/a \"quoted\""), {1, QStringLiteral("one"), 5});
    publish();
    EXPECT_EQ(m_folder.read(QStringLiteral("file_states.log")),
              R"({"/z":{"ID":"two","Score":"high","State":9},)"
              R"("/a \"quoted\"":{"ID":"one","Score":5,"State":1}})");
    m_model.setFile(QStringLiteral("/z"), {});
    publish();
    EXPECT_EQ(m_folder.readJson(QStringLiteral("file_states.log")).keys(),
              QStringList{QStringLiteral("/a \"quoted\"")});
}

TEST_F(HostCacheListsTest, AnExploitLeavesAProcessRecordAndTheFirstEvent) {
    m_model.setEventTime(QStringLiteral("now"));
    m_model.addThreatEvent(QStringLiteral("/t"), 1, threat_event::kDetected);
    m_model.addExploit(
        {42, QStringLiteral("/bin/x"), 3, QStringLiteral("2"), QStringLiteral("12")});
    publish();
    EXPECT_EQ(m_folder.read(QStringLiteral("process_states.log")),
              R"({"42":{"Count":"2","PID":42,"Path":"/bin/x","State":3}})");
    EXPECT_EQ(m_folder.read(QStringLiteral("process_state.log")),
              m_folder.read(QStringLiteral("process_states.log")));
    EXPECT_EQ(m_folder.read(QStringLiteral("file_process_events.log")),
              R"({"exploit-1":{"Category":"Exploit","Event":3,"ItemType":"12","PID":42,)"
              R"("Path":"/bin/x","When":"now"},)"
              R"("/t":{"Category":"Threat","Event":1,"Path":"/t","State":1,"When":"now"}})");
}

TEST_F(HostCacheListsTest, ADeviceEventLacksWhatIsNotKnown) {
    m_model.setEventTime(QStringLiteral("now"));
    m_model.addDeviceEvent({QStringLiteral("USB Drive"),
                            QStringLiteral("FullAccess"),
                            QStringLiteral("0781"),
                            {},
                            {}});
    publish();
    EXPECT_EQ(m_folder.read(QStringLiteral("external_device_control_events.log")),
              R"({"device-1":{"Action":"FullAccess","Device Type":"USB Drive",)"
              R"("Vendor ID":"0781","When":"now"}})");
}

TEST_F(HostCacheListsTest, TheScannerStateIsOneWhenIdle) {
    m_model.setScanning(true);
    publish();
    EXPECT_EQ(m_folder.read(QStringLiteral("scanner_state.log")), R"({"ScannerState":2})");
    m_model.setScanning(false);
    publish();
    EXPECT_EQ(m_folder.read(QStringLiteral("scanner_state.log")), R"({"ScannerState":1})");
}

TEST_F(HostCacheListsTest, TheOldestEventsMakeRoomForNewOnes) {
    m_model.setEventLimit(2);
    for (const char* path : {"/a", "/b", "/a", "/c"}) {
        m_model.addThreatEvent(QLatin1String(path), 1, threat_event::kDetected);
    }
    publish();
    EXPECT_EQ(m_folder.readJson(QStringLiteral("file_process_events.log")).keys(),
              QStringList({QStringLiteral("/a"), QStringLiteral("/c")}));
}

TEST_F(HostCacheListsTest, WhatCouldNotBeWrittenStaysChanged) {
    m_folder.write(QStringLiteral("file"), "x");
    HostCacheWriter writer(m_folder.path(QStringLiteral("file")));
    m_model.setAnalysed(1);
    EXPECT_FALSE(m_model.publish(writer));
    EXPECT_EQ(m_model.changed(), bit::kAnalysisCount);
}

TEST(HostCacheNames, EachFileHasItsBit) {
    EXPECT_EQ(maskBitOfFile(QStringLiteral("exe_blocked.log")), 32U);
    EXPECT_EQ(maskBitOfFile(QStringLiteral("quillmar_status.log")), 64U);
    EXPECT_EQ(maskBitOfFile(QStringLiteral("process_terminated.log")), 128U);
    EXPECT_EQ(maskBitOfFile(QStringLiteral("process_action_blocked.log")), 256U);
    EXPECT_EQ(maskBitOfFile(QStringLiteral("halyx_host_status.log")), 512U);
    EXPECT_EQ(maskBitOfFile(QStringLiteral("consumer_notification.log")), 1024U);
    EXPECT_EQ(maskBitOfFile(QStringLiteral("process_blocked.log")), 0U);
    EXPECT_EQ(maskBitOfFile(QStringLiteral("header.log")), 0U);
}

TEST(RecordList, KeepsTheOrderOfAdding) {
    RecordList list;
    list.put(QStringLiteral("b"), {});
    list.put(QStringLiteral("a"), {});
    list.put(QStringLiteral("b"), {{QStringLiteral("n"), 2}});
    EXPECT_EQ(list.toJson(RecordList::Order::OldestFirst), R"({"b":{"n":2},"a":{}})");
    list.putAsNewest(QStringLiteral("b"), {});
    EXPECT_EQ(list.toJson(RecordList::Order::OldestFirst), R"({"a":{},"b":{}})");
    EXPECT_EQ(list.toJson(RecordList::Order::NewestFirst), R"({"b":{},"a":{}})");
    EXPECT_TRUE(list.remove(QStringLiteral("a")));
    EXPECT_FALSE(list.remove(QStringLiteral("a")));
    EXPECT_EQ(list.size(), 1);
}

} // namespace
} // namespace korvale::agent
