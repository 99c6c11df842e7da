#include "WatchScratch.h"
#include "agent/fakes/Needs.h"
#include "agent/watch/DescriptorMessage.h"
#include "agent/watch/GuardLoop.h"
#include "agent/watch/GuardProcess.h"

#include <csignal>
#include <functional>
#include <poll.h>
#include <thread>

namespace korvale::agent {
namespace {

using std::chrono::milliseconds;

/// The guard alone: the test answers in the agent's place.
class GuardTest : public testing::Test {
protected:
    void SetUp() override {
        KORVALE_NEEDS(watch());
        m_mount = std::make_unique<ScratchMount>(ScratchMount::tmpfs(m_folder.path(), "size=8m"));
        ASSERT_TRUE(m_mount->mounted());
        makeProgram(program());
        m_guard = GuardProcess::start();
        ASSERT_TRUE(m_guard.isRunning()) << std::strerror(m_guard.trouble());
        mark();
    }
    void TearDown() override { m_guard.end(); }

    [[nodiscard]] std::string program() const { return m_folder / "program"; }

    void order(GuardOrder::Kind kind, const std::function<void(GuardOrder&)>& fill = {},
               int descriptor = -1) const {
        GuardOrder sent;
        sent.kind = kind;
        if (fill) {
            fill(sent);
        }
        EXPECT_TRUE(sendMessage(m_guard.socket(), &sent, sizeof sent, descriptor));
    }
    void mark() {
        const UniqueFd folder(::open(m_folder.path().c_str(), O_RDONLY | O_DIRECTORY));
        order(GuardOrder::Kind::Mark, {}, folder.get());
        UniqueFd none;
        const std::optional<GuardNote> note = next(none);
        ASSERT_TRUE(note && note->kind == GuardNote::Kind::Marked);
        ASSERT_EQ(note->error, 0) << std::strerror(note->error);
    }
    /// The next note of the guard.
    std::optional<GuardNote> next(UniqueFd& passed) const {
        pollfd waitFor{m_guard.socket(), POLLIN, 0};
        GuardNote note;
        if (::poll(&waitFor, 1, 20'000) != 1 ||
            receiveMessage(m_guard.socket(), &note, sizeof note, passed) != Received::Message) {
            return std::nullopt;
        }
        return note;
    }
    /// Waits for a question and answers it.
    void answer(bool refuse, bool remember, std::uint32_t generation = 0) {
        UniqueFd file;
        const std::optional<GuardNote> question = next(file);
        ASSERT_TRUE(question && question->kind == GuardNote::Kind::Question);
        EXPECT_TRUE(file.isOpen());
        order(GuardOrder::Kind::Answer, [&](GuardOrder& sent) {
            sent.token = question->token;
            sent.refuse = refuse;
            sent.remember = remember;
            sent.generation = generation;
        });
    }
    /// Runs the program in another thread while the test answers.
    int runWhile(const std::function<void()>& act) {
        int result = 1000;
        std::thread runner([&] { result = runProgram(program()); });
        act();
        runner.join();
        return result;
    }

    ScratchFolder m_folder;
    std::unique_ptr<ScratchMount> m_mount;
    GuardProcess m_guard;
};

TEST_F(GuardTest, AProgramRunsWhenTheAgentAllowsIt) {
    EXPECT_EQ(runWhile([this] { answer(false, false); }), 0);
    EXPECT_EQ(m_guard.page().asked, 1U);
}

TEST_F(GuardTest, AProgramIsRefusedWhenTheAgentSaysSo) {
    EXPECT_EQ(runWhile([this] { answer(true, false); }), -EPERM);
    EXPECT_EQ(m_guard.page().refused, 1U);
}

TEST_F(GuardTest, WhatIsKnownIsNotAskedAgainUntilItChanges) {
    EXPECT_EQ(runWhile([this] { answer(false, true); }), 0);
    EXPECT_EQ(runProgram(program()), 0);
    EXPECT_EQ(m_guard.page().asked, 1U);
    EXPECT_EQ(m_guard.page().known, 1U);
    makeProgram(program(), "changed");
    EXPECT_EQ(runWhile([this] { answer(true, false); }), -EPERM);
}

TEST_F(GuardTest, OtherSignaturesMakeItAskAgain) {
    EXPECT_EQ(runWhile([this] { answer(false, true); }), 0);
    order(GuardOrder::Kind::Forget, [](GuardOrder& sent) { sent.generation = 5; });
    // An answer by the old ones lets it run, and is not remembered.
    EXPECT_EQ(runWhile([this] { answer(false, true, 4); }), 0);
    EXPECT_EQ(runWhile([this] { answer(true, false, 5); }), -EPERM);
}

TEST_F(GuardTest, NobodyWaitsLongerThanTheDeadline) {
    const milliseconds waited = timeOf([this] { EXPECT_EQ(runProgram(program()), 0); });
    EXPECT_GE(waited, milliseconds(1900));
    EXPECT_LE(waited, milliseconds(10'000));
    EXPECT_EQ(m_guard.page().timedOut, 1U);
}

TEST_F(GuardTest, AfterSomeDeadlinesNobodyWaitsUntilTheAgentSpeaks) {
    for (int count = 0; count < GuardLoop::patience; ++count) {
        EXPECT_EQ(runProgram(program()), 0);
    }
    const std::uint64_t asked = m_guard.page().asked;
    for (int count = 0; count < 20; ++count) {
        EXPECT_EQ(runProgram(program()), 0);
    }
    EXPECT_EQ(m_guard.page().asked, asked);
    EXPECT_TRUE(m_guard.page().silent);
    UniqueFd old;
    for (int count = 0; count < GuardLoop::patience; ++count) {
        ASSERT_TRUE(next(old)) << "the questions nobody answered";
    }
    order(GuardOrder::Kind::Ping);
    EXPECT_EQ(runWhile([this] { answer(true, false); }), -EPERM);
}

TEST_F(GuardTest, BeforeTheMachineSleepsAllRun) {
    EXPECT_EQ(runWhile([this] {
                  UniqueFd file;
                  ASSERT_TRUE(next(file));
                  order(GuardOrder::Kind::Sleep, [](GuardOrder& sent) { sent.flag = true; });
              }),
              0);
    EXPECT_EQ(runProgram(program()), 0);
    EXPECT_EQ(m_guard.page().asked, 1U) << "nobody is asked while it sleeps";
    order(GuardOrder::Kind::Sleep);
    EXPECT_EQ(runWhile([this] { answer(true, false); }), -EPERM);
}

TEST_F(GuardTest, AStoppedGuardIsEndedAndHoldsNobodyUp) {
    ::kill(m_guard.pid(), SIGSTOP);
    int result = 1000;
    std::thread runner([&] { result = runProgram(program()); });
    GuardProcess::State state = GuardProcess::State::Runs;
    for (int tries = 0; tries < 20'000 && state != GuardProcess::State::Ended; ++tries) {
        state = m_guard.look();
        ::usleep(1000);
    }
    runner.join();
    EXPECT_EQ(state, GuardProcess::State::Ended);
    EXPECT_EQ(result, 0);
    EXPECT_EQ(runProgram(program()), 0);
}

TEST_F(GuardTest, AnEndedGuardHoldsNobodyUp) {
    EXPECT_EQ(runWhile([this] {
                  UniqueFd file;
                  ASSERT_TRUE(next(file));
                  m_guard.end();
              }),
              0);
    EXPECT_EQ(runProgram(program()), 0);
}

TEST_F(GuardTest, AnotherOneTakesItsPlaceAndKnowsNothing) {
    EXPECT_EQ(runWhile([this] { answer(false, true); }), 0);
    ::kill(m_guard.pid(), SIGKILL);
    while (m_guard.look() != GuardProcess::State::Ended) {
        ::usleep(1000);
    }
    // Other threads hold the locks of whatever they like meanwhile.
    std::atomic<bool> end = false;
    std::thread busy([&] {
        while (!end) {
            delete new std::string(1000, 'x');
        }
    });
    ASSERT_TRUE(m_guard.restart(17)) << std::strerror(m_guard.trouble());
    EXPECT_EQ(m_guard.page().ponged, 17U);
    UniqueFd none;
    const std::optional<GuardNote> ready = next(none);
    ASSERT_TRUE(ready && ready->kind == GuardNote::Kind::Ready);
    EXPECT_EQ(ready->error, 0);
    mark();
    EXPECT_EQ(runWhile([this] { answer(true, false); }), -EPERM);
    EXPECT_EQ(m_guard.page().asked, 2U) << "the counters go on";
    end = true;
    busy.join();
}

TEST_F(GuardTest, AFatalSignalLetsWhoWaitsRun) {
    EXPECT_EQ(runWhile([this] {
                  UniqueFd file;
                  ASSERT_TRUE(next(file));
                  ::kill(m_guard.pid(), SIGSEGV);
              }),
              0);
    EXPECT_EQ(runProgram(program()), 0);
}

TEST_F(GuardTest, ExemptProcessesNeverWait) {
    // The exempt one is the thread's process before it becomes the program.
    const pid_t child = ::fork();
    if (child == 0) {
        ::raise(SIGSTOP);
        ::execl(program().c_str(), "program", nullptr);
        ::_exit(99);
    }
    int status = 0;
    ::waitpid(child, &status, WUNTRACED);
    order(GuardOrder::Kind::Exempt, [&](GuardOrder& sent) { sent.processes[0] = child; });
    order(GuardOrder::Kind::Ping, [](GuardOrder& sent) { sent.token = 1; });
    while (m_guard.page().ponged.load() != 1) {
        ::usleep(1000);
    }
    ::kill(child, SIGCONT);
    ::waitpid(child, &status, 0);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    EXPECT_EQ(m_guard.page().asked, 0U);
}

TEST_F(GuardTest, MoreThanMayWaitRunAtOnce) {
    std::vector<std::thread> runners;
    constexpr int many = static_cast<int>(WaitingStarts::capacity) + 20;
    for (int number = 0; number < many; ++number) {
        makeProgram(m_folder / ("p" + std::to_string(number)), std::to_string(number));
    }
    std::atomic<int> ran = 0;
    for (int number = 0; number < many; ++number) {
        runners.emplace_back([&, number] {
            ran += runProgram(m_folder / ("p" + std::to_string(number))) == 0 ? 1 : 0;
        });
    }
    for (std::thread& runner : runners) {
        runner.join();
    }
    EXPECT_EQ(ran, many);
    EXPECT_GT(m_guard.page().unasked, 0U);
}

TEST_F(GuardTest, ReleasedItAsksNoMore) {
    EXPECT_EQ(runWhile([this] {
                  UniqueFd file;
                  ASSERT_TRUE(next(file));
                  order(GuardOrder::Kind::Release);
              }),
              0);
    EXPECT_EQ(runProgram(program()), 0);
    EXPECT_EQ(m_guard.page().asked, 1U);
}

TEST_F(GuardTest, ItGoesWithTheAgent) {
    // A process in between plays the agent, and is killed.
    const pid_t agent = ::fork();
    if (agent == 0) {
        GuardProcess own = GuardProcess::start();
        const pid_t pid = own.pid();
        writeFile(m_folder / "pid", std::to_string(pid));
        ::raise(SIGKILL);
    }
    ::waitpid(agent, nullptr, 0);
    const pid_t orphan = std::stoi(readFile(m_folder / "pid"));
    ASSERT_GT(orphan, 0);
    int tries = 0;
    while (::kill(orphan, 0) == 0 &&
           readFile("/proc/" + std::to_string(orphan) + "/stat").find(" Z ") == std::string::npos &&
           ++tries < 20'000) {
        ::usleep(1000);
    }
    EXPECT_LT(tries, 20'000);
}

} // namespace
} // namespace korvale::agent
