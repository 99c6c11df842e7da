#include "shell/NotificationHistory.h"

#include "fakes/FakeClock.h"
#include "fakes/RecordingLogSink.h"
#include "fakes/TestFolder.h"
#include "fakes/WaitUntil.h"
#include "platform/NotificationServer.h"

#include <QFileInfo>

#include <sys/stat.h>

namespace korvale {
namespace {

DesktopNotification saying(const QString& message) {
    return {.title = QStringLiteral("Title"),
            .subtitle = QStringLiteral("Subtitle"),
            .message = message,
            .picture = {},
            .link = QStringLiteral("https://korvale.example/why")};
}

class NotificationHistoryTest : public testing::Test {
protected:
    NotificationHistoryTest() {
        clock.wallClock = QDateTime::fromMSecsSinceEpoch(1'700'000'000'123);
    }

    [[nodiscard]] QString path() const { return folder.path(QStringLiteral("a/told.json")); }

    /// What a new run finds.
    [[nodiscard]] NotificationRecords kept() const {
        NotificationHistory history(path(), clock);
        history.load();
        EXPECT_TRUE(waitUntil([&] { return history.isLoaded(); }));
        return history.records();
    }
    [[nodiscard]] QStringList keptMessages() const {
        QStringList messages;
        for (const NotificationRecord& record : kept()) {
            messages.append(record.message);
        }
        return messages;
    }
    [[nodiscard]] NotificationRecords keptOf(const QByteArray& content) const {
        folder.write(QStringLiteral("a/told.json"), content);
        return kept();
    }

