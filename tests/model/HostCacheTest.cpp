#include "model/HostCache.h"

#include "fakes/MemoryUserDefaults.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <sys/stat.h>

namespace korvale {
namespace {

using testing::ElementsAre;

class HostCacheTest : public testing::Test {
protected:
    void write(const char* name, const QByteArray& content) const {
        QFile file(m_folder.filePath(QString::fromLatin1(name)));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }
    void writeEveryFile() const {
        for (const char* name :
             {"header.log", "file_states.log", "scanner_state.log", "analysis_count.log",
              "process_state.log", "process_states.log", "exe_blocked.log", "quillmar_status.log",
              "process_terminated.log", "process_action_blocked.log", "process_blocked.log",
              "halyx_host_status.log", "consumer_notification.log", "analyzer_status.log",
              "external_device_control_events.log", "file_process_events.log"}) {
            write(name, QByteArray("{\"Name\":\"") + name + "\"}");
        }
    }
    std::vector<std::string> keys(std::uint32_t mask) {
        std::vector<std::string> names;
        for (const auto& [key, content] : cache.getLatest(mask)) {
            names.push_back(key.toStdString());
        }
        return names;
    }

    QTemporaryDir m_folder;
    fakes::MemoryUserDefaults defaults;
    HostCache cache{defaults, m_folder.path()};
};

TEST_F(HostCacheTest, ReadsObjectsAndLists) {
    write("a.log", R"({"MessageMask":17})");
    write("b.log", "[1]");
    EXPECT_EQ((*cache.readFile(QStringLiteral("a.log")))["MessageMask"].utf8(), "17");
    EXPECT_TRUE(cache.readFile(QStringLiteral("b.log"))->isList());
}

TEST_F(HostCacheTest, ReadsWhatIsOnDiskAtEachCall) {
    write("a.log", R"({"v":1})");
    EXPECT_EQ((*cache.readFile(QStringLiteral("a.log")))["v"].utf8(), "1");
    write("a.log", R"({"v":2})");
    EXPECT_EQ((*cache.readFile(QStringLiteral("a.log")))["v"].utf8(), "2");
}

TEST_F(HostCacheTest, MissingAndUnusableFilesAreAbsent) {
    write("fragment.log", "5");
    write("invalid.log", "{\"a\":1");
    write("empty.log", "");
    write("latin.log", "{\"a\":\"\xE9\"}");
    ASSERT_TRUE(QDir(m_folder.path()).mkdir(QStringLiteral("folder.log")));
    ASSERT_EQ(
        mkfifo(QFile::encodeName(m_folder.filePath(QStringLiteral("fifo.log"))).constData(), 0600),
        0);
    for (const char* name : {"missing.log", "fragment.log", "invalid.log", "empty.log", "latin.log",
                             "folder.log", "fifo.log"}) {
        EXPECT_FALSE(cache.readFile(QString::fromLatin1(name))) << name;
        const bool isMissing = std::string_view(name) == "missing.log";
        EXPECT_EQ(cache.readList(QString::fromLatin1(name), {}).state,
                  isMissing ? ListState::Absent : ListState::Unreadable)
            << name;
    }
    HostCache nowhere(defaults, QStringLiteral("/nonexistent/HostCache"));
    EXPECT_FALSE(nowhere.readFile(QStringLiteral("header.log")));
    EXPECT_TRUE(nowhere.getLatest(0xFFFF).empty());
}

TEST_F(HostCacheTest, AMaskOf8ReadsNothing) {
    writeEveryFile();
    EXPECT_TRUE(cache.getLatest(8).empty());
    EXPECT_TRUE(cache.getLatest(0).empty());
}

TEST_F(HostCacheTest, AFullMaskReadsTheElevenFilesAndIgnoresHigherBits) {
    writeEveryFile();
    const auto everything =
        ElementsAre("AnalysisCountMessage", "ConsumerNotificationMessage", "ExeBlockedMessage",
                    "ExternalDeviceNotificationMessage", "FileStateMessage",
                    "HalyxHostStatusMessage", "ProcessActionBlockedMessage", "ProcessStateMessage",
                    "ProcessTerminatedMessage", "QuillmarStatusMessage", "ScannerStateMessage");
    EXPECT_THAT(keys(0xFFFF), everything);
    EXPECT_THAT(keys(0xFFFFFFFF), everything);
    EXPECT_TRUE(cache.getLatest(0xFFFFF000).empty());
}

struct MaskCase {
    std::uint32_t bit;
    const char* key;
    const char* file;
};

TEST_F(HostCacheTest, EachBitNamesItsFile) {
    writeEveryFile();
    for (const MaskCase& mask : {
             MaskCase{1, "FileStateMessage", "file_states.log"},
             MaskCase{2, "ScannerStateMessage", "scanner_state.log"},
             MaskCase{4, "AnalysisCountMessage", "analysis_count.log"},
             MaskCase{16, "ProcessStateMessage", "process_state.log"},
             MaskCase{32, "ExeBlockedMessage", "exe_blocked.log"},
             MaskCase{64, "QuillmarStatusMessage", "quillmar_status.log"},
             MaskCase{128, "ProcessTerminatedMessage", "process_terminated.log"},
             MaskCase{256, "ProcessActionBlockedMessage", "process_action_blocked.log"},
             MaskCase{512, "HalyxHostStatusMessage", "halyx_host_status.log"},
             MaskCase{1024, "ConsumerNotificationMessage", "consumer_notification.log"},
             MaskCase{2048, "ExternalDeviceNotificationMessage",
                      "external_device_control_events.log"},
         }) {
        const auto latest = cache.getLatest(mask.bit);
        ASSERT_EQ(latest.size(), 1U) << mask.bit;
        EXPECT_EQ(latest.begin()->first.toStdString(), mask.key);
        EXPECT_EQ(latest.begin()->second["Name"].utf8(), mask.file);
    }
}

TEST_F(HostCacheTest, AnEmptyObjectIsReturnedAndGathered) {
    write("file_states.log", "{}");
    const auto content = cache.readFile(QStringLiteral("file_states.log"));
    ASSERT_TRUE(content);
    EXPECT_TRUE(content->isObject());
    EXPECT_EQ(content->size(), 0U);
    EXPECT_THAT(keys(1 | 2), ElementsAre("FileStateMessage"));
}

TEST_F(HostCacheTest, TheFolderStandsBehindTheTestRoot) {
    QTemporaryDir root;
    ASSERT_TRUE(QDir().mkpath(
        root.filePath(QStringLiteral(".") + QStringLiteral(KORVALE_SUPPORT_DIR "/HostCache"))));
    QFile file(root.filePath(QStringLiteral(".") +
                             QStringLiteral(KORVALE_SUPPORT_DIR "/HostCache/header.log")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("{}");
    file.close();
    qputenv("KORVALE_ROOT", root.path().toUtf8());
    HostCache rooted(defaults);
    qunsetenv("KORVALE_ROOT");
    EXPECT_TRUE(rooted.readFile(QStringLiteral("header.log")));
}

TEST_F(HostCacheTest, NotificationsAreOnOnlyWhenTheUserHasChosen) {
    EXPECT_FALSE(cache.hasCurrentUserChangedNotification());
    defaults.setInteger(QStringLiteral("UserNotificationOn"), 1);
    EXPECT_FALSE(cache.isCurrentUserNotificationOn());
    defaults.setInteger(QStringLiteral("ShowUserNotificationChanged"), 1);
    EXPECT_TRUE(cache.isCurrentUserNotificationOn());
    EXPECT_TRUE(cache.hasCurrentUserChangedNotification());
}

TEST_F(HostCacheTest, FalseIsRemovedAndNeverStored) {
    cache.setCurrentUserNotification(true, true);
    EXPECT_EQ(defaults.values.at(QStringLiteral("UserNotificationOn")), 1);
    EXPECT_EQ(defaults.values.at(QStringLiteral("ShowUserNotificationChanged")), 1);
    cache.setCurrentUserNotification(false, true);
    EXPECT_EQ(defaults.values.count(QStringLiteral("UserNotificationOn")), 0U);
    EXPECT_FALSE(cache.isCurrentUserNotificationOn());
    EXPECT_TRUE(cache.hasCurrentUserChangedNotification());
    cache.setCurrentUserNotification(false, false);
    EXPECT_TRUE(defaults.values.empty());
}

} // namespace
} // namespace korvale
