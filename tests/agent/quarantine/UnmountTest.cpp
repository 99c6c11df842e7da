#include "agent/fakes/Needs.h"
#include "agent/quarantine/VaultFixture.h"

namespace korvale::agent {
namespace {

/// Bad files on a file system that is unmounted, as a stick is that somebody takes out.
class UnmountTest : public VaultFixture {
protected:
    void SetUp() override {
        KORVALE_NEEDS(mounts());
        make(Files::OnTmpfs, VaultOn::AnotherFileSystem);
        if (!IsSkipped()) {
            writeFile(path("bad"), "a bad program");
            m_request = judged("bad");
        }
    }

    TakeRequest m_request;
};

TEST_F(UnmountTest, AFileWhoseFolderIsStillOpenIsTaken) {
    m_mount.reset();
    EXPECT_FALSE(std::filesystem::exists(path("bad")));
    EXPECT_EQ(m_vault->take(m_request).outcome, TakeOutcome::Taken);
    EXPECT_EQ(stateOf(m_request), FindingState::Quarantined);
}

TEST_F(UnmountTest, UnmountingInTheMiddleLosesNeitherFileNorFinding) {
    m_vault->onStep([this](VaultStep step) {
        if (step == VaultStep::Named) {
            m_mount.reset();
        }
    });
    EXPECT_EQ(m_vault->take(m_request).outcome, TakeOutcome::Taken);
    openVault();
    EXPECT_EQ(stateOf(m_request), FindingState::Quarantined);
    EXPECT_EQ(m_vault->list().size(), 1U);
}

TEST_F(UnmountTest, ItsCopyIsKeptUntilThereIsAPlaceForIt) {
    const std::string id = m_vault->take(m_request).id;
    m_folderFd.reset();
    m_mount.reset();
    EXPECT_EQ(m_vault->restore(id).outcome, RestoreOutcome::NoFolder);
    EXPECT_EQ(stateOf(m_request), FindingState::Quarantined);
    RestoreOptions elsewhere;
    elsewhere.path = m_scratch / "back";
    EXPECT_EQ(m_vault->restore(id, elsewhere).outcome, RestoreOutcome::Restored);
    EXPECT_EQ(readFile(m_scratch / "back"), "a bad program");
}

} // namespace
} // namespace korvale::agent
