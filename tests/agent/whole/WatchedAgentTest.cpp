#include "WatchedRun.h"
#include "agent/fakes/Needs.h"

#include <QElapsedTimer>

namespace korvale::agent {
namespace {

class WatchedAgentTest : public WatchedRun {
protected:
    /// Programs are judged before they run, and "evil" is bad; it stays, to be tried again.
    void refuseEvil(const RealClamd& clamd) {
        watch("block = \"execute\"\n[quarantine]\nunsafe = false\n", &clamd);
        ASSERT_TRUE(watchedBy("execute"));
        makeProgram(file("evil"), RealClamd::badMarker);
        ASSERT_EQ(runProgram(file("evil")), -EPERM);
    }
};

TEST_F(WatchedAgentTest, ABadFileThatIsWrittenIsFoundToldAndTakenAway) {
    watch();
    ASSERT_TRUE(watchedBy("notify"));
    QElapsedTimer clock;
    clock.start();
    writeBadFile(QStringLiteral("download.com"));
    EXPECT_TRUE(waitUntil([&] { return publishedState(QStringLiteral("download.com")) == 1 + 8; }));
    RecordProperty("milliseconds", static_cast<int>(clock.elapsed()));
    std::printf("found, told and taken away after %lld ms\n",
                static_cast<long long>(clock.elapsed()));
    EXPECT_FALSE(QFile::exists(files() + QStringLiteral("/download.com")));
    EXPECT_EQ(resp({{QStringLiteral("CMD_"), QStringLiteral("GDRV")}}), QStringLiteral("OK"));
    EXPECT_EQ(ask({{QStringLiteral("CMD_"), QStringLiteral("GDRV")}}).value(QStringLiteral("VALU")),
              QStringLiteral("1"));
}

TEST_F(WatchedAgentTest, WhatIsRestoredIsNotTakenAgain) {
    watch();
    ASSERT_TRUE(watchedBy("notify"));
    writeBadFile(QStringLiteral("a"));
    ASSERT_TRUE(waitUntil([&] { return publishedState(QStringLiteral("a")) == 1 + 8; }));
    const QJsonArray threats = control("Threats").value(QStringLiteral("threats")).toArray();
    ASSERT_EQ(threats.size(), 1);
    control("Restore", {{QStringLiteral("threats"),
                         QJsonArray{threats[0].toObject().value(QStringLiteral("number"))}}});
    ASSERT_TRUE(waitUntil([&] { return publishedState(QStringLiteral("a")) == 1 + 4; }));
    writeBadFile(QStringLiteral("b"));
    ASSERT_TRUE(waitUntil([&] { return publishedState(QStringLiteral("b")) > 0; }));
    EXPECT_TRUE(QFile::exists(files() + QStringLiteral("/a")));
    EXPECT_TRUE(QFile::exists(files() + QStringLiteral("/b"))) << "the content was waived";
}

TEST_F(WatchedAgentTest, ABadProgramIsNotRunAndTold) {
    KORVALE_NEEDS(clamd());
    RealClamd clamd;
    refuseEvil(clamd);
    makeProgram(file("good"));
    EXPECT_EQ(runProgram(file("good")), 0);
    EXPECT_EQ(runProgram(file("evil")), -EPERM);
    EXPECT_TRUE(heard("com.korvale.exe.blocked"));
    EXPECT_EQ(published("exe_blocked.log").value(QStringLiteral("BlockedExePath")),
              QString::fromStdString(file("evil")));
    EXPECT_TRUE(waitUntil([&] { return publishedState(QStringLiteral("evil")) == 1; }));
    EXPECT_TRUE(waitUntil([&] { // the two files are not written at once
        return published("file_process_events.log").contains(QString::fromStdString(file("evil")));
    }));
    EXPECT_GE(counted("starts_refused"), 2);
}

TEST_F(WatchedAgentTest, AScriptStartedByItsNameIsAProgram) {
    KORVALE_NEEDS(clamd());
    RealClamd clamd;
    watch("block = \"execute\"\n[quarantine]\nunsafe = false\n", &clamd);
    ASSERT_TRUE(watchedBy("execute"));
    writeFile(file("script"), std::string("#!/bin/sh\nexit 0\n# ") + RealClamd::badMarker);
    ASSERT_EQ(::chmod(file("script").c_str(), 0755), 0);
    EXPECT_EQ(runProgram(file("script")), -EPERM);
    // What an interpreter is given is not asked for; SECURITY.md says so.
    EXPECT_EQ(std::system(("/bin/sh " + file("script")).c_str()), 0);
}

TEST_F(WatchedAgentTest, ToBeginToWatchIsNoMissingDriver) {
    KORVALE_NEEDS(clamd());
    RealClamd clamd;
    watch("block = \"execute\"\n", &clamd);
    // When the engine has answered for the first time, and whenever the configuration is read.
    for (int round = 0; round < 3; ++round) {
        ASSERT_TRUE(watchedBy("execute"));
        EXPECT_EQ(resp({{QStringLiteral("CMD_"), QStringLiteral("PLYU")}}), QStringLiteral("OK"));
    }
    EXPECT_TRUE(watchedBy("execute"));
    EXPECT_FALSE(m_ear->heard.contains(QStringLiteral("com.korvale.driver.notconnected")));
}

TEST_F(WatchedAgentTest, AGuardThatIsLostIsMissedAndStartedAgain) {
    KORVALE_NEEDS(clamd());
    RealClamd clamd;
    refuseEvil(clamd);
    const pid_t first = guard();
    m_ear->heard.clear();
    ::kill(first, SIGKILL);
    EXPECT_TRUE(heard("com.korvale.driver.notconnected"));
    EXPECT_TRUE(waitUntil([&] { return guard() > 0 && guard() != first; }));
    ASSERT_TRUE(watchedBy("execute"));
    EXPECT_EQ(runProgram(file("evil")), -EPERM);
    EXPECT_EQ(ask({{QStringLiteral("CMD_"), QStringLiteral("GDRV")}}).value(QStringLiteral("VALU")),
              QStringLiteral("1"));
    EXPECT_TRUE(control("Status").value(QStringLiteral("problems")).toArray().isEmpty());
}

TEST_F(WatchedAgentTest, APossibleThreatIsToldAndRuns) {
    KORVALE_NEEDS(clamd());
    RealClamd clamd;
    watch("block = \"execute\"\n", &clamd);
    ASSERT_TRUE(watchedBy("execute"));
    makeProgram(file("odd"), RealClamd::unwantedMarker);
    EXPECT_EQ(runProgram(file("odd")), 0);
    EXPECT_TRUE(waitUntil([&] { return publishedState(QStringLiteral("odd")) == 2; }));
}

TEST_F(WatchedAgentTest, NothingIsRefusedBeforeTheEngineHasAnsweredOnce) {
    KORVALE_NEEDS(clamd());
    RealClamd clamd;
    clamd.kill();
    watch("block = \"execute\"\n[quarantine]\nunsafe = false\n", &clamd);
    ASSERT_TRUE(watchedBy("notify"));
    makeProgram(file("evil"), eicarText());
    EXPECT_EQ(runProgram(file("evil")), 0);
    kill();
    clamd.start();
    start();
    ASSERT_TRUE(watchedBy("execute"));
    kill();
    clamd.end();
    start();
    EXPECT_TRUE(watchedBy("execute")) << "once is enough, over restarts too";
}

TEST_F(WatchedAgentTest, AnAllowedContentRuns) {
    KORVALE_NEEDS(clamd());
    RealClamd clamd;
    refuseEvil(clamd);
    ASSERT_TRUE(waitUntil([&] { return publishedState(QStringLiteral("evil")) == 1; }));
    const QJsonArray threats = control("Threats").value(QStringLiteral("threats")).toArray();
    ASSERT_EQ(threats.size(), 1);
    control("Waive", {{QStringLiteral("threats"),
                       QJsonArray{threats[0].toObject().value(QStringLiteral("number"))}}});
    EXPECT_TRUE(waitUntil([&] { return runProgram(file("evil")) == 0; }));
}

TEST_F(WatchedAgentTest, OtherSettingsTakeEffectAtOnce) {
    watch();
    ASSERT_TRUE(watchedBy("notify"));
    configure("");
    EXPECT_EQ(resp({{QStringLiteral("CMD_"), QStringLiteral("PLYU")}}), QStringLiteral("OK"));
    EXPECT_TRUE(waitUntil(
        [&] { return control("Status").value(QStringLiteral("watch")).toArray().isEmpty(); }));
}

TEST_F(WatchedAgentTest, ItSaysWhatIsWatchedAndWhy) {
    watch("[scan]\nexclude = [\"" + QFile::encodeName(files()) + "/not\"]\n");
    ASSERT_TRUE(watchedBy("notify"));
    const auto why = [&](const QString& path) {
        return control("Why", {{QStringLiteral("path"), path}});
    };
    EXPECT_EQ(why(files() + QStringLiteral("/x")).value(QStringLiteral("watched")), true);
    const QJsonObject excluded = why(files() + QStringLiteral("/not/x"));
    EXPECT_EQ(excluded.value(QStringLiteral("watched")), false);
    EXPECT_TRUE(excluded.value(QStringLiteral("rule"))
                    .toString()
                    .startsWith(QStringLiteral("scan.exclude")));
    EXPECT_EQ(why(QStringLiteral("/etc/passwd")).value(QStringLiteral("watched")), false);
}

} // namespace
} // namespace korvale::agent
