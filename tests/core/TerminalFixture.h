#pragma once

#include "agent_sim/SimProcess.h"
#include "fakes/PrivateBus.h"
#include "fakes/ProgramRun.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <ostream>

namespace korvale {

/// What one run came to.
struct Ending {
    int status = -1;
    QString output;
    QString errors;

    friend bool operator==(const Ending&, const Ending&) = default;
    friend std::ostream& operator<<(std::ostream& stream, const Ending& ending) {
        return stream << ending.status << "\n--- output\n"
                      << ending.output.toStdString() << "--- errors\n"
                      << ending.errors.toStdString();
    }
};

/// The built program at a terminal, with the stand-in agent on a bus of its own.
class TerminalFixture : public testing::Test {
protected:
    void SetUp() override {
        m_folder = QDir(m_scratch.path()).canonicalPath();
        QDir(m_folder).mkpath(QStringLiteral("to scan"));
        QDir(m_folder).mkpath(QStringLiteral("more"));
        m_toScan = m_folder + QStringLiteral("/to scan");
        m_more = m_folder + QStringLiteral("/more");
    }
    void startAgent() {
        m_bus.start();
        m_agent.start(m_run.path("root"), {QStringLiteral("--scan-folder"), m_toScan});
        ASSERT_TRUE(m_agent.waitFor(QStringLiteral("ready")));
    }
    /// One whose scan of the folder ends only when it is stopped.
    void startSlowAgent() {
        startAgent();
        write(m_toScan + QStringLiteral("/1"), "1");
        write(m_toScan + QStringLiteral("/2"), "2");
        m_agent.tell(QStringLiteral("scan-pace 60000"));
    }
    /// A program of the same world.
    void prepare(ProgramRun& run) {
        run.set("DBUS_SYSTEM_BUS_ADDRESS", m_bus.address());
        run.set("KORVALE_ROOT", m_run.path("root"));
    }
    static Ending endingOf(ProgramRun& run) {
        EXPECT_TRUE(waitUntil([&] { return run.process.state() == QProcess::NotRunning; }));
        const int status = run.status();
        return {status, QString::fromUtf8(run.process.readAllStandardOutput()),
                QString::fromUtf8(run.log())};
    }
    Ending command(const QStringList& arguments) {
        ProgramRun run;
        prepare(run);
        run.start(arguments);
        return endingOf(run);
    }
    /// All that the agent was asked for, as it prints it.
    QString requests() {
        m_agent.tell(QStringLiteral("requests"));
        return m_agent.lines().join(u'\n');
    }
    static void write(const QString& path, const QByteArray& content) {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }

    QTemporaryDir m_scratch;
    PrivateBus m_bus;
    ProgramRun m_run; ///< for its folders; never started
    sim::SimProcess m_agent;
    QString m_folder;
    QString m_toScan;
    QString m_more;
};

} // namespace korvale
