#include "../app/NotifySocket.h"
#include "AgentRun.h"
#include "agent/fakes/FakeSystemd.h"
#include "agent/fakes/ScriptedClamd.h"

namespace korvale::agent {
namespace {

/// The agent with an engine that dies and hangs as the test wants, and a service manager that
/// starts it again.
class EngineLifeTest : public AgentRun {
protected:
    void SetUp() override {
        AgentRun::SetUp();
        if (IsSkipped()) {
            return;
        }
        m_units = "[\"clamav-daemon.service\"]";
        const QByteArray place = QFile::encodeName(m_folder.path());
        // Without these the system would start no engine, and so does the agent.
        m_folder.write(QStringLiteral("signatures/main.cvd"), "main");
        m_folder.write(QStringLiteral("signatures/daily.cvd"), "daily");
        m_folder.write(QStringLiteral("clamd.conf"),
                       "DatabaseDirectory " + place + "/signatures\n");
        configure("file_deadline = 5\n", "configuration = \"" + place +
                                             "/clamd.conf\"\nsocket = \"" + place +
                                             "/clamd.ctl\"\n");
        m_clamd = std::make_unique<ScriptedClamd>((place + "/clamd.ctl").toStdString());
        m_clamd->onFile(&answer);
        m_systemd = std::make_unique<FakeSystemd>(m_bus.address());
        m_systemd->units[kUnit] = {};
        m_systemd->onStart = [this](const QString& unit) {
            m_clamd->setMuted(false);
            m_clamd->stop();
            m_clamd->listen();
            m_systemd->units[unit].active = QStringLiteral("active");
            return QStringLiteral("done");
        };
    }
    void TearDown() override {
        AgentRun::TearDown();
        m_systemd.reset();
        m_clamd.reset();
    }

    static ScriptedClamd::Reaction answer(const ScriptedClamd::Asked& asked) {
        const bool evil = asked.content.starts_with("evil") || asked.isSample();
        return ScriptedClamd::says(asked, evil ? "Test.Evil FOUND" : "OK");
    }
    [[nodiscard]] bool heardBoth(const char* state) {
        return heard((QByteArray("com.korvale.quillmar.") + state).constData()) &&
               heard((QByteArray("com.korvale.halyx.") + state).constData());
    }
    [[nodiscard]] QString problems() {
        QStringList list;
        for (const QJsonValue problem :
             control("Status").value(QStringLiteral("problems")).toArray()) {
            list += problem.toString();
        }
        return list.join(u' ');
    }

