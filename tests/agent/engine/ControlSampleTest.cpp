#include "agent/engine/ControlSample.h"

#include "agent/engine/BuiltInEngine.h"
#include "agent/engine/ClamdEngine.h"
#include "agent/engine/TemporaryFolder.h"
#include "agent/fakes/ScratchFolder.h"
#include "agent/fakes/ScriptedClamd.h"

#include <array>
#include <atomic>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>
#include <zlib.h>

using namespace korvale::agent;
using namespace std::chrono_literals;
using Asked = ScriptedClamd::Asked;
using Cure = ControlSample::Cure;
using Meaning = ControlSample::Meaning;

namespace {

constexpr const char* kOfficial = "ClamAV 1.4.6/27900/Sat Nov 14 09:00:00 2026";

/// A clamd that calls everything clean but, as long as it `scans`, the sample.
class ControlSampleTest : public testing::Test {
protected:
    ControlSampleTest() : m_clamd(m_folder / "clamd.ctl") {
        writeFile(m_folder / "clamd.conf", "DatabaseDirectory " + m_folder.path() +
                                               "\nTemporaryDirectory " + m_folder.path() + "\n");
        m_clamd.onFile([this](const Asked& asked) {
            m_samples += asked.isSample() ? 1 : 0;
            return ScriptedClamd::says(asked, asked.isSample() && m_scans ? "Test FOUND" : "OK");
        });
    }

    ClamdEngine::Settings settings(std::chrono::milliseconds reloadTime = 0ms) const {
        return {m_folder / "clamd.conf", m_folder / "clamd.ctl", 5s, m_folder.path(), reloadTime};
    }
    Judgement judge(ClamdEngine& engine) {
        writeFile(m_folder / "file", "harmless");
        const UniqueFd file(::open((m_folder / "file").c_str(), O_RDONLY | O_CLOEXEC));
        return engine.judge(file.get(), 20s);
    }

