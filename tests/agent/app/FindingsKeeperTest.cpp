#include "agent/app/FindingsKeeper.h"

#include "agent/fakes/Needs.h"
#include "agent/fakes/ScratchFolder.h"
#include "agent/fakes/ScratchMount.h"
#include "fakes/WaitUntil.h"

#include <gtest/gtest.h>

namespace korvale::agent {
namespace {

class FindingsKeeperTest : public testing::Test {
protected:
    void open(const std::string& state) {
        std::string error;
        m_keeper = FindingsKeeper::open({state, m_scratch / "vault"}, error);
        ASSERT_NE(m_keeper, nullptr) << error;
        QObject::connect(m_keeper.get(), &FindingsKeeper::shown, m_keeper.get(),
                         [this](const Finding& finding) { m_shown.push_back(finding); });
        QObject::connect(m_keeper.get(), &FindingsKeeper::waiting, m_keeper.get(),
                         [this](int findings) { m_waiting = findings; });
    }

    /// A bad file of that name, as a scan tells of it.
    FoundFile found(const std::string& name, char digit = 'a') {
        FoundFile file;
        file.path = m_scratch / name;
        file.name = name;
        file.judgement.verdict = Verdict::Unsafe;
        file.judgement.name = "Test-Signature";
        file.judgement.sha256hex = std::string(64, digit);
        return file;
    }
    [[nodiscard]] bool waitForShown(std::size_t number) {
        return waitUntil([this, number] { return m_shown.size() >= number; });
    }

    ScratchFolder m_scratch;
    std::unique_ptr<FindingsKeeper> m_keeper;
    std::vector<Finding> m_shown;
    int m_waiting = -1;
};

TEST_F(FindingsKeeperTest, ShowsAFindingAndKnowsItAtTheNextStart) {
    open(m_scratch / "state");
    m_keeper->found(found("bad"), false);
    ASSERT_TRUE(waitForShown(1));
    EXPECT_EQ(m_shown[0].state, FindingState::Detected);
    open(m_scratch / "state");
    ASSERT_EQ(m_keeper->known().size(), 1U);
    EXPECT_EQ(m_keeper->known()[0], m_shown[0]);
}

TEST_F(FindingsKeeperTest, ShowsEveryFindingThatAPersonChanged) {
    open(m_scratch / "state");
    m_keeper->found(found("one"), false);
    m_keeper->found(found("two"), false);
    m_keeper->found(found("other", 'b'), false);
    ASSERT_TRUE(waitForShown(3));
    bool answered = false;
    m_keeper->change(
        [](Store& store, Vault*) {
            store.waive({std::string(64, 'a'), 1, 0, {}});
            return QJsonObject();
        },
        [&](const QJsonObject&) { answered = true; });
    ASSERT_TRUE(waitUntil([&] { return answered; }));
    ASSERT_EQ(m_shown.size(), 5U); // the two paths of that content
    EXPECT_EQ(m_shown[3].state, FindingState::Waived);
    EXPECT_EQ(m_shown[4].state, FindingState::Waived);
}

TEST_F(FindingsKeeperTest, ShowsAFindingAtOnceAndWritesItWhenThereIsRoom) {
    KORVALE_NEEDS(mounts());
    const std::string state = m_scratch / "state";
    std::filesystem::create_directory(state);
    const auto disk = ScratchMount::tmpfs(state, "size=1m,mode=0700");
    ASSERT_TRUE(disk.mounted());
    open(state);
    {
        std::ofstream ballast(state + "/ballast", std::ios::binary);
        while (ballast.write(std::string(4096, 'x').data(), 4096).flush()) {
        }
    }
    std::size_t number = 0;
    while (m_waiting < 1 && number < 10'000) { // some room may be left in the log
        m_keeper->found(found(std::to_string(number++)), false);
        ASSERT_TRUE(waitForShown(number));
    }
    EXPECT_LT(m_shown.back().number, 0);
    EXPECT_EQ(m_shown.back().state, FindingState::Detected);
    std::filesystem::remove(state + "/ballast");
    ASSERT_TRUE(waitUntil([this] { return m_waiting == 0; }));
    open(state);
    EXPECT_EQ(m_keeper->known().size(), number);
}

} // namespace
} // namespace korvale::agent
