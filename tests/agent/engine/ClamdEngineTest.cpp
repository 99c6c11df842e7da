#include "agent/engine/ClamdEngine.h"

#include "agent/engine/BuiltInEngine.h"
#include "agent/fakes/ScratchFolder.h"
#include "agent/fakes/ScriptedClamd.h"

#include <atomic>
#include <fcntl.h>
#include <filesystem>
#include <future>
#include <gtest/gtest.h>
#include <latch>
#include <map>
#include <unistd.h>
#include <vector>

using namespace korvale::agent;
using namespace std::chrono_literals;
using namespace std::string_literals;
using Asked = ScriptedClamd::Asked;
using Reaction = ScriptedClamd::Reaction;

namespace {

class ClamdEngineTest : public testing::Test {
protected:
    ClamdEngineTest() : m_clamd(m_folder / "clamd.ctl") {
        writeFile(m_folder / "clamd.conf", "MaxFileSize 2k\nDatabaseDirectory " + m_folder.path());
    }

    ClamdEngine::Settings settings() const {
        return {m_folder / "clamd.conf", m_folder / "clamd.ctl", 300ms, {}};
    }

    std::string path(const std::string& content) {
        const std::string name = m_folder / ("file" + std::to_string(m_files++));
        writeFile(name, content);
        return name;
    }

    UniqueFd open(const std::string& content, int flags = O_RDONLY) {
        return UniqueFd(::open(path(content).c_str(), flags | O_CLOEXEC));
    }

    Judgement judge(ClamdEngine& engine, const std::string& content,
                    std::chrono::milliseconds deadline = 20s) {
        const UniqueFd file = open(content);
        return engine.judge(file.get(), deadline);
    }

    /// Verdicts of all contents, asked for at the same time.
    std::vector<Verdict> judgeAll(ClamdEngine& engine, const std::vector<std::string>& contents,
                                  std::chrono::milliseconds deadline = 20s) {
        std::vector<std::future<Verdict>> waiting;
        for (const std::string& content : contents) {
            waiting.push_back(
                std::async(std::launch::async, [&engine, deadline, file = open(content)] {
                    return engine.judge(file.get(), deadline).verdict;
                }));
        }
        std::vector<Verdict> verdicts;
        for (auto& one : waiting) {
            verdicts.push_back(one.get());
        }
        return verdicts;
    }

