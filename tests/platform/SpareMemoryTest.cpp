#include "platform/SpareMemory.h"

#include "fakes/PrivateMemory.h"

#include <gtest/gtest.h>
#include <memory>
#include <vector>

namespace korvale {
namespace {

using fakes::privateMemory;

/// Freed blocks between others that stay, as replies and signals leave them behind.
class Scattered {
public:
    explicit Scattered(int count = 300, std::size_t bytes = 100'000) {
        for (int i = 0; i < count; ++i) {
            m_freed.push_back(std::make_unique<std::vector<char>>(bytes, 'x'));
            m_kept.push_back(std::make_unique<std::vector<char>>(100, 'x'));
        }
    }
    void free() { m_freed.clear(); }

private:
    std::vector<std::unique_ptr<std::vector<char>>> m_kept;
    std::vector<std::unique_ptr<std::vector<char>>> m_freed;
};

class SpareMemoryTest : public testing::Test {
protected:
    void SetUp() override {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
        GTEST_SKIP() << "a sanitizer's allocator keeps what was freed";
#endif
        spare.giveBack();
        before = privateMemory();
        ASSERT_GT(before, 0);
    }

    SpareMemory spare;
    long before = 0;
};

TEST_F(SpareMemoryTest, WhatWasFreedBetweenOthersGoesBackToTheKernel) {
    Scattered blocks;
    blocks.free();
    EXPECT_GT(privateMemory(), before + 20 * 1024) << "kept by the C library";
    spare.giveBack();
    EXPECT_LT(privateMemory(), before + 3 * 1024);
}

TEST_F(SpareMemoryTest, SoDoesAtRestWhatWasStillInUseWhenTheProcessHadGrown) {
    Scattered blocks;
    spare.giveBack();
    blocks.free();
    EXPECT_GT(privateMemory(), before + 4 * 1024) << "kept by the C library";
    spare.giveBack();
    EXPECT_LT(privateMemory(), before + 3 * 1024);
}

TEST_F(SpareMemoryTest, ALittleGoesBackToo) {
    Scattered blocks(2, 50'000);
    blocks.free();
    EXPECT_GT(privateMemory(), before + 64) << "kept by the C library";
    spare.giveBack();
    EXPECT_LT(privateMemory(), before + 48);
}

} // namespace
} // namespace korvale
