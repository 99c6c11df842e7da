#include "agent/bus/SystemdUnits.h"

#include "agent/fakes/FakeSystemd.h"
#include "fakes/PrivateBus.h"
#include "fakes/WaitUntil.h"

#include <csignal>
#include <memory>

namespace korvale::agent {
namespace {

class SystemdUnitsTest : public testing::Test {
protected:
    void SetUp() override {
        m_bus.allowService(FakeSystemd::serviceName());
        m_bus.start();
        m_units.use(QDBusConnection::connectToBus(m_bus.address(), QStringLiteral("agent side")));
    }
    void TearDown() override { QDBusConnection::disconnectFromBus(QStringLiteral("agent side")); }

    SystemdUnits::Told keep() {
        return [this](const std::optional<UnitState>& state, const QString& trouble) {
            ++m_answers;
            m_state = state;
            m_trouble = trouble;
        };
    }
    [[nodiscard]] bool waitForAnswer(int number = 1) {
        return waitUntil([this, number] { return m_answers >= number; });
    }

    PrivateBus m_bus;
    SystemdUnits m_units;
    int m_answers = 0;
    std::optional<UnitState> m_state;
    QString m_trouble;
};

const QString kUnit = QStringLiteral("some.service");

TEST_F(SystemdUnitsTest, TellsTheStateOfAUnit) {
    FakeSystemd systemd(m_bus.address());
    systemd.units[kUnit] = {QStringLiteral("loaded"), QStringLiteral("failed"), true,
                            QStringLiteral("exit-code"), 11};
    m_units.ask(kUnit, keep());
    ASSERT_TRUE(waitForAnswer());
    ASSERT_TRUE(m_state);
    EXPECT_TRUE(m_state->installed);
    EXPECT_FALSE(m_state->isActive());
    EXPECT_EQ(m_state->result, QStringLiteral("exit-code"));
    EXPECT_EQ(m_state->exitStatus, 11);

    systemd.units[kUnit].service = false;
    systemd.units[kUnit].active = QStringLiteral("active");
    m_units.ask(kUnit, keep());
    ASSERT_TRUE(waitForAnswer(2));
    EXPECT_TRUE(m_state->isActive());

    m_units.ask(QStringLiteral("none.service"), keep());
    ASSERT_TRUE(waitForAnswer(3));
    EXPECT_FALSE(m_state->installed);
}

TEST_F(SystemdUnitsTest, TellsTheStateOfAStartedUnitOnceItsJobIsOver) {
    FakeSystemd systemd(m_bus.address());
    systemd.units[kUnit] = {};
    systemd.onStart = [](const QString&) { return QString(); };
    m_units.start(kUnit, keep());
    ASSERT_TRUE(waitUntil([&] { return systemd.started.size() == 1; }));
    systemd.endJob(QStringLiteral("other.service"), QStringLiteral("done"));
    systemd.units[kUnit].result = QStringLiteral("exit-code");
    systemd.units[kUnit].exitStatus = 5;
    EXPECT_EQ(m_answers, 0);
    systemd.endJob(kUnit, QStringLiteral("failed"));
    ASSERT_TRUE(waitForAnswer());
    ASSERT_TRUE(m_state) << m_trouble.toStdString();
    EXPECT_EQ(m_state->exitStatus, 5);
}

TEST_F(SystemdUnitsTest, MissesNoJobThatIsOverAtOnce) {
    FakeSystemd systemd(m_bus.address());
    systemd.units[kUnit] = {};
    systemd.endsBeforeItSaysSo = true;
    m_units.start(kUnit, keep());
    ASSERT_TRUE(waitForAnswer());
    EXPECT_TRUE(m_state);
}

TEST_F(SystemdUnitsTest, SaysWhatKeptAUnitFromStarting) {
    m_units.start(kUnit, keep());
    ASSERT_TRUE(waitForAnswer());
    EXPECT_EQ(m_trouble, QStringLiteral("There is no service manager on the bus."));

    FakeSystemd systemd(m_bus.address());
    m_units.start(kUnit, keep());
    ASSERT_TRUE(waitForAnswer(2));
    EXPECT_FALSE(m_state);
    EXPECT_TRUE(m_trouble.contains(QStringLiteral("not found"))) << m_trouble.toStdString();

    systemd.units[kUnit] = {};
    systemd.onStart = [](const QString&) { return QStringLiteral("dependency"); };
    m_units.start(kUnit, keep());
    ASSERT_TRUE(waitForAnswer(3));
    EXPECT_TRUE(m_trouble.contains(QStringLiteral("dependency")));
}

TEST_F(SystemdUnitsTest, TellsWhenTheBusWasLostMeanwhile) {
    FakeSystemd systemd(m_bus.address());
    systemd.units[kUnit] = {};
    systemd.onStart = [](const QString&) { return QString(); };
    m_units.start(kUnit, keep());
    m_units.ask(kUnit, [this](const auto&, const QString&) { m_answers += 10; });
    ASSERT_TRUE(waitUntil([&] { return systemd.started.size() == 1 && m_answers == 10; }));
    // The reply to StartUnit comes before that of a later question.
    m_units.ask(kUnit, [this](const auto&, const QString&) { m_answers += 10; });
    ASSERT_TRUE(waitForAnswer(20));
    m_units.use(QDBusConnection::connectToBus(m_bus.address(), QStringLiteral("agent side")));
    EXPECT_EQ(m_answers, 21);
    EXPECT_FALSE(m_state);
    EXPECT_FALSE(m_trouble.isEmpty());
}

TEST_F(SystemdUnitsTest, SignalsOnlyARunningUnit) {
    FakeSystemd systemd(m_bus.address());
    systemd.units[kUnit] = {};
    m_units.signalMain(kUnit, SIGUSR1, keep());
    ASSERT_TRUE(waitForAnswer());
    EXPECT_FALSE(m_state->isActive());
    EXPECT_TRUE(systemd.killed.isEmpty());
    systemd.units[kUnit].active = QStringLiteral("active");
    m_units.signalMain(kUnit, SIGUSR1, keep());
    ASSERT_TRUE(waitForAnswer(2));
    EXPECT_TRUE(m_state->isActive());
    EXPECT_EQ(systemd.killed, QStringList{QStringLiteral("some.service main %1").arg(SIGUSR1)});
}

} // namespace
} // namespace korvale::agent
