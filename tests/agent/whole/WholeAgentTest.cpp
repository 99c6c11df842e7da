#include "AgentRun.h"
#include "agent/fakes/Needs.h"
#include "agent/fakes/RealClamd.h"

#include <sys/stat.h>

namespace korvale::agent {
namespace {

class WholeAgentTest : public AgentRun {
protected:
    QJsonObject command(const char* code) {
        return {{QStringLiteral("CMD_"), QLatin1String(code)}};
    }
};

TEST_F(WholeAgentTest, AFolderScanFindsQuarantinesAndTells) {
    m_folder.write(QStringLiteral("files/harmless"), "text");
    writeBadFile(QStringLiteral("Böse Datei.com"));
    start();
    EXPECT_EQ(scanFiles(), QStringLiteral("OK"));
    ASSERT_TRUE(
        waitUntil([&] { return publishedState(QStringLiteral("Böse Datei.com")) == 1 + 8; }));
    EXPECT_FALSE(QFile::exists(m_folder.path(QStringLiteral("files/Böse Datei.com"))));
    EXPECT_TRUE(QFile::exists(m_folder.path(QStringLiteral("files/harmless"))));
    ASSERT_TRUE(heard("com.korvale.consumer_notification"));
    ASSERT_TRUE(waitUntil([&] {
        return published("analysis_count.log").value(QStringLiteral("AnalyzedCount")) == 1 &&
               published("scanner_state.log").value(QStringLiteral("ScannerState")) == 1;
    }));
    EXPECT_TRUE(m_ear->heard.contains(QStringLiteral("com.korvale.timer.aggregated_messages")));
    const QString sentence = published("consumer_notification.log")
                                 .value(QStringLiteral("ConsumerNotificationMessage"))
                                 .toString();
    EXPECT_TRUE(sentence.contains(QStringLiteral("1 file, 1 threat found, 1 not scanned")))
        << sentence.toStdString();
    EXPECT_TRUE(sentence.contains(QStringLiteral("only the built-in one looked")))
        << sentence.toStdString();
}

TEST_F(WholeAgentTest, ABackgroundScanEndsWithItsNotification) {
    configure("[scan]\nbackground = [\"" +
              QFile::encodeName(m_folder.path(QStringLiteral("files"))) + "\"]\n");
    writeBadFile(QStringLiteral("a"));
    start();
    EXPECT_EQ(resp({{QStringLiteral("CMD_"), QStringLiteral("SCAN")},
                    {QStringLiteral("START"), QStringLiteral(" ")}}),
              QStringLiteral("OK"));
    ASSERT_TRUE(heard("com.korvale.btdscancomplete"));
    ASSERT_TRUE(waitUntil([&] { return publishedState(QStringLiteral("a")) == 1 + 8; }));
}

TEST_F(WholeAgentTest, AThreatIsRestoredWaivedAndFoundNoMore) {
    writeBadFile(QStringLiteral("a"));
    start();
    ASSERT_EQ(scanFiles(), QStringLiteral("OK"));
    ASSERT_TRUE(waitUntil([&] { return publishedState(QStringLiteral("a")) == 1 + 8; }));
    const QJsonArray threats = control("Threats").value(QStringLiteral("threats")).toArray();
    ASSERT_EQ(threats.size(), 1);
    const QJsonObject restored =
        control("Restore", {{QStringLiteral("threats"),
                             QJsonArray{threats[0].toObject().value(QStringLiteral("number"))}}});
    EXPECT_EQ(restored.value(QStringLiteral("ok")), true)
        << QJsonDocument(restored).toJson().toStdString();
    EXPECT_EQ(m_folder.read(QStringLiteral("files/a")).toStdString(), eicarText());
    ASSERT_TRUE(waitUntil([&] { return publishedState(QStringLiteral("a")) == 1 + 4; }));
    m_ear->heard.clear();
    ASSERT_EQ(scanFiles(), QStringLiteral("OK"));
    ASSERT_TRUE(heard("com.korvale.consumer_notification"));
    EXPECT_TRUE(QFile::exists(m_folder.path(QStringLiteral("files/a"))));
    EXPECT_EQ(publishedState(QStringLiteral("a")), 1 + 4);
}

TEST_F(WholeAgentTest, TheOutcomeOfAnUpdateIsInAStatusFile) {
    start();
    const auto files = [this] {
        return QDir(m_folder.path(QStringLiteral("status")))
            .entryList({QStringLiteral("*.kvupupdate")}, QDir::Files);
    };
    EXPECT_EQ(resp(command("CHKU")), QStringLiteral("OK"));
    EXPECT_TRUE(waitUntil([&] { return files().size() >= 2; })) << "asking, and no service manager";
    EXPECT_TRUE(control("Status")
                    .value(QStringLiteral("update"))
                    .toObject()
                    .value(QStringLiteral("outcome"))
                    .toString()
                    .contains(QStringLiteral("service manager")));
}

TEST_F(WholeAgentTest, WhatPolicyDoesNotNameStays) {
    configure("[quarantine]\nunsafe = false\n");
    writeBadFile(QStringLiteral("a"));
    start();
    ASSERT_EQ(scanFiles(), QStringLiteral("OK"));
    ASSERT_TRUE(waitUntil([&] { return publishedState(QStringLiteral("a")) == 1; }));
    EXPECT_TRUE(QFile::exists(m_folder.path(QStringLiteral("files/a"))));
}

TEST_F(WholeAgentTest, AFileThatIsHeldOpenIsTakenOnceItIsClosed) {
    writeBadFile(QStringLiteral("a"));
    QFile writer(m_folder.path(QStringLiteral("files/a")));
    ASSERT_TRUE(writer.open(QIODevice::ReadWrite | QIODevice::Unbuffered));
    start();
    ASSERT_EQ(scanFiles(), QStringLiteral("OK"));
    ASSERT_TRUE(waitUntil([&] { return publishedState(QStringLiteral("a")) == 1; }));
    EXPECT_TRUE(logged("The file is open for writing."));
    writer.seek(writer.size());
    writer.write("\n"); // still bad, and another content than was judged
    writer.close();
    ASSERT_TRUE(waitUntil([&] { return publishedState(QStringLiteral("a")) == 1 + 8; }));
    const QJsonArray threats = control("Threats").value(QStringLiteral("threats")).toArray();
    EXPECT_EQ(threats.size(), 1) << "the first content is not there any more";
}

TEST_F(WholeAgentTest, WhyTellsTheLastVerdictAndTheRule) {
    configure("[scan]\nexclude = [\"" +
              QFile::encodeName(m_folder.path(QStringLiteral("files/left/*.out"))) +
              "\"]\n[quarantine]\nunsafe = false\n");
    writeBadFile(QStringLiteral("a"));
    start();
    ASSERT_EQ(scanFiles(), QStringLiteral("OK"));
    ASSERT_TRUE(waitUntil([&] { return publishedState(QStringLiteral("a")) == 1; }));
    const auto why = [this](const QString& path) {
        return control("Why", {{QStringLiteral("path"), m_folder.path(path)}});
    };
    const QJsonObject bad = why(QStringLiteral("files/a"));
    EXPECT_EQ(bad.value(QStringLiteral("verdict")), QStringLiteral("unsafe"));
    EXPECT_GT(bad.value(QStringLiteral("verdict_time")).toInteger(), 1'700'000'000);
    EXPECT_TRUE(
        bad.value(QStringLiteral("rule")).toString().contains(QStringLiteral("scans look")));
    const QJsonObject left = why(QStringLiteral("files/left/x.out"));
    EXPECT_EQ(left.value(QStringLiteral("verdict")), QStringLiteral("unknown"));
    EXPECT_TRUE(left.value(QStringLiteral("rule"))
                    .toString()
                    .startsWith(QStringLiteral("scan.exclude = \"")));
    EXPECT_EQ(why(QStringLiteral("state/findings.sqlite")).value(QStringLiteral("rule")),
              QStringLiteral("a folder of the agent's own"));
    EXPECT_EQ(control("Status").value(QStringLiteral("ended_scans")).toArray().size(), 1);
}

TEST_F(WholeAgentTest, ItAnswersWhatProgramsAsk) {
    configure("");
    m_folder.write(QStringLiteral("agent.toml"),
                   "device_name = \"Reception\"\n" + m_folder.read(QStringLiteral("agent.toml")));
    start();
    EXPECT_EQ(ask(command("CUST")).value(QStringLiteral("VALU")), QStringLiteral("Reception"));
    EXPECT_EQ(ask(command("GDRV")).value(QStringLiteral("VALU")), QStringLiteral("1"));
    EXPECT_EQ(ask(command("POLY")).value(QStringLiteral("PNAME")),
              QStringLiteral("Local configuration"));
    EXPECT_EQ(ask(command("POLY")).value(QStringLiteral("PNOTF")), QStringLiteral("OK"));
    EXPECT_FALSE(ask(command("GOPV")).value(QStringLiteral("VALU")).toString().isEmpty());
    EXPECT_FALSE(ask(command("GPUT")).value(QStringLiteral("VALU")).toString().isEmpty());
    EXPECT_EQ(resp({{QStringLiteral("CMD_"), QStringLiteral("SLOG")},
                    {QStringLiteral("VALU"), QStringLiteral("3")}}),
              QStringLiteral("OK"));
    EXPECT_EQ(ask(command("GLOG")).value(QStringLiteral("VALU")), QStringLiteral("3"));
    EXPECT_NE(resp({{QStringLiteral("CMD_"), QStringLiteral("SCAN")},
                    {QStringLiteral("START"), QStringLiteral("/no/such/folder")}}),
              QStringLiteral("OK"));
    EXPECT_TRUE(logged("Refused \"SCAN\""));
}

TEST_F(WholeAgentTest, AWrongConfigurationIsToldAndTheLastGoodOneStays) {
    start();
    EXPECT_EQ(resp(command("PLYU")), QStringLiteral("OK"));
    configure("[scan]\nspeed = 5\n");
    const QString problem = resp(command("PLYU"));
    EXPECT_TRUE(problem.contains(QStringLiteral("there is no key scan.speed")))
        << problem.toStdString();
    EXPECT_EQ(control("Policy").value(QStringLiteral("problem")).toString(), problem);
    configure("[policy]\nname = \"New\"\n");
    signal(SIGHUP);
    ASSERT_TRUE(waitUntil([&] {
        return ask(command("POLY")).value(QStringLiteral("PNAME")) == QStringLiteral("New");
    }));
    EXPECT_EQ(control("Policy").value(QStringLiteral("problem")).toString(), QString());
}

TEST_F(WholeAgentTest, APolicyUpdateReadsTheListsOfDigestsAgain) {
    const QByteArray list = QFile::encodeName(m_folder.path(QStringLiteral("list")));
    m_folder.write(QStringLiteral("files/a"), "abc");
    start();
    ASSERT_EQ(scanFiles(), QStringLiteral("OK"));
    ASSERT_TRUE(heard("com.korvale.consumer_notification"));
    EXPECT_EQ(publishedState(QStringLiteral("a")), -1);
    m_folder.write(QStringLiteral("list"),
                   "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad Listed.Abc\n");
    configure("hash_lists = [\"" + list + "\"]\n");
    EXPECT_EQ(resp(command("PLYU")), QStringLiteral("OK"));
    ASSERT_EQ(scanFiles(), QStringLiteral("OK"));
    ASSERT_TRUE(waitUntil([&] { return publishedState(QStringLiteral("a")) == 1 + 8; }));
}

TEST_F(WholeAgentTest, ItEndsOnSigtermAndSaysGoodBye) {
    start();
    signal(SIGTERM);
    ASSERT_TRUE(heard("com.korvale.agent.stopped"));
    ASSERT_TRUE(m_process.waitForFinished());
    EXPECT_EQ(m_process.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(m_process.exitCode(), 0);
}

TEST_F(WholeAgentTest, ItRunsWithoutABusAndJoinsOneThatComes) {
    m_ear.reset();
    m_bus.kill();
    m_process.start(QStringLiteral(KORVALE_AGENT),
                    {QStringLiteral("--config"), m_folder.path(QStringLiteral("agent.toml"))});
    ASSERT_TRUE(logged("There is no system bus to join"));
    ASSERT_TRUE(waitUntil([&] {
        return !published("file_states.log").isEmpty() ||
               QFile::exists(m_folder.path(QStringLiteral("HostCache/header.log")));
    }));
    m_bus.start();
    m_ear = std::make_unique<sim::BusEar>(m_bus.address());
    EXPECT_TRUE(logged("On the bus"));
    EXPECT_EQ(ask(command("GDRV")).value(QStringLiteral("RESP")), QStringLiteral("OK"));
}

TEST_F(WholeAgentTest, TheShieldFollowsTheRealEngine) {
    KORVALE_NEEDS(clamd())
    RealClamd clamd;
    configure("", "configuration = \"" + QByteArray::fromStdString(clamd.configuration()) + "\"\n");
    writeBadFile(QStringLiteral("a"));
    start();
    ASSERT_TRUE(heard("com.korvale.quillmar.connected"));
    ASSERT_TRUE(heard("com.korvale.halyx.connected"));
    ASSERT_EQ(scanFiles(), QStringLiteral("OK"));
    ASSERT_TRUE(waitUntil([&] { return publishedState(QStringLiteral("a")) == 1 + 8; }));
    m_ear->heard.clear();
    clamd.kill();
    ASSERT_EQ(scanFiles(), QStringLiteral("OK"));
    ASSERT_TRUE(heard("com.korvale.quillmar.notconnected"));
    ASSERT_TRUE(heard("com.korvale.halyx.notconnected"));
    EXPECT_EQ(control("Status")
                  .value(QStringLiteral("engine"))
                  .toObject()
                  .value(QStringLiteral("reachable")),
              false);
}

} // namespace
} // namespace korvale::agent
