#include "agent/base/FileIdentity.h"
#include "agent/base/FileSystemFacts.h"
#include "agent/base/Log.h"
#include "agent/base/SmallFile.h"
#include "agent/base/UniqueFd.h"
#include "agent/base/Utf8.h"
#include "agent/fakes/ScratchFolder.h"

#include <array>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <set>
#include <sys/stat.h>

using namespace korvale::agent;

namespace {

TEST(Utf8, ControlsAndBrokenBytesAreShownAsSuch) {
    EXPECT_EQ(printable("plain Gr\xc3\xbc\xc3\x9f \xf0\x9f\x98\x80"),
              "plain Gr\xc3\xbc\xc3\x9f \xf0\x9f\x98\x80");
    EXPECT_EQ(printable("a\nb\x1b[31m\x7f"), "a\\x0ab\\x1b[31m\\x7f");
    EXPECT_EQ(printable("\xff\xc3"), "\\xff\\xc3");
    EXPECT_EQ(printable("\xc0\xaf\xed\xa0\x80"), "\\xc0\\xaf\\xed\\xa0\\x80");
    EXPECT_EQ(printable("\xe2\x80\xae"), "\\xe2\\x80\\xae") << "turns what follows around";
    EXPECT_EQ(printable("\xf4\x90\x80\x80"), "\\xf4\\x90\\x80\\x80") << "above U+10FFFF";
    EXPECT_EQ(validUtf8("a\xff\xc3\xbc\xe2\x82"), "a\xef\xbf\xbd\xc3\xbc\xef\xbf\xbd\xef\xbf\xbd");
}

TEST(Utf8, EveryNameOfTwoBytesBecomesOnePrintableText) {
    std::set<std::string> seen;
    for (int first = 1; first < 256; ++first) {
        for (int second = 1; second < 256; ++second) {
            const std::string name{static_cast<char>(first), static_cast<char>(second)};
            const std::string text = printable(name);
            EXPECT_EQ(printable(text), text);
            seen.insert(text);
        }
    }
    EXPECT_EQ(seen.size(), 255U * 255U);
}

TEST(Log, WritesOneMarkedLineAndNothingAboveItsLevel) {
    std::array<int, 2> ends{};
    ASSERT_EQ(::pipe(ends.data()), 0);
    const UniqueFd reader(ends[0]);
    const int kept = ::dup(STDERR_FILENO);
    ::dup2(ends[1], STDERR_FILENO);
    ::close(ends[1]);
    setLogLevel(LogLevel::Warning);
    logInfo("not this");
    logWarning("a name: x\ny");
    setLogLevel(LogLevel::Info);
    ::dup2(kept, STDERR_FILENO);
    ::close(kept);
    std::array<char, 200> buffer{};
    const ssize_t count = ::read(reader.get(), buffer.data(), buffer.size());
    EXPECT_EQ(std::string(buffer.data(), static_cast<std::size_t>(count)), "<4>a name: x\\x0ay\n");
}

TEST(FileIdentity, ChangesWithTheContentAndOnlyThen) {
    const ScratchFolder folder;
    writeFile(folder / "file", "one");
    const UniqueFd file(::open((folder / "file").c_str(), O_RDONLY));
    const auto before = identify(file.get());
    ASSERT_TRUE(before);
    EXPECT_EQ(before->size, 3);
    EXPECT_EQ(identify(file.get()), before);
    const UniqueFd path(::open((folder / "file").c_str(), O_PATH));
    EXPECT_EQ(identify(path.get()), before);
    struct stat status {};
    ASSERT_EQ(::stat((folder / "file").c_str(), &status), 0);
    EXPECT_EQ(identityOf(status, before->fileSystem), *before);
    const UniqueFd writer(::open((folder / "file").c_str(), O_WRONLY | O_APPEND));
    ASSERT_EQ(::write(writer.get(), "x", 1), 1);
    EXPECT_NE(identify(file.get()), before);
    EXPECT_FALSE(identify(-1));
}

TEST(FileSystemFacts, TellPseudoFileSystemsAndThoseWithoutHonestTimes) {
    const auto of = [](const char* path) {
        const UniqueFd folder(::open(path, O_PATH | O_DIRECTORY));
        return fileSystemFacts(folder.get());
    };
    EXPECT_TRUE(of("/proc")->pseudo);
    EXPECT_TRUE(of("/sys")->pseudo);
    EXPECT_FALSE(of("/usr")->pseudo);
    EXPECT_FALSE(of("/proc")->keepsVerdicts);
    EXPECT_FALSE(of("/dev/shm")->keepsVerdicts) << "a shared mapping leaves no trace on tmpfs";
    EXPECT_FALSE(fileSystemFacts(-1));
}

TEST(SmallFile, IsReadWholeOrNotAtAll) {
    const ScratchFolder folder;
    std::string error;
    writeFile(folder / "file", std::string(40000, 'x'));
    EXPECT_EQ(readSmallFile(folder / "file", 40000, error), std::string(40000, 'x'));
    EXPECT_FALSE(readSmallFile(folder / "file", 39999, error));
    EXPECT_FALSE(readSmallFile(folder.path(), 100, error));
    EXPECT_FALSE(readSmallFile(folder / "none", 100, error));
    EXPECT_NE(error.find("none"), std::string::npos);
    ASSERT_EQ(::mkfifo((folder / "fifo").c_str(), 0600), 0);
    EXPECT_FALSE(readSmallFile(folder / "fifo", 100, error)) << "and it did not wait";
}

} // namespace
