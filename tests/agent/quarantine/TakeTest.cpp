#include "agent/fakes/Needs.h"
#include "agent/quarantine/FileTraits.h"
#include "agent/quarantine/VaultFixture.h"

#include <csignal>
#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

namespace korvale::agent {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

const std::string kBad = "#!/bin/sh\necho a bad program, easily recognised\n";

class TakeTest : public VaultTest {
protected:
    /// Nothing was taken and nothing is left over.
    void expectUntouched(const TakeRequest& request) {
        EXPECT_THAT(inVault(), IsEmpty());
        EXPECT_THAT(m_store->records(), IsEmpty());
        EXPECT_EQ(stateOf(request), FindingState::Detected);
    }
};

TEST_P(TakeTest, MovesTheFileIntoTheVault) {
    writeFile(path("bad"), kBad);
    const TakeRequest request = judged("bad");
    const TakeResult result = m_vault->take(request);
    ASSERT_EQ(result.outcome, TakeOutcome::Taken) << result.reason;
    EXPECT_EQ(result.otherNames, 0U);
    EXPECT_THAT(inFolder(), IsEmpty());
    EXPECT_THAT(inVault(), ElementsAre(result.id + ".kvq"));
    EXPECT_EQ(stateOf(request), FindingState::Quarantined);
    ASSERT_EQ(m_vault->list().size(), 1U);
    EXPECT_EQ(m_vault->list().front().path, path("bad"));
    EXPECT_EQ(m_vault->list().front().sha256, request.sha256);
}

TEST_P(TakeTest, KeepsNothingThatAScannerKnowsOrADoubleClickRuns) {
    writeFile(path("bad"), kBad + std::string(70000, 'A'));
    std::filesystem::permissions(path("bad"), std::filesystem::perms::all);
    const TakeResult result = m_vault->take(judged("bad"));
    ASSERT_EQ(result.outcome, TakeOutcome::Taken) << result.reason;
    const std::string copy = m_vaultPath + '/' + result.id + ".kvq";
    EXPECT_THAT(readFile(copy), Not(HasSubstr("recognised")));
    EXPECT_THAT(readFile(copy), Not(HasSubstr("AAAAAAAA")));
    EXPECT_THAT(readFile(copy), Not(::testing::StartsWith("#!")));
    struct stat status {};
    ASSERT_EQ(::stat(copy.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, 0600U);
    EXPECT_EQ(status.st_uid, ::geteuid());
}

TEST_P(TakeTest, LeavesAFileThatChangedSinceItWasJudged) {
    writeFile(path("bad"), kBad);
    const TakeRequest request = judged("bad");
    struct stat before {};
    ASSERT_EQ(::stat(path("bad").c_str(), &before), 0);
    writeFile(path("bad"), std::string(kBad.size(), 'x'));
    // Its size and time are as they were; its ctime cannot be.
    const timespec times[2] = {before.st_atim, before.st_mtim};
    ASSERT_EQ(::utimensat(AT_FDCWD, path("bad").c_str(), times, 0), 0);
    EXPECT_EQ(m_vault->take(request).outcome, TakeOutcome::Changed);
    EXPECT_EQ(readFile(path("bad")), std::string(kBad.size(), 'x'));
    expectUntouched(request);
}

TEST_P(TakeTest, LeavesAFileWhoseContentIsNotTheJudgedOne) {
    writeFile(path("bad"), kBad);
    TakeRequest request = judged("bad");
    request.sha256 = std::string(64, '0');
    EXPECT_EQ(m_vault->take(request).outcome, TakeOutcome::Changed);
    EXPECT_EQ(readFile(path("bad")), kBad);
    expectUntouched(request);
}

TEST_P(TakeTest, LeavesAFileWhoseFindingCouldNotBeWrittenYet) {
    writeFile(path("bad"), kBad);
    TakeRequest request = judged("bad");
    const std::int64_t number = std::exchange(request.finding, -1);
    EXPECT_EQ(m_vault->take(request).outcome, TakeOutcome::NoRoom);
    EXPECT_EQ(readFile(path("bad")), kBad);
    request.finding = number;
    expectUntouched(request);
}

TEST_P(TakeTest, NeverTakesAFileThatReplacedTheJudgedOne) {
    writeFile(path("bad"), kBad);
    writeFile(path("mine"), "my thesis");
    const TakeRequest request = judged("bad");
    m_vault->onStep([&](VaultStep step) {
        if (step == VaultStep::Named) {
            std::filesystem::rename(path("mine"), path("bad"));
        }
    });
    EXPECT_EQ(m_vault->take(request).outcome, TakeOutcome::Changed);
    EXPECT_THAT(inFolder(), ElementsAre("bad"));
    EXPECT_EQ(readFile(path("bad")), "my thesis");
    expectUntouched(request);
}

TEST_P(TakeTest, KeepsAReplacementBesideANameThatIsUsedAgain) {
    writeFile(path("bad"), kBad);
    writeFile(path("mine"), "my thesis");
    const TakeRequest request = judged("bad");
    m_vault->onStep([&](VaultStep step) {
        if (step == VaultStep::Named) {
            std::filesystem::rename(path("mine"), path("bad"));
        } else if (step == VaultStep::Moved) {
            writeFile(path("bad"), "yet another");
        }
    });
    EXPECT_EQ(m_vault->take(request).outcome, TakeOutcome::Changed);
    EXPECT_EQ(readFile(path("bad")), "yet another");
    EXPECT_EQ(readFile(path("bad (kept 1)")), "my thesis");
    expectUntouched(request);
}

TEST_P(TakeTest, NeverTakesAFolderOrLinkOrPipeOfTheName) {
    for (const std::string kind : {"folder", "link", "pipe"}) {
        writeFile(path("bad"), kBad);
        const TakeRequest request = judged("bad");
        const auto replace = [&] {
            std::filesystem::remove(path("bad"));
            if (kind == "folder") {
                std::filesystem::create_directories(path("bad"));
                writeFile(path("bad/inside"), "mine");
            } else if (kind == "link") {
                writeFile(path("target"), kBad);
                std::filesystem::create_symlink("target", path("bad"));
            } else {
                ASSERT_EQ(::mkfifo(path("bad").c_str(), 0600), 0);
            }
        };
        m_vault->onStep([&](VaultStep step) {
            if (step == VaultStep::Named) {
                replace();
            }
        });
        EXPECT_EQ(m_vault->take(request).outcome, TakeOutcome::Changed) << kind;
        m_vault->onStep({});
        EXPECT_EQ(m_vault->take(request).outcome, TakeOutcome::Changed) << kind;
        EXPECT_TRUE(std::filesystem::exists(std::filesystem::symlink_status(path("bad")))) << kind;
        expectUntouched(request);
        std::filesystem::remove_all(path("bad"));
        std::filesystem::remove(path("target"));
    }
}

TEST_P(TakeTest, SaysThatAFileIsGone) {
    writeFile(path("bad"), kBad);
    const TakeRequest request = judged("bad");
    std::filesystem::remove(path("bad"));
    EXPECT_EQ(m_vault->take(request).outcome, TakeOutcome::Gone);
    writeFile(path("bad"), kBad);
    const TakeRequest again = judged("bad");
    m_vault->onStep([&](VaultStep step) {
        if (step == VaultStep::Named) {
            std::filesystem::remove(path("bad"));
        }
    });
    EXPECT_EQ(m_vault->take(again).outcome, TakeOutcome::Gone);
    EXPECT_THAT(inFolder(), IsEmpty());
    expectUntouched(again);
}

TEST_P(TakeTest, WaitsForTheEndOfWriters) {
    writeFile(path("bad"), kBad);
    UniqueFd writer(::open(path("bad").c_str(), O_WRONLY | O_CLOEXEC));
    TakeRequest request = judged("bad");
    EXPECT_EQ(m_vault->take(request).outcome, TakeOutcome::Busy);
    EXPECT_EQ(readFile(path("bad")), kBad);
    expectUntouched(request);
    writer.reset();
    EXPECT_EQ(m_vault->take(request).outcome, TakeOutcome::Taken);
}

TEST_P(TakeTest, CountsASharedMappingAsAWriter) {
    writeFile(path("bad"), kBad);
    UniqueFd writer(::open(path("bad").c_str(), O_RDWR | O_CLOEXEC));
    void* const mapping =
        ::mmap(nullptr, kBad.size(), PROT_READ | PROT_WRITE, MAP_SHARED, writer.get(), 0);
    ASSERT_NE(mapping, MAP_FAILED);
    writer.reset();
    const TakeRequest request = judged("bad");
    EXPECT_EQ(m_vault->take(request).outcome, TakeOutcome::Busy);
    ASSERT_EQ(::munmap(mapping, kBad.size()), 0);
    EXPECT_EQ(m_vault->take(request).outcome, TakeOutcome::Taken);
}

TEST_P(TakeTest, TakesAnOpenFileOnAPersonsWordUnlessItsContentChanges) {
    writeFile(path("bad"), kBad);
    const UniqueFd writer(::open(path("bad").c_str(), O_WRONLY | O_CLOEXEC));
    TakeRequest request = judged("bad");
    request.evenIfOpen = true;
    struct stat before {};
    ASSERT_EQ(::fstat(writer.get(), &before), 0);
    m_vault->onStep([&](VaultStep step) {
        if (step == VaultStep::Named) {
            ASSERT_EQ(::pwrite(writer.get(), "x", 1, 5), 1);
            const timespec times[2] = {before.st_atim, before.st_mtim};
            ASSERT_EQ(::futimens(writer.get(), times), 0);
        }
    });
    EXPECT_EQ(m_vault->take(request).outcome, TakeOutcome::Changed);
    EXPECT_THAT(inFolder(), ElementsAre("bad"));
    expectUntouched(request);

    m_vault->onStep({});
    request = judged("bad");
    request.evenIfOpen = true;
    EXPECT_EQ(m_vault->take(request).outcome, TakeOutcome::Taken);
    EXPECT_THAT(inFolder(), IsEmpty());
}

TEST_P(TakeTest, IsNotKeptFromTakingByWhoTriesToWriteMeanwhile) {
    writeFile(path("bad"), kBad);
    int error = 0;
    m_vault->onStep([&](VaultStep step) {
        if (step == VaultStep::Copied) {
            const UniqueFd writer(::open(path("bad").c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC));
            error = writer ? 0 : errno;
        }
    });
    EXPECT_EQ(m_vault->take(judged("bad")).outcome, TakeOutcome::Taken);
    EXPECT_EQ(error, EWOULDBLOCK);
}

TEST_P(TakeTest, ClosesTheOtherNamesOfAFileAndSaysSo) {
    writeFile(path("bad"), kBad);
    std::filesystem::create_hard_link(path("bad"), path("other"));
    std::filesystem::permissions(path("bad"), std::filesystem::perms::all);
    const TakeResult result = m_vault->take(judged("bad"));
    ASSERT_EQ(result.outcome, TakeOutcome::Taken) << result.reason;
    EXPECT_EQ(result.otherNames, 1U);
    EXPECT_THAT(result.reason, HasSubstr("1 other name"));
    EXPECT_THAT(inFolder(), ElementsAre("other"));
    struct stat status {};
    ASSERT_EQ(::stat(path("other").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, 0U);
    EXPECT_EQ(status.st_size, static_cast<off_t>(kBad.size()));
    EXPECT_EQ(m_vault->list().front().mode, 0777U);
}

TEST_P(TakeTest, FollowsAFolderThatIsRenamedMeanwhile) {
    writeFile(path("bad"), kBad);
    const TakeRequest request = judged("bad");
    const std::string renamed = m_folder + "-renamed";
    m_vault->onStep([&](VaultStep step) {
        if (step == VaultStep::Named) {
            std::filesystem::rename(m_folder, renamed);
            std::filesystem::create_directory(m_folder);
            writeFile(path("bad"), "my thesis");
        }
    });
    EXPECT_EQ(m_vault->take(request).outcome, TakeOutcome::Taken);
    EXPECT_EQ(readFile(path("bad")), "my thesis");
    EXPECT_THAT(namesIn(renamed), IsEmpty());
}

TEST_P(TakeTest, TakesAProgramThatRuns) {
    std::filesystem::copy_file("/bin/sleep", path("bad"));
    const pid_t pid = ::fork();
    if (pid == 0) {
        ::execl(path("bad").c_str(), "bad", "1000", nullptr);
        ::_exit(127);
    }
    // It runs once it cannot be written any more.
    while (::access(("/proc/" + std::to_string(pid) + "/exe").c_str(), F_OK) == 0 &&
           std::filesystem::read_symlink("/proc/" + std::to_string(pid) + "/exe") != path("bad")) {
        ::sched_yield();
    }
    const TakeResult result = m_vault->take(judged("bad"));
    EXPECT_EQ(result.outcome, TakeOutcome::Taken) << result.reason;
    EXPECT_EQ(::kill(pid, 0), 0);
    ::kill(pid, SIGKILL);
    ::waitpid(pid, nullptr, 0);
    EXPECT_THAT(inFolder(), IsEmpty());
}

TEST_P(TakeTest, TakesWhatWasMadeUnchangeable) {
    KORVALE_NEEDS(root()); // only root may make a file immutable
    for (const unsigned int wanted : {FS_IMMUTABLE_FL, FS_APPEND_FL}) {
        writeFile(path("bad"), kBad);
        {
            const UniqueFd file(::open(path("bad").c_str(), O_RDONLY | O_CLOEXEC));
            unsigned int flags = 0;
            ASSERT_EQ(::ioctl(file.get(), FS_IOC_GETFLAGS, &flags), 0);
            flags |= wanted;
            ASSERT_EQ(::ioctl(file.get(), FS_IOC_SETFLAGS, &flags), 0);
        }
        const TakeResult result = m_vault->take(judged("bad"));
        ASSERT_EQ(result.outcome, TakeOutcome::Taken) << result.reason;
        EXPECT_THAT(inFolder(), IsEmpty());
        ASSERT_EQ(m_vault->restore(result.id).outcome, RestoreOutcome::Restored);
        const UniqueFd file(::open(path("bad").c_str(), O_RDONLY | O_CLOEXEC));
        unsigned int flags = 0;
        ASSERT_EQ(::ioctl(file.get(), FS_IOC_GETFLAGS, &flags), 0);
        EXPECT_EQ(flags & (FS_IMMUTABLE_FL | FS_APPEND_FL), wanted);
        ASSERT_TRUE(loosen(file.get(), flags));
        std::filesystem::remove(path("bad"));
    }
}

TEST_P(TakeTest, TakesEmptyAndLargeFilesAndNamesOfEveryByte) {
    std::string name;
    for (int byte = 1; byte < 256; ++byte) {
        if (byte != '/') {
            name += static_cast<char>(byte);
        }
    }
    for (const std::size_t size : {std::size_t{0}, std::size_t{1}, std::size_t{1'000'003}}) {
        writeFile(path(name), std::string(size, 'x'));
        const TakeResult result = m_vault->take(judged(name));
        ASSERT_EQ(result.outcome, TakeOutcome::Taken) << result.reason;
        ASSERT_EQ(m_vault->restore(result.id).outcome, RestoreOutcome::Restored);
        EXPECT_EQ(readFile(path(name)), std::string(size, 'x'));
        std::filesystem::remove(path(name));
    }
}

KORVALE_ON_EVERY_FILE_SYSTEM(TakeTest);

} // namespace
} // namespace korvale::agent
