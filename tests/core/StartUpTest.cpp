#include "core/StartUp.h"

#include "core/BundleIdentity.h"
#include "core/ProcessValues.h"
#include "core/base/AppState.h"
#include "fakes/RecordingLogSink.h"
#include "platform/ToolkitMessages.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace korvale {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class FakeRunningApplications final : public RunningApplications {
public:
    explicit FakeRunningApplications(std::vector<RunningApplication> running)
        : m_running(std::move(running)) {}
    [[nodiscard]] std::vector<RunningApplication> list() const override { return m_running; }

private:
    std::vector<RunningApplication> m_running;
};

class StartUp : public testing::Test {
protected:
    void TearDown() override {
        resetProcessValues();
        setLogLevel(LogLevel::Info);
        qunsetenv("KORVALE_ROOT");
    }
    InfoDictionary info(const QByteArray& packaged) {
        QFile file(m_folder.filePath(QStringLiteral("Info.json")));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(packaged);
        file.close();
        return InfoDictionary::load(file.fileName(),
                                    m_folder.filePath(QStringLiteral("administrators")));
    }
    QTemporaryDir m_folder;
    RecordingLogSink m_sink;
};

TEST_F(StartUp, AnInstanceIsRecognisedByItsExactName) {
    EXPECT_TRUE(
        otherInstanceRuns(FakeRunningApplications({{QStringLiteral("KorvaleBASTION"), 7}})));
    for (const char* name :
         {"KorvaleUI", "korvalebastion", "KorvaleBASTION ", "KorvaleBASTION2", ""}) {
        EXPECT_FALSE(otherInstanceRuns(FakeRunningApplications({{QString::fromLatin1(name), 7}})))
            << name;
    }
    EXPECT_FALSE(otherInstanceRuns(FakeRunningApplications({})));
}

TEST_F(StartUp, TheWalkEndsAtTheOtherInstance) {
    EXPECT_TRUE(otherInstanceRuns(FakeRunningApplications({{QStringLiteral("a\nb"), 3},
                                                           {QStringLiteral("KorvaleBASTION"), 40},
                                                           {QStringLiteral("never seen"), 41}})));
    EXPECT_THAT(m_sink.lines(), ElementsAre("INFO \"app(a\\x0ab), pid(3)\"",
                                            "INFO \"app(KorvaleBASTION), pid(40)\""));
}

TEST_F(StartUp, BelowInfoTheRuleHoldsWithoutALine) {
    setLogLevel(LogLevel::Warn);
    EXPECT_TRUE(
        otherInstanceRuns(FakeRunningApplications({{QStringLiteral("KorvaleBASTION"), 1}})));
    logOtherInstance();
    EXPECT_THAT(m_sink.lines(), IsEmpty());
}

TEST_F(StartUp, TheOtherInstanceIsLogged) {
    logOtherInstance();
    EXPECT_THAT(m_sink.lines(), ElementsAre("INFO \"KorvaleUI: an instance already running\""));
}

TEST_F(StartUp, TheFirstLinesComeInOrder) {
    qputenv("KORVALE_ROOT", m_folder.path().toUtf8() + "/none");
    const InfoDictionary dictionary =
        info(R"({"CFBundleIdentifier": "com.korvale.ui", "CFBundleName": "KorvaleUI",
                 "CFBundleShortVersionString": "1.0.0", "CFBundleVersion": "1"})");
    OSLoggingStartup(dictionary, QStringLiteral("p"));
    logStartUp(dictionary);
    EXPECT_THAT(
        m_sink.lines(),
        ElementsAre("INFO \"main() Bastion KorveleUI Enter\"",
                    "INFO \"UtilLogVersionNumber() Korvale Bastion KorvaleUI version = 1.0.0 (1)\"",
                    testing::StartsWith("INFO \"UtilLogOSVersionNumber() System macOS version "),
                    "INFO \"main() Bastion KorveleUI Log Level INFO\"",
                    "INFO \"main() Bastion KorveleUI Bundle ID com.korvale.ui\"",
                    "WARN \"KORVALE_ROOT is set: files are read below " +
                        m_folder.path().toStdString() + "/none.\""));
}

TEST_F(StartUp, AnIgnoredInformationFileIsAWarning) {
    setLogLevel(LogLevel::Warn);
    QFile administrators(m_folder.filePath(QStringLiteral("administrators")));
    ASSERT_TRUE(administrators.open(QIODevice::WriteOnly)); // empty, so no JSON
    administrators.close();
    logStartUp(info("{}"));
    EXPECT_THAT(
        m_sink.lines(),
        ElementsAre("WARN \"/etc/korvale-ui/Info.json holds no JSON object and is ignored.\""));
}

