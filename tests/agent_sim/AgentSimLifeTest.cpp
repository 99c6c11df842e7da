#include "AgentSimFixture.h"

#include <QDBusConnectionInterface>

namespace korvale::sim {
namespace {

const QString kName = QStringLiteral("com.korvale.agent_server");

TEST_F(AgentSimTest, GivesItsNameAwayAndTakesItBack) {
    const auto owned = [this] {
        return m_ear->bus().interface()->isServiceRegistered(kName).value();
    };
    EXPECT_TRUE(owned());
    EXPECT_EQ(tell(QStringLiteral("release-name")), QStringLiteral("ok release-name"));
    EXPECT_FALSE(owned());
    EXPECT_TRUE(tell(QStringLiteral("release-name")).startsWith(QLatin1String("error ")));
    EXPECT_EQ(tell(QStringLiteral("take-name")), QStringLiteral("ok take-name"));
    EXPECT_TRUE(owned());
    EXPECT_EQ(m_sim.printed(QStringLiteral("ready")), 2);
}

TEST_F(AgentSimTest, FollowsABusThatIsRestarted) {
    m_bus.kill();
    EXPECT_TRUE(m_sim.waitFor(QStringLiteral("note bus lost")));
    EXPECT_TRUE(m_sim.waitForError("no system bus"));
    EXPECT_EQ(tell(QStringLiteral("start")),
              QStringLiteral("error start not on the bus, nothing posted"));
    m_bus.start();
    EXPECT_TRUE(m_sim.waitFor(QStringLiteral("ready"), 2));
    m_ear = std::make_unique<BusEar>(m_bus.address());
    EXPECT_EQ(ask("CHKU"), R"({"RESP":"OK"})");
}

TEST_F(AgentSimTest, WaitsForItsTurnWhenTheNameIsTaken) {
    SimProcess second;
    second.start(m_root.path(), {});
    EXPECT_TRUE(second.waitForError("Another process owns the name"));
    m_sim.kill();
    EXPECT_TRUE(second.waitFor(QStringLiteral("ready")));
}

TEST_F(AgentSimTest, EndsByCommandAndAtTheEndOfItsInput) {
    EXPECT_EQ(tell(QStringLiteral("quit")), QStringLiteral("ok quit"));
    EXPECT_TRUE(m_sim.waitForEnd());
    EXPECT_EQ(m_sim.exitCode(), 0);
    SimProcess second;
    second.start(m_root.path(), {});
    EXPECT_TRUE(second.waitFor(QStringLiteral("ready")));
    second.write(QStringLiteral("start"));
    second.closeInput();
    EXPECT_TRUE(second.waitForEnd());
    EXPECT_EQ(second.lines(), QStringList({QStringLiteral("ready"), QStringLiteral("ok start"),
                                           QStringLiteral("ok quit")}));
}

TEST_F(AgentSimTest, PlaysAScenarioBesideItsInput) {
    m_sim.kill();
    m_root.write(QStringLiteral("s"),
                 "write-test-file ${KORVALE_DEMO_FOLDER}/x\nwait-request CUST\n"
                 "post nothing\nset device-name Played\n");
    SimProcess second;
    second.start(m_root.path(), {QStringLiteral("--scenario"), m_root.path(QStringLiteral("s"))});
    EXPECT_TRUE(second.waitFor(QStringLiteral("scenario ok write-test-file")));
    EXPECT_TRUE(QFileInfo::exists(m_root.path(QStringLiteral("demo f/x"))));
    EXPECT_EQ(second.tell(QStringLiteral("hang off")), QStringLiteral("ok hang"));
    (void)ask("CUST");
    EXPECT_TRUE(second.waitFor(QStringLiteral("note scenario finished")));
    EXPECT_EQ(ask("CUST"), R"({"RESP":"OK","VALU":"Played"})");
    second.write(QStringLiteral("quit"));
    EXPECT_TRUE(second.waitForEnd());
    EXPECT_EQ(second.exitCode(), 1) << "one command of the scenario failed";
}

TEST_F(AgentSimTest, RefusesWrongOptionsAndScenarios) {
    const QStringList wrong[] = {
        {QStringLiteral("--nonsense")},
        {QStringLiteral("argument")},
        {QStringLiteral("--scenario"), QStringLiteral("/nowhere")},
        {QStringLiteral("--abnormal-hashes"), QStringLiteral("/nowhere")},
    };
    for (const QStringList& arguments : wrong) {
        SimProcess process;
        process.start(m_root.path(), arguments);
        EXPECT_TRUE(process.waitForEnd());
        EXPECT_EQ(process.exitCode(), 2) << arguments.join(u' ').toStdString();
        EXPECT_TRUE(process.errors().startsWith("korvale-agent-sim: "))
            << process.errors().toStdString();
    }
}

TEST_F(AgentSimTest, HelpTellsOfEveryOptionAndCommand) {
    SimProcess process;
    process.start(m_root.path(), {QStringLiteral("--help")});
    EXPECT_TRUE(process.waitForEnd());
    EXPECT_EQ(process.exitCode(), 0);
    const QString help = process.lines().join(u'\n');
    for (const char* part : {"--scenario", "--abnormal-hashes", "--scan-folder",
                             "--quarantine-folder", "malformed-file", "bad-json", "fifo"}) {
        EXPECT_TRUE(help.contains(QLatin1String(part))) << part;
    }
}

TEST_F(AgentSimTest, EveryScenarioOfTheTreeIsUnderstood) {
    m_sim.kill();
    const QStringList scenarios =
        QDir(QStringLiteral(KORVALE_SCENARIOS)).entryList({QStringLiteral("*.scenario")});
    EXPECT_GE(scenarios.size(), 6);
    for (const QString& scenario : scenarios) {
        SimProcess process;
        process.start(m_root.path(), {QStringLiteral("--scenario"),
                                      QStringLiteral(KORVALE_SCENARIOS "/") + scenario});
        EXPECT_TRUE(process.waitFor(QStringLiteral("ready"))) << scenario.toStdString();
        EXPECT_EQ(process.tell(QStringLiteral("quit")), QStringLiteral("ok quit"));
        EXPECT_TRUE(process.waitForEnd());
        EXPECT_EQ(process.printed(QStringLiteral("scenario error")), 0) << scenario.toStdString();
    }
}

} // namespace
} // namespace korvale::sim
