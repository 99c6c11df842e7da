#include "agent/app/SecondLook.h"

#include "agent/base/UniqueFd.h"
#include "agent/fakes/FakeEngine.h"
#include "agent/fakes/ScratchFolder.h"
#include "fakes/WaitUntil.h"

#include <algorithm>
#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>

namespace korvale::agent {
namespace {

using namespace std::chrono_literals;

class SecondLookTest : public testing::Test {
protected:
    SecondLookTest() {
        m_walked->descriptor.reset(
            ::open(m_folder.path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        m_walked->path = m_folder.path();
        QObject::connect(&m_second, &SecondLook::foundAgain, &m_second,
                         [this](const FoundFile& file) { m_found.push_back(file); });
        QObject::connect(&m_second, &SecondLook::gone, &m_second,
                         [this](std::int64_t finding) { m_gone.push_back(finding); });
    }
    [[nodiscard]] UniqueFd writer(const std::string& name) const {
        return UniqueFd(::open((m_folder / name).c_str(), O_WRONLY | O_CLOEXEC));
    }
    /// A file as a scan found it.
    [[nodiscard]] FoundFile found(const std::string& name) const {
        FoundFile file;
        file.path = m_folder / name;
        file.folder = m_walked;
        file.name = name;
        const UniqueFd opened(::open((m_folder / name).c_str(), O_RDONLY | O_CLOEXEC));
        file.identity = identify(opened.get()).value_or(FileIdentity{});
        file.judgement = FakeEngine::byContent("bad");
        return file;
    }

    ScratchFolder m_folder;
    FakeEngine m_engine;
    SecondLook m_second{m_engine, 1ms};
    std::shared_ptr<WalkedFolder> m_walked = std::make_shared<WalkedFolder>();
    std::vector<FoundFile> m_found;
    std::vector<std::int64_t> m_gone;
};

TEST_F(SecondLookTest, AFindingDoesNotEndByAVerdictThatMayNotHold) {
    writeFile(m_folder / "a", "bad");
    std::atomic<int> asked = 0;
    m_engine.onJudge([&](const std::string& content, const std::stop_token&) {
        return ++asked == 1 ? FakeEngine::provisional() : FakeEngine::byContent(content);
    });
    m_second.keep(found("a"), 7);
    ASSERT_TRUE(waitUntil([this] { return !m_found.empty(); }));
    EXPECT_TRUE(m_gone.empty());
}

TEST_F(SecondLookTest, FindsAFileAgainOnceNobodyWrites) {
    writeFile(m_folder / "a", "bad one");
    UniqueFd open = writer("a");
    const FoundFile before = found("a");
    m_second.keep(before, 7);
    ASSERT_EQ(::write(open.get(), "bad two", 7), 7);
    QTimer::singleShot(20ms, &m_second, [this, &open] {
        EXPECT_TRUE(m_found.empty()) << "while somebody writes";
        open.reset();
    });
    ASSERT_TRUE(waitUntil([this] { return !m_found.empty(); }));
    EXPECT_NE(m_found[0].identity, before.identity) << "what was judged now";
    EXPECT_EQ(m_found[0].judgement.verdict, Verdict::Unsafe);
    EXPECT_TRUE(m_gone.empty());
    EXPECT_EQ(m_engine.timesSeen("bad two"), 1);
}

TEST_F(SecondLookTest, TellsThatTheFileIsHarmlessNowOrGone) {
    writeFile(m_folder / "a", "bad");
    writeFile(m_folder / "b", "bad");
    const FoundFile first = found("a");
    const FoundFile second = found("b");
    writeFile(m_folder / "a", "good");
    std::filesystem::remove(m_folder / "b");
    m_second.keep(first, 7);
    m_second.keep(second, 8);
    ASSERT_TRUE(waitUntil([this] { return m_gone.size() == 2; }));
    EXPECT_NE(std::find(m_gone.begin(), m_gone.end(), 7), m_gone.end());
    EXPECT_NE(std::find(m_gone.begin(), m_gone.end(), 8), m_gone.end());
    EXPECT_TRUE(m_found.empty());
}

TEST_F(SecondLookTest, TellsOfAnotherBadContentThatTheFirstIsGone) {
    writeFile(m_folder / "a", "bad");
    const FoundFile before = found("a");
    writeFile(m_folder / "a", "odd");
    m_second.keep(before, 7);
    ASSERT_TRUE(waitUntil([this] { return !m_found.empty(); }));
    EXPECT_EQ(m_gone, std::vector<std::int64_t>{7});
    EXPECT_EQ(m_found[0].judgement.verdict, Verdict::Abnormal);
}

TEST_F(SecondLookTest, LeavesAFileThatIsWrittenToAllTheTime) {
    writeFile(m_folder / "a", "bad");
    writeFile(m_folder / "b", "bad");
    const UniqueFd open = writer("a");
    m_second.keep(found("a"), 7);
    // One that is closed and still cannot be taken, each time it is found again.
    int tries = 0;
    QObject::connect(&m_second, &SecondLook::foundAgain, &m_second, [&](const FoundFile& file) {
        ++tries;
        m_second.keep(file, 8);
    });
    m_second.keep(found("b"), 8);
    ASSERT_TRUE(waitUntil([&] { return tries == SecondLook::kMostLooks; }));
    EXPECT_EQ(m_engine.timesSeen("bad"), SecondLook::kMostLooks)
        << "the one that is open was judged";
    EXPECT_TRUE(m_gone.empty());
}

TEST_F(SecondLookTest, AsksLaterForWhatTheEngineDidNotAnswer) {
    writeFile(m_folder / "a", "bad");
    int asked = 0;
    m_engine.onJudge([&asked](const std::string& content, const std::stop_token&) {
        return ++asked < 3 ? Judgement{Verdict::NoAnswer, {}, "nobody there", {}}
                           : FakeEngine::byContent(content);
    });
    m_second.keep(found("a"), 7);
    ASSERT_TRUE(waitUntil([this] { return !m_found.empty(); }));
    EXPECT_TRUE(m_gone.empty());
}

} // namespace
} // namespace korvale::agent
