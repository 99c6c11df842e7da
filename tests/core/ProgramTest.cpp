#include "fakes/HalfAliveBus.h"
#include "fakes/ProgramRun.h"
#include "fakes/SessionBusDaemon.h"
#include "fakes/SilentSocket.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace korvale {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

constexpr const char* otherInstanceLine = "INFO \"KorvaleUI: an instance already running\"";

class Program : public testing::Test {
protected:
    /// What an administrator wrote for `run`.
    static void administrator(ProgramRun& run, const QByteArray& info) {
        write(run.path("root/etc/korvale-ui/Info.json"), info);
    }
    static void write(const QString& path, const QByteArray& content) {
        QDir().mkpath(QFileInfo(path).path());
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << path.toStdString();
        file.write(content);
    }
    /// Leaves the updater's message for the program; the line by which one that works meets it.
    QByteArray leaveMessage() const {
        const QString file = m_run.path(
            "root/Library/Application Support/Korvale/Desktop/download/status/1.kvupupdate");
        write(file, "x");
        return "INFO \"Displaying (" + file.toUtf8() + ")\"";
    }
    /// The bus has dealt with it when the name has an owner.
    static bool waitForName(const QDBusConnection& bus) {
        return waitUntil([&bus] {
            QTimer::singleShot(20, qApp, [] {});
            return bus.interface()->isServiceRegistered(QStringLiteral("com.korvale.ui")).value();
        });
    }
    ProgramRun m_run;
};

TEST_F(Program, HelpIsPrintedAndNothingElseHappens) {
    EXPECT_EQ(m_run.run({QStringLiteral("--help")}), 0);
    EXPECT_THAT(m_run.process.readAllStandardOutput().toStdString(),
                StartsWith("Usage: korvale-ui"));
    EXPECT_EQ(m_run.log(), QByteArray());
}

TEST_F(Program, AnAnswerThatFindsNoRoomIsAFailure) {
    for (const char* question : {"--help", "--version"}) {
        ProgramRun run;
        run.process.setStandardOutputFile(QStringLiteral("/dev/full"));
        EXPECT_EQ(run.run({QString::fromLatin1(question)}), 1) << question;
    }
}

TEST_F(Program, AnOptionThatNobodyKnowsIsOneWarningAndTheStartGoesOn) {
    m_run.offscreen();
    m_run.start({QStringLiteral("-style"), QStringLiteral("fusion"), QStringLiteral("-updaet"),
                 QStringLiteral("-a")});
    EXPECT_TRUE(m_run.waitForLine("WARN \"There is no option -updaet.\""));
    m_run.send(SIGTERM);
    EXPECT_EQ(m_run.status(), 0);
    EXPECT_EQ(m_run.log().count("There is no option"), 1);
}

TEST_F(Program, TheVersionIsPrintedAndNothingElseHappens) {
    EXPECT_EQ(m_run.run({QStringLiteral("--version"), QStringLiteral("-update")}), 0);
    EXPECT_THAT(m_run.process.readAllStandardOutput().toStdString(),
                StartsWith("KorvaleUI " KORVALE_VERSION " ("));
    EXPECT_EQ(m_run.log(), QByteArray());
}

TEST_F(Program, ABrokenInstallationIsOneClearSentence) {
    const QString copy = m_run.path("bin/other-name");
    QDir().mkpath(QFileInfo(copy).path());
    ASSERT_TRUE(QFile::copy(ProgramRun::builtProgram(), copy));
    m_run.start({QStringLiteral("-update")}, copy);
    EXPECT_EQ(m_run.status(), 1);
    EXPECT_EQ(m_run.log().count('\n'), 1);
    EXPECT_THAT(m_run.log().toStdString(), StartsWith("ERROR \"The installation is broken: "));
}

