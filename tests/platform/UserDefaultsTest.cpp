#include "platform/IniUserDefaults.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <sys/stat.h>

namespace korvale {
namespace {

class UserDefaultsTest : public testing::Test {
protected:
    [[nodiscard]] QString path() const { return folder.filePath(QStringLiteral("a/K.conf")); }
    void write(const QByteArray& content) const {
        QDir().mkpath(folder.filePath(QStringLiteral("a")));
        QFile file(path());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }
    [[nodiscard]] QByteArray content() const {
        QFile file(path());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    const QString key = QStringLiteral("UserNotificationOn");
    QTemporaryDir folder;
};

TEST_F(UserDefaultsTest, AnAbsentFileOrKeyReadsAsFalse) {
    IniUserDefaults defaults(path());
    EXPECT_FALSE(defaults.boolForKey(key));
    EXPECT_FALSE(QFile::exists(path())) << "reading creates nothing";
    write("[General]\nOther=1\n");
    EXPECT_FALSE(defaults.boolForKey(key));
}

TEST_F(UserDefaultsTest, AnIntegerIsWrittenAtOnceToTheGeneralSection) {
    IniUserDefaults defaults(path());
    defaults.setInteger(key, 1);
    EXPECT_EQ(content(), "[General]\nUserNotificationOn=1\n");
    EXPECT_TRUE(defaults.boolForKey(key));
}

TEST_F(UserDefaultsTest, ARemovedKeyIsGoneFromTheFile) {
    IniUserDefaults defaults(path());
    defaults.setInteger(key, 1);
    defaults.setInteger(QStringLiteral("Kept"), 1);
    defaults.removeObject(key);
    EXPECT_FALSE(defaults.boolForKey(key));
    EXPECT_EQ(content(), "[General]\nKept=1\n");
}

TEST_F(UserDefaultsTest, RemovingFromAnAbsentFileCreatesNothing) {
    IniUserDefaults defaults(path());
    defaults.removeObject(key);
    EXPECT_FALSE(QFile::exists(path()));
}

TEST_F(UserDefaultsTest, WhatAnotherWriterChangedIsSeenAtTheNextQuestion) {
    IniUserDefaults defaults(path());
    defaults.setInteger(key, 1);
    ASSERT_TRUE(defaults.boolForKey(key));
    write("[General]\nUserNotificationOn=false\n");
    EXPECT_FALSE(defaults.boolForKey(key));
}

TEST_F(UserDefaultsTest, AFifoInTheFilesPlaceCountsAsAbsentAndNeverBlocks) {
    QDir().mkpath(folder.filePath(QStringLiteral("a")));
    ASSERT_EQ(mkfifo(QFile::encodeName(path()).constData(), 0600), 0);
    IniUserDefaults defaults(path());
    EXPECT_FALSE(defaults.boolForKey(key));
    defaults.setInteger(key, 1);
    defaults.removeObject(key);
    EXPECT_FALSE(defaults.boolForKey(key));
}

TEST_F(UserDefaultsTest, TheFileLiesInTheUsersConfigurationFolder) {
    const QByteArray before = qgetenv("XDG_CONFIG_HOME");
    qputenv("XDG_CONFIG_HOME", "/somewhere/else");
    EXPECT_EQ(IniUserDefaults().filePath(),
              QStringLiteral("/somewhere/else/Korvale/KorvaleUI.conf"));
    qputenv("XDG_CONFIG_HOME", "relative");
    EXPECT_EQ(IniUserDefaults().filePath(),
              QDir::homePath() + QStringLiteral("/.config/Korvale/KorvaleUI.conf"));
    before.isNull() ? qunsetenv("XDG_CONFIG_HOME") : qputenv("XDG_CONFIG_HOME", before);
}

struct BooleanText {
    const char* text;
    bool value;
};
class BooleanTexts : public UserDefaultsTest, public testing::WithParamInterface<BooleanText> {};

TEST_P(BooleanTexts, ReadAsWritten) {
    write(QByteArray("[General]\nUserNotificationOn=") + GetParam().text + "\n");
    EXPECT_EQ(IniUserDefaults(path()).boolForKey(key), GetParam().value) << GetParam().text;
}

INSTANTIATE_TEST_SUITE_P(AllKinds, BooleanTexts,
                         testing::Values(BooleanText{"1", true}, BooleanText{"0", false},
                                         BooleanText{"-3", true}, BooleanText{"+0007", true},
                                         BooleanText{"000", false}, BooleanText{"true", true},
                                         BooleanText{"Yes", true}, BooleanText{"no", false},
                                         BooleanText{"\"  y\"", true}, BooleanText{"", false},
                                         BooleanText{"\"\xc2\xa0y\"", false},
                                         BooleanText{"x1", false}, BooleanText{"\"1, 2\"", true}));

} // namespace
} // namespace korvale
