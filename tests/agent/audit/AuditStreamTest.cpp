#include "agent/audit/AuditStream.h"

#include "KilledProcess.h"
#include "agent/fakes/Needs.h"
#include "fakes/WaitUntil.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <vector>

namespace korvale::agent {
namespace {

class AuditStreamTest : public testing::Test {
protected:
    void SetUp() override {
        KORVALE_NEEDS(auditStream());
        QObject::connect(&m_stream, &AuditStream::violated, &m_stream,
                         [this](const Violation& violation) { m_heard.push_back(violation); });
        m_stream.listen(true);
        ASSERT_TRUE(m_stream.hears()) << m_stream.problem();
    }
    [[nodiscard]] const Violation* heard(pid_t process) const {
        const auto found =
            std::find_if(m_heard.begin(), m_heard.end(), [process](const Violation& violation) {
                return violation.process == process;
            });
        return found == m_heard.end() ? nullptr : &*found;
    }

    AuditStream m_stream;
    std::vector<Violation> m_heard;
};

TEST_F(AuditStreamTest, AKilledProcessIsHeardOf) {
    const pid_t process = killedProcess("any");
    ASSERT_TRUE(waitUntil([&] { return heard(process) != nullptr; }));
    const Violation& violation = *heard(process);
    EXPECT_TRUE(violation.terminated);
    EXPECT_TRUE(violation.program.ends_with("/agent_audit_test")) << violation.program;
    EXPECT_EQ(violation.deed, "system call " + std::to_string(SYS_getppid));
    EXPECT_EQ(m_stream.problem(), "");
    EXPECT_EQ(m_stream.lost(), 0U);
}

TEST_F(AuditStreamTest, ACallThatIsOnlyLoggedIsNot) {
    const pid_t logged = killedProcess("logged", SECCOMP_RET_LOG);
    const pid_t killed = killedProcess("killed");
    ASSERT_TRUE(waitUntil([&] { return heard(killed) != nullptr; }));
    EXPECT_EQ(heard(logged), nullptr);
}

TEST_F(AuditStreamTest, ManyThatAreKilledAtOnceHoldUpNobody) {
    for (int count = 0; count < 3 * AuditStream::mostAtOnce; ++count) {
        killedProcess("flood");
    }
    std::size_t before = m_heard.size();
    ASSERT_TRUE(waitUntil([&] { return m_heard.size() > before; }));
    EXPECT_LE(m_heard.size() - before, std::size_t{AuditStream::mostAtOnce});
    before = m_heard.size();
    QCoreApplication::processEvents();
    EXPECT_EQ(m_heard.size(), before) << "it rests";
    const pid_t last = killedProcess("last");
    EXPECT_TRUE(waitUntil([&] { return heard(last) != nullptr; })) << "and goes on";
}

TEST_F(AuditStreamTest, WhatDoesNotFitIntoTheQueueIsCounted) {
    for (int count = 0; count < 5000 && m_stream.lost() == 0; ++count) {
        killedProcess("flood");
        if (count % 500 == 499) {
            QCoreApplication::processEvents();
        }
    }
    EXPECT_GT(m_stream.lost(), 0U);
    EXPECT_TRUE(m_stream.hears());
}

TEST_F(AuditStreamTest, WhoHearsMayEndIt) {
    QObject::connect(&m_stream, &AuditStream::violated, &m_stream,
                     [this] { m_stream.listen(false); });
    const pid_t process = killedProcess("one");
    killedProcess("two");
    ASSERT_TRUE(waitUntil([&] { return heard(process) != nullptr; }));
    QCoreApplication::processEvents();
    EXPECT_EQ(m_heard.size(), 1U);
    EXPECT_FALSE(m_stream.hears());
    EXPECT_EQ(m_stream.problem(), "");
}

TEST(AuditStreamWithoutRights, SaysWhyItHearsNothing) {
    KORVALE_NEEDS(root()); // which it gives up
    const pid_t child = ::fork();
    if (child == 0) {
        int ended = 1;
        if (::setuid(65534) == 0) {
            AuditStream stream;
            stream.listen(true);
            const bool says = !stream.hears() && !stream.problem().empty();
            stream.listen(false);
            ended = says && stream.problem().empty() ? 0 : 2;
        }
        ::_exit(ended);
    }
    int status = -1;
    ::waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
}

} // namespace
} // namespace korvale::agent
