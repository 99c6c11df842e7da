#include "core/AppDelegate.h"

#include "core/ProcessValues.h"
#include "core/base/Logging.h"
#include "fakes/LogLevelScope.h"
#include "fakes/WaitUntil.h"
#include "platform/HostIdentity.h"
#include "platform/Texts.h"
#include "shell/Translations.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>

namespace korvale {
namespace {

using testing::ElementsAre;

/// Calls back at each line of the log.
class LineHook final : public LogSink {
public:
    explicit LineHook(std::function<void(const QByteArray&)> hook) : m_hook(std::move(hook)) {
        setLogSink(this);
    }
    ~LineHook() override { setLogSink(nullptr); }
    LineHook(const LineHook&) = delete;
    LineHook& operator=(const LineHook&) = delete;
    void write(LogLevel /*level*/, const QByteArray& line) override { m_hook(line); }

private:
    std::function<void(const QByteArray&)> m_hook;
};

/// The controller with everything real around it, in a world without buses and in folders of its
/// own.
class AppDelegateTest : public testing::Test {
protected:
    AppDelegateTest() {
        qputenv("KORVALE_ROOT", m_folder.filePath(QStringLiteral("root")).toUtf8());
        for (const char* home : {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME"}) {
            qputenv(home, m_folder.path().toUtf8());
        }
        qputenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nonexistent/bus");
    }
    ~AppDelegateTest() override {
        m_delegate.reset();
        resetProcessValues();
    }
    AppDelegateTest(const AppDelegateTest&) = delete;
    AppDelegateTest& operator=(const AppDelegateTest&) = delete;

    void write(const QString& name, const QByteArray& content) const {
        const QString path = m_folder.filePath(name);
        ASSERT_TRUE(QDir().mkpath(QFileInfo(path).path()));
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }
    void writeList(const char* name, const QByteArray& content) const {
        write(QStringLiteral("root/Library/Application Support/Korvale/HostCache/") +
                  QString::fromLatin1(name),
              content);
    }

    AppDelegate& made(std::vector<QByteArray> arguments = {}, const QByteArray& info = "{}") {
        write(QStringLiteral("Info.json"), info);
        m_commandLine.emplace(std::move(arguments));
        m_info.emplace(InfoDictionary::load(m_folder.filePath(QStringLiteral("Info.json")),
                                            m_folder.filePath(QStringLiteral("none"))));
        setAutomationMode();
        m_delegate = std::make_unique<AppDelegate>(
            AppDelegateContext{*m_commandLine, *m_info, m_environment, [this] { say("wait"); },
                               [this] { say("terminate"); }});
        return *m_delegate;
    }

    /// What has been done, and how far the launch was then.
    void say(const char* what) {
        const AppState& state = m_delegate->state();
        m_said.push_back(std::string(what) + (state.justStart ? ", just started" : "") +
                         (m_delegate->statusUpdateTimer().isActive() ? ", polling" : "") +
                         (state.lastStatusReportTime ? ", reported" : ""));
    }

    QTemporaryDir m_folder;
    const Translations m_texts{{"de"}};
    std::optional<CommandLine> m_commandLine;
    std::optional<InfoDictionary> m_info;
    const StartEnvironment m_environment;
    std::unique_ptr<AppDelegate> m_delegate;
    std::vector<std::string> m_said;

private:
    void setAutomationMode() const {
        processValues().automationMode = m_commandLine->isAutomation();
    }
};

TEST_F(AppDelegateTest, BeforeTheLaunchTheStateIsThatOfAProgramThatKnowsNothing) {
    const AppState& state = made().state();
    EXPECT_TRUE(state.justStart);
    EXPECT_EQ(state.policyName, localizedText("DefaultPolicyName"));
    EXPECT_EQ(state.policyMode, localizedText("DefaultPolicyMode"));
    EXPECT_NE(state.policyName, QStringLiteral("DefaultPolicyName")) << "in the user's language";
    EXPECT_EQ(state.customName, hostDisplayName());
    EXPECT_FALSE(state.customName.isEmpty());
    EXPECT_EQ(state.curIconDispColor, IconColor::Red) << "no colour yet";
    EXPECT_FALSE(state.lastStatusReportTime);
    EXPECT_FALSE(m_delegate->statusUpdateTimer().isActive());
}

TEST_F(AppDelegateTest, TheAgentsSilenceIsCountedFromTheConstructionOn) {
    const SystemClock clock;
    const double before = clock.now();
    const std::optional<double> last = made().state().lastAgentReportTime;
    ASSERT_TRUE(last);
    EXPECT_GE(*last, before);
    EXPECT_LE(*last, clock.now());
    m_delegate->applicationDidFinishLaunching();
    EXPECT_EQ(m_delegate->state().lastAgentReportTime, last);
}

TEST_F(AppDelegateTest, ThePollIsAPreciseTimerOfTwoAndAHalfSeconds) {
    made().applicationDidFinishLaunching();
    const QTimer& timer = m_delegate->statusUpdateTimer();
    EXPECT_TRUE(waitUntil([&timer] { return timer.isActive(); })) << "once there is no bus";
    EXPECT_FALSE(timer.isSingleShot());
    EXPECT_EQ(timer.interval(), 2500);
    EXPECT_EQ(timer.timerType(), Qt::PreciseTimer);
}

TEST_F(AppDelegateTest, TheLaunchGoesInItsOrder) {
    const fakes::LogLevelScope level(LogLevel::Debug);
    writeList("header.log", R"({"MessageMask": 20})");
    writeList("analysis_count.log", R"({"AnalyzedCount": 5})");
    writeList("process_states.log", R"({"r": {"State": 2, "PID": 7}})");
    made({"korvale-ui", "-update"});
    const LineHook hook([this](const QByteArray& line) {
        if (line == "DEBUG \"isAdvanceMode in\"") {
            say("menu");
        } else if (line.startsWith("INFO \"Processing {r}")) {
            EXPECT_EQ(m_delegate->state().curIconDispColor, IconColor::Yellow) << "item and menu";
            say("batch");
        }
    });
    m_delegate->applicationDidFinishLaunching();
    EXPECT_EQ(m_delegate->state().analyzedCount, 5);
    EXPECT_EQ(m_delegate->state().exploitAttempt, 1);
    EXPECT_THAT(m_said, ElementsAre("menu, just started", "batch, just started",
                                    "terminate, polling, reported"))
        << "the one-shot command is the last step, and without an agent waits for nothing";
}

TEST_F(AppDelegateTest, InNoUIModeNothingIsReadPolledOrReported) {
    writeList("header.log", R"({"MessageMask": 4})");
    writeList("analysis_count.log", R"({"AnalyzedCount": 5})");
    made({"korvale-ui", "-background-scan"});
    processValues().noUIMode = true;
    m_delegate->applicationDidFinishLaunching();
    EXPECT_THAT(m_said, ElementsAre("terminate"));
    EXPECT_EQ(m_delegate->state().analyzedCount, 0);
    EXPECT_EQ(m_delegate->state().curIconDispColor, IconColor::Green);
    m_delegate->activate({});
    m_delegate->activate({}, scanFolderAction);
    m_delegate->activate({}, checkUpdatesAction);
    EXPECT_TRUE(QApplication::topLevelWindows().isEmpty());
}

QStringList visibleTitles() {
    QStringList titles;
    for (const QWidget* widget : QApplication::topLevelWidgets()) {
        if (widget->isVisible()) {
            titles.append(widget->windowTitle());
        }
    }
    return titles;
}

TEST_F(AppDelegateTest, TheFolderChooserNeedsNoWindowAndAnUnknownActionShowsIt) {
    made().applicationDidFinishLaunching();
    m_delegate->activate({}, scanFolderAction);
    EXPECT_EQ(visibleTitles(), QStringList{localizedText("ChooseFolderTitle")});
    m_delegate->activate({}, QStringLiteral("quit"));
    EXPECT_EQ(visibleTitles().size(), 2);
    EXPECT_TRUE(m_said.empty());
}

TEST_F(AppDelegateTest, UpdatesWantedBeforeTheLaunchAreAskedForAfterItWhateverComesBetween) {
    made({"korvale-ui", "-background-scan"}); // such a start says when a request is done
    m_delegate->activate({}, checkUpdatesAction);
    m_delegate->activate({});
    EXPECT_TRUE(m_said.empty());
    m_delegate->applicationDidFinishLaunching();
    EXPECT_EQ(m_said.size(), 2U) << "the start's own request, and the one for updates";
}

TEST_F(AppDelegateTest, AFolderChosenFromALauncherShowsTheWindowWhileThereIsNoAgent) {
    made().applicationDidFinishLaunching();
    m_delegate->activate({}, scanFolderAction);
    QFileDialog* dialog = nullptr;
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        dialog = dialog != nullptr ? dialog : qobject_cast<QFileDialog*>(widget);
    }
    ASSERT_NE(dialog, nullptr);
    static_cast<QDialog*>(dialog)->done(QDialog::Accepted);
    EXPECT_EQ(visibleTitles(), QStringList{QGuiApplication::applicationDisplayName()})
        << "its line says that no agent runs";
}

TEST_F(AppDelegateTest, TheAdministratorDecidesAboutPolicyUpdates) {
    made({}, R"({"Allow Check For Policy Update": false})").applicationDidFinishLaunching();
    EXPECT_FALSE(m_delegate->state().allowCheckForPolicyUpdate);
    made().applicationDidFinishLaunching();
    EXPECT_TRUE(m_delegate->state().allowCheckForPolicyUpdate);
}

/// The picture of the window that a start with this dictionary shows.
QImage windowPicture(AppDelegate& delegate) {
    delegate.applicationDidFinishLaunching();
    delegate.activate({});
    for (const QWidget* widget : QApplication::topLevelWidgets()) {
        if (widget->isVisible() && !widget->windowIcon().isNull()) {
            return widget->windowIcon().pixmap(64).toImage();
        }
    }
    return {};
}

TEST_F(AppDelegateTest, TheAlternativeIconSetIsTheDictionarys) {
    const QImage standard = windowPicture(made());
    const QImage vexa = windowPicture(made({}, R"({"Use Vexa App Icon": true})"));
    ASSERT_FALSE(standard.isNull());
    EXPECT_NE(standard, vexa);
}

TEST_F(AppDelegateTest, ExitLogsAndAsksForTheEnd) {
    QByteArrayList lines;
    made();
    const LineHook hook([&lines](const QByteArray& line) { lines << line; });
    m_delegate->exitApp();
    EXPECT_THAT(m_said, ElementsAre("terminate, just started"));
    m_delegate->applicationWillTerminate();
    EXPECT_EQ(lines,
              QByteArrayList({"INFO \"exitApp.\"", "INFO \"-[AppDelegate applicationWillTerminate:]"
                                                   "() Bastion KorvaleUI Exit\""}));
}

} // namespace
} // namespace korvale

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    return RUN_ALL_TESTS();
}