TEST_F(Program, NoFileOfItsOwnTakesTheNumberOfAClosedStandardStream) {
    m_run.offscreen();
    m_run.start({QStringLiteral("-c"), QStringLiteral("exec \"$0\" <&- >&- 2>&-"),
                 ProgramRun::builtProgram()},
                QStringLiteral("/bin/sh"));
    const QString files = QStringLiteral("/proc/%1/fd/").arg(m_run.process.processId());
    const auto isOpen = [&files](const char* number) {
        return QFile::symLinkTarget(files + QString::fromLatin1(number)) ==
               QStringLiteral("/dev/null");
    };
    EXPECT_TRUE(waitUntil([&isOpen] {
        QTimer::singleShot(20, qApp, [] {});
        return isOpen("0") && isOpen("1") && isOpen("2");
    }));
}

struct Display {
    const char* name;
    const char* variable;
    const char* value;
    QStringList arguments;
    const char* reason;
};
class UnusableDisplay : public Program, public testing::WithParamInterface<Display> {
protected:
    void SetUp() override { m_run.set(GetParam().variable, QString::fromLatin1(GetParam().value)); }
};

TEST_P(UnusableDisplay, EndsANormalStartWithOneClearLine) {
    EXPECT_EQ(m_run.run(GetParam().arguments), 1);
    EXPECT_THAT(m_run.lines().last().toStdString(), StartsWith("ERROR \"No usable display ("));
    EXPECT_EQ(m_run.log().count("ERROR"), 1);
    EXPECT_THAT(m_run.lines().last().toStdString(), HasSubstr(GetParam().reason));
    EXPECT_FALSE(m_run.log().contains("qt.qpa"));
}

TEST_P(UnusableDisplay, DoesNotKeepAOneShotStartFromItsWork) {
    EXPECT_EQ(m_run.run(QStringList{QStringLiteral("-update")} + GetParam().arguments), 0);
    EXPECT_EQ(m_run.lines().last(), exitLine);
    EXPECT_EQ(m_run.log().count("ERROR"), 0);
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, UnusableDisplay,
    testing::Values(
        Display{"None", "NOTHING", "", {}, "could not connect to display"},
        Display{"DeadX", "DISPLAY", ":7654", {}, "could not connect to display :7654"},
        Display{"NonsenseX", "DISPLAY", "nonsense", {}, "could not connect to display nonsense"},
        Display{"DeadWayland", "WAYLAND_DISPLAY", "wayland-7654", {}, "wayland"},
        Display{"ChosenX", "QT_QPA_PLATFORM", "xcb", {}, "could not connect to display"},
        Display{"UnknownPlatform",
                "QT_QPA_PLATFORM",
                "none-such",
                {},
                "Could not find the Qt platform plugin \"none-such\""},
        Display{"ArgumentX",
                "DISPLAY",
                ":7654",
                {QStringLiteral("-platform"), QStringLiteral("xcb")},
                "could not connect to display :7654"}),
    [](const auto& instance) { return instance.param.name; });

class EndingSignal : public Program, public testing::WithParamInterface<int> {};

TEST_P(EndingSignal, EndsTheProgramCleanly) {
    m_run.offscreen();
    m_run.start();
    ASSERT_TRUE(m_run.waitForLine("INFO \"main() Bastion KorveleUI Bundle ID com.korvale.ui\""));
    m_run.send(GetParam()); // perhaps still during launch
    EXPECT_EQ(m_run.status(), 0);
    EXPECT_EQ(m_run.lines().last(), exitLine);
    EXPECT_EQ(m_run.log().count("Bastion KorvaleUI Exit"), 1);
}

TEST_P(EndingSignal, IsIgnoredWhereTheParentHadItIgnored) {
    m_run.offscreen();
    m_run.start({QStringLiteral("-c"), QStringLiteral("trap '' %1; exec \"$0\"").arg(GetParam()),
                 ProgramRun::builtProgram()},
                QStringLiteral("/bin/sh"));
    ASSERT_TRUE(m_run.waitForLine("INFO \"main() Bastion KorveleUI Bundle ID com.korvale.ui\""));
    m_run.send(GetParam());
    m_run.send(SIGUSR1); // which nobody handles
    EXPECT_EQ(m_run.status(), -1);
    EXPECT_FALSE(m_run.log().contains("Bastion KorvaleUI Exit"));
}

INSTANTIATE_TEST_SUITE_P(All, EndingSignal, testing::Values(SIGTERM, SIGINT, SIGHUP));

