#include "platform/SystemLogSink.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cstdarg>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <mutex>
#include <sstream>
#include <string>
#include <sys/stat.h>
#include <syslog.h>
#include <thread>
#include <unistd.h>
#include <utility>
#include <vector>

namespace {

/// What this test program's own syslog(3) was given, in the C library's place.
struct SystemLog {
    std::string identifier;
    std::vector<std::pair<int, std::string>> lines;
};
SystemLog systemLog;

/// While it is locked, syslog(3) waits, as it does for a journal that hangs.
std::mutex hanging;
std::atomic<int> callers = 0; ///< of syslog(3), now

} // namespace

extern "C" {
void openlog(const char* identifier, int /*options*/, int /*facility*/) {
    systemLog.identifier = identifier;
}
void closelog() {}
static void takeLine(int priority, const char* format, const char* line) {
    ++callers;
    const std::lock_guard goesOn(hanging);
    ASSERT_STREQ(format, "%s");
    systemLog.lines.emplace_back(priority, line);
    --callers;
}
void syslog(int priority, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    takeLine(priority, format, va_arg(arguments, const char*));
    va_end(arguments);
}
/// What a fortified call of syslog(3) becomes.
void __syslog_chk(int priority, int /*flag*/, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    takeLine(priority, format, va_arg(arguments, const char*));
    va_end(arguments);
}
}

namespace korvale {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

class SystemLogSinkTest : public testing::Test {
protected:
    void SetUp() override {
        systemLog = {};
        qunsetenv("JOURNAL_STREAM");
    }
    void TearDown() override { qunsetenv("JOURNAL_STREAM"); }
};

/// JOURNAL_STREAM's value for what stands behind `descriptor` now.
QByteArray streamOf(int descriptor) {
    struct stat status {};
    EXPECT_EQ(fstat(descriptor, &status), 0);
    return QByteArray::number(status.st_dev) + ':' + QByteArray::number(status.st_ino);
}

TEST_F(SystemLogSinkTest, LevelsBecomeTheSystemLogsPriorities) {
    testing::internal::CaptureStderr();
    SystemLogSink sink;
    sink.write(LogLevel::Error, "ERROR \"a\"");
    sink.write(LogLevel::Warn, "WARN \"b\"");
    sink.write(LogLevel::Info, "INFO \"c\"");
    sink.write(LogLevel::Debug, "DEBUG \"d\"");
    sink.finish();
    EXPECT_EQ(systemLog.identifier, "korvale-ui");
    EXPECT_THAT(systemLog.lines,
                ElementsAre(Pair(LOG_ERR, "ERROR \"a\""), Pair(LOG_WARNING, "WARN \"b\""),
                            Pair(LOG_INFO, "INFO \"c\""), Pair(LOG_DEBUG, "DEBUG \"d\"")));
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "ERROR \"a\"\nWARN \"b\"\nINFO \"c\"\nDEBUG \"d\"\n");
}

TEST_F(SystemLogSinkTest, PerCentSignsInALineAreNoFormat) {
    testing::internal::CaptureStderr();
    SystemLogSink sink;
    sink.write(LogLevel::Info, "INFO \"%s%n\"");
    sink.finish();
    EXPECT_THAT(systemLog.lines, ElementsAre(Pair(LOG_INFO, "INFO \"%s%n\"")));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "INFO \"%s%n\"\n");
}

TEST_F(SystemLogSinkTest, WhereStandardErrorIsTheJournalALineIsWrittenOnceWithItsPriority) {
    testing::internal::CaptureStderr();
    qputenv("JOURNAL_STREAM", streamOf(STDERR_FILENO));
    SystemLogSink sink;
    sink.write(LogLevel::Error, "ERROR \"a\"");
    sink.write(LogLevel::Warn, "WARN \"b\"");
    sink.write(LogLevel::Info, "INFO \"c\"");
    sink.write(LogLevel::Debug, "DEBUG \"d\"");
    sink.finish();
    EXPECT_THAT(systemLog.lines, IsEmpty());
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "<3>ERROR \"a\"\n<4>WARN \"b\"\n<6>INFO \"c\"\n<7>DEBUG \"d\"\n");
}

