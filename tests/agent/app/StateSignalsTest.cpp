#include "agent/app/StateSignals.h"

#include "fakes/WaitUntil.h"

#include <QStringList>

#include <gtest/gtest.h>

namespace korvale::agent {
namespace {

class StateSignalsTest : public testing::Test {
protected:
    StateSignalsTest() {
        QObject::connect(&m_states, &StateSignals::notification, &m_states,
                         [this](const QString& name) {
                             m_told.append(name.mid(QStringLiteral("com.korvale.").size()));
                         });
    }
    QStringList takeTold() { return std::exchange(m_told, {}); }

    StateSignals m_states;
    QStringList m_told;
};

QStringList list(std::initializer_list<const char*> names) {
    QStringList texts;
    for (const char* name : names) {
        texts.append(QLatin1String(name));
    }
    return texts;
}

TEST_F(StateSignalsTest, NothingIsSaidBeforeTheStart) {
    m_states.setEngineFresh(true);
    m_states.setDriverConnected(false);
    m_states.stop();
    EXPECT_EQ(takeTold(), QStringList());
}

TEST_F(StateSignalsTest, TheStartTellsEveryState) {
    m_states.setEngineFresh(true);
    m_states.start();
    EXPECT_EQ(takeTold(),
              list({"agent.started", "quillmar.connected", "halyx.connected", "agent.running"}));
    m_states.stop();
    EXPECT_EQ(takeTold(), list({"agent.stopped"}));
}

TEST_F(StateSignalsTest, WithoutTheEngineNothingCountsAsConnected) {
    m_states.setEngineFresh(true);
    m_states.start();
    takeTold();
    m_states.setEngineFresh(false);
    EXPECT_EQ(takeTold(), list({"quillmar.notconnected", "halyx.notconnected"}));
    m_states.setEngineFresh(false);
    EXPECT_EQ(takeTold(), QStringList()) << "nothing changed";
}

TEST_F(StateSignalsTest, AConfigurationThatIsNotValidIsToldByTheConsole) {
    m_states.setEngineFresh(true);
    m_states.start();
    takeTold();
    m_states.setConfigurationValid(false);
    EXPECT_EQ(takeTold(), list({"halyx.notconnected"}));
    m_states.setConfigurationValid(true);
    EXPECT_EQ(takeTold(), list({"halyx.connected"}));
}

TEST_F(StateSignalsTest, TheDriverIsToldWhenItChangesAndRepeatedWhileItIsMissing) {
    m_states.start();
    takeTold();
    m_states.setDriverConnected(false);
    EXPECT_EQ(takeTold(), list({"driver.notconnected"}));
    m_states.greet();
    ASSERT_TRUE(waitUntil([this] { return m_told.contains(QStringLiteral("agent.running")); }));
    EXPECT_TRUE(takeTold().contains(QStringLiteral("driver.notconnected")));
    m_states.setDriverConnected(true);
    EXPECT_EQ(takeTold(), list({"driver.connected"}));
}

TEST_F(StateSignalsTest, ManyGreetingsAreOne) {
    m_states.start();
    takeTold();
    for (int i = 0; i < 50; ++i) {
        m_states.greet();
    }
    ASSERT_TRUE(waitUntil([this] { return !m_told.isEmpty(); }));
    EXPECT_EQ(m_told.count(QStringLiteral("agent.running")), 1);
}

} // namespace
} // namespace korvale::agent
