#include "platform/LogBacklog.h"

#include "fakes/PrivateMemory.h"

#include <atomic>
#include <gtest/gtest.h>
#include <thread>

namespace korvale {
namespace {

using fakes::privateMemory;

TEST(LogBacklog, GivesItsMemoryBackOnceALateReaderHasTakenAll) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "a sanitizer's allocator keeps what was freed";
#endif
    std::atomic<bool> reads = false;
    LogBacklog backlog(
        [&reads](LogLevel /*level*/, const QByteArray& /*line*/) { reads.wait(false); }, 64 << 20);
    const QByteArray line(70, 'x');
    const long before = privateMemory();
    ASSERT_GT(before, 0);
    for (int i = 0; i < 300'000; ++i) {
        backlog.add(LogLevel::Info, line);
    }
    EXPECT_GT(privateMemory(), before + 20 * 1024);
    reads = true;
    reads.notify_all();
    backlog.finish();
    EXPECT_TRUE(backlog.isEmpty());
    EXPECT_LT(privateMemory(), before + 2 * 1024);
}

} // namespace
} // namespace korvale
