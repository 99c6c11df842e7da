#include "platform/SpareMemory.h"

#include "fakes/PrivateMemory.h"

#include <gtest/gtest.h>
#include <memory>
#include <vector>

namespace korvale {
namespace {

using fakes::privateMemory;

/// Freed blocks between others that stay, as replies and signals leave them behind.
TEST(SpareMemory, WhatWasFreedBetweenOthersGoesBackToTheKernel) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "a sanitizer's allocator keeps what was freed";
#endif
    SpareMemory spare;
    spare.giveBack();
    const long before = privateMemory();
    ASSERT_GT(before, 0);
    std::vector<std::unique_ptr<std::vector<char>>> kept;
    std::vector<std::unique_ptr<std::vector<char>>> freed;
    for (int i = 0; i < 300; ++i) {
        freed.push_back(std::make_unique<std::vector<char>>(100'000, 'x'));
        kept.push_back(std::make_unique<std::vector<char>>(100, 'x'));
    }
    freed.clear();
    EXPECT_GT(privateMemory(), before + 20 * 1024) << "kept by the C library";
    spare.giveBack();
    EXPECT_LT(privateMemory(), before + 3 * 1024);
}

} // namespace
} // namespace korvale
