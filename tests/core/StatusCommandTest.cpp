// "--status" of the built program, asked of another one over a session bus.
#include "fakes/ProgramRun.h"
#include "fakes/SessionBusDaemon.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QElapsedTimer>

#include <gtest/gtest.h>

namespace korvale {
namespace {

class StatusCommand : public testing::Test {
protected:
    void startProgram() {
        m_program.offscreen();
        m_program.set("DBUS_SESSION_BUS_ADDRESS", m_bus.address());
        m_program.start();
        const QDBusConnection bus =
            QDBusConnection::connectToBus(m_bus.address(), QStringLiteral("status-command-test"));
        EXPECT_TRUE(waitUntil([&bus] {
            QTimer::singleShot(20, qApp, [] {});
            return bus.interface()->isServiceRegistered(QStringLiteral("com.korvale.ui")).value();
        }));
        QDBusConnection::disconnectFromBus(QStringLiteral("status-command-test"));
    }
    /// The exit status; what was printed is in m_printed.
    int ask(const QStringList& options = {}) {
        ProgramRun run;
        run.set("DBUS_SESSION_BUS_ADDRESS", m_bus.address());
        run.start(QStringList{QStringLiteral("--status")} + options);
        const int status = run.status();
        m_printed = run.process.readAllStandardOutput();
        EXPECT_EQ(run.log(), QByteArray());
        return status;
    }
    static bool waitForOutput(QProcess& process, QByteArray& output, const QByteArray& part) {
        while (!output.contains(part) && process.waitForReadyRead(20'000)) {
            output += process.readAllStandardOutput();
        }
        return output.contains(part);
    }

    SessionBusDaemon m_bus;
    ProgramRun m_program;
    QByteArray m_printed;
};

constexpr const char* noAnswer = "KorvaleUI does not answer\n";
constexpr const char* notRunning = "KorvaleUI is not running\n";

TEST_F(StatusCommand, ARunningProgramAnswersAndOneThatHasEndedIsNotRunning) {
    startProgram();
    EXPECT_EQ(ask(), 1) << "there is no agent";
    EXPECT_EQ(m_printed.count('\n'), 1) << m_printed.toStdString();
    m_program.send(SIGTERM);
    EXPECT_EQ(m_program.status(), 0);
    EXPECT_EQ(ask(), 3);
    EXPECT_EQ(m_printed, QByteArray(notRunning));
}

TEST_F(StatusCommand, GoesWithoutSayingWhereItsOptionsAre) {
    for (const char* option : {"--json", "--bar=waybar"}) {
        ask({QString::fromLatin1(option)});
        const QByteArray printed = m_printed;
        ProgramRun run;
        run.set("DBUS_SESSION_BUS_ADDRESS", m_bus.address());
        run.run({QString::fromLatin1(option)});
        EXPECT_EQ(run.process.readAllStandardOutput(), printed);
    }
}

TEST_F(StatusCommand, WrongUseIsOneSentenceInTheUsersLanguage) {
    for (const QStringList& arguments :
         {QStringList{QStringLiteral("--bar")},
          QStringList{QStringLiteral("--status"), QStringLiteral("--wait")},
          QStringList{QStringLiteral("--watch"), QStringLiteral("now")}}) {
        ProgramRun run;
        run.set("LC_ALL", QStringLiteral("de_DE.UTF-8"));
        EXPECT_EQ(run.run(arguments), 64);
        EXPECT_EQ(run.process.readAllStandardOutput(), QByteArray());
        EXPECT_TRUE(run.log().startsWith("korvale-ui: Falsch aufgerufen: "))
            << run.log().toStdString();
        EXPECT_EQ(run.log().count('\n'), 1);
    }
}

TEST_F(StatusCommand, AProgramThatHangsIsGivenFiveSeconds) {
    startProgram();
    m_program.send(SIGSTOP);
    QElapsedTimer timer;
    timer.start();
    EXPECT_EQ(ask(), 4);
    EXPECT_GE(timer.elapsed(), 4500);
    EXPECT_LT(timer.elapsed(), 15'000);
    EXPECT_EQ(m_printed, QByteArray(noAnswer));
    m_program.send(SIGCONT);
}

TEST_F(StatusCommand, ABusThatHangsIsGivenFiveSecondsToo) {
    m_bus.hang();
    EXPECT_EQ(ask(), 4);
    EXPECT_EQ(m_printed, QByteArray(noAnswer));
    m_bus.goOn();
}

TEST_F(StatusCommand, WatchingOutlivesTheProgram) {
    startProgram();
    ProgramRun watching;
    watching.set("DBUS_SESSION_BUS_ADDRESS", m_bus.address());
    watching.start({QStringLiteral("--status"), QStringLiteral("--watch")});
    watching.process.setReadChannel(QProcess::StandardOutput);
    QByteArray output;
    ASSERT_TRUE(waitForOutput(watching.process, output, "\n"));
    m_program.send(SIGTERM);
    EXPECT_TRUE(waitForOutput(watching.process, output, notRunning)) << output.toStdString();
    EXPECT_EQ(watching.process.state(), QProcess::Running);
}

} // namespace
} // namespace korvale