    ScratchFolder m_folder;
    std::atomic<bool> m_scans = true;
    std::atomic<int> m_samples = 0;
    ScriptedClamd m_clamd;
};

TEST_F(ControlSampleTest, IsTheTestFilePackedAndNowhereToBeSeen) {
    const std::string packed = packedEicarTestContent();
    std::array<char, 128> plain{};
    z_stream stream{};
    ASSERT_EQ(::inflateInit2(&stream, 31), Z_OK);
    std::string input = packed;
    stream.next_in = reinterpret_cast<Bytef*>(input.data()); // NOLINT: as zlib wants it
    stream.avail_in = static_cast<uInt>(input.size());
    stream.next_out = reinterpret_cast<Bytef*>(plain.data()); // NOLINT
    stream.avail_out = plain.size();
    EXPECT_EQ(::inflate(&stream, Z_FINISH), Z_STREAM_END);
    EXPECT_EQ(std::string(plain.data(), stream.total_out), eicarTestContent());
    ::inflateEnd(&stream);
    EXPECT_EQ(packed.find("EICAR"), std::string::npos);
}

TEST_F(ControlSampleTest, AnOkIsBelievedFromTheFirstOneOnOnlyOfAnEngineThatFindsTheSample) {
    m_clamd.setVersion(kOfficial);
    m_scans = false;
    ClamdEngine engine(settings());
    EXPECT_EQ(judge(engine).verdict, Verdict::NoAnswer) << "nobody has refreshed it yet";
    const EngineState state = engine.refresh();
    EXPECT_FALSE(state.reachable);
    EXPECT_FALSE(state.believed);
    EXPECT_NE(state.trouble.find("known test file"), std::string::npos) << state.trouble;
    EXPECT_NE(state.trouble.find(m_folder.path()), std::string::npos) << "which folder";
}

TEST_F(ControlSampleTest, AnEngineThatFoundItOnceWithTheseSignaturesIsNotBelievedWithoutIt) {
    ClamdEngine engine(settings());
    ASSERT_TRUE(engine.refresh().reachable);
    const std::uint64_t proofs = engine.state().proofs;
    EXPECT_GT(proofs, 0U);
    EXPECT_EQ(judge(engine).verdict, Verdict::Clean);
    m_scans = false;
    std::this_thread::sleep_for(ControlSample::longestWindow); // the next OK asks for proof
    EXPECT_EQ(judge(engine).verdict, Verdict::NoAnswer);
    EXPECT_FALSE(engine.state().reachable);
    EXPECT_FALSE(engine.state().believed);
    EXPECT_EQ(engine.state().doubts, 1U);
    EXPECT_FALSE(engine.refresh().reachable);
    EXPECT_EQ(engine.state().doubts, 1U) << "one time of blindness";
}

TEST_F(ControlSampleTest, SignaturesOfOnesOwnThatNeverFoundItAreBelieved) {
    m_scans = false;
    ClamdEngine engine(settings());
    EXPECT_TRUE(engine.refresh().reachable);
    const Judgement judgement = judge(engine);
    EXPECT_EQ(judgement.verdict, Verdict::Clean);
    EXPECT_FALSE(judgement.provisional) << "it would never be settled";
    const int samples = m_samples;
    EXPECT_EQ(judge(engine).verdict, Verdict::Clean);
    EXPECT_EQ(m_samples, samples) << "a sample that proves nothing is a waste";
}

TEST_F(ControlSampleTest, AfterBlindnessClamdIsMadeToForgetBeforeItIsBelievedAgain) {
    ClamdEngine engine(settings(1h));
    ASSERT_TRUE(engine.refresh().reachable);
    m_scans = false;
    EXPECT_FALSE(engine.refresh().reachable);
    EXPECT_EQ(m_clamd.reloads(), 1) << "it may remember the sample itself";
    m_scans = true;
    EXPECT_FALSE(engine.refresh().reachable);
    EXPECT_EQ(m_clamd.reloads(), 2) << "and what it was asked since then";
    EXPECT_FALSE(engine.refresh().reachable) << "it is still loading";
    EXPECT_EQ(m_clamd.reloads(), 2);
    EXPECT_EQ(judge(engine).verdict, Verdict::NoAnswer);
    EXPECT_FALSE(engine.state().believed);
}

TEST_F(ControlSampleTest, AnEngineThatScansAgainIsBelievedAgain) {
    ClamdEngine engine(settings());
    ASSERT_TRUE(engine.refresh().reachable);
    m_scans = false;
    EXPECT_FALSE(engine.refresh().reachable);
    m_scans = true;
    engine.refresh(); // makes it forget
    EXPECT_TRUE(engine.refresh().reachable) << engine.state().trouble;
    EXPECT_TRUE(engine.state().believed);
    EXPECT_EQ(judge(engine).verdict, Verdict::Clean);
}

TEST_F(ControlSampleTest, ATemporaryFolderThatIsNotThereIsNoPlaceToScanIn) {
    writeFile(m_folder / "clamd.conf", "TemporaryDirectory " + (m_folder / "none") + "\n");
    ClamdEngine engine(settings());
    EXPECT_FALSE(engine.refresh().reachable);
    EXPECT_NE(engine.state().trouble.find("none: No such file"), std::string::npos)
        << engine.state().trouble;
    EXPECT_EQ(temporaryFolderTrouble(m_folder.path()), "");
}

TEST_F(ControlSampleTest, IsTakenAfterAnOkAtMostForAFiftiethOfTheTime) {
    ControlSample sample;
    const auto now = ControlSample::TimePoint() + 1h;
    EXPECT_TRUE(sample.isDue(now));
    EXPECT_EQ(sample.meaningOf(Verdict::Unsafe, "key", false), Meaning::Scans);
    sample.tookFrom(now - 2ms, now);
    EXPECT_FALSE(sample.isDue(now + 99ms));
    EXPECT_TRUE(sample.isDue(now + 100ms));
    sample.tookFrom(now - 4s, now);
    EXPECT_FALSE(sample.isDue(now + 999ms));
    EXPECT_TRUE(sample.isDue(now + 1s)) << "but once a second at the least";
}

TEST_F(ControlSampleTest, SaysWhatItMeansToCallItClean) {
    ControlSample sample;
    EXPECT_EQ(sample.meaningOf(Verdict::Clean, "key", false), Meaning::Nothing);
    EXPECT_EQ(sample.meaningOf(Verdict::Clean, "key", true), Meaning::Blind);
    EXPECT_EQ(sample.meaningOf(Verdict::Abnormal, "key", false), Meaning::Scans);
    EXPECT_EQ(sample.meaningOf(Verdict::Clean, "key", false), Meaning::Blind);
    EXPECT_EQ(sample.meaningOf(Verdict::Clean, "other", false), Meaning::Nothing);
}

TEST_F(ControlSampleTest, MakesABlindClamdForgetNowAndThen) {
    ControlSample sample;
    const auto now = ControlSample::TimePoint() + 1h;
    EXPECT_EQ(sample.cure(Meaning::Scans, now, 30s), Cure::None) << "never caught";
    sample.caught();
    EXPECT_EQ(sample.cure(Meaning::Blind, now, 30s), Cure::Reload);
    sample.caught();
    EXPECT_EQ(sample.cure(Meaning::Blind, now + 59s, 30s), Cure::Wait);
    EXPECT_EQ(sample.cure(Meaning::Blind, now + 60s, 30s), Cure::Reload);
    EXPECT_EQ(sample.cure(Meaning::Scans, now + 61s, 30s), Cure::Reload);
    EXPECT_EQ(sample.cure(Meaning::Scans, now + 90s, 30s), Cure::Wait);
    EXPECT_EQ(sample.cure(Meaning::Scans, now + 91s, 30s), Cure::None);
    EXPECT_EQ(sample.cure(Meaning::Scans, now + 92s, 30s), Cure::None);
}

} // namespace
