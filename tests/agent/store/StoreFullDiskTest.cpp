#include "agent/fakes/Needs.h"
#include "agent/fakes/ScratchFolder.h"
#include "agent/fakes/ScratchMount.h"
#include "agent/store/Store.h"
#include "agent/store/VerdictCache.h"

#include <gmock/gmock.h>

namespace korvale::agent {
namespace {

using ::testing::ElementsAre;
using ::testing::Field;

Finding found(const std::string& path) {
    Finding finding;
    finding.id = std::string(64, 'a');
    finding.path = path;
    return finding;
}

/// Takes all the room there is.
void fill(const std::string& path) {
    std::ofstream file(path, std::ios::binary);
    const std::string block(4096, 'x');
    while (file.write(block.data(), static_cast<std::streamsize>(block.size())).flush()) {
    }
}

TEST(StoreFullDiskTest, KeepsFindingsInMemoryUntilThereIsRoom) {
    KORVALE_NEEDS(mounts());
    const ScratchFolder folder;
    const auto mount = ScratchMount::tmpfs(folder.path(), "size=1m");
    ASSERT_TRUE(mount.mounted());
    std::string error;
    auto store = Store::open(folder / "findings.db", error);
    ASSERT_NE(store, nullptr) << error;
    store->add(found("/first"));
    fill(folder / "ballast");

    // Some room may be left inside the log; at the end of it findings wait.
    int number = 0;
    while (store->kept() < 3 && number < 10000) {
        store->add(found("/more/" + std::to_string(number++)));
    }
    ASSERT_EQ(store->kept(), 3U);
    EXPECT_FALSE(store->lastError().empty());
    const Finding waiting = store->findings().back();
    EXPECT_LT(waiting.number, 0);
    EXPECT_EQ(store->finding(waiting.number), waiting);
    EXPECT_EQ(store->add(waiting).number, waiting.number); // found again: still one
    ASSERT_TRUE(store->setState(waiting.number, FindingState::Deleted));
    EXPECT_EQ(store->findings().size(), static_cast<std::size_t>(number) + 1);
    EXPECT_EQ(store->writeKept(), 3U);

    std::filesystem::remove(folder / "ballast");
    EXPECT_EQ(store->writeKept(), 0U);
    store.reset();
    store = Store::open(folder / "findings.db", error);
    ASSERT_NE(store, nullptr) << error;
    EXPECT_EQ(store->findings().size(), static_cast<std::size_t>(number) + 1);
    EXPECT_EQ(store->findings().back().path, waiting.path);
    EXPECT_EQ(store->findings().back().state, FindingState::Deleted);
    EXPECT_GT(store->findings().back().number, 0);
}

TEST(StoreFullDiskTest, LosesOnlyVerdictsWithAFullDisk) {
    KORVALE_NEEDS(mounts());
    const ScratchFolder folder;
    const auto mount = ScratchMount::tmpfs(folder.path(), "size=1m");
    ASSERT_TRUE(mount.mounted());
    std::string error;
    const auto cache = VerdictCache::open(folder / "verdicts.db", error);
    ASSERT_NE(cache, nullptr) << error;
    cache->setSignatureKey("1");
    fill(folder / "ballast");
    for (std::uint64_t inode = 0; inode < 15'000; ++inode) {
        cache->remember({1, inode, 0, 0, 0}, KnownVerdict::Clean);
    }
    EXPECT_EQ(cache->find({1, 5, 0, 0, 0}), KnownVerdict::Clean);
    EXPECT_FALSE(cache->flush());
    EXPECT_EQ(cache->find({1, 5, 0, 0, 0}), std::nullopt);
    std::filesystem::remove(folder / "ballast");
    cache->remember({1, 5, 0, 0, 0}, KnownVerdict::Clean);
    EXPECT_TRUE(cache->flush());
    EXPECT_EQ(cache->find({1, 5, 0, 0, 0}), KnownVerdict::Clean);
}

} // namespace
} // namespace korvale::agent
