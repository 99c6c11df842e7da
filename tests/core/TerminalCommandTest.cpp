// The built program at a terminal, with the stand-in agent on a bus of its own.
#include "core/TerminalFixture.h"

#include <QElapsedTimer>

#include <gtest/gtest.h>

namespace korvale {
namespace {

class TerminalCommand : public TerminalFixture {};

TEST_F(TerminalCommand, AnAcceptedRequestIsSaidAndEndsWithZero) {
    startAgent();
    EXPECT_EQ(command({QStringLiteral("--check-updates")}),
              (Ending{0, QStringLiteral("The agent looks for updates.\n"), {}}));
    EXPECT_EQ(
        command({QStringLiteral("--scan"), m_toScan, m_more}),
        (Ending{0,
                QStringLiteral("The agent scans %1\nThe agent scans %2\n").arg(m_toScan, m_more),
                {}}));
    EXPECT_EQ(command({QStringLiteral("--background-scan"), QStringLiteral("start")}),
              (Ending{0, QStringLiteral("The agent has begun the background scan.\n"), {}}));
    const QString sent = requests();
    EXPECT_TRUE(sent.contains(QStringLiteral("CHKU"))) << sent.toStdString();
    EXPECT_TRUE(sent.contains(m_toScan) && sent.contains(m_more)) << sent.toStdString();
    EXPECT_FALSE(sent.contains(QStringLiteral("GDRV"))) << "nothing but what was asked for";
}

TEST_F(TerminalCommand, StoppingIsSaid) {
    startSlowAgent();
    m_agent.tell(QStringLiteral("background-scan"));
    EXPECT_EQ(command({QStringLiteral("--background-scan"), QStringLiteral("stop")}),
              (Ending{0, QStringLiteral("The agent stops its scans.\n"), {}}));
}

TEST_F(TerminalCommand, ARefusalIsShownSafelyAndEndsWithTwo) {
    startAgent();
    m_agent.tell(QStringLiteral(R"(set-reply CHKU {"RESP":"later\u001b[2J\nOK"})"));
    EXPECT_EQ(command({QStringLiteral("--check-updates")}),
              (Ending{2,
                      {},
                      QStringLiteral("korvale-ui: The agent refused: "
                                     "later[U+001B][2J[U+000A]OK\n")}));
}

TEST_F(TerminalCommand, OneRefusedFolderKeepsNobodyFromTheNext) {
    startAgent();
    m_agent.tell(QStringLiteral(R"(set-reply SCAN {"RESP":"no"})"));
    const Ending ending = command({QStringLiteral("--scan"), m_toScan, m_more});
    EXPECT_EQ(ending.status, 2);
    EXPECT_TRUE(requests().contains(m_more));
}

TEST_F(TerminalCommand, WrongUseIsOneSentenceAndEndsWithTwo) {
    for (const QStringList& arguments :
         {QStringList{QStringLiteral("--scan")}, QStringList{QStringLiteral("--wait")},
          QStringList{QStringLiteral("--background-scan"), QStringLiteral("pause")},
          QStringList{QStringLiteral("--check-updates"), QStringLiteral("--status2")}}) {
        const Ending ending = command(arguments);
        EXPECT_EQ(ending.status, 2);
        EXPECT_TRUE(ending.output.isEmpty());
        EXPECT_TRUE(ending.errors.startsWith(QStringLiteral("korvale-ui: Wrong use: ")));
        EXPECT_EQ(ending.errors.count(u'\n'), 1);
    }
}

TEST_F(TerminalCommand, WhatIsNoFolderIsOneSentenceAndNothingIsSent) {
    startAgent();
    write(m_folder + QStringLiteral("/file"), "x");
    EXPECT_EQ(command({QStringLiteral("--scan"), m_toScan, m_folder + QStringLiteral("/file")}),
              (Ending{2,
                      {},
                      QStringLiteral("korvale-ui: %1/file is no folder that can be scanned: "
                                     "Not a directory\n")
                          .arg(m_folder)}));
    EXPECT_FALSE(requests().contains(QStringLiteral("SCAN")));
}

TEST_F(TerminalCommand, WithoutAnAgentItEndsAtOnceWithThree) {
    const Ending noAgent{3, {}, QStringLiteral("korvale-ui: No agent is running.\n")};
    EXPECT_EQ(command({QStringLiteral("--check-updates")}), noAgent) << "nor a bus";
    startAgent();
    ASSERT_TRUE(m_agent.tell(QStringLiteral("release-name")).startsWith(QStringLiteral("ok")));
    EXPECT_EQ(command({QStringLiteral("--scan"), m_toScan, m_more}), noAgent)
        << "said once, however many folders";
}

TEST_F(TerminalCommand, AnAgentThatHangsIsGivenFifteenSecondsAndEndsItWithFour) {
    startAgent();
    m_agent.tell(QStringLiteral("hang on"));
    QElapsedTimer timer;
    timer.start();
    EXPECT_EQ(command({QStringLiteral("--scan"), m_toScan, m_more}),
              (Ending{4, {}, QStringLiteral("korvale-ui: The agent does not answer.\n")}));
    EXPECT_GE(timer.elapsed(), 14'000); // the toolkit's timers may come a twentieth too early
}

TEST_F(TerminalCommand, AReplyThatIsNoneEndsItWithFour) {
    startAgent();
    m_agent.tell(QStringLiteral("raw-reply CHKU nonsense"));
    EXPECT_EQ(
        command({QStringLiteral("--check-updates")}),
        (Ending{4, {}, QStringLiteral("korvale-ui: The agent’s answer cannot be understood.\n")}));
}

TEST_F(TerminalCommand, TheInterruptKeyEndsItWithoutAWord) {
    startAgent();
    m_agent.tell(QStringLiteral("hang on"));
    ProgramRun run;
    prepare(run);
    run.start({QStringLiteral("--check-updates")});
    ASSERT_TRUE(m_agent.tell(QStringLiteral("wait-request CHKU")).startsWith(QStringLiteral("ok")));
    run.send(SIGINT);
    EXPECT_EQ(endingOf(run), (Ending{128 + SIGINT, {}, {}}));
}

TEST_F(TerminalCommand, SpeaksTheUsersLanguage) {
    ProgramRun run;
    run.set("LC_ALL", QStringLiteral("de_DE.UTF-8"));
    run.start({QStringLiteral("--check-updates")});
    EXPECT_EQ(endingOf(run), (Ending{3, {}, QStringLiteral("korvale-ui: Es läuft kein Agent.\n")}));
}

} // namespace
} // namespace korvale
