#include "agent/quarantine/VaultFixture.h"

#include <sys/wait.h>
#include <unistd.h>

namespace korvale::agent {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

const std::string kBad = "a bad program";

class VaultCrashTest : public VaultTest {
protected:
    void SetUp() override {
        VaultTest::SetUp();
        if (canGoOn()) {
            writeFile(path("bad"), kBad);
        }
    }

    /// What another process does, which ends at that step as if it were killed.
    template <typename Do>
    void endAt(VaultStep last, Do work) {
        m_vault.reset();
        m_store.reset(); // its connection would not survive a fork
        const pid_t pid = ::fork();
        if (pid == 0) {
            openVault();
            m_vault->onStep([last](VaultStep step) {
                if (step == last) {
                    ::_exit(42);
                }
            });
            work();
            ::_exit(1);
        }
        int status = 0;
        ASSERT_EQ(::waitpid(pid, &status, 0), pid);
        ASSERT_TRUE(WIFEXITED(status));
        ASSERT_EQ(WEXITSTATUS(status), 42) << "the step was not reached";
    }

    void takeUntil(VaultStep last) {
        m_request = judged("bad");
        endAt(last, [this] { (void)m_vault->take(m_request); });
    }

    void expectInPlace() {
        EXPECT_THAT(inFolder(), ElementsAre("bad"));
        EXPECT_EQ(readFile(path("bad")), kBad);
        EXPECT_THAT(inVault(), IsEmpty());
        EXPECT_THAT(m_store->records(), IsEmpty());
        EXPECT_EQ(stateOf(m_request), FindingState::Detected);
    }
    void expectTaken() {
        EXPECT_THAT(inFolder(), IsEmpty());
        ASSERT_EQ(m_vault->list().size(), 1U);
        EXPECT_THAT(inVault(), ElementsAre(m_vault->list().front().id + ".kvq"));
        EXPECT_EQ(stateOf(m_request), FindingState::Quarantined);
        EXPECT_EQ(m_vault->restore(m_vault->list().front().id).outcome, RestoreOutcome::Restored);
        EXPECT_EQ(readFile(path("bad")), kBad);
    }

    TakeRequest m_request;
};

TEST_P(VaultCrashTest, LeavesTheFileInItsPlaceUntilItsCopyIsSafe) {
    for (const VaultStep last : {VaultStep::Copied, VaultStep::Recorded, VaultStep::Named}) {
        ASSERT_NO_FATAL_FAILURE(takeUntil(last));
        ASSERT_NO_FATAL_FAILURE(openVault());
        expectInPlace();
    }
}

TEST_P(VaultCrashTest, FinishesTakingAfterTheFileWasMoved) {
    for (const VaultStep last : {VaultStep::Moved, VaultStep::Unlinked}) {
        ASSERT_NO_FATAL_FAILURE(takeUntil(last));
        ASSERT_NO_FATAL_FAILURE(openVault());
        expectTaken();
    }
}

TEST_P(VaultCrashTest, PutsAnotherFileBackThatWasMovedInsteadOfTheJudgedOne) {
    writeFile(path("mine"), "my thesis");
    m_request = judged("bad");
    ASSERT_NO_FATAL_FAILURE(endAt(VaultStep::Moved, [this] {
        m_vault->onStep([this](VaultStep step) {
            if (step == VaultStep::Named) {
                std::filesystem::rename(path("mine"), path("bad"));
            } else if (step == VaultStep::Moved) {
                ::_exit(42);
            }
        });
        (void)m_vault->take(m_request);
    }));
    EXPECT_THAT(inFolder(), ::testing::Not(::testing::Contains("bad")));
    ASSERT_NO_FATAL_FAILURE(openVault());
    EXPECT_THAT(inFolder(), ElementsAre("bad"));
    EXPECT_EQ(readFile(path("bad")), "my thesis");
    EXPECT_THAT(inVault(), IsEmpty());
    EXPECT_THAT(m_store->records(), IsEmpty());
}

TEST_P(VaultCrashTest, KeepsTheCopyUntilARestoredFileIsNoted) {
    for (const VaultStep last : {VaultStep::Written, VaultStep::Linked}) {
        m_request = judged("bad");
        const TakeResult taken = m_vault->take(m_request);
        ASSERT_EQ(taken.outcome, TakeOutcome::Taken) << taken.reason;
        ASSERT_NO_FATAL_FAILURE(endAt(last, [&] { (void)m_vault->restore(taken.id); }));
        ASSERT_NO_FATAL_FAILURE(openVault());
        EXPECT_EQ(std::filesystem::exists(path("bad")), last == VaultStep::Linked);
        EXPECT_EQ(m_vault->list().size(), 1U);
        std::filesystem::remove(path("bad"));
        EXPECT_EQ(m_vault->restore(taken.id).outcome, RestoreOutcome::Restored);
    }
}

TEST_P(VaultCrashTest, RemovesTheCopyOfARestoredFileAtTheNextStart) {
    m_request = judged("bad");
    const TakeResult taken = m_vault->take(m_request);
    ASSERT_EQ(taken.outcome, TakeOutcome::Taken) << taken.reason;
    ASSERT_NO_FATAL_FAILURE(endAt(VaultStep::Settled, [&] { (void)m_vault->restore(taken.id); }));
    ASSERT_NO_FATAL_FAILURE(openVault());
    EXPECT_THAT(inVault(), IsEmpty());
    EXPECT_THAT(m_store->records(), IsEmpty());
    EXPECT_EQ(readFile(path("bad")), kBad);
}

KORVALE_ON_EVERY_FILE_SYSTEM(VaultCrashTest);

} // namespace
} // namespace korvale::agent
