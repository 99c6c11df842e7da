#include "platform/SmallFile.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace korvale {
namespace {

class SmallFileTest : public testing::Test {
protected:
    QString write(const QByteArray& content) {
        const QString path = m_folder.filePath(QStringLiteral("file"));
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
        return path;
    }
    QString path(const char* name) const { return m_folder.filePath(QString::fromLatin1(name)); }

    QTemporaryDir m_folder;
};

TEST_F(SmallFileTest, IsReadWhole) {
    for (const qsizetype size : {0, 1, 4095, 4096, 4097, 100'000}) {
        const QByteArray content(size, 'x');
        EXPECT_EQ(readSmallFile(write(content), 1 << 20), content) << size;
    }
}

TEST_F(SmallFileTest, OneByteOverTheLimitIsNoValue) {
    EXPECT_TRUE(readSmallFile(write("12345"), 5));
    EXPECT_FALSE(readSmallFile(write("123456"), 5));
}

TEST_F(SmallFileTest, FilesWithoutASizeOfTheirOwnAreReadToTheirEnd) {
    const auto status = readSmallFile("/proc/self/status", 1 << 20);
    ASSERT_TRUE(status);
    EXPECT_TRUE(status->startsWith("Name:"));
}

TEST_F(SmallFileTest, WhatIsNotASmallFileIsNoValueAndNeverBlocks) {
    const QString fifo = path("fifo");
    ASSERT_EQ(mkfifo(QFile::encodeName(fifo).constData(), 0600), 0);
    EXPECT_FALSE(readSmallFile(fifo, 100));
    EXPECT_FALSE(readSmallFile(m_folder.path(), 100));
    EXPECT_FALSE(readSmallFile("/dev/zero", 100));
    EXPECT_FALSE(readSmallFile(path("absent"), 100));
}

TEST_F(SmallFileTest, LinksAreFollowed) {
    const QString target = write("there");
    ASSERT_TRUE(QFile::link(target, path("link")));
    EXPECT_EQ(readSmallFile(path("link"), 100), QByteArray("there"));
}

} // namespace
} // namespace korvale
