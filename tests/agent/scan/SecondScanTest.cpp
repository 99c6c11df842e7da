// What a second scan need not read again, and what it must.
#include "agent/fakes/FakeEngine.h"
#include "agent/fakes/Needs.h"
#include "agent/fakes/ScratchFolder.h"
#include "agent/scan/RecordingScan.h"
#include "agent/store/VerdictCache.h"

#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/mman.h>

using namespace korvale::agent;
using namespace std::chrono_literals;
namespace fs = std::filesystem;

namespace {

class SecondScanTest : public testing::Test {
protected:
    void SetUp() override {
        KORVALE_NEEDS(verdictsKept(m_folder.path()));
        fs::create_directory(m_folder / "tree");
        std::string error;
        m_cache = VerdictCache::open(m_folder / "verdicts.db", error);
        ASSERT_TRUE(m_cache) << error;
    }
    void make(const std::string& name, const std::string& content) const {
        writeFile(m_folder / ("tree/" + name), content);
    }
    static void grow() { std::this_thread::sleep_for(2 * VerdictMemory::tooYoung); }
    ScanSummary scan() {
        m_engine.forget();
        ScanRequest request = RecordingScan::of(m_folder / "tree");
        request.caller = {::geteuid(), {::getegid()}};
        RecordingScan scan(request, m_engine, m_cache.get());
        return scan.run();
    }

    /// A file of the tree as the walk hands it out.
    [[nodiscard]] WalkedFile walked(const std::string& name) const {
        auto folder = std::make_shared<WalkedFolder>();
        folder->descriptor.reset(::open((m_folder / "tree").c_str(), O_RDONLY | O_DIRECTORY));
        folder->facts = *fileSystemFacts(folder->descriptor.get());
        WalkedFile file;
        file.folder = folder;
        file.name = name;
        file.descriptor.reset(::open((m_folder / ("tree/" + name)).c_str(), O_RDONLY));
        file.identity = *identify(file.descriptor.get());
        return file;
    }

