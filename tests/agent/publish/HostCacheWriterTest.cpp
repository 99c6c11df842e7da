#include "agent/publish/HostCacheWriter.h"

#include "fakes/TestFolder.h"

#include <sys/stat.h>

namespace korvale::agent {
namespace {

TEST(HostCacheWriter, CreatesItsFolderAndWritesCompactJson) {
    const TestFolder folder;
    HostCacheWriter writer(folder.path(QStringLiteral("a/b")));
    ASSERT_TRUE(writer.write(QStringLiteral("x.log"), QJsonObject{{QStringLiteral("k"), 1}}));
    EXPECT_EQ(folder.read(QStringLiteral("a/b/x.log")), R"({"k":1})");
}

TEST(HostCacheWriter, LeavesNoTemporaryFileAndAFileAllCanRead) {
    const TestFolder folder;
    HostCacheWriter writer(folder.path());
    ASSERT_TRUE(writer.write(QStringLiteral("x.log"), QByteArray("one")));
    ASSERT_TRUE(writer.write(QStringLiteral("x.log"), QByteArray("two")));
    EXPECT_EQ(folder.names(), QStringList{QStringLiteral("x.log")});
    EXPECT_EQ(folder.read(QStringLiteral("x.log")), "two");
    const auto others = QFile::permissions(folder.path(QStringLiteral("x.log")));
    EXPECT_TRUE(others.testFlag(QFileDevice::ReadOther));
    EXPECT_FALSE(others.testFlag(QFileDevice::WriteOther));
}

TEST(HostCacheWriter, AReaderOfTheOldFileKeepsTheOldContent) {
    const TestFolder folder;
    HostCacheWriter writer(folder.path());
    ASSERT_TRUE(writer.write(QStringLiteral("x.log"), QByteArray("old")));
    QFile reader(folder.path(QStringLiteral("x.log")));
    ASSERT_TRUE(reader.open(QIODevice::ReadOnly));
    ASSERT_TRUE(writer.write(QStringLiteral("x.log"), QByteArray("new")));
    EXPECT_EQ(reader.readAll(), "old");
}

TEST(HostCacheWriter, AFileTakesThePlaceOfAFifoAndOfAnEmptyFolder) {
    const TestFolder folder;
    HostCacheWriter writer(folder.path());
    const QString name = QStringLiteral("x.log");
    ASSERT_EQ(::mkfifo(QFile::encodeName(folder.path(name)).constData(), 0600), 0);
    ASSERT_TRUE(writer.write(name, QByteArray("file")));
    EXPECT_EQ(folder.read(name), "file");
    ASSERT_TRUE(writer.remove(name));
    ASSERT_TRUE(QDir(folder.path()).mkdir(name));
    ASSERT_TRUE(writer.write(name, QByteArray("again")));
    EXPECT_EQ(folder.read(name), "again");
    ASSERT_TRUE(writer.remove(name));
    EXPECT_TRUE(writer.remove(name)) << "a file that is not there is as wanted";
    EXPECT_EQ(folder.names(), QStringList());
}

TEST(HostCacheWriter, WhatAKilledWriterLeftIsReplacedAndNeverFollowed) {
    const TestFolder folder;
    folder.write(QStringLiteral("other"), "untouched");
    ASSERT_TRUE(QFile::link(folder.path(QStringLiteral("other")),
                            folder.path(QStringLiteral(".x.log.new"))));
    HostCacheWriter writer(folder.path());
    ASSERT_TRUE(writer.write(QStringLiteral("x.log"), QByteArray("new")));
    EXPECT_EQ(folder.read(QStringLiteral("other")), "untouched");
    EXPECT_EQ(folder.names(), QStringList({QStringLiteral("other"), QStringLiteral("x.log")}));
}

TEST(HostCacheWriter, NamesThatLeadOutOfTheFolderAreRefused) {
    const TestFolder folder;
    HostCacheWriter writer(folder.path(QStringLiteral("cache")));
    for (const char* name : {"", ".", "..", "../x.log", "a/b", "/etc/x"}) {
        EXPECT_FALSE(writer.write(QLatin1String(name), QByteArray("x"))) << name;
        EXPECT_FALSE(writer.error().isEmpty()) << name;
    }
    EXPECT_EQ(folder.names(), QStringList());
}

TEST(HostCacheWriter, AFolderThatCannotBeMadeIsReported) {
    const TestFolder folder;
    folder.write(QStringLiteral("file"), "x");
    HostCacheWriter writer(folder.path(QStringLiteral("file/cache")));
    EXPECT_FALSE(writer.write(QStringLiteral("x.log"), QByteArray("x")));
    EXPECT_TRUE(writer.error().contains(QStringLiteral("file/cache")));
}

} // namespace
} // namespace korvale::agent
