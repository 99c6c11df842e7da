#include "agent/app/Gatekeeper.h"

#include "../bus/BusTest.h"
#include "agent/fakes/Needs.h"

#include <grp.h>
#include <pwd.h>
#include <sys/syscall.h>
#include <thread>

namespace korvale::agent {
namespace {

/// A caller of another user than root: a connection that a thread made with that user's ids.
class GatekeeperTest : public BusTest {
protected:
    void SetUp() override {
        KORVALE_NEEDS(root());
        BusTest::SetUp();
        callerLeaves();
        const passwd* nobody = ::getpwnam("nobody");
        ASSERT_NE(nobody, nullptr);
        m_uid = nobody->pw_uid;
        // QtDBus connects in a thread of its own, so that the whole process changes for a moment.
        ASSERT_EQ(::seteuid(m_uid), 0);
        m_caller = std::make_unique<QDBusConnection>(
            QDBusConnection::connectToBus(m_bus.address(), QStringLiteral("caller side")));
        ASSERT_EQ(::seteuid(0), 0);
        ASSERT_TRUE(m_caller->isConnected()) << m_caller->lastError().message().toStdString();
    }

    /// "admitted", or the reason for a refusal.
    QString ask(Task task) {
        QString answer;
        m_gatekeeper.admit(
            *m_agent, m_caller->baseService(), task, QStringLiteral("\"TEST\""),
            [&](const Caller& caller) {
                EXPECT_EQ(caller.uid, m_uid);
                answer = QStringLiteral("admitted");
            },
            [&](const QString& reason) { answer = reason; });
        EXPECT_TRUE(waitUntil([&] { return !answer.isEmpty(); }));
        return answer;
    }

    Gatekeeper m_gatekeeper;
    uid_t m_uid = 0;
};

const QString kAdmitted = QStringLiteral("admitted");

TEST_F(GatekeeperTest, PolkitDecidesForOthersThanRoot) {
    FakePolkit polkit(m_bus.address());
    polkit.behaviour = FakePolkit::Behaviour::Grant;
    EXPECT_EQ(ask(Task::Scan), kAdmitted);
    EXPECT_EQ(ask(Task::SetLogLevel), kAdmitted);
    polkit.behaviour = FakePolkit::Behaviour::Refuse;
    EXPECT_EQ(ask(Task::Scan), QStringLiteral("Not allowed."));
    EXPECT_EQ(ask(Task::ManageThreats), QStringLiteral("Not allowed."));
    EXPECT_EQ(ask(Task::Ask), kAdmitted) << "not asked about";
    ASSERT_EQ(polkit.questions.size(), 4);
    EXPECT_EQ(polkit.questions[0].action, QStringLiteral("com.korvale.agent.scan"));
    EXPECT_EQ(polkit.questions[0].flags, 0U) << "nobody types a password to scan";
    EXPECT_EQ(polkit.questions[1].action, QStringLiteral("com.korvale.agent.set-log-level"));
    EXPECT_EQ(polkit.questions[1].flags, 1U);
}

TEST_F(GatekeeperTest, WithoutPolkitOnlyRootMayMoreThanAScan) {
    EXPECT_EQ(ask(Task::Ask), kAdmitted);
    EXPECT_EQ(ask(Task::Scan), kAdmitted);
    for (const Task task :
         {Task::StopScans, Task::Update, Task::SetLogLevel, Task::View, Task::ManageThreats}) {
        EXPECT_NE(ask(task), kAdmitted);
    }
}

TEST_F(GatekeeperTest, AUserWhoAsksTooOftenIsRefused) {
    int admitted = 0;
    while (ask(Task::Ask) == kAdmitted && admitted < 1000) {
        ++admitted;
    }
    EXPECT_GE(admitted, 60);
    EXPECT_LT(admitted, 100);
    EXPECT_EQ(ask(Task::Scan), kAdmitted) << "questions do not use up tasks";
}

TEST_F(GatekeeperTest, ARefusalIsOneLineInTheLog) {
    testing::internal::CaptureStderr();
    EXPECT_NE(ask(Task::ManageThreats), kAdmitted);
    const std::string log = testing::internal::GetCapturedStderr();
    EXPECT_EQ(std::count(log.begin(), log.end(), '\n'), 1) << log;
    EXPECT_NE(log.find("Refused \"TEST\" for user " + std::to_string(m_uid)), std::string::npos)
        << log;
}

} // namespace
} // namespace korvale::agent
