// Files are shown where they are, and nobody waits for a disk or for the file manager.
#include "fakes/FakeBusService.h"
#include "fakes/RecordingLinkOpener.h"
#include "fakes/WaitUntil.h"
#include "platform/BusFileManager.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <condition_variable>
#include <gtest/gtest.h>
#include <mutex>

namespace korvale {
namespace {

using fakes::FakeBusService;
using fakes::PrivateSessionBus;

class FileManagerTest : public testing::Test {
protected:
    FileManagerTest() { manager.useSessionBus(bus.connect()); }

    QString newFile(const QString& name) {
        QFile file(folder.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        return file.fileName();
    }

    /// What show() answers in the end.
    std::optional<bool> shown(const QString& path) {
        std::optional<bool> answer;
        manager.show(path, &context, [&answer](bool isShown) { answer = isShown; });
        EXPECT_FALSE(answer); // never at once
        EXPECT_TRUE(waitUntil([&answer] { return answer.has_value(); }));
        return answer;
    }

    std::optional<bool> found(const QString& path) {
        std::optional<bool> answer;
        manager.lookFor(path, &context, [&answer](bool isThere) { answer = isThere; });
        EXPECT_TRUE(waitUntil([&answer] { return answer.has_value(); }));
        return answer;
    }

    QTemporaryDir folder;
    PrivateSessionBus bus;
    FakeBusService service{bus, QStringLiteral("org.freedesktop.FileManager1"),
                           QStringLiteral("/org/freedesktop/FileManager1"),
                           QStringLiteral("org.freedesktop.FileManager1")};
    fakes::RecordingLinkOpener opener;
    BusFileManager manager{opener};
    QObject context;
};

TEST_F(FileManagerTest, TheFileManagerIsAskedToShowTheFile) {
    service.appear();
    const QString path = newFile(QStringLiteral("a b#?%é.exe"));
    EXPECT_EQ(shown(path), true);
    const auto calls = service.callsOf(QStringLiteral("ShowItems"));
    ASSERT_EQ(calls.size(), 1U);
    const QString address = QStringLiteral("file://") + folder.path() + QStringLiteral("/");
    EXPECT_EQ(calls[0].arguments(),
              (QVariantList{QStringList{address + QStringLiteral("a%20b%23%3F%25%C3%A9.exe")},
                            QString()}));
    EXPECT_TRUE(opener.folders.isEmpty());
}

TEST_F(FileManagerTest, WithoutAFileManagerTheFolderIsOpened) {
    EXPECT_EQ(shown(newFile(QStringLiteral("x.exe"))), true);
    EXPECT_EQ(opener.folders, QStringList{folder.path()});
    EXPECT_TRUE(opener.opened.isEmpty()); // never the file
}

TEST_F(FileManagerTest, WithoutASessionBusTheFolderIsOpened) {
    manager.useSessionBus(QDBusConnection(QString()));
    EXPECT_EQ(shown(newFile(QStringLiteral("x.exe"))), true);
    EXPECT_EQ(opener.folders, QStringList{folder.path()});
}

TEST_F(FileManagerTest, AFileManagerThatSaysNothingIsWaitedForUntilTheLimit) {
    service.answer = [](const QDBusMessage&) { return QDBusMessage(); };
    service.appear();
    BusFileManager impatient(opener, std::chrono::milliseconds(50));
    impatient.useSessionBus(bus.connect());
    std::optional<bool> answer;
    impatient.show(newFile(QStringLiteral("x.exe")), &context,
                   [&answer](bool isShown) { answer = isShown; });
    EXPECT_TRUE(waitUntil([&answer] { return answer.has_value(); }));
    EXPECT_EQ(answer, true);
    EXPECT_EQ(opener.folders, QStringList{folder.path()});
}

TEST_F(FileManagerTest, AFileManagerThatRefusesIsNoReasonToShowNothing) {
    service.answer = [](const QDBusMessage& call) {
        return call.createErrorReply(QDBusError::Failed, QStringLiteral("no"));
    };
    service.appear();
    EXPECT_EQ(shown(newFile(QStringLiteral("x.exe"))), true);
    EXPECT_EQ(opener.folders, QStringList{folder.path()});
}

TEST_F(FileManagerTest, WhatIsNotThereIsNotShown) {
    service.appear();
    EXPECT_EQ(shown(folder.filePath(QStringLiteral("gone.exe"))), false);
    EXPECT_TRUE(service.calls.empty());
    EXPECT_TRUE(opener.folders.isEmpty());
}

TEST_F(FileManagerTest, ADesktopThatOpensNothingIsTold) {
    opener.canOpen = false;
    EXPECT_EQ(shown(newFile(QStringLiteral("x.exe"))), false);
}

TEST_F(FileManagerTest, OnlyAbsolutePathsLeadSomewhere) {
    const QString there = newFile(QStringLiteral("x.exe"));
    EXPECT_EQ(found(there), true);
    EXPECT_EQ(found(folder.path()), true);
    EXPECT_EQ(found(folder.filePath(QStringLiteral("y.exe"))), false);
    EXPECT_EQ(found(QStringLiteral(".")), false);
    EXPECT_EQ(found(QString()), false);
    EXPECT_EQ(found(there + QChar(u'\0') + QStringLiteral(".txt")), false);
    EXPECT_EQ(found(u'/' + QString(1024 * 1024, u'x')), false);
}

TEST_F(FileManagerTest, ALinkThatLeadsNowhereIsThereAllTheSame) {
    const QString link = folder.filePath(QStringLiteral("link"));
    ASSERT_TRUE(QFile::link(QStringLiteral("/nonexistent"), link));
    EXPECT_EQ(found(link), true);
}

TEST_F(FileManagerTest, AFolderThatIsReachedThroughALinkIsOpened) {
    const QString link = folder.filePath(QStringLiteral("link"));
    ASSERT_TRUE(QDir(folder.path()).mkdir(QStringLiteral("real")));
    ASSERT_TRUE(QFile::link(folder.filePath(QStringLiteral("real")), link));
    newFile(QStringLiteral("real/x.exe"));
    EXPECT_EQ(shown(link + QStringLiteral("/x.exe")), true);
    EXPECT_EQ(opener.folders, QStringList{link});
}

/// A disk that hangs until it is told otherwise.
struct HangingDisk {
    static FileLook::Kind look(const QByteArray& path) {
        if (path == "/fine") {
            return FileLook::Kind::Other;
        }
        std::unique_lock lock(mutex);
        ++hanging;
        changed.notify_all();
        changed.wait(lock, [] { return goesOn; });
        --hanging;
        changed.notify_all();
        return FileLook::Kind::Other;
    }
    static void waitFor(int count) {
        std::unique_lock lock(mutex);
        changed.wait(lock, [count] { return hanging == count; });
    }
    static void goOn() {
        std::unique_lock lock(mutex);
        goesOn = true;
        changed.notify_all();
        changed.wait(lock, [] { return hanging == 0; });
    }
    static inline std::mutex mutex;
    static inline std::condition_variable changed;
    static inline int hanging = 0;
    static inline bool goesOn = false;
};

TEST(FileLookTest, ADiskThatHangsHoldsUpNeitherOtherQuestionsNorTheEnd) {
    HangingDisk::goesOn = false;
    int answers = 0;
    QObject context;
    {
        FileLook look(HangingDisk::look);
        for (int i = 0; i < 3; ++i) {
            look.ask(QStringLiteral("/hangs"), &context, [&](FileLook::Kind) { ++answers; });
        }
        bool isAnswered = false;
        look.ask(QStringLiteral("/fine"), &context, [&](FileLook::Kind) { isAnswered = true; });
        EXPECT_TRUE(waitUntil([&] { return isAnswered; }));
        HangingDisk::waitFor(3);
    }
    HangingDisk::goOn(); // into the void
    QCoreApplication::processEvents();
    EXPECT_EQ(answers, 0);
}

TEST(FileLookTest, ThreadsAreFewHoweverManyQuestionsHang) {
    HangingDisk::goesOn = false;
    int answers = 0;
    QObject context;
    FileLook look(HangingDisk::look);
    for (int i = 0; i < 100; ++i) {
        look.ask(QStringLiteral("/hangs"), &context, [&](FileLook::Kind) { ++answers; });
    }
    HangingDisk::waitFor(4);
    HangingDisk::goOn();
    EXPECT_TRUE(waitUntil([&] { return answers == 4 + 16; })); // the last of those that waited
}

TEST(FileLookTest, WhoHasGoneIsNotAnswered) {
    FileLook look;
    auto context = std::make_unique<QObject>();
    bool isAnswered = false;
    bool isOtherAnswered = false;
    look.ask(QStringLiteral("/"), context.get(), [&](FileLook::Kind) { isAnswered = true; });
    context.reset();
    look.ask(QStringLiteral("/"), &look,
             [&](FileLook::Kind kind) { isOtherAnswered = kind == FileLook::Kind::Folder; });
    EXPECT_TRUE(waitUntil([&] { return isOtherAnswered; }));
    QCoreApplication::processEvents();
    EXPECT_FALSE(isAnswered);
}

} // namespace
} // namespace korvale
