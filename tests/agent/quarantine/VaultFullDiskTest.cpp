#include "agent/quarantine/VaultFixture.h"

namespace korvale::agent {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class VaultFullDiskTest : public VaultFixture {
protected:
    void SetUp() override { KORVALE_NEEDS_MOUNTS(); }

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

TEST_F(VaultFullDiskTest, TakesNothingThatTheStoreCannotNote) {
    std::filesystem::create_directory(m_scratch / "state");
    ASSERT_NO_FATAL_FAILURE(make(Files::InScratchFolder, VaultOn::AnotherFileSystem));
    const ScratchMount state = ScratchMount::tmpfs(m_scratch / "state", "size=1m,mode=0700");
    ASSERT_TRUE(state.mounted());
    std::string error;
    const auto store = Store::open(m_scratch / "state/findings.db", error);
    ASSERT_NE(store, nullptr) << error;
    const auto vault = Vault::open(m_vaultPath, *store, error);
    ASSERT_NE(vault, nullptr) << error;
    writeFile(path("bad"), "bad");
    const TakeRequest request = judged("bad");
    std::ofstream ballast(m_scratch / "state/ballast", std::ios::binary);
    while (ballast.write(std::string(4096, 'x').data(), 4096).flush()) {
    }
    Finding finding;
    for (int i = 0; store->kept() == 0 && i < 10'000; ++i) { // until its log has no room left
        finding.path = std::to_string(i);
        store->add(finding);
    }
    EXPECT_EQ(vault->take(request).outcome, TakeOutcome::NoRoom);
    EXPECT_THAT(inFolder(), ElementsAre("bad"));
    EXPECT_THAT(inVault(), IsEmpty());
}

} // namespace
} // namespace korvale::agent
