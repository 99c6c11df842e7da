#include "agent/publish/Publishing.h"

#include "agent/fakes/Needs.h"
#include "fakes/TestFolder.h"
#include "fakes/WaitUntil.h"

#include <cstdlib>
#include <sys/stat.h>

namespace korvale::agent {
namespace {

const QString kBatch = QStringLiteral("com.korvale.timer.aggregated_messages");

class PublishingTest : public testing::Test {
protected:
    PublishingTest() {
        QObject::connect(&m_publishing, &Publishing::notification, &m_publishing,
                         [this](const QString& name) {
                             m_posted.append(name);
                             m_masks.append(mask());
                             m_times.append(m_clock.elapsed());
                         });
        QObject::connect(&m_publishing, &Publishing::problem, &m_publishing,
                         [this](const QString& sentence) { m_problems.append(sentence); });
        m_clock.start();
    }

    [[nodiscard]] int mask() const {
        return m_folder.readJson(QStringLiteral("cache/header.log"))
            .value(QStringLiteral("MessageMask"))
            .toInt(-1);
    }
    [[nodiscard]] bool waitForPosts(int count) {
        return waitUntil([&] { return m_posted.size() >= count; });
    }
    void addThreat(const char* path) {
        m_publishing.lists().setFile(QLatin1String(path), {1, QStringLiteral("id"), 100});
        m_publishing.changed();
    }

    TestFolder m_folder;
    Publishing m_publishing{m_folder.path(QStringLiteral("cache"))};
    QElapsedTimer m_clock;
    QStringList m_posted;
    QList<int> m_masks;
    QList<qint64> m_times;
    QStringList m_problems;
};

TEST_F(PublishingTest, TheFilesAreThereWhenTheNotificationIsAskedFor) {
    addThreat("/a");
    ASSERT_TRUE(waitForPosts(1));
    EXPECT_EQ(m_posted, QStringList{kBatch});
    EXPECT_EQ(m_masks, QList<int>{1});
    EXPECT_EQ(m_folder.readJson(QStringLiteral("cache/file_states.log")).keys(),
              QStringList{QStringLiteral("/a")});
    EXPECT_TRUE(m_publishing.isIdle());
}

TEST_F(PublishingTest, ManyChangesAreAtMostTwoBatchesASecond) {
    for (int i = 0; i < 200; ++i) {
        addThreat(QByteArray("/" + QByteArray::number(i)).constData());
    }
    ASSERT_TRUE(waitForPosts(1));
    addThreat("/late");
    addThreat("/later");
    ASSERT_TRUE(waitForPosts(2));
    EXPECT_EQ(m_posted.size(), 2);
    EXPECT_GE(m_times.at(1), Publishing::kBatchPeriod.count());
    EXPECT_EQ(m_folder.readJson(QStringLiteral("cache/file_states.log")).size(), 202);
}

TEST_F(PublishingTest, ABusyReaderOfTheLatestHeaderStillLearnsOfTheFindingBefore) {
    addThreat("/a");
    ASSERT_TRUE(waitForPosts(1));
    m_publishing.lists().setAnalysed(7);
    m_publishing.changed();
    ASSERT_TRUE(waitForPosts(2));
    EXPECT_EQ(m_masks, QList<int>({1, 1 + 4}));
}

TEST_F(PublishingTest, ADeviceEventIsAnnouncedOnce) {
    m_publishing.lists().addDeviceEvent(
        {QStringLiteral("USB"), QStringLiteral("Block"), {}, {}, {}});
    m_publishing.changed();
    ASSERT_TRUE(waitForPosts(1));
    m_publishing.lists().setAnalysed(7);
    m_publishing.changed();
    ASSERT_TRUE(waitForPosts(2));
    EXPECT_EQ(m_masks, QList<int>({2048, 4}));
}

TEST_F(PublishingTest, AFileOfItsOwnIsWrittenBeforeItsNotification) {
    m_publishing.tell(QStringLiteral("analyzer_status.log"),
                      {{QStringLiteral("CurrentFile"), QStringLiteral("/f")}},
                      QStringLiteral("com.korvale.analyzerstatus_messages"));
    ASSERT_TRUE(waitForPosts(1));
    EXPECT_EQ(m_posted, QStringList{QStringLiteral("com.korvale.analyzerstatus_messages")});
    EXPECT_EQ(m_folder.read(QStringLiteral("cache/analyzer_status.log")),
              R"({"CurrentFile":"/f"})");
}

TEST_F(PublishingTest, AFileWhoseContentDidNotChangeStaysAsItIs) {
    addThreat("/a");
    ASSERT_TRUE(waitForPosts(1));
    const QByteArray path =
        QFile::encodeName(m_folder.path(QStringLiteral("cache/file_states.log")));
    struct stat before {};
    ASSERT_EQ(::stat(path.constData(), &before), 0);
    addThreat("/a");
    ASSERT_TRUE(waitForPosts(2));
    struct stat after {};
    ASSERT_EQ(::stat(path.constData(), &after), 0);
    EXPECT_EQ(before.st_ino, after.st_ino);
}

TEST_F(PublishingTest, WhatCouldNotBeWrittenIsWrittenOnceThereIsAWay) {
    m_folder.write(QStringLiteral("cache"), "a file in the folder's place");
    addThreat("/a");
    ASSERT_TRUE(waitUntil([&] { return !m_problems.isEmpty(); }));
    EXPECT_TRUE(m_posted.isEmpty());
    QFile::remove(m_folder.path(QStringLiteral("cache")));
    ASSERT_TRUE(waitForPosts(1));
    EXPECT_EQ(m_masks, QList<int>{1});
    EXPECT_EQ(m_folder.readJson(QStringLiteral("cache/file_states.log")).size(), 1);
    EXPECT_EQ(m_problems.size(), 1);
}

TEST(PublishingOnAFullDisk, TheFindingIsWrittenWhenThereIsRoomAgain) {
    KORVALE_NEEDS(mounts());
    const TestFolder folder;
    const ScratchMount mount = ScratchMount::tmpfs(folder.path().toStdString(), "size=64k");
    ASSERT_TRUE(mount.mounted());
    folder.write(QStringLiteral("full"), QByteArray(60 * 1024, 'x'));
    Publishing publishing(folder.path(QStringLiteral("cache")));
    int posted = 0;
    int problems = 0;
    QObject::connect(&publishing, &Publishing::notification, &publishing, [&] { ++posted; });
    QObject::connect(&publishing, &Publishing::problem, &publishing, [&] { ++problems; });
    for (int i = 0; i < 200; ++i) {
        publishing.lists().setFile(QStringLiteral("/folder/%1").arg(i),
                                   {1, QStringLiteral("identifier"), 100});
    }
    publishing.changed();
    EXPECT_TRUE(waitUntil([&] { return problems == 1; }));
    EXPECT_EQ(posted, 0);
    QFile::remove(folder.path(QStringLiteral("full")));
    EXPECT_TRUE(waitUntil([&] { return posted == 1; }));
    EXPECT_EQ(folder.readJson(QStringLiteral("cache/file_states.log")).size(), 200);
}

} // namespace
} // namespace korvale::agent