    TestFolder folder;
    fakes::FakeClock clock;
};

TEST_F(NotificationHistoryTest, GivesBackWhatWasToldInAnEarlierRun) {
    {
        NotificationHistory history(path(), clock);
        history.add(saying(QStringLiteral("shown")), false);
        history.add(saying(QStringLiteral("held back")), true);
    } // its end waits for the write
    const NotificationRecords records = kept();
    ASSERT_EQ(records.size(), 2);
    EXPECT_EQ(records[0],
              (NotificationRecord{1'700'000'000'123, QStringLiteral("Title"),
                                  QStringLiteral("Subtitle"), QStringLiteral("shown"),
                                  QStringLiteral("https://korvale.example/why"), false}));
    EXPECT_EQ(records[1].message, u"held back");
    EXPECT_TRUE(records[1].isHeldBack);
}

TEST_F(NotificationHistoryTest, NothingIsReadOrWrittenBeforeItIsNeeded) {
    folder.write(QStringLiteral("a/told.json"), R"([{"when":5,"title":"a","message":"b"}])");
    {
        const NotificationHistory history(path(), clock);
        QCoreApplication::processEvents();
        EXPECT_FALSE(history.isLoaded());
        EXPECT_TRUE(history.records().isEmpty());
    }
    EXPECT_EQ(folder.read(QStringLiteral("a/told.json")),
              R"([{"when":5,"title":"a","message":"b"}])");
}

TEST_F(NotificationHistoryTest, TheFirstOfARunComesBehindThoseOfTheRunBefore) {
    for (const char* message : {"first run", "second run", "third run"}) {
        NotificationHistory history(path(), clock);
        history.add(saying(QString::fromLatin1(message)), false);
    }
    EXPECT_EQ(keptMessages(),
              (QStringList{QStringLiteral("first run"), QStringLiteral("second run"),
                           QStringLiteral("third run")}));
}

TEST_F(NotificationHistoryTest, StaysInTheOrderToldWhateverIsDoneToTheClock) {
    for (const int years : {0, 1, -2}) {
        NotificationHistory history(path(), clock);
        clock.wallClock = clock.wallClock.addYears(years);
        history.add(saying(QString::number(years)), false);
    }
    clock.wallClock = QDateTime::fromMSecsSinceEpoch(0); // a machine without a battery
    NotificationHistory(path(), clock).add(saying(QStringLiteral("1970")), false);
    EXPECT_EQ(keptMessages(), (QStringList{QStringLiteral("0"), QStringLiteral("1"),
                                           QStringLiteral("-2"), QStringLiteral("1970")}));
}

TEST_F(NotificationHistoryTest, WhatWasReadStandsInFrontOfWhatCameMeanwhile) {
    NotificationHistory(path(), clock).add(saying(QStringLiteral("before")), false);
    NotificationHistory history(path(), clock);
    history.load();
    history.add(saying(QStringLiteral("meanwhile")), false);
    EXPECT_EQ(history.records().size(), 1) << "at once, however slow the disk is";
    ASSERT_TRUE(waitUntil([&] { return history.isLoaded(); }));
    ASSERT_EQ(history.records().size(), 2);
    EXPECT_EQ(history.records().constFirst().message, u"before");
}

TEST_F(NotificationHistoryTest, TheLastTwoHundredTakeRoomForNoMore) {
    NotificationHistory history(path(), clock);
    for (int number = 1; number <= 1000; ++number) {
        history.add(saying(QString::number(number)), false);
    }
    EXPECT_EQ(history.records().size(), 200);
    EXPECT_EQ(history.records().capacity(), 200);
}

TEST_F(NotificationHistoryTest, EqualTitlesAreInMemoryOnce) {
    NotificationHistory history(path(), clock);
    history.add(saying(QStringLiteral("one")), false);
    history.add({.title = QStringLiteral("Ti") + QStringLiteral("tle"),
                 .subtitle = QStringLiteral("Sub") + QStringLiteral("title"),
                 .message = QStringLiteral("two"),
                 .picture = {},
                 .link = {}},
                false);
    const NotificationRecord& first = history.records().constFirst();
    const NotificationRecord& last = history.records().constLast();
    EXPECT_TRUE(first.title.isSharedWith(last.title));
    EXPECT_TRUE(first.subtitle.isSharedWith(last.subtitle));
}

TEST_F(NotificationHistoryTest, ManyAtOnceAreTheLastTwoHundredThoughTheProgramEndsAtOnce) {
    {
        NotificationHistory history(path(), clock);
        for (int number = 1; number <= 1000; ++number) {
            history.add(saying(QString::number(number)), false);
        }
        EXPECT_EQ(history.records().size(), 200);
    }
    const QStringList messages = keptMessages();
    ASSERT_EQ(messages.size(), 200);
    EXPECT_EQ(messages.first(), u"801");
    EXPECT_EQ(messages.last(), u"1000");
}

TEST_F(NotificationHistoryTest, VeryLongTextsLeaveRoomForFewerAndTheFileIsBounded) {
    {
        NotificationHistory history(path(), clock);
        for (int number = 0; number < 300; ++number) {
            // Each is six bytes in the file.
            history.add(saying(QString(100'000, QChar(0x1b))), false);
        }
        EXPECT_GT(history.records().size(), 20);
        EXPECT_LT(history.records().size(), 40);
        EXPECT_LT(history.records().constLast().message.size(), 5000);
    }
    EXPECT_GT(QFileInfo(path()).size(), 500'000);
    EXPECT_LT(QFileInfo(path()).size(), largestNotificationFile);
    EXPECT_GT(kept().size(), 20) << "what it writes it can read";
}

TEST_F(NotificationHistoryTest, ALinkThatIsTooLongIsNotCutToAnotherOne) {
    NotificationHistory history(path(), clock);
    DesktopNotification notification = saying(QStringLiteral("a"));
    notification.link += QString(10'000, u'x');
    history.add(notification, false);
    EXPECT_EQ(history.records().constLast().link, QString());
}

TEST_F(NotificationHistoryTest, WhatIsClearedStaysAwayThoughItsFileWasJustBeingRead) {
    NotificationHistory(path(), clock).add(saying(QStringLiteral("secret")), false);
    {
        NotificationHistory history(path(), clock);
        history.add(saying(QStringLiteral("secret too")), false);
        history.clear();
        EXPECT_TRUE(history.records().isEmpty());
        history.load();
    }
    EXPECT_TRUE(kept().isEmpty());
    EXPECT_FALSE(folder.read(QStringLiteral("a/told.json")).contains("secret"));
}

TEST_F(NotificationHistoryTest, AFileThatIsNotItsOwnCountsAsAbsentAndIsReplaced) {
    const QByteArray good = R"({"when":5,"title":"a","message":"b"})";
    EXPECT_EQ(keptOf('[' + good + ']').size(), 1);
    for (const QByteArray& content :
         {QByteArray(), QByteArray("nonsense"), QByteArray("{}"), good, '[' + good,
          '[' + good + ",5]", '[' + good + R"(,{"when":5,"title":"a"}])",
          '[' + good + R"(,{"when":"5","title":"a","message":"b"}])",
          '[' + good + R"(,{"when":-1,"title":"a","message":"b"}])",
          '[' + good + R"(,{"when":1e300,"title":"a","message":"b"}])",
          '[' + good + R"(,{"when":5,"title":["a"],"message":"b"}])",
          '[' + good + ']' + QByteArray(static_cast<qsizetype>(largestNotificationFile), ' ')}) {
        EXPECT_TRUE(keptOf(content).isEmpty()) << content.left(200).constData();
    }
    NotificationHistory(path(), clock).add(saying(QStringLiteral("new")), false);
    EXPECT_EQ(keptMessages(), QStringList{QStringLiteral("new")});
}

TEST_F(NotificationHistoryTest, OnlyLinksThatTheProgramOpensAreTakenFromTheFile) {
    for (const char* link : {"file:///etc/passwd", "javascript:alert(1)", "https://", "-help"}) {
        const QByteArray content =
            QByteArray(R"([{"when":5,"title":"a","message":"b","link":")") + link + R"("}])";
        const NotificationRecords records = keptOf(content);
        ASSERT_EQ(records.size(), 1) << link;
        EXPECT_EQ(records[0].link, QString()) << link;
    }
}

TEST_F(NotificationHistoryTest, IsTheUsersAloneWhateverTheUmask) {
    const mode_t before = ::umask(0);
    NotificationHistory(path(), clock).add(saying(QStringLiteral("a")), false);
    ::umask(before);
    struct stat status {};
    ASSERT_EQ(::stat(QFile::encodeName(path()).constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0600U);
    ASSERT_EQ(::stat(QFile::encodeName(QFileInfo(path()).path()).constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0700U);
}

TEST_F(NotificationHistoryTest, WhereNothingCanBeWrittenTheyAreKeptAndOneLineSaysSo) {
    const RecordingLogSink log;
    {
        NotificationHistory history(QStringLiteral("/proc/none/told.json"), clock);
        history.add(saying(QStringLiteral("a")), false);
        ASSERT_TRUE(waitUntil([&] { return log.lines().size() == 1; }));
        history.clear();
        history.add(saying(QStringLiteral("b")), false);
        EXPECT_EQ(history.records().size(), 1);
    }
    EXPECT_EQ(log.lines().size(), 1U);
}

} // namespace
} // namespace korvale