    ScratchFolder m_folder;
    ScriptedClamd m_clamd;
    int m_files = 0;
};

TEST_F(ClamdEngineTest, TakesEachReplyForTheFileItBelongsTo) {
    // Three at a time, and the replies the wrong way round.
    std::map<std::uint32_t, Asked> held;
    m_clamd.onFile([&](const Asked& asked) -> Reaction {
        held.emplace(asked.number, asked);
        std::string bytes;
        for (auto one = held.rbegin(); held.size() == 3 && one != held.rend(); ++one) {
            const bool bad = one->second.content.starts_with("bad");
            bytes += ScriptedClamd::says(one->second, bad ? "Test FOUND" : "OK").bytes;
        }
        return {bytes, false, false};
    });
    ClamdChannel channel(m_folder / "clamd.ctl", 4);
    const auto late = std::chrono::steady_clock::now() + 20s;
    std::vector<std::future<std::string>> waiting;
    for (const std::string content : {"good 1", "bad 2", "good 3"}) {
        waiting.push_back(std::async(std::launch::async, [&, file = open(content)] {
            return channel.ask(file.get(), late, {}).text;
        }));
    }
    EXPECT_EQ(waiting[0].get(), "fd[9]: OK");
    EXPECT_EQ(waiting[1].get(), "fd[9]: Test FOUND");
    EXPECT_EQ(waiting[2].get(), "fd[9]: OK");
    EXPECT_EQ(m_clamd.connections(), 1);
}

TEST_F(ClamdEngineTest, OpensOneSessionForAllWhoAskAtOnce) {
    constexpr int kRounds = 50;
    const UniqueFd file = open("content");
    for (int round = 0; round < kRounds; ++round) {
        ClamdChannel channel(m_folder / "clamd.ctl", 4);
        const auto late = std::chrono::steady_clock::now() + 20s;
        std::latch together(4);
        std::vector<std::future<ClamdChannel::Outcome>> waiting;
        for (int one = 0; one < 4; ++one) {
            waiting.push_back(std::async(std::launch::async, [&] {
                together.arrive_and_wait();
                return channel.ask(file.get(), late, {}).outcome;
            }));
        }
        for (auto& one : waiting) {
            EXPECT_EQ(one.get(), ClamdChannel::Outcome::Answered);
        }
    }
    EXPECT_EQ(m_clamd.connections(), kRounds);
}

TEST_F(ClamdEngineTest, NeverAsksForWhatClamdWouldCallCleanUnread) {
    ClamdEngine engine(settings());
    for (const int flags : {O_WRONLY, O_RDWR, O_PATH}) {
        const UniqueFd file = open("content", flags);
        EXPECT_EQ(engine.judge(file.get(), 1s).verdict, Verdict::NotScanned) << flags;
    }
    const UniqueFd folder(::open(m_folder.path().c_str(), O_RDONLY));
    EXPECT_EQ(engine.judge(folder.get(), 1s).verdict, Verdict::NotScanned);
    const UniqueFd large = open(std::string(2049, 'x'));
    EXPECT_EQ(engine.judge(large.get(), 1s).verdict, Verdict::NotScanned);
    EXPECT_EQ(m_clamd.files(), 0);
    const UniqueFd largest = open(std::string(2048, 'x'));
    EXPECT_EQ(engine.judge(largest.get(), 20s).verdict, Verdict::Clean);
}

TEST_F(ClamdEngineTest, AsksAgainForAFileThatChangedMeanwhile) {
    const std::string name = path("first");
    m_clamd.onFile([&](const Asked& asked) {
        if (asked.content == "first") {
            writeFile(name, "second");
        }
        return ScriptedClamd::says(asked, asked.content == "first" ? "OK" : "Test FOUND");
    });
    ClamdEngine engine(settings());
    const UniqueFd file(::open(name.c_str(), O_RDONLY));
    EXPECT_EQ(engine.judge(file.get(), 20s).verdict, Verdict::Unsafe);
    EXPECT_EQ(m_clamd.files(), 2);
}

TEST_F(ClamdEngineTest, DoesNotJudgeAFileThatChangesAllTheTime) {
    const std::string name = path("x");
    m_clamd.onFile([&](const Asked& asked) {
        writeFile(name, asked.content + "x");
        return ScriptedClamd::says(asked, "OK");
    });
    ClamdEngine engine(settings());
    const UniqueFd file(::open(name.c_str(), O_RDONLY));
    EXPECT_EQ(engine.judge(file.get(), 20s).verdict, Verdict::NotScanned);
}

TEST_F(ClamdEngineTest, DoesNotTrustAnOkForAFileThatWasEmptiedMeanwhile) {
    const std::string name = path("something");
    m_clamd.onFile([&](const Asked& asked) {
        writeFile(name, "");
        return ScriptedClamd::says(asked, "OK");
    });
    ClamdEngine engine(settings());
    const UniqueFd file(::open(name.c_str(), O_RDONLY));
    EXPECT_EQ(engine.judge(file.get(), 20s).verdict, Verdict::Clean) << "it is empty now";
    EXPECT_EQ(m_clamd.files(), 1);
}

TEST_F(ClamdEngineTest, LeavesTheOffsetAlone) {
    ClamdEngine engine(settings());
    const UniqueFd file = open("content");
    ASSERT_EQ(::lseek(file.get(), 3, SEEK_SET), 3);
    EXPECT_EQ(engine.judge(file.get(), 20s).verdict, Verdict::Clean);
    EXPECT_EQ(::lseek(file.get(), 0, SEEK_CUR), 3);
}

TEST_F(ClamdEngineTest, GivesNoAnswerWhenClamdHangsAndAsksNobodyUntilItIsBack) {
    m_clamd.setMuted(true);
    ClamdEngine engine(settings());
    EXPECT_EQ(judge(engine, "content", 100ms).verdict, Verdict::NoAnswer);
    EXPECT_FALSE(engine.state().reachable);
    const int files = m_clamd.files();
    EXPECT_EQ(judge(engine, "content", 20s).verdict, Verdict::NoAnswer);
    EXPECT_EQ(m_clamd.files(), files) << "it was asked although it had just hung";

    m_clamd.setMuted(false);
    EXPECT_TRUE(engine.refresh().reachable);
    EXPECT_EQ(judge(engine, "content").verdict, Verdict::Clean);
}

TEST_F(ClamdEngineTest, AsksAgainForTheFilesBesideOneThatHangs) {
    m_clamd.onFile([](const Asked& asked) -> Reaction {
        return asked.content == "hang" ? Reaction{} : ScriptedClamd::says(asked, "OK");
    });
    ClamdEngine engine(settings());
    EXPECT_EQ(judge(engine, "hang", 100ms).verdict, Verdict::NoAnswer);
    EXPECT_TRUE(engine.refresh().reachable) << "it answers, only not for that file";
    EXPECT_EQ(judge(engine, "content").verdict, Verdict::Clean);
}

TEST_F(ClamdEngineTest, StopsWithinASecondWhateverClamdDoes) {
    m_clamd.setMuted(true);
    ClamdEngine engine(settings());
    std::stop_source source;
    auto judged = std::async(std::launch::async, [&, file = open("content")] {
        return engine.judge(file.get(), 10min, source.get_token());
    });
    while (m_clamd.files() == 0) {
        std::this_thread::yield();
    }
    const auto start = std::chrono::steady_clock::now();
    source.request_stop();
    EXPECT_EQ(judged.get().verdict, Verdict::NoAnswer);
    EXPECT_LT(std::chrono::steady_clock::now() - start, 1s);
    EXPECT_FALSE(engine.state().trouble.empty());
    m_clamd.setMuted(false);
    EXPECT_EQ(judge(engine, "content").verdict, Verdict::Clean) << "a stop says nothing of clamd";
}

TEST_F(ClamdEngineTest, SendsEachFileAgainWhenClamdDiesAndGivesUpOnlyTheOneItDiesOf) {
    m_clamd.onFile([](const Asked& asked) -> Reaction {
        if (asked.content == "deadly") {
            return {"1: fd[9", true, false}; // half a line, then its end
        }
        return ScriptedClamd::says(asked, asked.content == "bad" ? "Test FOUND" : "OK");
    });
    ClamdEngine engine(settings());
    const auto verdicts = judgeAll(
        engine, {"good", "deadly", "bad", "good", "good", "good", "bad", "good", "good", "good"});
    const std::vector<Verdict> expected{
        Verdict::Clean, Verdict::NotScanned, Verdict::Unsafe, Verdict::Clean, Verdict::Clean,
        Verdict::Clean, Verdict::Unsafe,     Verdict::Clean,  Verdict::Clean, Verdict::Clean};
    EXPECT_EQ(verdicts, expected);
}

TEST_F(ClamdEngineTest, DoesNotShowAFileToClamdThatDiedOfItTwice) {
    m_clamd.onFile([](const Asked&) -> Reaction { return {"", true, false}; });
    ClamdEngine engine(settings());
    const UniqueFd file = open("deadly");
    EXPECT_EQ(engine.judge(file.get(), 20s).verdict, Verdict::NotScanned);
    EXPECT_EQ(m_clamd.files(), 2);
    EXPECT_EQ(engine.judge(file.get(), 20s).verdict, Verdict::NotScanned);
    EXPECT_EQ(m_clamd.files(), 2);
}

TEST_F(ClamdEngineTest, RemembersASuspectUntilClamdIsBack) {
    m_clamd.onFile([](const Asked&) -> Reaction { return {"", true, true}; });
    ClamdEngine engine(settings());
    const UniqueFd file = open("deadly");
    EXPECT_EQ(engine.judge(file.get(), 2s).verdict, Verdict::NoAnswer) << "nobody is there";
    m_clamd.stop();
    m_clamd.listen();
    ASSERT_TRUE(engine.refresh().reachable);
    const Judgement second = engine.judge(file.get(), 20s);
    EXPECT_EQ(second.verdict, Verdict::NotScanned) << second.reason;
    EXPECT_EQ(m_clamd.files(), 2);
}

TEST_F(ClamdEngineTest, AcquitsASuspectThatClamdSurvives) {
    std::atomic<int> asked = 0;
    m_clamd.onFile([&](const Asked& file) -> Reaction {
        return ++asked == 1 ? Reaction{"", true, false} : ScriptedClamd::says(file, "OK");
    });
    ClamdEngine engine(settings());
    EXPECT_EQ(judge(engine, "innocent").verdict, Verdict::Clean);
    EXPECT_EQ(asked, 2);
}

TEST_F(ClamdEngineTest, GivesUpASessionThatLies) {
    for (const std::string& lie :
         {"77: fd[9]: OK\0"s, "1: fd[9]: OK\0001: fd[9]: OK\0"s, "fd[9]: OK\0"s,
          "COMMAND READ TIMED OUT\n"s, std::string(10000, 'x')}) {
        std::atomic<bool> lied = false;
        m_clamd.onFile([&](const Asked& asked) -> Reaction {
            if (lied.exchange(true)) {
                return ScriptedClamd::says(asked, "Test FOUND");
            }
            return {lie, true, false};
        });
        ClamdEngine engine(settings());
        const Verdict verdict = judge(engine, "content").verdict;
        const bool answeredFirst = lie.starts_with("1: fd[9]: OK");
        EXPECT_EQ(verdict, answeredFirst ? Verdict::Clean : Verdict::Unsafe) << lie;
        EXPECT_EQ(judge(engine, "content").verdict, Verdict::Unsafe) << lie;
    }
}

TEST_F(ClamdEngineTest, MakesNothingOfAnAnswerThatIsNone) {
    m_clamd.onFile([](const Asked& asked) { return ScriptedClamd::says(asked, "perhaps"); });
    ClamdEngine engine(settings());
    EXPECT_EQ(judge(engine, "content").verdict, Verdict::NoAnswer);
    m_clamd.onFile([](const Asked& asked) { return ScriptedClamd::says(asked, "disk ERROR"); });
    EXPECT_EQ(judge(engine, "content").verdict, Verdict::NotScanned);
}

TEST_F(ClamdEngineTest, OpensANewSessionAfterClamdEndedAnIdleOne) {
    ClamdEngine engine(settings());
    EXPECT_EQ(judge(engine, "content").verdict, Verdict::Clean);
    m_clamd.stop();
    m_clamd.listen();
    EXPECT_EQ(judge(engine, "content").verdict, Verdict::Clean);
    EXPECT_EQ(m_clamd.files(), 2) << "nothing was in clamd's hands when it ended";
}

TEST_F(ClamdEngineTest, SaysWhetherItIsReachableAndWithWhat) {
    ClamdEngine engine(settings());
    EXPECT_FALSE(engine.state().reachable) << "nobody has asked yet";
    EngineState state = engine.refresh();
    EXPECT_TRUE(state.reachable);
    EXPECT_EQ(state.version, "ClamAV 1.4.6");
    EXPECT_EQ(state.maxFileSize, 2048);
    EXPECT_TRUE(state.signatureKey.starts_with("ClamAV 1.4.6|")) << state.signatureKey;
    EXPECT_TRUE(state.signatureTime) << "the newest file's, as the version has none";
    m_clamd.setVersion("ClamAV 1.4.6/27900/Sat Nov 14 09:00:00 2026");
    const auto dated = engine.refresh();
    EXPECT_NE(dated.signatureKey, state.signatureKey);
    EXPECT_NE(dated.signatureTime, state.signatureTime);
    m_clamd.setVersion("HTTP/1.1 400");
    EXPECT_FALSE(engine.refresh().reachable);
    m_clamd.setMuted(true);
    EXPECT_FALSE(engine.refresh().reachable);
    m_clamd.stop();
    state = engine.refresh();
    EXPECT_FALSE(state.reachable);
    EXPECT_EQ(state.version, "ClamAV 1.4.6/27900/Sat Nov 14 09:00:00 2026");
}

TEST_F(ClamdEngineTest, CountsAsNotReachableWhileItMayReadNothing) {
    m_clamd.onFile([](const Asked& asked) {
        return ScriptedClamd::says(asked, "lstat() failed: Permission denied. ERROR");
    });
    ClamdEngine::Settings tested = settings();
    tested.testFolder = m_folder.path();
    ClamdEngine engine(tested);
    const EngineState state = engine.refresh();
    EXPECT_FALSE(state.reachable);
    EXPECT_NE(state.trouble.find("Permission denied"), std::string::npos) << state.trouble;

    std::string shown;
    m_clamd.onFile([&](const Asked& asked) {
        shown = asked.content;
        return ScriptedClamd::says(asked, "Test FOUND");
    });
    EXPECT_TRUE(engine.refresh().reachable);
    EXPECT_EQ(shown, packedEicarTestContent());
    for (const auto& entry : std::filesystem::directory_iterator(m_folder.path())) {
        EXPECT_FALSE(entry.path().filename().string().starts_with("engine-test")) << entry;
    }
}

TEST_F(ClamdEngineTest, TellsOnceWhenItIsLost) {
    std::atomic<int> lost = 0;
    ClamdEngine engine(settings());
    engine.onLost([&] { ++lost; });
    engine.refresh();
    EXPECT_EQ(judge(engine, "content").verdict, Verdict::Clean);
    m_clamd.stop();
    EXPECT_EQ(judge(engine, "content").verdict, Verdict::NoAnswer);
    EXPECT_EQ(judge(engine, "content").verdict, Verdict::NoAnswer);
    EXPECT_EQ(lost, 1);
}

TEST_F(ClamdEngineTest, KeepsAtMostTwoConnectionsWhileEightAsk) {
    ClamdEngine engine(settings());
    judgeAll(engine, std::vector<std::string>(64, "content"));
    EXPECT_EQ(m_clamd.files(), 64);
    EXPECT_LE(m_clamd.connections(), 4) << "two that two threads opened at once may be added";
}

} // namespace
