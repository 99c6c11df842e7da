#include "agent_sim/HostCacheWriter.h"

#include "TestFolder.h"

#include <sys/stat.h>

namespace korvale::sim {
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

TEST(HostCacheWriter, AFileTakesThePlaceOfAFifoAndOfAFolder) {
    const TestFolder folder;
    HostCacheWriter writer(folder.path());
    const QString name = QStringLiteral("x.log");
    ASSERT_TRUE(writer.placeFifo(name));
    struct stat status {};
    ASSERT_EQ(::stat(QFile::encodeName(folder.path(name)).constData(), &status), 0);
    EXPECT_TRUE(S_ISFIFO(status.st_mode));
    ASSERT_TRUE(writer.write(name, QByteArray("file")));
    ASSERT_TRUE(writer.placeFolder(name));
    EXPECT_TRUE(QFileInfo(folder.path(name)).isDir());
    ASSERT_TRUE(writer.write(name, QByteArray("file")));
    EXPECT_EQ(folder.read(name), "file");
    ASSERT_TRUE(writer.remove(name));
    EXPECT_TRUE(writer.remove(name)) << "a file that is not there is as wanted";
    EXPECT_EQ(folder.names(), QStringList());
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
} // namespace korvale::sim
