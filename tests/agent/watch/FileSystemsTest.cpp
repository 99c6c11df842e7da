#include "WrittenFixture.h"
#include "agent/fakes/Needs.h"

#include <sched.h>

namespace korvale::agent {
namespace {

enum class Kind { Memory, Loop, Overlay };

/// What is written, moved and run on file systems of each kind.
class FileSystemsTest : public WrittenTest, public testing::WithParamInterface<Kind> {
protected:
    void SetUp() override {
        m_checkStarts = true;
        WrittenTest::SetUp();
        if (m_watch) {
            ASSERT_TRUE(waitUntil([this] { return m_watch->systems().at(0).starts; }));
        }
    }
    void mountAt(const std::string& place) override {
        if (GetParam() == Kind::Memory) {
            WrittenTest::mountAt(place);
        } else if (GetParam() == Kind::Loop) {
            m_mount = std::make_unique<ScratchMount>(ScratchMount::ext4(place, 32));
        } else {
            m_base =
                std::make_unique<ScratchMount>(ScratchMount::tmpfs(m_below.path(), "size=32m"));
            m_mount = std::make_unique<ScratchMount>(ScratchMount::overlay(place, m_below.path()));
        }
        KORVALE_NEEDS(mounted(*m_mount, GetParam() == Kind::Loop ? "ext4" : "an overlay"));
    }
    GuardProcess guard() override { return GuardProcess::start(); }

    void TearDown() override {
        WrittenTest::TearDown();
        m_mount.reset(); // before what carries it
        std::filesystem::remove(m_folder.path() + ".image");
    }
    [[nodiscard]] const WatchedSystem system() const { return m_watch->systems().at(0); }
    void makeBadScript(const std::string& name) const {
        writeFile(m_folder / name, "#!/bin/true\n# evil " + name);
        ASSERT_EQ(::chmod((m_folder / name).c_str(), 0755), 0);
    }

    ScratchFolder m_below;
    std::unique_ptr<ScratchMount> m_base;
};

TEST_P(FileSystemsTest, WhatIsWrittenIsFound) {
    byAnother([this] { writeFile(m_folder / "evil", "bad thing"); });
    EXPECT_TRUE(finds(m_folder / "evil"));
    EXPECT_TRUE(m_watch->isComplete());
}

TEST_P(FileSystemsTest, WhatIsMovedInIsFoundOrItIsSaidThatItIsNot) {
    const WatchMode expected =
        GetParam() == Kind::Overlay ? WatchMode::ClosedOnly : WatchMode::Full;
    EXPECT_EQ(system().mode, expected);
    EXPECT_EQ(system().problem.empty(), expected == WatchMode::Full) << system().problem;
    writeFile(m_folder / "own", "bad and moved"); // what the test writes is not heard of
    byAnother([this] { std::filesystem::rename(m_folder / "own", m_folder / "moved"); });
    if (expected == WatchMode::Full) {
        EXPECT_TRUE(finds(m_folder / "moved"));
    } else {
        settle();
        EXPECT_EQ(m_engine.timesSeen("bad and moved"), 0);
    }
}

TEST_P(FileSystemsTest, ABadProgramIsNotRun) {
    m_engine.onJudge([](const std::string& content, std::stop_token) {
        const bool bad = content.find("evil") != std::string::npos;
        return bad ? Judgement{Verdict::Unsafe, "Evil", {}, std::string(64, 'e')}
                   : Judgement{Verdict::Clean, {}, {}, {}};
    });
    makeBadScript("program");
    makeProgram(m_folder / "good");
    EXPECT_EQ(runProgram(m_folder / "program"), -EPERM);
    EXPECT_EQ(runProgram(m_folder / "good"), 0);
    // Started where other things are mounted, which nobody here sees.
    makeBadScript("elsewhere");
    byAnother([this] {
        ASSERT_EQ(::unshare(CLONE_NEWNS), 0);
        EXPECT_EQ(runProgram(m_folder / "elsewhere"), -EPERM);
        EXPECT_EQ(runProgram(m_folder / "good"), 0);
    });
}

INSTANTIATE_TEST_SUITE_P(Kinds, FileSystemsTest,
                         testing::Values(Kind::Memory, Kind::Loop, Kind::Overlay),
                         [](const auto& kind) {
                             return kind.param == Kind::Memory ? "Memory"
                                    : kind.param == Kind::Loop ? "Loop"
                                                               : "Overlay";
                         });

/// A file system that a program serves: whoever opens files there may wait for ever.
class FuseTest : public WrittenTest {
protected:
    void SetUp() override {
        KORVALE_NEEDS(bindfs());
        WrittenTest::SetUp();
    }
    void mountAt(const std::string& place) override {
        m_mount = std::make_unique<ScratchMount>(ScratchMount::fuse(place, m_below.path()));
        ASSERT_TRUE(m_mount->mounted());
    }

    ScratchFolder m_below;
};

TEST_F(FuseTest, IsLeftOutAndThatIsSaidAndNoProblem) {
    ASSERT_EQ(m_watch->systems().size(), 1U);
    const WatchedSystem system = m_watch->systems().at(0);
    EXPECT_EQ(system.mode, WatchMode::Unasked);
    EXPECT_NE(system.problem.find("fuse"), std::string::npos) << system.problem;
    EXPECT_TRUE(m_watch->isComplete());
    EXPECT_TRUE(m_watch->problem().isEmpty());
    byAnother([this] { writeFile(m_folder / "evil", "bad on fuse"); });
    // What lies beside it is watched.
    const ScratchFolder beside;
    const ScratchMount mounted = ScratchMount::tmpfs(beside.path(), "size=1m");
    ASSERT_TRUE(mounted.mounted());
    watch({m_folder.path(), beside.path()});
    ASSERT_TRUE(waitUntil([this] { return m_watch->systems().size() == 2; }));
    byAnother([&] { writeFile(beside / "evil", "bad beside"); });
    EXPECT_TRUE(finds(beside / "evil"));
    EXPECT_EQ(m_engine.timesSeen("bad on fuse"), 0);
}

} // namespace
} // namespace korvale::agent
