#include "agent/fakes/RealClamd.h"

#include "agent/engine/ClamdEngine.h"
#include "agent/fakes/EicarText.h"

#include <atomic>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <thread>

using namespace korvale::agent;
using namespace std::chrono_literals;

namespace {

Judgement judge(Engine& engine, const std::string& path, std::chrono::milliseconds deadline = 60s) {
    const UniqueFd file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    return engine.judge(file.get(), deadline);
}

TEST(RealClamd, JudgesWhatIsPassedToIt) {
    KORVALE_NEEDS_CLAMD();
    const RealClamd clamd;
    const ScratchFolder folder;
    ClamdEngine engine({clamd.configuration(), {}, 2s, {}});
    ASSERT_TRUE(engine.refresh().reachable) << engine.state().trouble;
    writeFile(folder / "good", "harmless");
    writeFile(folder / "eicar", eicarText());
    writeFile(folder / "bad", RealClamd::badMarker);
    writeFile(folder / "heuristic", RealClamd::heuristicMarker);
    writeFile(folder / "unwanted", RealClamd::unwantedMarker);
    EXPECT_EQ(judge(engine, folder / "good").verdict, Verdict::Clean);
    const Judgement eicar = judge(engine, folder / "eicar");
    EXPECT_EQ(eicar.verdict, Verdict::Unsafe);
    EXPECT_EQ(eicar.name, "Korvale.Test.Eicar.UNOFFICIAL");
    EXPECT_EQ(judge(engine, folder / "bad").verdict, Verdict::Unsafe);
    EXPECT_EQ(judge(engine, folder / "heuristic").verdict, Verdict::Abnormal);
    EXPECT_EQ(judge(engine, folder / "unwanted").verdict, Verdict::Abnormal);
}

TEST(RealClamd, IsNotBelievedAboutFilesAboveItsLimit) {
    KORVALE_NEEDS_CLAMD();
    const RealClamd clamd("MaxFileSize 1M\n");
    const ScratchFolder folder;
    ClamdEngine engine({clamd.configuration(), {}, 2s, {}});
    engine.refresh();
    const std::string marker = RealClamd::badMarker;
    const std::string largest = marker + std::string((1 << 20) - marker.size(), 'x');
    writeFile(folder / "largest", largest);
    writeFile(folder / "larger", largest + "x");
    EXPECT_EQ(judge(engine, folder / "largest").verdict, Verdict::Unsafe);
    EXPECT_EQ(judge(engine, folder / "larger").verdict, Verdict::NotScanned);
}

TEST(RealClamd, SayingThatALimitWasExceededIsNoFinding) {
    KORVALE_NEEDS_CLAMD();
    const RealClamd clamd("AlertExceedsMax yes\nMaxFileSize 1k\n");
    const ScratchFolder folder;
    writeFile(folder / "other.conf", "MaxFileSize 1M\n"); // we know of a larger limit
    ClamdEngine engine({folder / "other.conf", clamd.socket(), 2s, {}});
    writeFile(folder / "large", std::string(5000, 'x'));
    const Judgement judgement = judge(engine, folder / "large");
    EXPECT_EQ(judgement.verdict, Verdict::NotScanned);
    EXPECT_NE(judgement.reason.find("Limits.Exceeded"), std::string::npos) << judgement.reason;
}

TEST(RealClamd, ThatIsStoppedGivesNoAnswerAndGoesOnLater) {
    KORVALE_NEEDS_CLAMD();
    const RealClamd clamd;
    const ScratchFolder folder;
    ClamdEngine engine({clamd.configuration(), {}, 500ms, {}});
    writeFile(folder / "bad", RealClamd::badMarker);
    clamd.signal(SIGSTOP);
    EXPECT_EQ(judge(engine, folder / "bad", 500ms).verdict, Verdict::NoAnswer);
    EXPECT_FALSE(engine.refresh().reachable);
    clamd.signal(SIGCONT);
    while (!engine.refresh().reachable) {
        std::this_thread::yield();
    }
    EXPECT_EQ(judge(engine, folder / "bad").verdict, Verdict::Unsafe);
}

TEST(RealClamd, KilledAgainAndAgainNeverMakesABadFileClean) {
    KORVALE_NEEDS_CLAMD();
    RealClamd clamd;
    const ScratchFolder folder;
    ClamdEngine engine({clamd.configuration(), {}, 1s, {}});
    std::atomic<bool> ending = false;
    std::atomic<int> judged = 0;
    std::vector<std::jthread> threads;
    for (int thread = 0; thread < 8; ++thread) {
        const std::string path = folder / ("bad" + std::to_string(thread));
        writeFile(path, RealClamd::badMarker + std::string(100000, ' '));
        threads.emplace_back([&, path] {
            while (!ending) {
                const Verdict verdict = judge(engine, path).verdict;
                EXPECT_NE(verdict, Verdict::Clean);
                judged += verdict == Verdict::Unsafe ? 1 : 0;
            }
        });
    }
    for (int round = 0; round < 3; ++round) {
        const int before = judged;
        while (judged < before + 50) {
            std::this_thread::yield();
        }
        clamd.kill();
        clamd.start();
        // Files that were in its hands twice are not asked for any more; another state of them is.
        for (int thread = 0; thread < 8; ++thread) {
            writeFile(folder / "fresh", RealClamd::badMarker + std::string(100000, ' '));
            std::filesystem::rename(folder / "fresh", folder / ("bad" + std::to_string(thread)));
        }
        engine.refresh();
    }
    ending = true;
}

} // namespace
