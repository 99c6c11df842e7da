#include "AgentSimFixture.h"

#include <QSet>

namespace korvale::sim {
namespace {

const QString kBatch = QStringLiteral("com.korvale.timer.aggregated_messages");

TEST_F(AgentSimTest, AChangeIsWrittenAndPosted) {
    EXPECT_EQ(tell(QStringLiteral("threat \"/a b\" 1 digest 7")), QStringLiteral("ok threat"));
    EXPECT_TRUE(waitForSignal(kBatch));
    EXPECT_EQ(m_root.read(cachePath("file_states.log")),
              R"({"/a b":{"ID":"digest","Score":7,"State":1}})");
    // The event list, which the threat is on too, rides on the process bit.
    EXPECT_EQ(m_root.read(cachePath("header.log")), R"({"MessageMask":17})");
    EXPECT_EQ(tell(QStringLiteral("exploit 42 /bin/x blocked 3 12")), QStringLiteral("ok exploit"));
    EXPECT_EQ(m_root.read(cachePath("header.log")), R"({"MessageMask":16})");
    EXPECT_EQ(m_root.read(cachePath("process_states.log")),
              R"({"42":{"Count":"3","PID":42,"Path":"/bin/x","State":2}})");
}

TEST_F(AgentSimTest, ABatchCollectsChanges) {
    tell(QStringLiteral("batch on"));
    tell(QStringLiteral("threat /a 1 digest"));
    tell(QStringLiteral("device \"USB Drive\" Block"));
    EXPECT_FALSE(QFileInfo::exists(m_root.path(cachePath("header.log"))));
    EXPECT_FALSE(m_ear->heard.contains(kBatch));
    EXPECT_EQ(tell(QStringLiteral("publish")), QStringLiteral("ok publish"));
    EXPECT_EQ(m_root.read(cachePath("header.log")), R"({"MessageMask":2065})");
    EXPECT_TRUE(waitForSignal(kBatch));
    tell(QStringLiteral("publish 0xff"));
    EXPECT_EQ(m_root.read(cachePath("header.log")), R"({"MessageMask":255})");
}

TEST_F(AgentSimTest, AScanReportsAsItGoesAndQuarantinesOnRequest) {
    const QString bad = m_root.path(QStringLiteral("files/bad file"));
    const QString odd = m_root.path(QStringLiteral("files/odd"));
    EXPECT_EQ(tell(QStringLiteral("write-test-file ") + bad), QStringLiteral("ok write-test-file"));
    EXPECT_EQ(tell(QStringLiteral("write-abnormal-file ") + odd),
              QStringLiteral("ok write-abnormal-file"));
    m_root.write(QStringLiteral("files/clean"), "clean");
    EXPECT_EQ(tell(QStringLiteral("background-scan ") + m_root.path(QStringLiteral("files"))),
              QStringLiteral("ok background-scan"));
    EXPECT_EQ(tell(QStringLiteral("wait-scan")), QStringLiteral("ok wait-scan"));
    EXPECT_TRUE(waitForSignal(QStringLiteral("com.korvale.btdscancomplete")));
    EXPECT_TRUE(m_ear->heard.contains(QStringLiteral("com.korvale.analyzerstatus_messages")));
    EXPECT_TRUE(m_ear->heard.contains(kBatch));
    EXPECT_EQ(m_sim.printed(QStringLiteral("note scan finished files=3 unsafe=1 abnormal=1")), 1);
    const auto state = [this](const QString& path) {
        return hostCacheFile("file_states.log")[path][QStringLiteral("State")].toInt();
    };
    EXPECT_EQ(state(bad), 1);
    EXPECT_EQ(state(odd), 2);
    EXPECT_EQ(hostCacheFile("analysis_count.log")[QStringLiteral("AnalyzedCount")].toInt(), 3);
    EXPECT_EQ(hostCacheFile("scanner_state.log")[QStringLiteral("ScannerState")].toInt(), 1);
    EXPECT_EQ(tell(QStringLiteral("quarantine ") + bad), QStringLiteral("ok quarantine"));
    EXPECT_EQ(state(bad), 9);
    EXPECT_FALSE(QFileInfo::exists(bad));
    const QJsonObject event = hostCacheFile("file_process_events.log")[bad].toObject();
    EXPECT_EQ(event[QStringLiteral("Event")].toInt(), 2);
}

TEST_F(AgentSimTest, AScanThatWasRequestedCanBeStoppedByRequest) {
    m_root.write(QStringLiteral("files/a"), "a");
    m_root.write(QStringLiteral("files/b"), "b");
    tell(QStringLiteral("scan-pace 60000"));
    const QByteArray folder = m_root.path(QStringLiteral("files")).toUtf8();
    EXPECT_NE(call(R"({"CMD_":"SCAN","START":")" + folder + "\"}"), std::nullopt);
    EXPECT_TRUE(waitForSignal(QStringLiteral("com.korvale.analyzerstatus_messages")));
    EXPECT_EQ(hostCacheFile("scanner_state.log")[QStringLiteral("ScannerState")].toInt(), 2);
    EXPECT_NE(call(R"({"CMD_":"SCAN","STOP":" "})"), std::nullopt);
    EXPECT_TRUE(m_sim.waitFor(QStringLiteral("note scan stopped files=1")));
    EXPECT_EQ(hostCacheFile("scanner_state.log")[QStringLiteral("ScannerState")].toInt(), 1);
    EXPECT_FALSE(m_ear->heard.contains(QStringLiteral("com.korvale.btdscancomplete")));
}

TEST_F(AgentSimTest, AnUpdaterStatusLandsInItsFolder) {
    const QString answer = tell(QStringLiteral("update-status Loading 40 %"));
    ASSERT_TRUE(answer.startsWith(QLatin1String("ok update-status 2"))) << answer.toStdString();
    const QString name = answer.mid(QStringLiteral("ok update-status ").size());
    const QString folder = QFileInfo(QStringLiteral(KORVALE_HOST_CACHE)).path().mid(1) +
                           QStringLiteral("/Desktop/download/status/");
    EXPECT_EQ(m_root.read(folder + name).size(), 44) << "12 + 5 bytes are two blocks";
    EXPECT_EQ(tell(QStringLiteral("update-status-as x.kvupupdate 2024-02-29 Loading")),
              QStringLiteral("ok update-status-as x.kvupupdate"));
    EXPECT_TRUE(tell(QStringLiteral("update-status-as x 2023-02-29 Loading"))
                    .startsWith(QLatin1String("error ")));
}

TEST_F(AgentSimTest, FaultyFilesReplaceGoodOnes) {
    tell(QStringLiteral("threat /a 1 digest"));
    EXPECT_EQ(tell(QStringLiteral("malformed-file file_states.log list")),
              QStringLiteral("ok malformed-file"));
    EXPECT_TRUE(m_root.read(cachePath("file_states.log")).startsWith('['));
    EXPECT_TRUE(tell(QStringLiteral("malformed-file ../x list")).startsWith(u"error "));
    EXPECT_EQ(tell(QStringLiteral("raw-file header.log {\"MessageMask\": 1}")),
              QStringLiteral("ok raw-file"));
    EXPECT_EQ(m_root.read(cachePath("header.log")), R"({"MessageMask": 1})");
}

} // namespace
} // namespace korvale::sim
