#include "agent/quarantine/ThreatActions.h"

#include "agent/quarantine/VaultFixture.h"

#include <fcntl.h>

namespace korvale::agent {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class ThreatActionsTest : public VaultFixture {
protected:
    void SetUp() override {
        make(Files::InScratchFolder, VaultOn::SameFileSystem);
        writeFile(path("bad"), "a bad program");
        m_number = judged("bad").finding;
    }

    [[nodiscard]] Finding finding() const { return *m_store->finding(m_number); }
    ThreatActions actions() { return {*m_store, *m_vault}; }
    void expectTaken() {
        const ThreatResult result = actions().quarantine(finding());
        ASSERT_TRUE(result.done) << result.reason;
    }

    std::int64_t m_number = 0;
};

TEST_F(ThreatActionsTest, QuarantinesAndRestoresWithAWaive) {
    expectTaken();
    EXPECT_EQ(finding().state, FindingState::Quarantined);
    EXPECT_TRUE(actions().quarantine(finding()).done); // twice is no mistake
    RestoreWish wish;
    wish.by = 1000;
    wish.now = 5;
    const ThreatResult result = actions().restore(finding(), wish);
    EXPECT_EQ(result.outcome, "restored") << result.reason;
    EXPECT_EQ(readFile(path("bad")), "a bad program");
    EXPECT_EQ(finding().state, FindingState::Waived);
    EXPECT_THAT(m_store->waives(), ElementsAre(Waive{finding().id, 5, 1000, "restored"}));
}

TEST_F(ThreatActionsTest, RestoresWithoutAWaiveWhenAskedTo) {
    expectTaken();
    RestoreWish wish;
    wish.waive = false;
    EXPECT_TRUE(actions().restore(finding(), wish).done);
    EXPECT_EQ(finding().state, FindingState::Detected);
    EXPECT_THAT(m_store->waives(), IsEmpty());
    EXPECT_EQ(actions().restore(finding(), wish).outcome, "not-in-quarantine");
}

TEST_F(ThreatActionsTest, TakesTheWaiveBackWhenRestoringFails) {
    expectTaken();
    writeFile(path("bad"), "my thesis");
    EXPECT_EQ(actions().restore(finding(), {}).outcome, "name-taken");
    EXPECT_THAT(m_store->waives(), IsEmpty());
    EXPECT_EQ(finding().state, FindingState::Quarantined);
}

TEST_F(ThreatActionsTest, TellsTheNewPlaceOfAFileRestoredElsewhere) {
    expectTaken();
    RestoreWish wish;
    wish.path = path("evidence");
    const ThreatResult result = actions().restore(finding(), wish);
    EXPECT_TRUE(result.done) << result.reason;
    EXPECT_THAT(result.reason, HasSubstr(path("evidence")));
    EXPECT_EQ(finding().state, FindingState::Deleted); // nothing bad is at the old place
}

TEST_F(ThreatActionsTest, LeavesAFileWithAnotherContent) {
    writeFile(path("bad"), "my thesis");
    EXPECT_EQ(actions().quarantine(finding()).outcome, "changed");
    EXPECT_EQ(actions().remove(finding()).outcome, "changed");
    EXPECT_EQ(readFile(path("bad")), "my thesis");
    std::filesystem::remove(path("bad"));
    EXPECT_EQ(actions().quarantine(finding()).outcome, "gone");
}

TEST_F(ThreatActionsTest, QuarantinesAFileThatSomebodyHoldsOpen) {
    const UniqueFd writer(::open(path("bad").c_str(), O_WRONLY | O_CLOEXEC));
    EXPECT_EQ(actions().quarantine(finding()).outcome, "taken");
    EXPECT_THAT(inFolder(), IsEmpty());
}

TEST_F(ThreatActionsTest, WaivesAndEndsTheWaive) {
    EXPECT_EQ(actions().waive(finding(), 0, 1, "ours").outcome, "waived");
    EXPECT_EQ(finding().state, FindingState::Waived);
    EXPECT_EQ(actions().endWaive(finding()).outcome, "unwaived");
    EXPECT_EQ(finding().state, FindingState::Detected);
}

TEST_F(ThreatActionsTest, DeletesFromItsPlaceAndFromQuarantine) {
    EXPECT_EQ(actions().remove(finding()).outcome, "deleted");
    EXPECT_THAT(inFolder(), IsEmpty());
    EXPECT_THAT(inVault(), IsEmpty());
    EXPECT_EQ(finding().state, FindingState::Deleted);
    EXPECT_TRUE(actions().remove(finding()).done);

    writeFile(path("bad"), "a bad program");
    judged("bad");
    expectTaken();
    EXPECT_EQ(actions().remove(finding()).outcome, "deleted");
    EXPECT_THAT(inVault(), IsEmpty());

    writeFile(path("bad"), "a bad program");
    judged("bad");
    std::filesystem::remove(path("bad"));
    EXPECT_TRUE(actions().remove(finding()).done);
    EXPECT_EQ(finding().state, FindingState::Deleted);
}

} // namespace
} // namespace korvale::agent
