#include "fakes/BusAgent.h"
#include "fakes/OpenCounter.h"
#include "fakes/PrivateBus.h"
#include "fakes/ProgramRun.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QThread>
#include <QTimer>

#include <algorithm>
#include <csignal>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace korvale {
namespace {

using testing::ElementsAre;
using testing::UnorderedElementsAre;

/// waitUntil for what wakes no event loop.
template <typename Condition>
bool waitUntilSoon(Condition condition) {
    QTimer ticking;
    ticking.start(10);
    return waitUntil(condition);
}

/// The built program and an agent on one system bus.
class ProgramAndAgent : public testing::Test {
protected:
    void SetUp() override {
        m_systemBus.start();
        m_run.set("DBUS_SYSTEM_BUS_ADDRESS", m_systemBus.address());
        m_run.offscreen();
        startAgent();
    }
    /// The commands that the agent has got so far, in order.
    [[nodiscard]] std::vector<std::string> commands() const {
        std::vector<std::string> result;
        for (const QDBusMessage& request : m_agent->requests) {
            const QVariantMap envelope = qdbus_cast<QVariantMap>(request.arguments().value(0));
            const QByteArray data = envelope.value(QStringLiteral("<DATA>")).toByteArray();
            const qsizetype start = data.indexOf("\"CMD_\":\"") + 8;
            result.push_back(data.mid(start, 4).toStdString());
        }
        return result;
    }
    bool waitForCommands(std::size_t count) {
        return waitUntil([&] { return m_agent->requests.size() >= count; });
    }
    /// Turns the event loop, so that the agent answers, until the program has ended.
    int statusWithAgent() {
        // The process's end wakes the event loop.
        EXPECT_TRUE(waitUntil([&] { return m_run.process.state() == QProcess::NotRunning; }));
        return m_run.status();
    }

    [[nodiscard]] QString inCache(const char* name) const {
        return m_run.path("root/Library/Application Support/Korvale/HostCache/") +
               QString::fromLatin1(name);
    }
    void writeCache() const {
        QDir().mkpath(QFileInfo(inCache("x")).path());
        for (const auto& [name, text] : {std::pair("header.log", R"({"MessageMask": 0})"),
                                         std::pair("file_states.log", "{}")}) {
            QFile file(inCache(name));
            ASSERT_TRUE(file.open(QIODevice::WriteOnly));
            file.write(text);
        }
    }
    void stopBus(int signal) const {
        ASSERT_EQ(::kill(static_cast<pid_t>(m_systemBus.pid()), signal), 0);
    }
    void startAgent() {
        m_agent.emplace(m_systemBus.address());
        ASSERT_TRUE(m_agent->takeName());
        m_agent->answer = [](const QDBusMessage& request) {
            return request.createReply(envelopeWith(R"({"RESP":"OK"})"));
        };
    }

