#include "agent/app/ThreatLists.h"

#include "agent/publish/HostCacheLists.h"
#include "agent/publish/HostCacheWriter.h"
#include "fakes/TestFolder.h"

namespace korvale::agent {
namespace {

Finding finding(const char* path, const char* id, FindingState state = FindingState::Detected,
                ThreatKind kind = ThreatKind::Unsafe) {
    Finding made;
    made.id = id;
    made.path = path;
    made.state = state;
    made.kind = kind;
    made.lastSeen = 1'700'000'000;
    return made;
}

class ThreatListsTest : public testing::Test {
protected:
    QJsonObject published(const char* file) {
        HostCacheWriter writer(m_folder.path());
        EXPECT_TRUE(m_lists.publish(writer));
        return m_folder.readJson(QLatin1String(file));
    }
    int stateOf(const char* path) {
        return published("file_states.log")
            .value(QLatin1String(path))
            .toObject()
            .value(QStringLiteral("State"))
            .toInt(-1);
    }

    TestFolder m_folder;
    HostCacheLists m_lists;
    ThreatLists m_threats{m_lists};
};

TEST_F(ThreatListsTest, AFindingIsARecordAndAnEvent) {
    m_threats.show(finding("/a/x.exe", "id"));
    const QJsonObject files = published("file_states.log");
    EXPECT_EQ(QJsonDocument(files).toJson(QJsonDocument::Compact),
              R"({"/a/x.exe":{"ID":"id","Score":100,"State":1}})");
    const QJsonObject event = m_folder.readJson(QStringLiteral("file_process_events.log"))
                                  .value(QStringLiteral("/a/x.exe"))
                                  .toObject();
    EXPECT_EQ(event.value(QStringLiteral("Event")), 1);
    EXPECT_EQ(event.value(QStringLiteral("Category")), QStringLiteral("Threat"));
    EXPECT_EQ(m_threats.detected(), 1);
}

TEST_F(ThreatListsTest, StatesAreBitsAndADeletedFindingGoes) {
    m_threats.show(finding("/a", "id", FindingState::Quarantined));
    EXPECT_EQ(stateOf("/a"), 1 + 8);
    m_threats.show(finding("/a", "id", FindingState::Waived, ThreatKind::Abnormal));
    EXPECT_EQ(stateOf("/a"), 2 + 4);
    m_threats.show(finding("/a", "id", FindingState::Deleted));
    EXPECT_EQ(stateOf("/a"), -1);
    EXPECT_EQ(m_threats.detected() + m_threats.quarantined() + m_threats.waived(), 0);
}

TEST_F(ThreatListsTest, TheEndOfAnOldContentIsNotTheEndOfTheNewOne) {
    m_threats.show(finding("/a", "old", FindingState::Quarantined));
    m_threats.show(finding("/a", "new"));
    m_threats.show(finding("/a", "old", FindingState::Deleted));
    EXPECT_EQ(stateOf("/a"), 1);
}

TEST_F(ThreatListsTest, WhatWasKnownIsThereAgainAfterAStart) {
    m_threats.fill({finding("/a", "1"), finding("/b", "2", FindingState::Quarantined),
                    finding("/c", "3", FindingState::Deleted)});
    const QJsonObject files = published("file_states.log");
    EXPECT_EQ(files.keys(), QStringList({QStringLiteral("/a"), QStringLiteral("/b")}));
    EXPECT_EQ(m_folder.readJson(QStringLiteral("file_process_events.log")).size(), 3);
}

TEST_F(ThreatListsTest, NamesOfEveryByteStayApart) {
    EXPECT_EQ(pathText("/ä b"), QStringLiteral("/ä b"));
    EXPECT_EQ(pathText("/a\xff"), QStringLiteral("/a\\xff"));
    m_threats.show(finding("/a\xfe", "1"));
    m_threats.show(finding("/a\xff", "2"));
    m_threats.show(finding("/\xed\xa0\x80", "3")); // a surrogate
    EXPECT_EQ(published("file_states.log").size(), 3);
}

} // namespace
} // namespace korvale::agent
