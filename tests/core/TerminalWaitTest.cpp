// "--wait": the built program and the stand-in agent, which really scans.
#include "core/TerminalFixture.h"

#include <array>
#include <gtest/gtest.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

namespace korvale {
namespace {

const QString waiting = QStringLiteral("--wait");
const QString scan = QStringLiteral("--scan");
const QString backgroundScan = QStringLiteral("--background-scan");

class TerminalWaiting : public TerminalFixture {
protected:
    void badFile(const QString& path) {
        ASSERT_TRUE(m_agent.tell(QStringLiteral("write-test-file ") + path)
                        .startsWith(QStringLiteral("ok")));
    }
    /// Waits for a scan's progress, and returns once it has begun.
    void startScan(ProgramRun& run, const QStringList& arguments) {
        prepare(run);
        run.start(arguments);
        ASSERT_TRUE(
            m_agent.tell(QStringLiteral("wait-request SCAN")).startsWith(QStringLiteral("ok")));
        run.process.setReadChannel(QProcess::StandardOutput);
        ASSERT_TRUE(waitUntil([&] { return run.process.canReadLine(); }));
    }
};

TEST_F(TerminalWaiting, AScanThatFindsNothingEndsWithZero) {
    startAgent();
    write(m_toScan + QStringLiteral("/harmless"), "x");
    const Ending ending = command({scan, m_toScan, waiting});
    EXPECT_EQ(ending.status, 0) << ending;
    EXPECT_TRUE(ending.errors.isEmpty()) << ending;
    EXPECT_TRUE(ending.output.startsWith(QStringLiteral("The agent scans ") + m_toScan + u'\n'))
        << ending;
    EXPECT_EQ(ending.output.count(m_toScan + QStringLiteral("/harmless\n")), 1)
        << "the progress, as a plain line\n"
        << ending;
    EXPECT_TRUE(ending.output.endsWith(
        QStringLiteral("\nFiles analyzed: 1\nThe agent reported no threat.\n")))
        << ending;
}

TEST_F(TerminalWaiting, AScanThatFindsSomethingSaysWhatAndEndsWithOne) {
    startAgent();
    badFile(m_toScan + QStringLiteral("/bad"));
    badFile(m_more + QStringLiteral("/not in it"));
    const Ending ending = command({scan, m_toScan, waiting});
    EXPECT_EQ(ending.status, 1) << ending;
    EXPECT_TRUE(
        ending.output.endsWith(QStringLiteral("\nThreats found: 1\nUnsafe %1/bad\n").arg(m_toScan)))
        << ending;
    const Ending again = command({scan, m_toScan, waiting});
    EXPECT_EQ(again.status, 1) << "it is still there\n" << again;
}

TEST_F(TerminalWaiting, SeveralFoldersAreScannedOneAfterTheOther) {
    startAgent();
    write(m_toScan + QStringLiteral("/harmless"), "x");
    badFile(m_more + QStringLiteral("/bad"));
    const Ending ending = command({scan, m_toScan, m_more, waiting});
    EXPECT_EQ(ending.status, 1);
    const qsizetype nothing =
        ending.output.indexOf(QStringLiteral("The agent reported no threat."));
    const qsizetype second = ending.output.indexOf(QStringLiteral("The agent scans ") + m_more);
    EXPECT_GE(nothing, 0) << ending;
    EXPECT_GT(second, nothing) << ending;
    EXPECT_TRUE(ending.output.contains(QStringLiteral("Unsafe %1/bad").arg(m_more))) << ending;
}

TEST_F(TerminalWaiting, TheBackgroundScanIsWaitedForToo) {
    startAgent();
    badFile(m_toScan + QStringLiteral("/bad"));
    const Ending ending = command({backgroundScan, QStringLiteral("start"), waiting});
    EXPECT_EQ(ending.status, 1) << ending;
    EXPECT_TRUE(ending.output.contains(QStringLiteral("Unsafe %1/bad").arg(m_toScan)));
}

TEST_F(TerminalWaiting, StoppingWaitsUntilNothingRuns) {
    startSlowAgent();
    m_agent.tell(QStringLiteral("background-scan"));
    EXPECT_EQ(command({backgroundScan, QStringLiteral("stop"), waiting}),
              (Ending{0,
                      QStringLiteral("The agent stops its scans.\nNo scan is running any more.\n"),
                      {}}));
}

TEST_F(TerminalWaiting, ANameFromTheAgentDoesNotSteerTheTerminal) {
    startAgent();
    const QString evil = m_toScan + QStringLiteral("/\x1b[2J\u202e");
    write(evil, "x");
    const Ending ending = command({scan, m_toScan, waiting});
    EXPECT_EQ(ending.status, 0) << ending;
    EXPECT_TRUE(ending.output.contains(m_toScan + QStringLiteral("/[U+001B][2J[U+202E]")))
        << ending;
    EXPECT_FALSE(ending.output.contains(u'\x1b'));
}

TEST_F(TerminalWaiting, WhatTheAgentSaysMeanwhileIsPrinted) {
    startSlowAgent();
    ProgramRun run;
    startScan(run, {scan, m_toScan, waiting});
    m_agent.tell(QStringLiteral("consumer-notification \"half was\\nnot scanned\""));
    m_agent.tell(QStringLiteral("stop-scan"));
    const Ending ending = endingOf(run);
    EXPECT_TRUE(
        ending.output.contains(QStringLiteral("\nThe agent says: half was[U+000A]not scanned\n")))
        << ending;
}

TEST_F(TerminalWaiting, AnAgentThatDiesMeanwhileEndsItWithThree) {
    startSlowAgent();
    ProgramRun run;
    startScan(run, {scan, m_toScan, m_more, waiting});
    m_agent.kill();
    const Ending ending = endingOf(run);
    EXPECT_EQ(ending.status, 3);
    EXPECT_EQ(ending.errors,
              QStringLiteral("korvale-ui: The agent has ended before it was done.\n"))
        << ending;
}

TEST_F(TerminalWaiting, WhatTheScanTellsBeforeTheAnswerIsSaidAfterIt) {
    startAgent();
    write(m_toScan + QStringLiteral("/harmless"), "x");
    m_agent.tell(QStringLiteral("reply-delay 1000"));
    const Ending ending = command({scan, m_toScan, waiting});
    EXPECT_EQ(ending.status, 0) << ending;
    const QStringList lines = ending.output.split(u'\n');
    EXPECT_EQ(lines.value(0), QStringLiteral("The agent scans ") + m_toScan) << ending;
    EXPECT_TRUE(lines.value(1).endsWith(QStringLiteral("/harmless"))) << ending;
}

TEST_F(TerminalWaiting, TheInterruptKeySaysThatTheScanGoesOn) {
    startSlowAgent();
    ProgramRun run;
    startScan(run, {scan, m_toScan, waiting});
    run.send(SIGINT);
    const Ending ending = endingOf(run);
    EXPECT_EQ(ending.status, 128 + SIGINT);
    EXPECT_EQ(ending.errors, QStringLiteral("korvale-ui: The agent goes on with the scan; "
                                            "--background-scan stop ends it.\n"));
}

/// The program on a terminal of its own; what it wrote there.
QByteArray writtenToTerminal(const QStringList& arguments, const QProcessEnvironment& environment,
                             int& status) {
    int terminal = -1;
    QByteArrayList words{QByteArrayLiteral(KORVALE_PROGRAM)};
    for (const QString& argument : arguments) {
        words << argument.toUtf8();
    }
    std::vector<char*> command;
    for (QByteArray& word : words) {
        command.push_back(word.data());
    }
    command.push_back(nullptr);
    QByteArrayList settings;
    for (const QString& setting : environment.toStringList()) {
        settings << setting.toUtf8();
    }
    std::vector<char*> variables;
    for (QByteArray& setting : settings) {
        variables.push_back(setting.data());
    }
    variables.push_back(nullptr);
    winsize size{};
    size.ws_col = 40;
    size.ws_row = 10;
    const pid_t child = ::forkpty(&terminal, nullptr, nullptr, &size);
    if (child == 0) {
        ::execve(command.front(), command.data(), variables.data());
        ::_exit(127);
    }
    QByteArray written;
    std::array<char, 4096> bytes{};
    for (ssize_t count = 1; count > 0;) { // until the program has closed its end
        count = ::read(terminal, bytes.data(), bytes.size());
        written.append(bytes.data(), std::max<ssize_t>(count, 0));
    }
    ::waitpid(child, &status, 0);
    ::close(terminal);
    return written;
}

TEST_F(TerminalWaiting, OnATerminalTheProgressIsRewrittenAndGoneAtTheEnd) {
    startAgent();
    for (int i = 0; i < 4; ++i) {
        write(m_toScan + QStringLiteral("/file ") + QString::number(i), "x");
    }
    m_agent.tell(QStringLiteral("scan-pace 150")); // slower than the analyser tells of files
    ProgramRun run;
    prepare(run);
    run.set("TERM", QStringLiteral("xterm"));
    int status = -1;
    const QByteArray written =
        writtenToTerminal({scan, m_toScan, waiting}, run.environment, status);
    ASSERT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 0);
    EXPECT_GE(written.count("\x1b[K\rFiles analyzed: "), 1) << written.toStdString();
    EXPECT_TRUE(written.contains("/file ")) << written.toStdString();
    EXPECT_TRUE(written.endsWith("\r\x1b[KFiles analyzed: 4\r\nThe agent reported no threat.\r\n"))
        << written.toStdString();
}

} // namespace
} // namespace korvale