    const QString kUnit = QStringLiteral("clamav-daemon.service");
    std::unique_ptr<ScriptedClamd> m_clamd;
    std::unique_ptr<FakeSystemd> m_systemd;
};

TEST_F(EngineLifeTest, WhileItIsWellTheServiceManagerIsToldSo) {
    NotifySocket manager;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("NOTIFY_SOCKET"), QString::fromUtf8(manager.path()));
    m_process.setProcessEnvironment(environment);
    start();
    EXPECT_TRUE(waitUntil([&] { return manager.told().contains("STATUS=Protecting."); }));
}

TEST_F(EngineLifeTest, OneThatWasStoppedIsToldAndStartedAgain) {
    m_folder.write(QStringLiteral("files/a"), "evil");
    start();
    ASSERT_TRUE(heardBoth("connected"));
    EXPECT_TRUE(m_systemd->started.isEmpty()) << "it runs";
    m_ear->heard.clear();
    m_systemd->onStart = [](const QString&) { return QString(); }; // it takes its time
    m_clamd->stop();
    // What an asker in need notices; otherwise the agent looks by itself, now and then.
    ASSERT_EQ(scanFiles(), QStringLiteral("OK"));
    ASSERT_TRUE(heardBoth("notconnected"));
    EXPECT_TRUE(problems().contains(QStringLiteral("does not answer")));
    ASSERT_TRUE(waitUntil([this] { return m_systemd->started.contains(kUnit); }));
    m_ear->heard.clear();
    m_clamd->listen();
    m_systemd->units[kUnit].active = QStringLiteral("active");
    m_systemd->endJob(kUnit, QStringLiteral("done"));
    ASSERT_TRUE(heardBoth("connected"));
    EXPECT_EQ(problems(), QString());
    ASSERT_EQ(scanFiles(), QStringLiteral("OK"));
    EXPECT_TRUE(waitUntil([this] { return publishedState(QStringLiteral("a")) == 1 + 8; }));
}

TEST_F(EngineLifeTest, OneThatCannotBeStartedStaysTold) {
    start();
    ASSERT_TRUE(heardBoth("connected"));
    m_ear->heard.clear();
    m_systemd->units.clear();
    m_clamd->stop();
    ASSERT_EQ(scanFiles(), QStringLiteral("OK"));
    ASSERT_TRUE(heardBoth("notconnected"));
    EXPECT_TRUE(logged("clamav-daemon.service is not started"));
    EXPECT_TRUE(problems().contains(QStringLiteral("does not answer")));
}

TEST_F(EngineLifeTest, OneWithOldSignaturesProtectsFromNothingNew) {
    m_clamd->setVersion("ClamAV 1.4.6/26000/Fri Nov 13 09:00:00 2020");
    start();
    ASSERT_TRUE(heardBoth("notconnected"));
    // Before the engine is asked for the first time, it counts as away.
    EXPECT_TRUE(waitUntil([this] {
        return problems().contains(QStringLiteral("older than seven days"));
    })) << problems().toStdString();
    EXPECT_TRUE(m_systemd->started.isEmpty()) << "it runs";
    EXPECT_TRUE(control("Status")
                    .value(QStringLiteral("engine"))
                    .toObject()
                    .value(QStringLiteral("reachable"))
                    .toBool());
}

TEST_F(EngineLifeTest, OneThatHangsInAScanIsAskedForTheRestWhenItIsBack) {
    constexpr int kFiles = 60;
    for (int file = 0; file < kFiles; ++file) {
        m_folder.write(QStringLiteral("files/%1").arg(file),
                       (file == 7 ? "evil " : "good ") + QByteArray::number(file));
    }
    start();
    ASSERT_TRUE(heardBoth("connected"));
    m_ear->heard.clear();
    m_systemd->units.clear();
    m_clamd->onFile([this](const ScriptedClamd::Asked& asked) {
        if (asked.isSample()) {
            return answer(asked); // it hangs in the scan, not before
        }
        m_clamd->setMuted(true);
        return ScriptedClamd::Reaction{};
    });
    ASSERT_EQ(scanFiles(), QStringLiteral("OK"));
    ASSERT_TRUE(heardBoth("notconnected"));
    // The breaker: eight were in its hands, and nobody waits for his time with the others.
    EXPECT_LT(m_clamd->files(), kFiles);
    EXPECT_EQ(publishedState(QStringLiteral("7")), -1);
    m_clamd->onFile(&answer);
    m_clamd->setMuted(false);
    EXPECT_TRUE(waitUntil([this] { return publishedState(QStringLiteral("7")) == 1 + 8; }))
        << "a finding was lost";
    ASSERT_TRUE(heard("com.korvale.consumer_notification"));
    const QJsonObject last = control("Status").value(QStringLiteral("last_scan")).toObject();
    EXPECT_EQ(last.value(QStringLiteral("analysed")).toInt(), kFiles);
    EXPECT_EQ(last.value(QStringLiteral("not_scanned")).toInt(), 0);
}

TEST_F(EngineLifeTest, OneThatCallsAKnownBadFileCleanIsNotBelieved) {
    m_folder.write(QStringLiteral("files/a"), "evil");
    start();
    ASSERT_TRUE(heardBoth("connected"));
    m_ear->heard.clear();
    // What clamd does in a full temporary folder.
    m_clamd->onFile(
        [](const ScriptedClamd::Asked& asked) { return ScriptedClamd::says(asked, "OK"); });
    ASSERT_EQ(scanFiles(), QStringLiteral("OK"));
    ASSERT_TRUE(heardBoth("notconnected"));
    EXPECT_TRUE(problems().contains(QStringLiteral("not believed"))) << problems().toStdString();
    EXPECT_TRUE(problems().contains(QStringLiteral("known test file")));
    ASSERT_TRUE(heard("com.korvale.consumer_notification"));
    const QJsonObject last = control("Status").value(QStringLiteral("last_scan")).toObject();
    EXPECT_EQ(last.value(QStringLiteral("analysed")).toInt(), 0);
    EXPECT_EQ(last.value(QStringLiteral("not_scanned")).toInt(), 1);
}

TEST_F(EngineLifeTest, OneThatLiesOrAnswersHalfALineFindsNothingAndCleansNothing) {
    m_folder.write(QStringLiteral("files/a"), "evil");
    start();
    ASSERT_TRUE(heardBoth("connected"));
    m_clamd->onFile([](const ScriptedClamd::Asked& asked) -> ScriptedClamd::Reaction {
        return {std::to_string(asked.number + 40) + ": fd[9]: OK" + '\0' + "1: fd[9", true, false};
    });
    ASSERT_EQ(scanFiles(), QStringLiteral("OK"));
    ASSERT_TRUE(heard("com.korvale.consumer_notification"));
    QJsonObject last = control("Status").value(QStringLiteral("last_scan")).toObject();
    EXPECT_EQ(last.value(QStringLiteral("found")).toInt(), 0);
    EXPECT_EQ(last.value(QStringLiteral("analysed")).toInt(), 0);
    EXPECT_EQ(last.value(QStringLiteral("not_scanned")).toInt(), 1);
    EXPECT_TRUE(QFile::exists(m_folder.path(QStringLiteral("files/a"))));
}

} // namespace
} // namespace korvale::agent