TEST_F(SystemLogSinkTest, AnInheritedJournalStreamOfAnotherFileDoesNotCount) {
    testing::internal::CaptureStderr();
    const int other = open("/dev/null", O_RDONLY | O_CLOEXEC);
    qputenv("JOURNAL_STREAM", streamOf(other));
    close(other);
    SystemLogSink sink;
    sink.write(LogLevel::Info, "INFO \"both\"");
    sink.finish();
    EXPECT_THAT(systemLog.lines, ElementsAre(Pair(LOG_INFO, "INFO \"both\"")));
    testing::internal::GetCapturedStderr();
}

TEST_F(SystemLogSinkTest, UnusableJournalStreamsDoNotCount) {
    for (const char* value : {"", ":", "1", "a:b", "1:2:3"}) {
        EXPECT_FALSE(isJournalStream(value, STDERR_FILENO)) << value;
    }
    EXPECT_FALSE(isJournalStream(streamOf(STDERR_FILENO), -1));
}

/// Holds the system's log until let go.
class HangingSystemLog {
public:
    HangingSystemLog() : m_lock(hanging) {}
    ~HangingSystemLog() {
        goOn();
        while (callers > 0) { // also one that the sink has left behind
            std::this_thread::yield();
        }
    }
    HangingSystemLog(const HangingSystemLog&) = delete;
    HangingSystemLog& operator=(const HangingSystemLog&) = delete;
    void goOn() {
        if (m_lock) {
            m_lock.unlock();
        }
    }

private:
    std::unique_lock<std::mutex> m_lock;
};

TEST_F(SystemLogSinkTest, ASystemLogThatHangsHoldsUpNobodyAndMissesNothing) {
    testing::internal::CaptureStderr();
    {
        HangingSystemLog log;
        SystemLogSink sink;
        sink.write(LogLevel::Info, "INFO \"a\"");
        sink.write(LogLevel::Info, "INFO \"b\"");
        EXPECT_EQ(testing::internal::GetCapturedStderr(), "INFO \"a\"\nINFO \"b\"\n");
        log.goOn();
        sink.finish();
    }
    EXPECT_THAT(systemLog.lines,
                ElementsAre(Pair(LOG_INFO, "INFO \"a\""), Pair(LOG_INFO, "INFO \"b\"")));
}

TEST_F(SystemLogSinkTest, ASystemLogThatNeverGoesOnDoesNotKeepTheProgramFromEnding) {
    testing::internal::CaptureStderr();
    HangingSystemLog log;
    const auto start = std::chrono::steady_clock::now();
    {
        SystemLogSink sink;
        sink.write(LogLevel::Info, "INFO \"a\"");
        sink.finish();
    }
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "INFO \"a\"\n");
}

