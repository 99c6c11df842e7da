#include "platform/SystemLogSink.h"

#include <cstdarg>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <sys/stat.h>
#include <syslog.h>
#include <unistd.h>
#include <vector>

namespace {

/// What this test program's own syslog(3) was given, in the C library's place.
struct SystemLog {
    std::string identifier;
    std::vector<std::pair<int, std::string>> lines;
};
SystemLog systemLog;

} // namespace

extern "C" {
void openlog(const char* identifier, int /*options*/, int /*facility*/) {
    systemLog.identifier = identifier;
}
void closelog() {}
void syslog(int priority, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    ASSERT_STREQ(format, "%s");
    systemLog.lines.emplace_back(priority, va_arg(arguments, const char*));
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
    EXPECT_THAT(systemLog.lines, ElementsAre(Pair(LOG_INFO, "INFO \"%s%n\"")));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "INFO \"%s%n\"\n");
}

TEST_F(SystemLogSinkTest, WhereStandardErrorIsTheJournalALineIsWrittenOnce) {
    testing::internal::CaptureStderr();
    qputenv("JOURNAL_STREAM", streamOf(STDERR_FILENO));
    SystemLogSink sink;
    sink.write(LogLevel::Info, "INFO \"once\"");
    EXPECT_THAT(systemLog.lines, IsEmpty());
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "INFO \"once\"\n");
}

TEST_F(SystemLogSinkTest, AnInheritedJournalStreamOfAnotherFileDoesNotCount) {
    testing::internal::CaptureStderr();
    const int other = open("/dev/null", O_RDONLY | O_CLOEXEC);
    qputenv("JOURNAL_STREAM", streamOf(other));
    close(other);
    SystemLogSink sink;
    sink.write(LogLevel::Info, "INFO \"both\"");
    EXPECT_THAT(systemLog.lines, ElementsAre(Pair(LOG_INFO, "INFO \"both\"")));
    testing::internal::GetCapturedStderr();
}

TEST_F(SystemLogSinkTest, UnusableJournalStreamsDoNotCount) {
    for (const char* value : {"", ":", "1", "a:b", "1:2:3"}) {
        EXPECT_FALSE(isJournalStream(value, STDERR_FILENO)) << value;
    }
    EXPECT_FALSE(isJournalStream(streamOf(STDERR_FILENO), -1));
}

} // namespace
} // namespace korvale
