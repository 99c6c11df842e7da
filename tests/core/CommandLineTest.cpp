#include "core/CommandLine.h"

#include "core/AdvancedMode.h"
#include "fakes/RecordingLogSink.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <array>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace korvale {
namespace {

using testing::Contains;
using testing::ElementsAre;

CommandLine given(std::vector<QByteArray> arguments) {
    arguments.insert(arguments.begin(), "/usr/bin/korvale-ui");
    return CommandLine(std::move(arguments));
}

std::optional<OneShotCommand> commandOf(const CommandLine& commandLine) {
    const auto oneShot = oneShotCommand(commandLine);
    return oneShot ? std::optional(oneShot->command) : std::nullopt;
}

TEST(CommandLine, KeepsItsOwnCopy) {
    std::array<char, 3> argument{'-', 'a', '\0'};
    const std::array<const char*, 1> arguments{argument.data()};
    const CommandLine commandLine(1, arguments.data());
    argument[1] = 'b';
    EXPECT_TRUE(commandLine.contains("-a"));
}

TEST(CommandLine, EachOfTheFourOptionsMakesAOneShotStart) {
    for (const char* option :
         {"-update", "-background-scan", "-background-scan-stop", "-folder-scan"}) {
        EXPECT_TRUE(given({"-x", option}).isAutomation()) << option;
        EXPECT_TRUE(CommandLine({option}).isAutomation()) << "as program path: " << option;
    }
}

TEST(CommandLine, AStartIsForAnActionUnlessItSendsARequestAndEnds) {
    EXPECT_EQ(given({"-a", "--choose-folder"}).action(), u"scan-folder");
    EXPECT_EQ(given({"-a"}).action(), QString());
    EXPECT_EQ(given({"--choose-folder", "-update"}).action(), QString());
    EXPECT_EQ(given({"-folder-scan", "--choose-folder"}).action(), QString());
    EXPECT_TRUE(given({"--choose-folder"}).unknownOptions().empty());
}

TEST(CommandLine, OptionsAreComparedExactly) {
    for (const char* option : {"", "-a", "--update", "-Update", "-update ", "-updat", "update",
                               "-folder-scan=/tmp", "-background-scan-stopp"}) {
        EXPECT_FALSE(given({option}).isAutomation()) << option;
        EXPECT_FALSE(oneShotCommand(given({option}))) << option;
    }
}

TEST(CommandLine, PrecedenceIsNotArgumentOrder) {
    EXPECT_EQ(commandOf(given({"-background-scan", "-update"})), OneShotCommand::CheckUpdates);
    EXPECT_EQ(commandOf(given({"-folder-scan", "/", "-background-scan-stop", "-background-scan"})),
              OneShotCommand::ScanBackground);
    EXPECT_EQ(commandOf(given({"-folder-scan", "/", "-background-scan-stop"})),
              OneShotCommand::StopScan);
    EXPECT_EQ(commandOf(given({})), std::nullopt);
}

TEST(CommandLine, ARefusedFolderScanIsNotReplacedByAnotherCommand) {
    EXPECT_EQ(commandOf(given({"-folder-scan", "-update"})), OneShotCommand::CheckUpdates);
    EXPECT_EQ(commandOf(given({"-folder-scan", "-folder-scan"})), std::nullopt);
}

class FolderScan : public testing::Test {
protected:
    /// What a folder scan of `path` sends.
    static std::optional<QString> folderFor(const QByteArray& path) {
        const auto oneShot = oneShotCommand(given({"-folder-scan", path, "-folder-scan"}));
        return oneShot ? std::optional(oneShot->folder) : std::nullopt;
    }
    QByteArray path(const QByteArray& name) const { return m_folder.path().toUtf8() + '/' + name; }
    QByteArray makeFolder(const QByteArray& name) {
        EXPECT_TRUE(QDir().mkdir(QFile::decodeName(path(name))));
        return path(name);
    }
    QTemporaryDir m_folder;
};

TEST_F(FolderScan, SendsThePathAsGiven) {
    const QByteArray folder = makeFolder("a b \u00e9\u65e5 ~ $HOME");
    for (const QByteArray& given : {folder, folder + "/", folder + "//.", folder + "/../"}) {
        EXPECT_EQ(folderFor(given), QString::fromUtf8(given));
    }
    EXPECT_EQ(folderFor("."), QStringLiteral("."));
}

TEST_F(FolderScan, FollowsLinks) {
    ASSERT_TRUE(
        QFile::link(QFile::decodeName(makeFolder("there")), QFile::decodeName(path("link"))));
    EXPECT_EQ(folderFor(path("link")), QString::fromUtf8(path("link")));
}

TEST_F(FolderScan, OfARegularFileSendsNothing) {
    QFile file(QFile::decodeName(path("file")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    EXPECT_EQ(folderFor(path("file")), std::nullopt);
    EXPECT_TRUE(given({"-folder-scan", path("file")}).isAutomation());
}

TEST_F(FolderScan, WithoutAnExistingFolderSendsNothing) {
    EXPECT_EQ(folderFor(path("absent")), std::nullopt);
    EXPECT_EQ(folderFor(""), std::nullopt);
    EXPECT_EQ(folderFor("~"), std::nullopt);
    EXPECT_FALSE(oneShotCommand(given({"-folder-scan"})));
}

TEST_F(FolderScan, OfAPathThatIsNotUtf8SendsNothing) {
    const QByteArray folder = path("\xff\xfe");
    ASSERT_EQ(::mkdir(folder.constData(), 0700), 0);
    EXPECT_EQ(folderFor(folder), std::nullopt);
    ::rmdir(folder.constData());
}

TEST(HelpAndVersion, AreAskedForByTheirExactOption) {
    EXPECT_TRUE(given({"-a", "--help"}).asksFor("--help"));
    EXPECT_FALSE(given({"-help"}).asksFor("--help"));
    EXPECT_FALSE(CommandLine({"--version"}).asksFor("--version"));
}

TEST(HelpAndVersion, AsTheFolderToScanAreNoQuestion) {
    EXPECT_FALSE(given({"-folder-scan", "--help"}).asksFor("--help"));
    EXPECT_TRUE(given({"-folder-scan", "/tmp", "--help"}).asksFor("--help"));
}

TEST(HelpAndVersion, HelpNamesEveryOption) {
    for (const char* option :
         {"-update", "-background-scan", "-background-scan-stop", "-folder-scan FOLDER", "  -a ",
          "--help", "--version", "--status", "--json", "--bar waybar|i3status-rs", "--watch",
          "--choose-folder", "--check-updates", "--scan FOLDER...", "--background-scan start|stop",
          "  --wait "}) {
        EXPECT_TRUE(helpText().contains(option)) << option;
    }
}

TEST(HelpAndVersion, HelpFitsATerminal) {
    for (const QByteArray& line : helpText().split('\n')) {
        EXPECT_LE(line.size(), 80) << line.toStdString();
    }
}

TEST(HelpAndVersion, BehindTwoDashesStandNames) {
    EXPECT_FALSE(given({"--", "--help"}).asksFor("--help"));
    EXPECT_TRUE(given({"-folder-scan", "--", "--help"}).asksFor("--help"));
}

TEST(HelpAndVersion, AnOptionMayHaveItsValueBehindAnEqualsSign) {
    EXPECT_TRUE(given({"--scan=/tmp"}).asksFor("--scan"));
    EXPECT_FALSE(given({"--scanner"}).asksFor("--scan"));
}

class AdvancedMode : public testing::Test {
protected:
    void SetUp() override { QDir(m_folder.path()).mkdir(QStringLiteral("Korvale")); }
    QString file() const { return m_folder.filePath(QStringLiteral("Korvale/uiArgs")); }
    void write(const QByteArray& content) {
        QFile opened(file());
        ASSERT_TRUE(opened.open(QIODevice::WriteOnly));
        opened.write(content);
    }
    bool isOn(std::vector<QByteArray> arguments = {}) const {
        return isAdvanceMode(given(std::move(arguments)), m_folder.path());
    }
    QTemporaryDir m_folder;
};

TEST_F(AdvancedMode, TheArgumentTurnsItOnEveryTimeAndLeavesTheFile) {
    write(" -a");
    EXPECT_TRUE(isOn({"-a"}));
    EXPECT_TRUE(isOn({"-update", "-a"}));
    EXPECT_TRUE(QFile::exists(file()));
}

TEST_F(AdvancedMode, OtherSpellingsOfTheArgumentDoNot) {
    EXPECT_FALSE(isOn({"--a"}));
    EXPECT_FALSE(isOn({"-A"}));
    EXPECT_FALSE(isOn({" -a"}));
    EXPECT_FALSE(isOn());
}

TEST_F(AdvancedMode, TheFileTurnsItOnOnce) {
    write("korvale-ui -x -advanced\n");
    EXPECT_TRUE(isOn());
    EXPECT_FALSE(QFile::exists(file()));
    EXPECT_FALSE(isOn());
}

TEST_F(AdvancedMode, AFileWithoutALeadingBlankDoesNotAndIsGoneAfterwards) {
    write("-a\n-a\t-a");
    EXPECT_FALSE(isOn());
    EXPECT_FALSE(QFile::exists(file()));
}

TEST_F(AdvancedMode, AFileThatIsNotUtf8DoesNotAndIsGoneAfterwards) {
    write(" -a \xff");
    EXPECT_FALSE(isOn());
    EXPECT_FALSE(QFile::exists(file()));
}

TEST_F(AdvancedMode, AFolderDoesNotAndStays) {
    QDir().mkdir(file());
    EXPECT_FALSE(isOn());
    EXPECT_TRUE(QFileInfo(file()).isDir());
}

TEST_F(AdvancedMode, AFifoDoesNotBlockAndIsGoneAfterwards) {
    ASSERT_EQ(mkfifo(QFile::encodeName(file()).constData(), 0600), 0);
    EXPECT_FALSE(isOn());
    EXPECT_FALSE(QFileInfo::exists(file()));
}

TEST_F(AdvancedMode, SaysAtDebugWhatItFound) {
    setLogLevel(LogLevel::Debug);
    const RecordingLogSink sink;
    write("x -a\ny");
    EXPECT_TRUE(isOn());
    EXPECT_FALSE(isOn());
    EXPECT_TRUE(isOn({"-a"}));
    EXPECT_THAT(sink.lines(),
                ElementsAre("DEBUG \"isAdvanceMode in\"", "DEBUG \"isAdvanceMode dir 0, exist 1\"",
                            "DEBUG \"isAdvanceMode error (null), contents x -a\\x0ay\"",
                            "DEBUG \"isAdvanceMode true\"", "DEBUG \"isAdvanceMode in\"",
                            "DEBUG \"isAdvanceMode dir 0, exist 0\"",
                            "DEBUG \"isAdvanceMode false exit\"", "DEBUG \"isAdvanceMode in\""));
    setLogLevel(LogLevel::Info);
}

} // namespace
} // namespace korvale
