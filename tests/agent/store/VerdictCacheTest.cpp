#include "agent/store/VerdictCache.h"

#include "agent/fakes/ScratchFolder.h"

namespace korvale::agent {
namespace {

constexpr FileIdentity kFile{~0ULL, ~5ULL, 68, 1'000'000'001, 7};

class VerdictCacheTest : public ::testing::Test {
protected:
    std::unique_ptr<VerdictCache> open(const std::string& key = "engine 1") {
        std::string error;
        auto cache = VerdictCache::open(path(), error);
        EXPECT_NE(cache, nullptr) << error;
        cache->setSignatureKey(key);
        return cache;
    }
    [[nodiscard]] std::string path() const { return m_folder / "verdicts.db"; }

    ScratchFolder m_folder;
};

TEST_F(VerdictCacheTest, KnowsAnUnchangedFileBeforeAndAfterItIsWritten) {
    for (const KnownVerdict verdict :
         {KnownVerdict::Clean, KnownVerdict::Abnormal, KnownVerdict::Unsafe}) {
        const auto cache = open();
        cache->remember(kFile, verdict);
        EXPECT_EQ(cache->find(kFile), verdict);
        EXPECT_TRUE(cache->flush());
        EXPECT_EQ(cache->find(kFile), verdict);
    }
    EXPECT_EQ(open()->find(kFile), KnownVerdict::Unsafe);
}

TEST_F(VerdictCacheTest, DoesNotKnowAChangedFile) {
    const auto cache = open();
    for (const bool written : {false, true}) {
        cache->remember(kFile, KnownVerdict::Clean);
        if (written) {
            cache->flush();
        }
        FileIdentity other = kFile;
        other.ctimeNs += 1;
        EXPECT_EQ(cache->find(other), std::nullopt);
        other = kFile;
        other.size += 1;
        EXPECT_EQ(cache->find(other), std::nullopt);
        other = kFile;
        other.inode += 1;
        EXPECT_EQ(cache->find(other), std::nullopt);
        other = kFile;
        other.fileSystem = 1;
        EXPECT_EQ(cache->find(other), std::nullopt);
    }
}

TEST_F(VerdictCacheTest, CountsOnlyVerdictsOfTheSameSignatures) {
    const auto cache = open();
    cache->remember(kFile, KnownVerdict::Clean);
    cache->setSignatureKey("engine 2");
    EXPECT_EQ(cache->find(kFile), std::nullopt);
    cache->setSignatureKey("engine 1");
    EXPECT_EQ(cache->find(kFile), KnownVerdict::Clean);
    cache->setSignatureKey("");
    EXPECT_EQ(cache->find(kFile), std::nullopt);
    cache->remember(kFile, KnownVerdict::Unsafe);
    cache->setSignatureKey("engine 1");
    EXPECT_EQ(cache->find(kFile), KnownVerdict::Clean);
}

TEST_F(VerdictCacheTest, FindsVerdictsOfOtherSignaturesByTheirKey) {
    const auto cache = open("old");
    cache->remember(kFile, KnownVerdict::Clean);
    EXPECT_EQ(cache->find(kFile, "old"), KnownVerdict::Clean) << "it waits to be written";
    EXPECT_EQ(cache->find(kFile, "new"), std::nullopt);
    cache->setSignatureKey("new");
    EXPECT_EQ(cache->find(kFile, "old"), KnownVerdict::Clean);
    EXPECT_EQ(cache->find(kFile, ""), std::nullopt);
    EXPECT_EQ(cache->find(kFile), std::nullopt) << "asking changed nothing";
}

TEST_F(VerdictCacheTest, ForgetsWhatItIsToldTo) {
    const auto cache = open();
    cache->remember(kFile, KnownVerdict::Clean);
    cache->flush();
    cache->remember(kFile, KnownVerdict::Unsafe);
    cache->forget(kFile);
    EXPECT_EQ(cache->find(kFile), std::nullopt);
    EXPECT_EQ(cache->size(), 0U);
}

TEST_F(VerdictCacheTest, WritesLargeBatchesByItselfAndTheRestAtTheEnd) {
    {
        const auto cache = open();
        for (std::uint64_t inode = 0; inode < 45'000; ++inode) {
            cache->remember({1, inode, 0, 0, 0}, KnownVerdict::Clean);
        }
        EXPECT_EQ(cache->size(), 45'000U);
        EXPECT_EQ(cache->find({1, 0, 0, 0, 0}), KnownVerdict::Clean);
        EXPECT_EQ(cache->find({1, 44'999, 0, 0, 0}), KnownVerdict::Clean);
    }
    EXPECT_EQ(open()->size(), 45'000U);
}

TEST_F(VerdictCacheTest, TrimsVerdictsOfOldSignaturesFirst) {
    const auto cache = open("old");
    for (std::uint64_t inode = 0; inode < 100; ++inode) {
        cache->remember({1, inode, 0, 0, 0}, KnownVerdict::Clean);
    }
    cache->setSignatureKey("new");
    cache->remember({2, 1, 0, 0, 0}, KnownVerdict::Clean);
    cache->trim(200);
    EXPECT_EQ(cache->size(), 101U);
    cache->trim(50);
    EXPECT_EQ(cache->size(), 1U);
    EXPECT_EQ(cache->find({2, 1, 0, 0, 0}), KnownVerdict::Clean);
    cache->trim(0);
    EXPECT_EQ(cache->size(), 0U);
}

TEST_F(VerdictCacheTest, BeginsAnewWhenItsFileIsDamaged) {
    writeFile(path(), std::string(8192, 'x'));
    const auto cache = open();
    cache->remember(kFile, KnownVerdict::Clean);
    EXPECT_TRUE(cache->flush());
    EXPECT_EQ(cache->find(kFile), KnownVerdict::Clean);
}

} // namespace
} // namespace korvale::agent