TEST_F(Program, AFileNameCannotForgeALogLine) {
    m_run.offscreen();
    const QString folder =
        m_run.path("root/Library/Application Support/Korvale/Desktop/download/status/");
    write(folder + QStringLiteral("1\nERROR \"forged\"\x1b[2J.kvupupdate"), "x");
    m_run.start();
    EXPECT_TRUE(m_run.waitForLine("INFO \"Displaying (" + folder.toUtf8() +
                                  "1\\x0aERROR \"forged\"\\x1b[2J.kvupupdate)\""));
    EXPECT_FALSE(m_run.log().contains("\nERROR"));
}

TEST_F(Program, InNoUIModeNothingIsPolled) {
    m_run.offscreen();
    administrator(m_run, R"({"NoKorvaleUI": 1})");
    leaveMessage();
    m_run.start();
    ASSERT_TRUE(m_run.waitForLine("INFO \"NoKorvaleUIMode is on.\""));
    // Longer than a tick of the poll; there is no event to wait for when nothing happens.
    EXPECT_FALSE(m_run.process.waitForFinished(4000));
    m_run.send(SIGTERM);
    EXPECT_EQ(m_run.status(), 0);
    EXPECT_FALSE(m_run.log().contains("Displaying"));
}

TEST_F(Program, AFolderScanOfAFileStaysRunningAsATrayProgram) {
    m_run.start({QStringLiteral("-folder-scan"), QStringLiteral("/etc/hostname")});
    ASSERT_TRUE(m_run.waitForLine("INFO \"main() Bastion KorveleUI Bundle ID com.korvale.ui\""));
    EXPECT_FALSE(m_run.process.waitForFinished(1500));
    EXPECT_FALSE(m_run.log().contains("app("));
    m_run.send(SIGTERM);
    EXPECT_EQ(m_run.status(), 0);
}

/// Starts on one session bus.
class OnASessionBus : public Program {
protected:
    void SetUp() override {
        m_run.offscreen();
        m_run.set("DBUS_SESSION_BUS_ADDRESS", m_daemon.address());
    }
    void TearDown() override { QDBusConnection::disconnectFromBus(QStringLiteral("program-test")); }
    SessionBusDaemon m_daemon;
    QDBusConnection m_bus =
        QDBusConnection::connectToBus(m_daemon.address(), QStringLiteral("program-test"));
};

TEST_F(OnASessionBus, ASecondStartEndsAndTheFirstGoesOn) {
    m_run.start();
    ASSERT_TRUE(waitForName(m_bus));
    ProgramRun second;
    second.environment = m_run.environment;
    EXPECT_EQ(second.run(), 0);
    EXPECT_EQ(second.lines().last(), otherInstanceLine);
    EXPECT_EQ(m_run.process.state(), QProcess::Running);
    m_run.send(SIGTERM);
    EXPECT_EQ(m_run.status(), 0);
    EXPECT_FALSE(m_run.log().contains(otherInstanceLine));
}

TEST_F(OnASessionBus, AOneShotStartNeitherOwnsNorAsksForTheName) {
    m_run.start({QStringLiteral("-folder-scan"), QStringLiteral("/none")}); // stays running
    ProgramRun second;
    second.environment = m_run.environment;
    second.start();
    ASSERT_TRUE(waitForName(m_bus));
    EXPECT_EQ(m_bus.interface()->servicePid(QStringLiteral("com.korvale.ui")).value(),
              static_cast<uint>(second.process.processId()));
    ProgramRun third;
    third.environment = m_run.environment;
    EXPECT_EQ(third.run({QStringLiteral("-update")}), 0);
    EXPECT_FALSE(third.log().contains(otherInstanceLine));
}

TEST_F(OnASessionBus, ABusThatHangsHoldsUpNothingAndIsJoinedWhenItGoesOn) {
    m_daemon.hang();
    const QByteArray met = leaveMessage();
    m_run.start();
    EXPECT_TRUE(m_run.waitForLine(met));
    m_daemon.goOn();
    EXPECT_TRUE(waitForName(m_bus));
    m_run.send(SIGTERM);
    EXPECT_EQ(m_run.status(), 0);
}

