#include "model/UpdaterStatusFolder.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <cstdio>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace korvale {
namespace {

class UpdaterStatusFolderTest : public testing::Test {
protected:
    void write(const QString& name, const QByteArray& content = "x") const {
        QFile file(root.filePath(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }
    /// Names of the files displayed until there is none left.
    QStringList displayed() {
        QStringList names;
        while (const auto path = folder.takeNext()) {
            EXPECT_TRUE(path->startsWith(root.path() + u'/'));
            names << path->sliced(root.path().size() + 1);
        }
        return names;
    }

    QTemporaryDir root;
    UpdaterStatusFolder folder{root.path()};
};

TEST_F(UpdaterStatusFolderTest, FilesComeOnceInTheOrderOfTheirNames) {
    write(QStringLiteral("2.kvupupdate"));
    write(QStringLiteral("1.kvupupdate"));
    write(QStringLiteral("10.kvupupdate"));
    EXPECT_EQ(displayed(),
              QStringList({QStringLiteral("1.kvupupdate"), QStringLiteral("10.kvupupdate"),
                           QStringLiteral("2.kvupupdate")}));
    EXPECT_EQ(folder.takeNext(), std::nullopt);
}

TEST_F(UpdaterStatusFolderTest, TheOrderIsThatOfCharacterCodes) {
    for (const char16_t* name : {u"a.kvupupdate", u"Z.kvupupdate", u"ä.kvupupdate", u"_.kvupupdate",
                                 u"\uFF21.kvupupdate", u"\U0001F600.kvupupdate", u"B.kvupupdate"}) {
        write(QString::fromUtf16(name));
    }
    EXPECT_EQ(displayed(),
              QStringList({QStringLiteral("B.kvupupdate"), QStringLiteral("Z.kvupupdate"),
                           QStringLiteral("_.kvupupdate"), QStringLiteral("a.kvupupdate"),
                           QStringLiteral("ä.kvupupdate"), QStringLiteral("\uFF21.kvupupdate"),
                           QStringLiteral("\U0001F600.kvupupdate")}));
}

TEST_F(UpdaterStatusFolderTest, AFileThatComesLateWithALowerNameIsNeverShown) {
    write(QStringLiteral("5.kvupupdate"));
    EXPECT_EQ(displayed().size(), 1);
    write(QStringLiteral("4.kvupupdate"));
    EXPECT_EQ(displayed(), QStringList());
    write(QStringLiteral("6.kvupupdate"));
    EXPECT_EQ(displayed(), QStringList{QStringLiteral("6.kvupupdate")});
}

TEST_F(UpdaterStatusFolderTest, NamesMustLieBeyondZero) {
    write(QStringLiteral("0"));
    write(QStringLiteral("-1.kvupupdate"));
    write(QStringLiteral(".kvupupdate"));
    write(QStringLiteral("0.kvupupdate"));
    EXPECT_EQ(displayed(), QStringList{QStringLiteral("0.kvupupdate")});
}

TEST_F(UpdaterStatusFolderTest, OnlyTheExactExtensionCounts) {
    for (const char16_t* name :
         {u"5.txt", u"5.KVUPUPDATE", u"5.kvupupdate.tmp", u"5kvupupdate", u"5.kvupupdate.", u"5"}) {
        write(QString::fromUtf16(name));
    }
    EXPECT_EQ(displayed(), QStringList());
}

TEST_F(UpdaterStatusFolderTest, WhatIsNoRegularFileIsNotThere) {
    ASSERT_TRUE(QDir(root.path()).mkdir(QStringLiteral("1.kvupupdate")));
    ASSERT_EQ(mkfifo(QFile::encodeName(root.filePath(QStringLiteral("2.kvupupdate"))), 0600), 0);
    ASSERT_TRUE(
        QFile::link(QStringLiteral("/nowhere"), root.filePath(QStringLiteral("3.kvupupdate"))));
    write(QStringLiteral("4.kvupupdate"));
    EXPECT_EQ(displayed(), QStringList{QStringLiteral("4.kvupupdate")});
}

TEST_F(UpdaterStatusFolderTest, ANameThatIsNoTextIsNotThere) {
    const QByteArray path = QFile::encodeName(root.path()) + "/1\xFF.kvupupdate";
    FILE* raw = std::fopen(path.constData(), "w");
    ASSERT_NE(raw, nullptr);
    std::fclose(raw);
    EXPECT_EQ(displayed(), QStringList());
    std::remove(path.constData()); // QTemporaryDir cannot name it either
}

TEST_F(UpdaterStatusFolderTest, AnEmptyOrMissingFolderHasNoFile) {
    EXPECT_EQ(folder.takeNext(), std::nullopt);
    UpdaterStatusFolder missing(root.filePath(QStringLiteral("missing")));
    EXPECT_EQ(missing.takeNext(), std::nullopt);
    write(QStringLiteral("file"));
    UpdaterStatusFolder noFolder(root.filePath(QStringLiteral("file")));
    EXPECT_EQ(noFolder.takeNext(), std::nullopt);
}

TEST_F(UpdaterStatusFolderTest, AStatusFileIsReadWholeAsUtf8) {
    write(QStringLiteral("a"), "gr\xC3\xBC\n\xC3\x9F");
    write(QStringLiteral("b"), "");
    write(QStringLiteral("c"), "\xFF");
    EXPECT_EQ(readStatusFile(root.filePath(QStringLiteral("a"))), QStringLiteral("grü\nß"));
    EXPECT_EQ(readStatusFile(root.filePath(QStringLiteral("b"))), QString());
    EXPECT_EQ(readStatusFile(root.filePath(QStringLiteral("c"))), std::nullopt);
    EXPECT_EQ(readStatusFile(root.filePath(QStringLiteral("d"))), std::nullopt);
    EXPECT_EQ(readStatusFile(root.path()), std::nullopt);
}

TEST_F(UpdaterStatusFolderTest, AStatusFileHasAtMostOneMebibyte) {
    const QString path = root.filePath(QStringLiteral("large"));
    write(QStringLiteral("large"), QByteArray(1 << 20, 'A'));
    EXPECT_EQ(readStatusFile(path).value_or(QString()).size(), 1 << 20);
    write(QStringLiteral("large"), QByteArray((1 << 20) + 1, 'A'));
    EXPECT_EQ(readStatusFile(path), std::nullopt);
}

} // namespace
} // namespace korvale
