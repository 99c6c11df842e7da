#include "agent/fakes/RealClamd.h"

#include "agent/engine/BuiltInEngine.h"
#include "agent/engine/ClamdEngine.h"
#include "agent/fakes/EicarText.h"
#include "agent/fakes/Needs.h"
#include "agent/fakes/ScratchMount.h"

#include <atomic>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <optional>
#include <thread>

using namespace korvale::agent;
using namespace std::chrono_literals;

namespace {

Judgement judge(Engine& engine, const std::string& path, std::chrono::milliseconds deadline = 60s) {
    const UniqueFd file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    return engine.judge(file.get(), deadline);
}

TEST(RealClamd, JudgesWhatIsPassedToIt) {
    KORVALE_NEEDS(clamd());
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
    KORVALE_NEEDS(clamd());
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
    KORVALE_NEEDS(clamd());
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
    KORVALE_NEEDS(clamd());
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
    KORVALE_NEEDS(clamd());
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

/// A clamd whose temporary folder is a small file system of the test's own, as a user fills it.
class BlindClamd : public testing::Test {
protected:
    void SetUp() override {
        KORVALE_NEEDS(clamd());
        KORVALE_NEEDS(mounts());
        m_mount.emplace(ScratchMount::tmpfs(m_temporary.path(), "size=4m,nr_inodes=400"));
        ASSERT_TRUE(m_mount->mounted());
        m_clamd.emplace("TemporaryDirectory " + m_temporary.path() + "\n");
        writeFile(m_folder / "other.conf", "DatabaseDirectory " + m_clamd->signatures() + "\n");
    }
    void fill(int leave) {
        while (true) {
            const std::string path = m_temporary / ("fill" + std::to_string(m_filled));
            const UniqueFd file(::open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600));
            if (!file) {
                break;
            }
            ++m_filled;
        }
        for (int file = 0; file < leave; ++file) {
            removeOne();
        }
    }
    void empty() {
        while (m_filled > 0) {
            removeOne();
        }
    }
    void removeOne() {
        std::filesystem::remove(m_temporary / ("fill" + std::to_string(--m_filled)));
    }
    /// Unless it `seesFolder` the agent can tell by the sample only.
    [[nodiscard]] ClamdEngine::Settings settings(bool seesFolder) const {
        return {seesFolder ? m_clamd->configuration() : m_folder / "other.conf", m_clamd->socket(),
                10s, m_folder.path(), 500ms};
    }
    static void waitUntilBelieved(ClamdEngine& engine) {
        const auto limit = std::chrono::steady_clock::now() + 60s;
        while (!engine.refresh().reachable) {
            ASSERT_LT(std::chrono::steady_clock::now(), limit) << engine.state().trouble;
            std::this_thread::sleep_for(50ms);
        }
    }

    ScratchFolder m_folder;
    ScratchFolder m_temporary;
    std::optional<ScratchMount> m_mount;
    std::optional<RealClamd> m_clamd;
    int m_filled = 0;
};

TEST_F(BlindClamd, IsNotBelievedWhileItsTemporaryFolderIsFull) {
    writeFile(m_folder / "bad", RealClamd::badMarker);
    for (const bool seesFolder : {true, false}) {
        ClamdEngine engine(settings(seesFolder));
        ASSERT_TRUE(engine.refresh().reachable) << engine.state().trouble;
        EXPECT_EQ(judge(engine, m_folder / "bad").verdict, Verdict::Unsafe);
        fill(0);
        std::this_thread::sleep_for(ControlSample::longestWindow); // the next OK asks for proof
        EXPECT_EQ(judge(engine, m_folder / "bad").verdict, Verdict::NoAnswer);
        EXPECT_FALSE(engine.refresh().reachable);
        EXPECT_FALSE(engine.state().believed) << engine.state().trouble;
        empty();
        waitUntilBelieved(engine);
        EXPECT_EQ(judge(engine, m_folder / "bad").verdict, Verdict::Unsafe);
    }
}

TEST_F(BlindClamd, IsMadeToForgetWhatItCalledCleanWithRoomForOneFileOnly) {
    writeFile(m_folder / "packed", packedEicarTestContent());
    ClamdEngine engine(settings(false));
    ASSERT_TRUE(engine.refresh().reachable) << engine.state().trouble;
    // Its folder takes the one inode, what it unpacks would need another. What it calls clean then
    // it remembers, though there is room again.
    ClamdEngine gullible({m_clamd->configuration(), m_clamd->socket(), 10s, {}});
    fill(1);
    EXPECT_EQ(judge(gullible, m_folder / "packed").verdict, Verdict::Clean) << "no such danger";
    empty();
    EXPECT_EQ(judge(gullible, m_folder / "packed").verdict, Verdict::Clean) << "no such danger";
    EXPECT_FALSE(engine.refresh().reachable);
    EXPECT_FALSE(engine.state().believed) << engine.state().trouble;
    waitUntilBelieved(engine);
    EXPECT_EQ(judge(engine, m_folder / "packed").verdict, Verdict::Unsafe);
}

TEST_F(BlindClamd, WithLittleRoomIsNotBelievedThoughItFindsTheSample) {
    writeFile(m_folder / "good", "harmless");
    ClamdEngine engine(settings(true));
    ASSERT_TRUE(engine.refresh().reachable) << engine.state().trouble;
    EXPECT_EQ(judge(engine, m_folder / "good").verdict, Verdict::Clean);
    fill(4); // enough for the sample; an archive in an archive needs more
    EXPECT_EQ(judge(engine, m_folder / "good").verdict, Verdict::NoAnswer);
    EXPECT_NE(engine.state().trouble.find("no room for further files"), std::string::npos)
        << engine.state().trouble;
    empty();
    waitUntilBelieved(engine);
    EXPECT_EQ(judge(engine, m_folder / "good").verdict, Verdict::Clean);
}

} // namespace