TEST_F(SystemLogSinkTest, LinesOfTwoThreadsDoNotMix) {
    testing::internal::CaptureStderr();
    {
        SystemLogSink sink;
        const auto writeMany = [&sink](char letter) {
            for (int i = 0; i < 2'000; ++i) {
                sink.write(LogLevel::Info, QByteArray(200, letter));
            }
        };
        std::thread other(writeMany, 'b');
        writeMany('a');
        other.join();
    }
    std::istringstream lines(testing::internal::GetCapturedStderr());
    int count = 0;
    for (std::string line; std::getline(lines, line); ++count) {
        ASSERT_EQ(line, std::string(200, line.front()));
    }
    EXPECT_EQ(count, 4'000);
    EXPECT_EQ(systemLog.lines.size(), 4'000U);
}

QByteArray numberedLine(int number) {
    return "INFO \"" + QByteArray::number(number) + QByteArray(100, '.') + '"';
}

std::string numberedLines(int count) {
    std::string lines;
    for (int i = 0; i < count; ++i) {
        lines += numberedLine(i).toStdString() + '\n';
    }
    return lines;
}

TEST_F(SystemLogSinkTest, VeryManyLinesAreAllWrittenInTheirOrder) {
    testing::internal::CaptureStderr();
    {
        SystemLogSink sink;
        for (int i = 0; i < 20'000; ++i) {
            sink.write(LogLevel::Info, numberedLine(i));
        }
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), numberedLines(20'000));
    EXPECT_EQ(systemLog.lines.size(), 20'000U);
    EXPECT_EQ(systemLog.lines.back().second, numberedLine(19'999).toStdString());
}

TEST_F(SystemLogSinkTest, ALineLongerThanAPipeTakesAtOnceStaysWhole) {
    testing::internal::CaptureStderr();
    const QByteArray line = "INFO \"" + QByteArray(300'000, 'x') + '"';
    {
        SystemLogSink sink;
        sink.write(LogLevel::Info, line);
        sink.write(LogLevel::Info, "INFO \"behind it\"");
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              line.toStdString() + "\nINFO \"behind it\"\n");
}

/// Standard error is a pipe that nobody reads until read() is called.
class UnreadStandardError {
public:
    UnreadStandardError() : m_before(dup(STDERR_FILENO)) {
        std::array<int, 2> ends{};
        EXPECT_EQ(pipe2(ends.data(), O_CLOEXEC), 0);
        dup2(ends[1], STDERR_FILENO);
        close(ends[1]);
        m_reader = ends[0];
    }
    ~UnreadStandardError() {
        restore();
        close(m_reader);
    }
    UnreadStandardError(const UnreadStandardError&) = delete;
    UnreadStandardError& operator=(const UnreadStandardError&) = delete;

    /// Takes away what was written so far and what still comes until standard error is restored.
    std::string read() const {
        std::string all;
        std::array<char, 65536> block{};
        for (ssize_t size = 0; (size = ::read(m_reader, block.data(), block.size())) > 0;) {
            all.append(block.data(), static_cast<std::size_t>(size));
        }
        return all;
    }
    /// Reads while `sink` ends.
    std::string readUntilGone(std::unique_ptr<SystemLogSink> sink) {
        std::string seen;
        std::thread reader([&] { seen = read(); });
        sink.reset();
        restore();
        reader.join();
        return seen;
    }
    void restore() {
        if (m_before >= 0) {
            dup2(m_before, STDERR_FILENO);
            close(std::exchange(m_before, -1));
        }
    }

private:
    int m_before;
    int m_reader = -1;
};

TEST_F(SystemLogSinkTest, AReaderThatTakesNothingYetHoldsUpNobodyAndMissesNothing) {
    UnreadStandardError standardError;
    auto sink = std::make_unique<SystemLogSink>();
    for (int i = 0; i < 20'000; ++i) { // far more than a pipe holds
        sink->write(LogLevel::Info, numberedLine(i));
    }
    const std::string seen = standardError.readUntilGone(std::move(sink));
    EXPECT_EQ(seen, numberedLines(20'000));
}

TEST_F(SystemLogSinkTest, AReaderThatNeverTakesAnythingDoesNotKeepTheProgramFromEnding) {
    UnreadStandardError standardError;
    {
        SystemLogSink sink;
        for (int i = 0; i < 2'000; ++i) {
            sink.write(LogLevel::Info, numberedLine(i));
        }
    }
    standardError.restore();
    EXPECT_TRUE(standardError.read().starts_with(numberedLines(100)));
    EXPECT_EQ(systemLog.lines.size(), 2'000U) << "the system's log has them";
}

TEST_F(SystemLogSinkTest, LinesThatFindNoRoomAreCounted) {
    UnreadStandardError standardError;
    auto sink = std::make_unique<SystemLogSink>(10'000);
    for (int i = 0; i < 5'000; ++i) {
        sink->write(LogLevel::Info, numberedLine(i));
    }
    const std::string seen = standardError.readUntilGone(std::move(sink));
    const auto told = std::count(seen.begin(), seen.end(), '\n');
    EXPECT_LT(told, 5'000);
    EXPECT_NE(seen.find(" lines were lost\"\n"), std::string::npos);
}

} // namespace
} // namespace korvale
