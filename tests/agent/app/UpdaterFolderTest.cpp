#include "agent/app/UpdaterFolder.h"

#include "agent/fakes/ScratchFolder.h"
#include "agent/fakes/UpdaterNote.h"

#include <fcntl.h>
#include <sys/stat.h>

namespace korvale::agent {
namespace {

TEST(UpdaterFolderTest, KnowsWhatIsThere) {
    const ScratchFolder folder;
    EXPECT_EQ(readUpdaterFolder(folder.path()), UpdaterFolder{});
    EXPECT_EQ(readUpdaterFolder(folder / "none"), UpdaterFolder{});
    writeFile(folder / "main.cvd", "x");
    writeFile(folder / "notes.txt", "x");
    EXPECT_FALSE(readUpdaterFolder(folder.path()).complete);
    writeFile(folder / "daily.cld", "x");
    const timespec times[2] = {{1, 0}, {4'000'000'000, 0}};
    ASSERT_EQ(::utimensat(AT_FDCWD, (folder / "daily.cld").c_str(), times, 0), 0);
    EXPECT_TRUE(readUpdaterFolder(folder.path()).complete);
    EXPECT_EQ(readUpdaterFolder(folder.path()).newest, 4'000'000'000);
}

TEST(UpdaterFolderTest, ReadsHowLongTheDownloadServiceWantsToWait) {
    const ScratchFolder folder;
    writeFile(folder / "freshclam.dat", updaterNote(1'795'389'032));
    EXPECT_EQ(readUpdaterFolder(folder.path()).waitUntil, 1'795'389'032);
    writeFile(folder / "freshclam.dat", updaterNote(0));
    EXPECT_EQ(readUpdaterFolder(folder.path()).waitUntil, 0);
}

TEST(UpdaterFolderTest, TakesAStrangeNoteForNone) {
    const ScratchFolder folder;
    const std::string good = updaterNote(1'795'389'032);
    std::string version = good;
    version[13] = '\2';
    for (const std::string& note : {std::string(), good.substr(0, 68), 'x' + good.substr(1),
                                    version, updaterNote(-5), std::string(10'000, 'F')}) {
        writeFile(folder / "freshclam.dat", note);
        EXPECT_EQ(readUpdaterFolder(folder.path()).waitUntil, 0);
    }
    std::filesystem::remove(folder / "freshclam.dat");
    ASSERT_EQ(::mkfifo((folder / "freshclam.dat").c_str(), 0600), 0);
    EXPECT_EQ(readUpdaterFolder(folder.path()).waitUntil, 0);
}

} // namespace
} // namespace korvale::agent
