#include "agent/engine/BuiltInEngine.h"

#include "agent/base/UniqueFd.h"
#include "agent/engine/CombinedEngine.h"
#include "agent/fakes/EicarText.h"
#include "agent/fakes/ScratchFolder.h"

#include <fcntl.h>
#include <gtest/gtest.h>

using namespace korvale::agent;
using namespace std::chrono_literals;

namespace {

class BuiltInEngineTest : public testing::Test {
protected:
    Judgement judge(Engine& engine, const std::string& content, int flags = O_RDONLY) const {
        writeFile(m_folder / "file", content);
        const UniqueFd file(::open((m_folder / "file").c_str(), flags));
        return engine.judge(file.get(), 10s);
    }

    ScratchFolder m_folder;
};

TEST_F(BuiltInEngineTest, FindsTheTestFileAndNothingThatOnlyLooksLikeIt) {
    BuiltInEngine engine;
    const Judgement found = judge(engine, eicarText());
    EXPECT_EQ(found.verdict, Verdict::Unsafe);
    EXPECT_EQ(found.name, "EICAR-Test-File");
    EXPECT_EQ(judge(engine, eicarText() + "\r\n").verdict, Verdict::Unsafe);
    EXPECT_EQ(judge(engine, eicarText() + std::string(60, ' ')).verdict, Verdict::Unsafe);
    EXPECT_EQ(judge(engine, eicarText() + std::string(61, ' ')).verdict, Verdict::Clean);
    EXPECT_EQ(judge(engine, eicarText() + "x").verdict, Verdict::Clean);
    EXPECT_EQ(judge(engine, " " + eicarText()).verdict, Verdict::Clean);
    EXPECT_EQ(judge(engine, eicarText().substr(0, 67)).verdict, Verdict::Clean);
    EXPECT_EQ(judge(engine, "").verdict, Verdict::Clean);
}

TEST_F(BuiltInEngineTest, NeverJudgesWhatItCannotRead) {
    BuiltInEngine engine;
    EXPECT_EQ(judge(engine, eicarText(), O_WRONLY).verdict, Verdict::NotScanned);
    EXPECT_EQ(judge(engine, eicarText(), O_RDWR).verdict, Verdict::NotScanned);
    EXPECT_EQ(judge(engine, eicarText(), O_PATH).verdict, Verdict::NotScanned);
    EXPECT_EQ(engine.judge(-1, 1s).verdict, Verdict::NotScanned);
    const UniqueFd folder(::open(m_folder.path().c_str(), O_RDONLY));
    EXPECT_EQ(engine.judge(folder.get(), 1s).verdict, Verdict::NotScanned);
    const UniqueFd madeUp(::open("/proc/self/status", O_RDONLY));
    EXPECT_EQ(engine.judge(madeUp.get(), 1s).verdict, Verdict::NotScanned);
}

TEST_F(BuiltInEngineTest, FindsWhatIsListed) {
    // SHA-256 of "abc" and of "bad".
    writeFile(m_folder / "list",
              "# known\n"
              "BA7816BF8F01CFEA414140DE5DAE2223B00361A396177A9CB410FF61F20015AD  Test.Abc\r\n"
              "\n"
              "too short\n"
              "9834876dcfb05cb167a5c24953eba58c4ac89b1adf57f28f2f9d09af107ee8f0x\n"
              "9834876dcfb05cb167a5c24953eba58c4ac89b1adf57f28f2f9d09af107ee8f0");
    BuiltInEngine engine({m_folder / "list", m_folder / "missing"});
    const Judgement found = judge(engine, "abc");
    EXPECT_EQ(found.verdict, Verdict::Unsafe);
    EXPECT_EQ(found.name, "Test.Abc");
    EXPECT_EQ(found.sha256hex, "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
    EXPECT_EQ(judge(engine, "abcd").verdict, Verdict::Clean);
    EXPECT_EQ(judge(engine, "aaa").name, "Listed");
}

TEST_F(BuiltInEngineTest, KeyChangesWithItsLists) {
    writeFile(m_folder / "list", "");
    BuiltInEngine engine({m_folder / "list"});
    const std::string before = engine.state().signatureKey;
    EXPECT_EQ(engine.refresh().signatureKey, before);
    writeFile(m_folder / "list",
              "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
    EXPECT_NE(engine.refresh().signatureKey, before);
    EXPECT_EQ(judge(engine, "abc").verdict, Verdict::Unsafe);
}

class FixedEngine final : public Engine {
public:
    explicit FixedEngine(Judgement judgement) : m_judgement(std::move(judgement)) {}
    Judgement judge(int /*descriptor*/, std::chrono::milliseconds /*deadline*/,
                    std::stop_token /*stop*/) override {
        ++asked;
        return m_judgement;
    }
    [[nodiscard]] EngineState state() const override { return current; }
    EngineState refresh() override { return current; }

    int asked = 0;
    EngineState current;

private:
    Judgement m_judgement;
};

TEST_F(BuiltInEngineTest, ComesFirstAndNeedsNobody) {
    BuiltInEngine builtIn;
    FixedEngine dead({Verdict::NoAnswer, {}, "it is dead", {}});
    CombinedEngine both(builtIn, &dead);
    const Judgement found = judge(both, eicarText());
    EXPECT_EQ(found.verdict, Verdict::Unsafe);
    EXPECT_EQ(found.sha256hex, "275a021bbfb6489e54d471899f7db9d1663fc695ec2fe2a2c4538aabf651fd0f");
    EXPECT_EQ(dead.asked, 0);
    EXPECT_EQ(judge(both, "harmless").verdict, Verdict::NoAnswer)
        << "the built-in engine alone knows too little to call a file clean";
    EXPECT_EQ(dead.asked, 1);
    CombinedEngine alone(builtIn, nullptr);
    EXPECT_EQ(judge(alone, "harmless").verdict, Verdict::Clean);
}

TEST_F(BuiltInEngineTest, GivesTheOthersFindingItsDigest) {
    BuiltInEngine builtIn;
    FixedEngine other({Verdict::Abnormal, "PUA.Test", {}, {}});
    CombinedEngine both(builtIn, &other);
    const Judgement found = judge(both, "abc");
    EXPECT_EQ(found.verdict, Verdict::Abnormal);
    EXPECT_EQ(found.sha256hex, "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
}

TEST_F(BuiltInEngineTest, HasNoKeyForTheCacheWithoutTheOthers) {
    BuiltInEngine builtIn;
    FixedEngine other({});
    const CombinedEngine both(builtIn, &other);
    EXPECT_EQ(both.state().signatureKey, "");
    other.current.signatureKey = "other";
    EXPECT_EQ(both.state().signatureKey, builtIn.state().signatureKey + "|other");
}

} // namespace