    PrivateBus m_systemBus;
    ProgramRun m_run;
    std::optional<BusAgent> m_agent;
};

TEST_F(ProgramAndAgent, LaunchAsksForTheDriverAndTheFirstTickForEverythingElse) {
    m_run.start();
    ASSERT_TRUE(waitForCommands(5));
    EXPECT_THAT(commands(), ElementsAre("GDRV", "CUST", "POLY", "GPUT", "GOPV"));
}

TEST_F(ProgramAndAgent, ANormalStartReadsTheListsOnce) {
    writeCache();
    const fakes::OpenCounter opens(inCache("file_states.log"));
    m_run.start();
    ASSERT_TRUE(waitForCommands(5));
    EXPECT_EQ(opens.count(), 1);
}

TEST_F(ProgramAndAgent, WhatTheAgentSaidBeforeItWasHeardIsReadOnceItIs) {
    writeCache();
    const fakes::OpenCounter opens(inCache("file_states.log"));
    stopBus(SIGSTOP);
    m_run.start();
    ASSERT_TRUE(waitUntilSoon([&] { return opens.count() >= 1; })) << "a stopped bus hides nothing";
    stopBus(SIGCONT);
    ASSERT_TRUE(waitUntilSoon([&] { return opens.count() >= 2; }));
    ASSERT_TRUE(waitForCommands(5));
    const std::vector<std::string> sent = commands();
    EXPECT_EQ(std::count(sent.begin(), sent.end(), "GDRV"), 1);
}

TEST_F(ProgramAndAgent, AfterTheBusCameBackTheListsAreReadAndTheDriverIsAskedForOnceMore) {
    writeCache();
    m_run.start();
    ASSERT_TRUE(waitForCommands(5));
    const fakes::OpenCounter opens(inCache("file_states.log"));
    m_agent.reset();
    m_systemBus.kill();
    ASSERT_TRUE(m_run.waitForLine("INFO \"client received event: Connection invalid\""));
    EXPECT_EQ(opens.count(), 0);
    m_systemBus.start();
    startAgent();
    ASSERT_TRUE(waitForCommands(1));
    EXPECT_EQ(commands().front(), "GDRV");
    EXPECT_TRUE(waitUntilSoon([&] { return opens.count() >= 1; }));
}

TEST_F(ProgramAndAgent, AfterHalfAMinuteStoppedItMakesUpForNoTick) {
    const QString folder =
        m_run.path("root/Library/Application Support/Korvale/Desktop/download/status/");
    QDir().mkpath(folder);
    m_run.start();
    ASSERT_TRUE(waitForCommands(5));
    m_run.send(SIGSTOP);
    for (int number = 1; number <= 9; ++number) { // each tick shows one
        QFile status(folder + QString::number(number) + QStringLiteral(".kvupupdate"));
        ASSERT_TRUE(status.open(QIODevice::WriteOnly));
    }
    const auto shown = [&](const char* number) {
        return m_run.waitForLine("INFO \"Displaying (" + folder.toUtf8() + number +
                                 ".kvupupdate)\"");
    };
    QThread::sleep(31); // twelve ticks, and more than the bus gives a call by default
    m_run.send(SIGCONT);
    ASSERT_TRUE(shown("1"));
    QElapsedTimer sinceFirst;
    sinceFirst.start();
    ASSERT_TRUE(shown("3"));
    EXPECT_GT(sinceFirst.elapsed(), 2500) << "two more ticks";
}

TEST_F(ProgramAndAgent, ABusThatRefusesFurtherClientsNeitherEndsNorBlocksTheProgram) {
    m_agent.reset();
    m_systemBus.kill();
    m_systemBus.limitConnectionsPerUser(1);
    m_systemBus.start();
    BusAgent occupant(m_systemBus.address());
    ASSERT_TRUE(occupant.isConnected());
    EXPECT_EQ(m_run.run({QStringLiteral("-update")}), 0);
    EXPECT_EQ(m_run.lines().last(), exitLine);
    ProgramRun normal;
    normal.offscreen();
    normal.set("DBUS_SYSTEM_BUS_ADDRESS", m_systemBus.address());
    const QString folder = normal.path("root/Library/Application Support/Korvale/Desktop/download/"
                                       "status/");
    QDir().mkpath(folder);
    QFile status(folder + QStringLiteral("1.kvupupdate"));
    ASSERT_TRUE(status.open(QIODevice::WriteOnly));
    normal.start();
    EXPECT_TRUE(normal.waitForLine("INFO \"Displaying (" + status.fileName().toUtf8() + ")\""));
    normal.send(SIGTERM);
    EXPECT_EQ(normal.status(), 0);
}

TEST_F(ProgramAndAgent, NoUIModeAsksForTheDriverOnlyAndStillHearsTheAgent) {
    const QString file = m_run.path("root/etc/korvale-ui/Info.json");
    QDir().mkpath(QFileInfo(file).path());
    QFile info(file);
    ASSERT_TRUE(info.open(QIODevice::WriteOnly));
    info.write(R"({"NoKorvaleUI": 1})");
    info.close();
    m_run.start();
    ASSERT_TRUE(waitForCommands(1));
    // The agent's start makes a new connection, with another query for the driver.
    m_agent->post(QStringLiteral("com.korvale.agent.started"));
    ASSERT_TRUE(waitForCommands(2));
    EXPECT_THAT(commands(), ElementsAre("GDRV", "GDRV"));
}

TEST_F(ProgramAndAgent, OfSeveralOneShotOptionsOneIsSentAndTheProgramEnds) {
    m_run.start({QStringLiteral("-background-scan"), QStringLiteral("-update")});
    EXPECT_EQ(statusWithAgent(), 0);
    EXPECT_THAT(commands(), UnorderedElementsAre("GDRV", "CHKU"));
    EXPECT_TRUE(m_run.log().contains("INFO \"Service returned 'OK' for checkUpdates.\"\n"));
    EXPECT_EQ(m_run.lines().last(), exitLine);
}

TEST_F(ProgramAndAgent, AOneShotStartEndsAfterFifteenWaitsForASilentAgent) {
    m_agent->answer = [](const QDBusMessage&) { return std::nullopt; };
    QElapsedTimer timer;
    timer.start();
    m_run.start({QStringLiteral("-folder-scan"), QStringLiteral("/tmp")});
    EXPECT_EQ(statusWithAgent(), 0);
    EXPECT_GE(timer.elapsed(), 14'500);
    EXPECT_THAT(commands(), UnorderedElementsAre("GDRV", "SCAN"));
    EXPECT_EQ(m_run.lines().last(), exitLine);
}

TEST_F(ProgramAndAgent, ASignalEndsAOneShotStartThatWaits) {
    m_agent->answer = [](const QDBusMessage&) { return std::nullopt; };
    m_run.start({QStringLiteral("-background-scan-stop")});
    ASSERT_TRUE(waitForCommands(1));
    QElapsedTimer timer;
    timer.start();
    m_run.send(SIGTERM);
    EXPECT_EQ(statusWithAgent(), 0);
    EXPECT_LT(timer.elapsed(), 10'000);
}

} // namespace
} // namespace korvale
