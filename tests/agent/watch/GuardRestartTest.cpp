#include "WatchScratch.h"
#include "agent/fakes/FakeEngine.h"
#include "agent/fakes/Needs.h"
#include "agent/watch/Watch.h"
#include "fakes/WaitUntil.h"

#include <csignal>

namespace korvale::agent {
namespace {

/// The watch with a guard of its own, which is lost.
class GuardRestartTest : public testing::Test {
protected:
    void SetUp() override {
        KORVALE_NEEDS(watch());
        m_mount = std::make_unique<ScratchMount>(ScratchMount::tmpfs(m_folder.path(), "size=8m"));
        ASSERT_TRUE(m_mount->mounted());
        makeScript(m_folder / "good", "good");
        m_engine.onJudge([](const std::string& content, std::stop_token) {
            const bool bad = content.ends_with("evil");
            return bad ? Judgement{Verdict::Unsafe, "Evil", {}, {}}
                       : Judgement{Verdict::Clean, {}, {}, {}};
        });
        m_watch = std::make_unique<Watch>(GuardProcess::start(), m_engine, nullptr);
        // In the agent the kernel's signal does this.
        QObject::connect(&m_children, &QTimer::timeout, m_watch.get(),
                         [this] { m_watch->childChanged(); });
        m_children.start(10);
        WatchOptions options;
        options.folders = {m_folder.path()};
        options.checkStarts = true;
        m_watch->configure(options);
        ASSERT_TRUE(checks());
    }
    [[nodiscard]] bool checks() {
        return waitUntil([this] { return !m_watch->systems().empty() && m_watch->isComplete(); });
    }
    [[nodiscard]] bool isLost() {
        return waitUntil([this] { return !m_watch->problem().isEmpty(); });
    }
    /// Short enough for the engine to see its end.
    static void makeScript(const std::string& path, const std::string& end) {
        writeFile(path, "#!/bin/true\n# " + end);
        ASSERT_EQ(::chmod(path.c_str(), 0755), 0);
    }
    /// Makes another program each time, as what is known is not asked.
    int runEvil() {
        const std::string path = m_folder / ("evil" + std::to_string(m_evils++));
        makeScript(path, "evil");
        return runProgram(path);
    }

    ScratchFolder m_folder;
    std::unique_ptr<ScratchMount> m_mount;
    FakeEngine m_engine;
    std::unique_ptr<Watch> m_watch;
    QTimer m_children;
    int m_evils = 0;
};

TEST_F(GuardRestartTest, AGuardThatIsLostIsStartedAgain) {
    EXPECT_EQ(runEvil(), -EPERM);
    const pid_t first = m_watch->guardProcess();
    ::kill(first, SIGKILL);
    ASSERT_TRUE(isLost());
    EXPECT_FALSE(m_watch->isComplete()) << "the driver is missing meanwhile";
    EXPECT_FALSE(m_watch->systems().at(0).starts);
    EXPECT_EQ(runEvil(), 0) << "and everything runs";
    ASSERT_TRUE(checks());
    EXPECT_TRUE(m_watch->problem().isEmpty());
    EXPECT_NE(m_watch->guardProcess(), first);
    EXPECT_EQ(runProgram(m_folder / "good"), 0);
    EXPECT_EQ(runEvil(), -EPERM);
}

TEST_F(GuardRestartTest, SoIsOneThatWasStoppedOrNeverBegins) {
    ::kill(m_watch->guardProcess(), SIGSTOP);
    ASSERT_TRUE(isLost());
    ASSERT_TRUE(waitUntil([this] { return m_watch->guardProcess() > 0; }));
    // The next one is stopped before anybody hears of it.
    ::kill(m_watch->guardProcess(), SIGSTOP);
    ASSERT_TRUE(waitUntil([this] { return m_watch->guardProcess() <= 0; }));
    ASSERT_TRUE(checks());
    EXPECT_EQ(runEvil(), -EPERM);
}

TEST_F(GuardRestartTest, WhatItWasToldTheNextOneIsTold) {
    m_watch->sleep(true);
    ::kill(m_watch->guardProcess(), SIGKILL);
    ASSERT_TRUE(isLost());
    ASSERT_TRUE(checks());
    EXPECT_EQ(runEvil(), 0) << "nobody is asked while the machine goes to sleep";
    m_watch->sleep(false);
    EXPECT_TRUE(waitUntil([this] { return runEvil() == -EPERM; }));
}

TEST_F(GuardRestartTest, AnAnswerToTheOneBeforeIsNone) {
    // The engine takes its time for the first program, whose guard is gone meanwhile.
    std::atomic<bool> go = false;
    std::atomic<bool> asked = false;
    std::atomic<bool> judged = false;
    std::atomic<bool> evilAsked = false;
    m_engine.onJudge([&](const std::string& content, std::stop_token stop) {
        const bool bad = content.ends_with("evil");
        const bool slow = content.ends_with("slow");
        asked = asked || slow;
        evilAsked = evilAsked || bad;
        while ((slow && !go) || (bad && !judged && !stop.stop_requested())) {
            ::usleep(1000);
        }
        judged = judged || slow;
        ::usleep(bad ? 300'000 : 0); // the late answer goes first
        return bad ? Judgement{Verdict::Unsafe, "Evil", {}, {}}
                   : Judgement{Verdict::Clean, {}, {}, {}};
    });
    makeScript(m_folder / "slow", "slow");
    std::thread runner([this] { EXPECT_EQ(runProgram(m_folder / "slow"), 0); });
    ASSERT_TRUE(waitUntil([&] { return asked.load(); }));
    ::kill(m_watch->guardProcess(), SIGKILL);
    runner.join();
    ASSERT_TRUE(isLost());
    ASSERT_TRUE(checks());
    std::thread evil([this] { EXPECT_EQ(runEvil(), -EPERM); });
    EXPECT_TRUE(waitUntil([&] { return evilAsked.load(); }));
    go = true;
    evil.join();
}

TEST_F(GuardRestartTest, AnAgentThatEndsStartsNone) {
    m_watch->end();
    EXPECT_LE(m_watch->guardProcess(), 0);
    EXPECT_TRUE(m_watch->problem().isEmpty());
    EXPECT_EQ(runEvil(), 0);
}

} // namespace
} // namespace korvale::agent
