#pragma once

#include "fakes/WaitUntil.h"

#include <QProcess>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <csignal>
#include <gtest/gtest.h>

namespace korvale {

/// One run of the built program (KORVALE_PROGRAM) in a world of its own: no display, no bus, an
/// empty root and home, unless the environment is changed before start().
class ProgramRun {
public:
    ProgramRun() {
        for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "XDG_DATA_DIRS", "JOURNAL_STREAM",
                                 "QT_QPA_PLATFORM", "XDG_SESSION_TYPE", "XDG_RUNTIME_DIR"}) {
            environment.remove(QString::fromLatin1(name));
        }
        set("KORVALE_ROOT", path("root"));
        set("HOME", path("home"));
        set("XDG_CONFIG_HOME", path("home/config"));
        set("XDG_DATA_HOME", path("home/data"));
        set("XDG_STATE_HOME", path("home/state"));
        set("LC_ALL", QStringLiteral("C.UTF-8"));
        set("DBUS_SESSION_BUS_ADDRESS", QStringLiteral("unix:path=/nonexistent/session"));
        set("DBUS_SYSTEM_BUS_ADDRESS", QStringLiteral("unix:path=/nonexistent/system"));
    }
    ~ProgramRun() {
        process.kill();
        process.waitForFinished();
    }
    ProgramRun(const ProgramRun&) = delete;
    ProgramRun& operator=(const ProgramRun&) = delete;

    void set(const char* name, const QString& value) {
        environment.insert(QString::fromLatin1(name), value);
    }
    void offscreen() { set("QT_QPA_PLATFORM", QStringLiteral("offscreen")); }
    [[nodiscard]] QString path(const char* name) const {
        return m_folder.filePath(QString::fromUtf8(name));
    }

    void start(const QStringList& arguments = {}, const QString& program = builtProgram()) {
        process.setProcessEnvironment(environment);
        process.setReadChannel(QProcess::StandardError);
        process.start(program, arguments);
        ASSERT_TRUE(process.waitForStarted());
    }
    /// Waits for the end; the exit status, or -1 after a crash.
    int status() {
        if (process.state() != QProcess::NotRunning) {
            EXPECT_TRUE(process.waitForFinished(60'000));
        }
        log();
        return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    }
    int run(const QStringList& arguments = {}) {
        start(arguments);
        return status();
    }
    void send(int signal) const {
        ASSERT_EQ(process.state(), QProcess::Running);
        ::kill(static_cast<pid_t>(process.processId()), signal);
    }

    /// Everything on standard error so far.
    const QByteArray& log() {
        m_log += process.readAllStandardError();
        return m_log;
    }
    QByteArrayList lines() { return log().trimmed().split('\n'); }
    bool waitForLine(const QByteArray& line) {
        while (!log().contains(line + '\n')) {
            if (!process.waitForReadyRead(20'000)) {
                return log().contains(line + '\n');
            }
        }
        return true;
    }

    static QString builtProgram() { return QStringLiteral(KORVALE_PROGRAM); }

    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();

private:
    QTemporaryDir m_folder;
    QByteArray m_log;
};

inline constexpr const char* exitLine =
    "INFO \"-[AppDelegate applicationWillTerminate:]() Bastion KorvaleUI Exit\"";

} // namespace korvale