    ScratchFolder m_folder;
    FakeEngine m_engine;
    std::unique_ptr<VerdictCache> m_cache;
};

TEST_F(SecondScanTest, AsksForNothingThatWasCleanAndIsUnchanged) {
    for (int file = 0; file < 300; ++file) {
        make("f" + std::to_string(file), "good " + std::to_string(file));
    }
    make("bad", "bad");
    make("hard", "hard");
    grow();
    EXPECT_EQ(scan().known, 0U);
    const ScanSummary second = scan();
    EXPECT_EQ(second.known, 300U);
    EXPECT_EQ(second.analysed, 301U);
    EXPECT_EQ(second.found, 1U) << "a finding is found again";
    EXPECT_EQ(second.notScanned, 1U);
    EXPECT_EQ(m_engine.seen().size(), 2U);
}

TEST_F(SecondScanTest, AsksForWhatChanged) {
    make("file", "good");
    grow();
    scan();
    make("file", "evil");
    EXPECT_EQ(scan().known, 0U);
    EXPECT_EQ(m_engine.timesSeen("evil"), 1);
}

TEST_F(SecondScanTest, AsksForWhatChangedWithItsTimesSetBack) {
    make("file", "good");
    grow();
    scan();
    const auto time = fs::last_write_time(m_folder / "tree/file");
    make("file", "evil");
    fs::last_write_time(m_folder / "tree/file", time);
    EXPECT_EQ(scan().known, 0U);
    EXPECT_EQ(m_engine.timesSeen("evil"), 1);
}

TEST_F(SecondScanTest, AsksForWhatWasChangedThroughAMapping) {
    make("file", "good");
    grow();
    const UniqueFd file(::open((m_folder / "tree/file").c_str(), O_RDWR));
    void* const mapped = ::mmap(nullptr, 4, PROT_READ | PROT_WRITE, MAP_SHARED, file.get(), 0);
    ASSERT_NE(mapped, MAP_FAILED);
    EXPECT_EQ(*static_cast<volatile char*>(mapped), 'g');
    scan();
    *static_cast<volatile char*>(mapped) = 'f';
    EXPECT_EQ(scan().known, 0U);
    EXPECT_EQ(m_engine.timesSeen("food"), 1);
    ::munmap(mapped, 4);
}

TEST_F(SecondScanTest, RemembersNothingThatChangedJustBeforeItWasRead) {
    make("file", "good");
    const WalkedFile file = walked("file");
    VerdictMemory memory(m_cache.get(), m_engine);
    const std::chrono::sys_time<std::chrono::nanoseconds> changed{
        std::chrono::nanoseconds(file.identity.ctimeNs)};
    VerdictMemory::Begun begun = memory.begin(file);
    // As if the reading began then, however long this machine takes.
    begun.time = changed + VerdictMemory::tooYoung - 1ms;
    memory.remember(file, begun);
    EXPECT_FALSE(memory.isKnownClean(file));
    begun.time = changed + VerdictMemory::tooYoung + 1ms;
    memory.remember(file, begun);
    EXPECT_TRUE(memory.isKnownClean(file));
}

TEST_F(SecondScanTest, AsksForAllWithOtherSignatures) {
    make("file", "good");
    grow();
    scan();
    m_engine.setKey("other key");
    EXPECT_EQ(scan().known, 0U);
    EXPECT_EQ(scan().known, 1U);
    m_engine.setKey("");
    EXPECT_EQ(scan().known, 0U) << "signatures that are not known";
    EXPECT_EQ(scan().known, 0U);
}

TEST_F(SecondScanTest, RemembersNothingThatSignaturesChangedUnder) {
    make("file", "good");
    grow();
    m_engine.onJudge([this](const std::string& content, const std::stop_token&) {
        m_engine.setKey("new key");
        return FakeEngine::byContent(content);
    });
    scan();
    m_engine.onJudge({});
    EXPECT_EQ(scan().known, 0U);
}

TEST_F(SecondScanTest, RemembersNothingThatSeemsToBeFromTheFuture) {
    make("file", "good");
    grow();
    const WalkedFile file = walked("file");
    VerdictMemory memory(m_cache.get(), m_engine);
    VerdictMemory::Begun begun = memory.begin(file);
    begun.time -= 1h; // somebody set the clock back
    memory.remember(file, begun);
    EXPECT_FALSE(memory.isKnownClean(file));
    memory.remember(file, memory.begin(file));
    EXPECT_TRUE(memory.isKnownClean(file));
}

TEST_F(SecondScanTest, RemembersProvisionalVerdictsOnceTheEngineHasProvedItself) {
    make("file", "good");
    make("late", "good");
    grow();
    const WalkedFile file = walked("file");
    const WalkedFile late = walked("late");
    VerdictMemory memory(m_cache.get(), m_engine);
    EXPECT_FALSE(memory.remember(file, memory.begin(file), true));
    EXPECT_TRUE(memory.isOpen());
    EXPECT_FALSE(memory.isKnownClean(file));
    m_engine.prove();
    EXPECT_FALSE(memory.remember(late, memory.begin(late), true)) << "after that proof";
    EXPECT_TRUE(memory.isKnownClean(file));
    EXPECT_FALSE(memory.isKnownClean(late));
    EXPECT_TRUE(memory.takeDoubted().empty());
    m_engine.prove();
    EXPECT_TRUE(memory.takeDoubted().empty());
    EXPECT_FALSE(memory.isOpen());
    EXPECT_TRUE(memory.isKnownClean(late));
}

TEST_F(SecondScanTest, RemembersNoProvisionalVerdictThatADoubtFollows) {
    make("file", "good");
    make("late", "good");
    grow();
    const WalkedFile file = walked("file");
    const WalkedFile late = walked("late");
    VerdictMemory memory(m_cache.get(), m_engine);
    const VerdictMemory::Begun begun = memory.begin(late);
    EXPECT_FALSE(memory.remember(file, memory.begin(file), true));
    m_engine.doubt();
    m_engine.prove(); // it scans again, by now
    EXPECT_FALSE(memory.remember(late, begun, true));
    EXPECT_EQ(memory.takeDoubted(), (std::vector{file.path(), late.path()}));
    EXPECT_TRUE(memory.takeDoubted().empty());
    m_engine.prove();
    EXPECT_TRUE(memory.takeDoubted().empty());
    EXPECT_FALSE(memory.isKnownClean(file));
    EXPECT_FALSE(memory.isKnownClean(late));
}

TEST_F(SecondScanTest, AsksAgainForWhatABlindEngineCalledClean) {
    make("file", "bad");
    grow();
    std::atomic<bool> blind = true;
    m_engine.onJudge([&](const std::string& content, const std::stop_token&) {
        return blind ? FakeEngine::provisional() : FakeEngine::byContent(content);
    });
    m_engine.onRefresh = [&, first = true]() mutable {
        if (std::exchange(first, false)) {
            return; // at the beginning all was well
        }
        if (blind.exchange(false)) {
            m_engine.doubt();
        }
    };
    const ScanSummary summary = scan();
    EXPECT_EQ(summary.found, 1U);
    EXPECT_EQ(summary.analysed, 1U);
    EXPECT_EQ(summary.unanswered, 0U);
}

TEST_F(SecondScanTest, CountsWhatABlindEngineCalledCleanAsNotScanned) {
    make("file", "bad");
    grow();
    m_engine.onJudge(
        [](const std::string&, const std::stop_token&) { return FakeEngine::provisional(); });
    m_engine.onRefresh = [this, first = true]() mutable {
        if (!std::exchange(first, false)) {
            m_engine.doubt();
            m_engine.setReachable(false);
        }
    };
    const ScanSummary summary = scan();
    EXPECT_EQ(summary.analysed, 0U);
    EXPECT_EQ(summary.unanswered, 1U);
    m_engine.onRefresh = {};
    m_engine.onJudge({});
    EXPECT_EQ(scan().known, 0U) << "it was remembered";
}

TEST_F(SecondScanTest, RemembersAtItsEndWhatTheEngineProvesThen) {
    make("file", "good");
    grow();
    m_engine.onJudge(
        [](const std::string&, const std::stop_token&) { return FakeEngine::provisional(); });
    m_engine.onRefresh = [this] { m_engine.prove(); };
    EXPECT_EQ(scan().analysed, 1U);
    EXPECT_EQ(scan().known, 1U);
}

TEST_F(SecondScanTest, RemembersNothingThatChangedWhileItWasJudged) {
    make("file", "good");
    grow();
    m_engine.onJudge([this](const std::string& content, const std::stop_token&) {
        make("file", "evil");
        return FakeEngine::byContent(content);
    });
    scan();
    m_engine.onJudge({});
    EXPECT_EQ(scan().known, 0U);
    EXPECT_EQ(m_engine.timesSeen("evil"), 1);
}

TEST(SecondScanOnTmpfs, RemembersNothing) {
    KORVALE_NEEDS(sharedMemoryFolder());
    const ScratchFolder state;
    std::string tree = "/dev/shm/korvale-XXXXXX";
    ASSERT_NE(::mkdtemp(tree.data()), nullptr);
    writeFile(tree + "/file", "good");
    std::this_thread::sleep_for(2 * VerdictMemory::tooYoung);
    std::string error;
    const auto cache = VerdictCache::open(state / "verdicts.db", error);
    FakeEngine engine;
    ScanRequest request = RecordingScan::of(tree);
    request.caller = {::geteuid(), {::getegid()}};
    RecordingScan(request, engine, cache.get()).run();
    EXPECT_EQ(RecordingScan(request, engine, cache.get()).run().known, 0U);
    fs::remove_all(tree);
}

} // namespace