TEST_F(StartUp, AnInformationFileThatCannotBeReadIsSaidToBeThat) {
    setLogLevel(LogLevel::Warn);
    ASSERT_TRUE(QDir().mkpath(m_folder.filePath(QStringLiteral("administrators"))));
    logStartUp(info("{}"));
    EXPECT_THAT(m_sink.lines(),
                ElementsAre("WARN \"/etc/korvale-ui/Info.json cannot be read and is ignored.\""));
}

TEST_F(StartUp, AnOptionThatNobodyKnowsIsAWarning) {
    logUnknownOptions(CommandLine({"-program", "-updaet", "--a", "-", "-a", "-update", "file",
                                   "-background-scan", "-background-scan-stop", "-folder-scan",
                                   "-no-option-but-a-folder", "--help", "--version"}));
    EXPECT_THAT(m_sink.lines(),
                ElementsAre("WARN \"There is no option -updaet.\"",
                            "WARN \"There is no option --a.\"", "WARN \"There is no option -.\""));
}

TEST_F(StartUp, TheToolkitsMessagesAreLinesOfTheLog) {
    const QtMessageHandler before = qInstallMessageHandler(nullptr);
    logToolkitMessages();
    setLogLevel(LogLevel::Debug);
    qDebug("a");
    qInfo("b\nc");
    qWarning("d %s", "%@");
    qCritical("e");
    setLogLevel(LogLevel::Error);
    qWarning("suppressed");
    qInstallMessageHandler(before);
    EXPECT_THAT(m_sink.lines(),
                ElementsAre("DEBUG \"a\"", "INFO \"b\\x0ac\"", "WARN \"d %@\"", "ERROR \"e\""));
}

TEST_F(StartUp, NoUIModeIsSaidWhenItIsOn) {
    setNoUIMode(info(R"({"NoKorvaleUI": 1})"));
    EXPECT_TRUE(processValues().noUIMode);
    EXPECT_THAT(m_sink.lines(), ElementsAre("INFO \"NoKorvaleUIMode is on.\""));
}

TEST_F(StartUp, AnyOtherNumberLeavesNoUIModeOffInSilence) {
    for (const char* content : {"{}", R"({"NoKorvaleUI": 2})", R"({"NoKorvaleUI": "on"})"}) {
        setNoUIMode(info(content));
        EXPECT_FALSE(processValues().noUIMode) << content;
    }
    EXPECT_THAT(m_sink.lines(), IsEmpty());
}

TEST_F(StartUp, AutomationModeFollowsTheOptions) {
    setAutomationMode(CommandLine({"korvale-ui", "-a"}));
    EXPECT_FALSE(processValues().automationMode);
    setAutomationMode(CommandLine({"korvale-ui", "-folder-scan"}));
    EXPECT_TRUE(processValues().automationMode);
}

TEST(AppState, BeginsWithADriverAndNothingElseKnown) {
    const AppState state;
    EXPECT_TRUE(state.driverConnected);
    EXPECT_TRUE(state.justStart);
    EXPECT_TRUE(state.allowCheckForPolicyUpdate);
    EXPECT_FALSE(state.halyxConnected || state.quillmarConnected || state.showNotifications ||
                 state.policyShowNotifications || state.showNotificationsChanged);
    EXPECT_EQ(state.activeTabIndex, TabIdentifier::Threats);
    EXPECT_EQ(state.currentLogLevel, -1);
    EXPECT_EQ(state.statusState, StatusState::NotRunning);
    EXPECT_EQ(state.curIconDispColor, IconColor::Red);
    EXPECT_FALSE(state.lastStatusReportTime || state.lastAgentReportTime ||
                 state.currentScanItemStartTime);
    for (const std::int64_t counter :
         {state.analyzedCount, state.threatQuarantineCount, state.threatDetectCount,
          state.threatWaiveCount, state.abnormalQuarantineCount, state.abnormalDetectCount,
          state.abnormalWaiveCount, state.quarantineCount, state.waiveCount, state.exploitAttempt,
          state.newExploitCount, state.newThreatCount, state.externalDevicesCount,
          state.eventCount}) {
        EXPECT_EQ(counter, 0);
    }
}

} // namespace
} // namespace korvale
