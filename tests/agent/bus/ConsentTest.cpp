#include "agent/bus/Consent.h"

#include "BusTest.h"

namespace korvale::agent {
namespace {

class ConsentTest : public BusTest {
protected:
    void ask(bool mayAskPerson = false) {
        m_consent.ask(*m_agent, m_caller->baseService(), QStringLiteral("com.korvale.agent.scan"),
                      mayAskPerson,
                      [this](Consent::Outcome outcome) { m_answers.append(outcome); });
    }
    [[nodiscard]] bool waitForAnswer() {
        return waitUntil([this] { return !m_answers.isEmpty(); });
    }

    Consent m_consent;
    QList<Consent::Outcome> m_answers;
};

TEST_F(ConsentTest, TheCallerIsAskedAboutByBusName) {
    FakePolkit polkit(m_bus.address());
    polkit.behaviour = FakePolkit::Behaviour::Grant;
    ask(true);
    ASSERT_TRUE(waitForAnswer());
    EXPECT_EQ(m_answers, QList<Consent::Outcome>{Consent::Outcome::Granted});
    ASSERT_EQ(polkit.questions.size(), 1);
    EXPECT_EQ(polkit.questions[0].kind, QStringLiteral("system-bus-name"));
    EXPECT_EQ(polkit.questions[0].name, m_caller->baseService());
    EXPECT_EQ(polkit.questions[0].action, QStringLiteral("com.korvale.agent.scan"));
    EXPECT_EQ(polkit.questions[0].flags, 1U);
    EXPECT_FALSE(polkit.questions[0].id.isEmpty());
}

TEST_F(ConsentTest, ARefusalIsARefusalAndNobodyIsAskedUnlessAllowed) {
    FakePolkit polkit(m_bus.address());
    ask();
    ASSERT_TRUE(waitForAnswer());
    EXPECT_EQ(m_answers, QList<Consent::Outcome>{Consent::Outcome::Refused});
    EXPECT_EQ(polkit.questions[0].flags, 0U);
}

TEST_F(ConsentTest, WithoutPolkitThereIsNoConsent) {
    ask();
    ASSERT_TRUE(waitForAnswer());
    EXPECT_EQ(m_answers, QList<Consent::Outcome>{Consent::Outcome::Unavailable});
}

TEST_F(ConsentTest, AnAnswerOfAnotherShapeIsNoConsent) {
    FakePolkit polkit(m_bus.address());
    polkit.behaviour = FakePolkit::Behaviour::Nonsense;
    ask();
    ASSERT_TRUE(waitForAnswer());
    EXPECT_EQ(m_answers, QList<Consent::Outcome>{Consent::Outcome::Unavailable});
}

TEST_F(ConsentTest, TheQuestionIsWithdrawnWhenTheCallerLeaves) {
    FakePolkit polkit(m_bus.address());
    polkit.behaviour = FakePolkit::Behaviour::Silent;
    ask(true);
    ASSERT_TRUE(waitUntil([&] { return polkit.questions.size() == 1; }));
    callerLeaves();
    ASSERT_TRUE(waitUntil([&] { return polkit.cancelled.size() == 1; }));
    EXPECT_EQ(polkit.cancelled[0], polkit.questions[0].id);
    EXPECT_TRUE(m_answers.isEmpty());
}

TEST_F(ConsentTest, UnansweredQuestionsDoNotPileUp) {
    FakePolkit polkit(m_bus.address());
    polkit.behaviour = FakePolkit::Behaviour::Silent;
    for (int i = 0; i < Consent::kMostOpen + 1; ++i) {
        ask(true);
    }
    ASSERT_TRUE(waitForAnswer());
    EXPECT_EQ(m_answers, QList<Consent::Outcome>{Consent::Outcome::Refused});
    ASSERT_TRUE(waitUntil([&] { return polkit.questions.size() == Consent::kMostOpen; }));
}

} // namespace
} // namespace korvale::agent
