#include "agent/fakes/Needs.h"
#include "agent/quarantine/VaultFixture.h"

namespace korvale::agent {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class VaultFullDiskTest : public VaultFixture {
protected:
    void SetUp() override { KORVALE_NEEDS(mounts()); }

    ScratchMount smallDisk(const std::string& name) {
        std::filesystem::create_directory(m_scratch / name);
        return ScratchMount::tmpfs(m_scratch / name, "size=1m,mode=0700");
    }
};

TEST_F(VaultFullDiskTest, LeavesAFileThatTheVaultHasNoRoomFor) {
    const ScratchMount vault = smallDisk("vault");
    ASSERT_TRUE(vault.mounted());
    ASSERT_NO_FATAL_FAILURE(make(Files::InScratchFolder, VaultOn::AnotherFileSystem));
    writeFile(path("bad"), std::string(2'000'000, 'x'));
    const TakeRequest request = judged("bad");
    EXPECT_EQ(m_vault->take(request).outcome, TakeOutcome::NoRoom);
    EXPECT_THAT(inFolder(), ElementsAre("bad"));
    EXPECT_THAT(inVault(), IsEmpty());
    EXPECT_THAT(m_store->records(), IsEmpty());
    EXPECT_EQ(stateOf(request), FindingState::Detected);
    // What was half written is gone: there is room again.
    writeFile(path("small"), std::string(800'000, 'x'));
    EXPECT_EQ(m_vault->take(judged("small")).outcome, TakeOutcome::Taken);
}

TEST_F(VaultFullDiskTest, KeepsACopyThatItsFolderHasNoRoomFor) {
    ASSERT_NO_FATAL_FAILURE(make(Files::InScratchFolder, VaultOn::AnotherFileSystem));
    writeFile(path("bad"), std::string(2'000'000, 'x'));
    const TakeResult taken = m_vault->take(judged("bad"));
    ASSERT_EQ(taken.outcome, TakeOutcome::Taken);
    const ScratchMount small = smallDisk("small");
    ASSERT_TRUE(small.mounted());
    RestoreOptions options;
    options.path = m_scratch / "small/bad";
    EXPECT_EQ(m_vault->restore(taken.id, options).outcome, RestoreOutcome::NoRoom);
    EXPECT_THAT(namesIn(m_scratch / "small"), IsEmpty());
    EXPECT_EQ(m_vault->restore(taken.id).outcome, RestoreOutcome::Restored);
}

/// A store on a small disk of its own, which can be filled.
class FullStoreTest : public VaultFullDiskTest {
protected:
    void SetUp() override {
        KORVALE_NEEDS(mounts());
        m_state.emplace(smallDisk("state"));
        ASSERT_TRUE(m_state->mounted());
        ASSERT_NO_FATAL_FAILURE(make(Files::InScratchFolder, VaultOn::AnotherFileSystem));
        std::string error;
        m_vault.reset();
        m_store = Store::open(m_scratch / "state/findings.db", error);
        ASSERT_NE(m_store, nullptr) << error;
        m_vault = Vault::open(m_vaultPath, *m_store, error);
        ASSERT_NE(m_vault, nullptr) << error;
        writeFile(path("bad"), "bad");
    }

    /// Until the store's log has no room left either.
    void fillDisk() {
        std::ofstream ballast(m_scratch / "state/ballast", std::ios::binary);
        while (ballast.write(std::string(4096, 'x').data(), 4096).flush()) {
        }
        Finding finding;
        for (int i = 0; m_store->kept() == 0 && i < 10'000; ++i) {
            finding.path = std::to_string(i);
            m_store->add(finding);
        }
    }

    std::optional<ScratchMount> m_state;
};

TEST_F(FullStoreTest, TakesNothingThatCannotBeNoted) {
    const TakeRequest request = judged("bad");
    fillDisk();
    EXPECT_EQ(m_vault->take(request).outcome, TakeOutcome::NoRoom);
    EXPECT_THAT(inFolder(), ElementsAre("bad"));
    EXPECT_THAT(inVault(), IsEmpty());
}

TEST_F(FullStoreTest, NotesWhatWasTakenOnceThereIsRoom) {
    const TakeRequest request = judged("bad");
    m_vault->onStep([this](VaultStep step) {
        if (step == VaultStep::Moved) {
            fillDisk();
        }
    });
    const TakeResult taken = m_vault->take(request);
    EXPECT_EQ(taken.outcome, TakeOutcome::Taken) << taken.reason;
    EXPECT_FALSE(taken.noted);
    EXPECT_THAT(inFolder(), IsEmpty());
    EXPECT_EQ(stateOf(request), FindingState::Detected);
    EXPECT_EQ(m_vault->settleWaiting(), 1U);
    std::filesystem::remove(m_scratch / "state/ballast");
    EXPECT_EQ(m_vault->settleWaiting(), 0U);
    EXPECT_EQ(stateOf(request), FindingState::Quarantined);
    EXPECT_EQ(m_vault->restore(taken.id).outcome, RestoreOutcome::Restored);
}

} // namespace
} // namespace korvale::agent
