// The program at a terminal and the real agent.
#include "AgentRun.h"
#include "fakes/ProgramRun.h"

#include <QDir>

namespace korvale::agent {
namespace {

class TerminalScanTest : public AgentRun {
protected:
    void SetUp() override {
        AgentRun::SetUp();
        if (IsSkipped()) {
            return;
        }
        const QString cache = m_folder.path(QStringLiteral("Library/Application Support/Korvale"));
        QDir().mkpath(cache);
        QFile::link(m_folder.path(QStringLiteral("HostCache")),
                    cache + QStringLiteral("/HostCache"));
        start();
    }
    /// The exit status; what was printed is in m_printed.
    int scan() {
        ProgramRun run;
        run.set("DBUS_SYSTEM_BUS_ADDRESS", m_bus.address());
        run.set("KORVALE_ROOT", m_folder.path(QStringLiteral(".")));
        run.start({QStringLiteral("--scan"), m_folder.path(QStringLiteral("files")),
                   QStringLiteral("--wait")});
        EXPECT_TRUE(waitUntil([&] { return run.process.state() == QProcess::NotRunning; }));
        m_printed = run.process.readAllStandardOutput() + run.log();
        return run.status();
    }
    QByteArray m_printed;
};

TEST_F(TerminalScanTest, AWaitedScanSaysWhatTheRealAgentFoundAndWhatItCouldNotScan) {
    m_folder.write(QStringLiteral("files/harmless"), "text");
    writeBadFile(QStringLiteral("bad.com"));
    EXPECT_EQ(scan(), 1) << m_printed.toStdString();
    EXPECT_TRUE(m_printed.contains("Quarantined " +
                                   m_folder.path(QStringLiteral("files/bad.com")).toUtf8() + '\n'))
        << m_printed.toStdString();
    EXPECT_TRUE(m_printed.contains("1 not scanned")) << "there is no engine for the other one\n"
                                                     << m_printed.toStdString();
    writeBadFile(QStringLiteral("bad.com"));
    EXPECT_EQ(scan(), 1) << "taken once more\n" << m_printed.toStdString();
    EXPECT_EQ(scan(), 0) << m_printed.toStdString();
    EXPECT_TRUE(m_printed.contains("The agent reported no threat.\n")) << m_printed.toStdString();
}

} // namespace
} // namespace korvale::agent