TEST_F(OnASessionBus, ABusThatHangsDoesNotKeepTheProgramFromEnding) {
    m_daemon.hang();
    m_run.start();
    ASSERT_TRUE(m_run.waitForLine("INFO \"main() Bastion KorveleUI Bundle ID com.korvale.ui\""));
    m_run.send(SIGTERM);
    EXPECT_EQ(m_run.status(), 0);
    EXPECT_EQ(m_run.lines().last(), exitLine);
    m_daemon.goOn();
}

TEST_F(OnASessionBus, OfTwoThatStartWhileItHangsOneGoesOn) {
    m_daemon.hang();
    const QByteArray met = leaveMessage();
    ProgramRun other;
    other.environment = m_run.environment;
    for (ProgramRun* run : {&m_run, &other}) {
        run->start();
        EXPECT_TRUE(run->waitForLine(met));
    }
    m_daemon.goOn();
    const auto hasEnded = [](const ProgramRun& run) {
        return run.process.state() == QProcess::NotRunning;
    };
    ASSERT_TRUE(waitUntil([&] { return hasEnded(m_run) || hasEnded(other); }));
    ProgramRun& second = hasEnded(m_run) ? m_run : other;
    ProgramRun& first = &second == &other ? m_run : other;
    EXPECT_EQ(second.status(), 0);
    EXPECT_TRUE(second.lines().contains(otherInstanceLine));
    EXPECT_EQ(second.lines().last(), exitLine) << "it had begun, so that it ends";
    EXPECT_TRUE(waitForName(m_bus));
    EXPECT_EQ(m_bus.interface()->servicePid(QStringLiteral("com.korvale.ui")).value(),
              static_cast<uint>(first.process.processId()));
    first.send(SIGTERM);
    EXPECT_EQ(first.status(), 0);
    EXPECT_FALSE(first.lines().contains(otherInstanceLine));
}

TEST_F(Program, ASessionBusWhoseQueueOfClientsIsFullHoldsUpNothing) {
    m_run.offscreen();
    const QByteArray path = QFile::encodeName(m_run.path("session"));
    const SilentSocket hanging(path);
    const WaitingClients others(path);
    m_run.set("DBUS_SESSION_BUS_ADDRESS", QStringLiteral("unix:path=") + m_run.path("session"));
    const QByteArray met = leaveMessage();
    m_run.start();
    EXPECT_TRUE(m_run.waitForLine(met));
    m_run.send(SIGTERM);
    EXPECT_EQ(m_run.status(), 0);
    EXPECT_EQ(m_run.lines().last(), exitLine);
}

TEST_F(Program, BusesThatLetItInAndThenHangHoldUpNothing) {
    m_run.offscreen();
    const HalfAliveBus system(QFile::encodeName(m_run.path("system")));
    const HalfAliveBus session(QFile::encodeName(m_run.path("session")));
    m_run.set("DBUS_SYSTEM_BUS_ADDRESS", QStringLiteral("unix:path=") + m_run.path("system"));
    m_run.set("DBUS_SESSION_BUS_ADDRESS", QStringLiteral("unix:path=") + m_run.path("session"));
    const QByteArray met = leaveMessage();
    QElapsedTimer spent;
    spent.start();
    m_run.start();
    EXPECT_TRUE(m_run.waitForLine(met));
    m_run.send(SIGTERM);
    EXPECT_EQ(m_run.status(), 0);
    EXPECT_LT(spent.elapsed(), 20'000) << "greeting such a bus blocks for 25 s";
    EXPECT_EQ(m_run.lines().last(), exitLine);
}

TEST_F(Program, ASystemBusThatHangsHoldsUpNothing) {
    m_run.offscreen();
    const SilentSocket hanging(QFile::encodeName(m_run.path("system")));
    m_run.set("DBUS_SYSTEM_BUS_ADDRESS", QStringLiteral("unix:path=") + m_run.path("system"));
    const QByteArray met = leaveMessage();
    m_run.start();
    EXPECT_TRUE(m_run.waitForLine(met));
    m_run.send(SIGTERM);
    EXPECT_EQ(m_run.status(), 0);
}

} // namespace
} // namespace korvale
