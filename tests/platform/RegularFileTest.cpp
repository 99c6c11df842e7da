#include "platform/RegularFile.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace korvale {
namespace {

class RegularFileTest : public testing::Test {
protected:
    QString path(const char* name) const { return m_folder.filePath(QString::fromLatin1(name)); }

    QString write(const char* name, const QByteArray& content) const {
        QFile file(path(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
        return file.fileName();
    }

    static std::string contentOf(const QString& path) {
        const auto file = RegularFile::open(path);
        const auto content = file ? file->readAll() : std::nullopt;
        return content ? std::string(content->bytes.get(), content->size) : "(absent)";
    }

private:
    QTemporaryDir m_folder;
};

TEST_F(RegularFileTest, IsReadWhole) {
    EXPECT_EQ(contentOf(write("a", "content")), "content");
    EXPECT_EQ(contentOf(write("empty", "")), "");
    const QByteArray zeros("a\0b\0", 4);
    EXPECT_EQ(contentOf(write("zeros", zeros)), zeros.toStdString());
}

TEST_F(RegularFileTest, BlocksAddUpToTheFileAtAnySize) {
    for (const qsizetype size : {1, 131'071, 131'072, 131'073, 262'144, 700'001}) {
        QByteArray content(size, 'x');
        for (qsizetype i = 0; i < size; i += 997) {
            content[i] = static_cast<char>('a' + i % 26);
        }
        const auto file = RegularFile::open(write("blocks", content));
        ASSERT_TRUE(file);
        std::string streamed;
        EXPECT_TRUE(file->readBlocks(
            [&](std::span<const char> block) { streamed.append(block.data(), block.size()); }));
        EXPECT_EQ(streamed, content.toStdString());
        std::string seen;
        const auto all = file->readAll(
            [&](std::span<const char> block) { seen.append(block.data(), block.size()); });
        ASSERT_TRUE(all);
        EXPECT_EQ(seen, streamed);
        EXPECT_EQ(std::string(all->bytes.get(), all->size), streamed);
    }
}

TEST_F(RegularFileTest, TheMemoryOfAFormerFileIsUsedAgainWhereItIsLargeEnough) {
    const auto read = [this](const QByteArray& content, FileBytes former) {
        const auto file = RegularFile::open(write("next", content));
        const auto bytes = file ? file->readAll({}, std::move(former)) : std::nullopt;
        EXPECT_TRUE(bytes && QByteArrayView(bytes->bytes.get(), qsizetype(bytes->size)) == content);
        return bytes.value_or(FileBytes());
    };
    FileBytes bytes = read(QByteArray(10'000, 'x'), {});
    const char* const memory = bytes.bytes.get();
    bytes = read("short", std::move(bytes));
    EXPECT_EQ(bytes.bytes.get(), memory);
    bytes = read(QByteArray(10'000, 'y'), std::move(bytes));
    EXPECT_EQ(bytes.bytes.get(), memory);
    bytes = read(QByteArray(20'000, 'z'), std::move(bytes));
    read("after one that left nothing", {.bytes = {}, .size = 3, .room = 10'000});
}

TEST_F(RegularFileTest, LinksAreFollowed) {
    write("target", "here");
    ASSERT_TRUE(QFile::link(path("target"), path("link")));
    EXPECT_EQ(contentOf(path("link")), "here");
}

TEST_F(RegularFileTest, WhatIsNoRegularFileIsAbsent) {
    EXPECT_FALSE(RegularFile::open(path("missing")));
    EXPECT_FALSE(RegularFile::open(path("")));
    EXPECT_FALSE(RegularFile::open(QStringLiteral("/dev/full")));
    EXPECT_FALSE(RegularFile::open(QStringLiteral("/dev/zero")));
    ASSERT_TRUE(QFile::link(path("nowhere"), path("dangling")));
    EXPECT_FALSE(RegularFile::open(path("dangling")));
}

TEST_F(RegularFileTest, AFifoWithoutAWriterDoesNotBlock) {
    ASSERT_EQ(mkfifo(QFile::encodeName(path("fifo")).constData(), 0600), 0);
    EXPECT_FALSE(RegularFile::open(path("fifo")));
}

TEST_F(RegularFileTest, AFileThatMayNotBeReadIsAbsent) {
    const QString name = write("secret", "x");
    ASSERT_EQ(chmod(QFile::encodeName(name).constData(), 0), 0);
    const bool isRoot = geteuid() == 0; // who may read everything, so somebody else has to try
    if (isRoot) {
        constexpr uid_t nobody = 65534;
        ASSERT_EQ(chmod(QFile::encodeName(path(".")).constData(), 0755), 0);
        ASSERT_EQ(seteuid(nobody), 0);
    }
    const bool isReadable = RegularFile::open(name).has_value();
    if (isRoot) {
        ASSERT_EQ(seteuid(0), 0);
    }
    EXPECT_FALSE(isReadable);
    ASSERT_EQ(chmod(QFile::encodeName(name).constData(), 0644), 0);
    EXPECT_TRUE(RegularFile::open(name));
}

TEST_F(RegularFileTest, OnlyUpTo256MiBAreRead) {
    const QString name = write("sparse", "x");
    const QByteArray encoded = QFile::encodeName(name);
    ASSERT_EQ(truncate(encoded.constData(), static_cast<off_t>(RegularFile::maxFileSize)), 0);
    EXPECT_TRUE(RegularFile::open(name));
    ASSERT_EQ(truncate(encoded.constData(), static_cast<off_t>(RegularFile::maxFileSize + 1)), 0);
    EXPECT_FALSE(RegularFile::open(name));
}

TEST_F(RegularFileTest, AFileThatGrowsWhileItIsReadIsReadToItsNewEnd) {
    const QString name = write("growing", "start");
    const auto file = RegularFile::open(name);
    ASSERT_TRUE(file);
    QFile writer(name);
    ASSERT_TRUE(writer.open(QIODevice::Append));
    const QByteArray more(300'000, 'm');
    writer.write(more);
    writer.flush();
    const auto content = file->readAll();
    ASSERT_TRUE(content);
    EXPECT_EQ(std::string(content->bytes.get(), content->size), "start" + more.toStdString());
}

TEST_F(RegularFileTest, AFileThatShrinksWhileItIsReadEndsWhereItEnds) {
    const QString name = write("shrinking", QByteArray(1000, 's'));
    const auto file = RegularFile::open(name);
    ASSERT_TRUE(file);
    ASSERT_EQ(truncate(QFile::encodeName(name).constData(), 3), 0);
    const auto content = file->readAll();
    ASSERT_TRUE(content);
    EXPECT_EQ(content->size, 3U);
}

} // namespace
} // namespace korvale
