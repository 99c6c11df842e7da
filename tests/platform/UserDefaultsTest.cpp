#include "fakes/RecordingLogSink.h"
#include "platform/IniUserDefaults.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <csignal>
#include <gtest/gtest.h>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <vector>

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

TEST_F(UserDefaultsTest, WhateverElseIsInTheFileStaysAsItIs) {
    write("; mine\nEarly=1\n[General]\nOther=\"a\"\n\n[Group]\nUserNotificationOn=1\n");
    IniUserDefaults defaults(path());
    EXPECT_FALSE(defaults.boolForKey(key)) << "it is another section's";
    defaults.setInteger(key, 1);
    EXPECT_EQ(content(), "; mine\nEarly=1\n[General]\nOther=\"a\"\nUserNotificationOn=1\n\n"
                         "[Group]\nUserNotificationOn=1\n");
    defaults.removeObject(key);
    EXPECT_EQ(content(), "; mine\nEarly=1\n[General]\nOther=\"a\"\n\n[Group]\n"
                         "UserNotificationOn=1\n");
}

TEST_F(UserDefaultsTest, NothingButATextIsMadeOfAValue) {
    write("[General]\nUserNotificationOn=@Variant(\\0\\0\\0\\x7f)\nOther=1");
    IniUserDefaults defaults(path());
    EXPECT_FALSE(defaults.boolForKey(key));
    EXPECT_TRUE(defaults.boolForKey(QStringLiteral("Other")));
}

TEST_F(UserDefaultsTest, AFileThatIsTooLargeIsNoneAndStays) {
    write("[General]\nUserNotificationOn=1\n" + QByteArray(1 << 20, ';'));
    const RecordingLogSink log;
    IniUserDefaults defaults(path());
    EXPECT_FALSE(defaults.boolForKey(key));
    defaults.setInteger(key, 1);
    EXPECT_TRUE(defaults.boolForKey(key));
    EXPECT_GT(content().size(), 1 << 20);
    EXPECT_EQ(log.lines().size(), 1U);
}

/// Every write of this process fails while it lives, as on a full disk.
class FullDisk {
public:
    FullDisk() {
        std::signal(SIGXFSZ, SIG_IGN);
        ::getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit none{0, m_before.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &none);
    }
    ~FullDisk() { ::setrlimit(RLIMIT_FSIZE, &m_before); }
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;

private:
    rlimit m_before{};
};

TEST_F(UserDefaultsTest, OnAFullDiskTheChoiceHoldsAndOneLineSaysSo) {
    write("[General]\nKept=1\nShowUserNotificationChanged=1\n");
    const RecordingLogSink log;
    IniUserDefaults defaults(path());
    {
        const FullDisk full;
        defaults.setInteger(key, 1);
        defaults.removeObject(QStringLiteral("ShowUserNotificationChanged"));
        EXPECT_TRUE(defaults.boolForKey(key));
        EXPECT_FALSE(defaults.boolForKey(QStringLiteral("ShowUserNotificationChanged")));
    }
    EXPECT_EQ(log.lines(),
              std::vector<std::string>{"WARN \"" + path().toStdString() +
                                       " cannot be written: what was chosen holds until the "
                                       "program ends.\""});
    EXPECT_EQ(content(), "[General]\nKept=1\nShowUserNotificationChanged=1\n");
    EXPECT_EQ(QDir(folder.filePath(QStringLiteral("a"))).entryList(QDir::Files).size(), 1);

    defaults.setInteger(QStringLiteral("Later"), 1); // there is room again
    EXPECT_EQ(content(), "[General]\nKept=1\nLater=1\nUserNotificationOn=1\n");
    write("[General]\n");
    EXPECT_FALSE(defaults.boolForKey(key)) << "the file counts again";
}

TEST_F(UserDefaultsTest, InAHomeThatMayOnlyBeReadTheChoiceHolds) {
    const RecordingLogSink log;
    IniUserDefaults defaults(QStringLiteral("/proc/self/Korvale/K.conf"));
    defaults.setInteger(key, 1);
    EXPECT_TRUE(defaults.boolForKey(key));
    defaults.removeObject(key);
    EXPECT_FALSE(defaults.boolForKey(key));
    EXPECT_EQ(log.lines().size(), 1U);
}

TEST_F(UserDefaultsTest, FilesAndFoldersAreTheUsersAloneWhateverTheUmask) {
    const mode_t before = ::umask(0);
    const QString deep = folder.filePath(QStringLiteral("b/c/K.conf"));
    IniUserDefaults(deep).setInteger(key, 1);
    ::umask(before);
    const auto modeOf = [](const QString& name) {
        struct stat status {};
        EXPECT_EQ(::stat(QFile::encodeName(name).constData(), &status), 0);
        return status.st_mode & 07777U;
    };
    EXPECT_EQ(modeOf(deep), 0600U);
    EXPECT_EQ(modeOf(folder.filePath(QStringLiteral("b/c"))), 0700U);
    EXPECT_EQ(modeOf(folder.filePath(QStringLiteral("b"))), 0700U);
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
