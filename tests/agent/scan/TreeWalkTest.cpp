#include "agent/scan/TreeWalk.h"

#include "agent/fakes/Needs.h"
#include "agent/fakes/ScratchFolder.h"
#include "agent/fakes/ScratchMount.h"

#include <algorithm>
#include <fcntl.h>
#include <filesystem>
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <thread>

using namespace korvale::agent;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;
namespace fs = std::filesystem;

namespace {

class Visits final : public WalkVisitor {
public:
    void choose(std::vector<WalkedFile>& files) override {
        if (onChoose) {
            onChoose(files);
        }
    }
    void file(WalkedFile file) override {
        EXPECT_TRUE(file.descriptor);
        names.push_back(file.name);
        paths.push_back(file.path());
        if (onFile) {
            onFile(file);
        }
    }
    void skipped(Skipped reason, const std::string& path) override {
        left.emplace_back(reason, path);
    }

    [[nodiscard]] std::size_t leftFor(Skipped reason) const {
        return static_cast<std::size_t>(std::count_if(
            left.begin(), left.end(), [reason](const auto& one) { return one.first == reason; }));
    }

    std::vector<std::string> names;
    std::vector<std::string> paths;
    std::vector<std::pair<Skipped, std::string>> left;
    std::function<void(std::vector<WalkedFile>&)> onChoose;
    std::function<void(const WalkedFile&)> onFile;
};

class TreeWalkTest : public testing::Test {
protected:
    void walk(TreeWalk::Options options = {}, const std::string& inside = {}) {
        const std::string path = m_folder.path() + inside;
        TreeWalk walk(std::move(options), m_visits);
        walk.walk(UniqueFd(::open(path.c_str(), O_RDONLY | O_DIRECTORY)), path, m_stop.get_token());
    }
    std::string make(const std::string& name, const std::string& content = "x") {
        fs::create_directories(fs::path(m_folder / name).parent_path());
        writeFile(m_folder / name, content);
        return m_folder / name;
    }

    ScratchFolder m_folder;
    Visits m_visits;
    std::stop_source m_stop;
};

TEST_F(TreeWalkTest, HandsOutEveryFileOnceUnderItsPath) {
    const auto one = make("one");
    const auto two = make("a/two");
    const auto three = make("a/b/c/three");
    make("a/empty", "");
    fs::create_directory(m_folder / "hollow");
    walk();
    EXPECT_THAT(m_visits.paths, UnorderedElementsAre(one, two, three));
    EXPECT_EQ(m_visits.leftFor(Skipped::Empty), 1U);
    EXPECT_EQ(m_visits.left.size(), 1U);
}

TEST_F(TreeWalkTest, FollowsNoLinkAndOpensNoDevice) {
    make("real/file");
    fs::create_symlink("real", m_folder / "folder link");
    fs::create_symlink("real/file", m_folder / "file link");
    fs::create_symlink("/etc", m_folder / "way out");
    fs::create_symlink("nowhere", m_folder / "dangling");
    ASSERT_EQ(::mkfifo((m_folder / "fifo").c_str(), 0600), 0);
    walk();
    EXPECT_THAT(m_visits.names, ElementsAre("file"));
    EXPECT_THAT(m_visits.left, IsEmpty());
}

TEST_F(TreeWalkTest, TakesNamesOfEveryByte) {
    std::vector<std::string> names;
    for (int byte = 1; byte < 256; ++byte) {
        if (byte != '/') {
            names.push_back(std::string("n") + static_cast<char>(byte));
        }
    }
    names.push_back(std::string(255, '\xff'));
    for (const std::string& name : names) {
        make(name);
    }
    make("folder\n\xfe/\x01");
    names.emplace_back("\x01");
    walk();
    EXPECT_THAT(m_visits.names, testing::UnorderedElementsAreArray(names));
}

TEST_F(TreeWalkTest, HandsOutAFileWithSeveralNamesOnce) {
    make("a/file");
    for (int copy = 0; copy < 5; ++copy) {
        fs::create_hard_link(m_folder / "a/file", m_folder / ("copy" + std::to_string(copy)));
    }
    make("other");
    walk();
    EXPECT_EQ(m_visits.names.size(), 2U);
    EXPECT_EQ(m_visits.leftFor(Skipped::OtherName), 5U);
}

TEST_F(TreeWalkTest, LeavesOutWhatRulesExclude) {
    make("keep/file");
    make("leave/file");
    make("keep/cache/file");
    make("keep/cached");
    TreeWalk::Options options;
    std::string error;
    ASSERT_TRUE(options.excluded.add(m_folder / "leave", error));
    ASSERT_TRUE(options.excluded.add(m_folder / "*/cache", error));
    walk(options);
    EXPECT_THAT(m_visits.paths,
                UnorderedElementsAre(m_folder / "keep/file", m_folder / "keep/cached"));
    EXPECT_EQ(m_visits.leftFor(Skipped::Excluded), 2U);
}

TEST_F(TreeWalkTest, OpensOnlyWhatWasChosen) {
    make("known");
    make("unknown");
    m_visits.onChoose = [](std::vector<WalkedFile>& files) {
        std::erase_if(files, [](const WalkedFile& file) { return file.name == "known"; });
    };
    walk();
    EXPECT_THAT(m_visits.names, ElementsAre("unknown"));
}

TEST_F(TreeWalkTest, CountsWhatVanishesOrTurnsIntoALinkMeanwhile) {
    make("vanishes");
    make("becomes a link");
    make("becomes a fifo");
    make("stays");
    m_visits.onChoose = [this](const std::vector<WalkedFile>&) {
        fs::remove(m_folder / "vanishes");
        fs::remove(m_folder / "becomes a link");
        fs::create_symlink("/etc/passwd", m_folder / "becomes a link");
        fs::remove(m_folder / "becomes a fifo");
        ASSERT_EQ(::mkfifo((m_folder / "becomes a fifo").c_str(), 0600), 0);
    };
    walk();
    EXPECT_THAT(m_visits.names, ElementsAre("stays"));
    EXPECT_EQ(m_visits.leftFor(Skipped::Unreadable), 3U);
}

TEST_F(TreeWalkTest, IsNotLedOutOfTheTreeByFoldersThatAreMoved) {
    const ScratchFolder outside;
    make("inner/deep/file");
    writeFile(outside / "secret", "x");
    m_visits.onFile = [&](const WalkedFile& file) {
        if (file.name == "first") {
            fs::rename(m_folder / "inner", outside / "inner");
            fs::create_symlink(outside.path(), m_folder / "inner");
        }
    };
    make("first");
    walk();
    EXPECT_THAT(m_visits.names, testing::Not(testing::Contains("secret")));
}

TEST_F(TreeWalkTest, ComesToAnEndWhileTheTreeChangesAllTheTime) {
    for (int folder = 0; folder < 30; ++folder) {
        for (int file = 0; file < 30; ++file) {
            make("d" + std::to_string(folder) + "/f" + std::to_string(file));
        }
    }
    std::jthread churn([this](const std::stop_token& stop) {
        for (int round = 0; !stop.stop_requested(); ++round) {
            const std::string name = m_folder / ("d" + std::to_string(round % 30));
            std::error_code ignored;
            fs::rename(name, name + "x", ignored);
            fs::rename(name + "x/f1", name + "x/g", ignored);
            fs::rename(name + "x", name, ignored);
        }
    });
    walk();
    churn.request_stop();
    churn.join();
    EXPECT_GT(m_visits.names.size(), 0U);
    EXPECT_LE(m_visits.names.size(), 1800U);
}

TEST_F(TreeWalkTest, GoesDeeperThanAPathMayBeLong) {
    const std::string name(200, 'd');
    const int old = ::open(".", O_RDONLY | O_DIRECTORY);
    ASSERT_EQ(::chdir(m_folder.path().c_str()), 0);
    for (int level = 0; level < 60; ++level) {
        ASSERT_EQ(::mkdir(name.c_str(), 0700), 0);
        ASSERT_EQ(::chdir(name.c_str()), 0);
    }
    writeFile("deepest", "x");
    ASSERT_EQ(::fchdir(old), 0);
    ::close(old);
    walk();
    ASSERT_THAT(m_visits.names, ElementsAre("deepest"));
    EXPECT_GT(m_visits.paths.front().size(), 12000U);
}

TEST_F(TreeWalkTest, CountsWhatIsBeyondItsLimits) {
    std::string path = "a";
    // A comb: each folder has siblings that wait. Their names differ, as does their order in lists.
    for (int level = 0; level < 40; ++level) {
        for (int sibling = 0; sibling < 3; ++sibling) {
            make(path + "/s" + std::to_string(3 * level + sibling) + "/file");
        }
        make(path + "/file");
        path += "/a";
    }
    TreeWalk::Options options;
    options.limits.openFolders = 5;
    walk(options);
    EXPECT_GT(m_visits.leftFor(Skipped::TooDeep), 0U);
    EXPECT_GT(m_visits.names.size(), 5U);
    m_visits.left.clear();
    options.limits.openFolders = 400;
    options.limits.longestPath = m_folder.path().size() + 10;
    walk(options);
    EXPECT_GT(m_visits.leftFor(Skipped::TooDeep), 0U);
}

TEST_F(TreeWalkTest, StopsWhenAsked) {
    for (int file = 0; file < 600; ++file) {
        make("f" + std::to_string(file));
    }
    m_visits.onFile = [this](const WalkedFile&) { m_stop.request_stop(); };
    walk();
    EXPECT_LT(m_visits.names.size(), 600U);
}

TEST_F(TreeWalkTest, LeavesPseudoFileSystemsAlone) {
    Visits visits;
    TreeWalk walk({}, visits);
    walk.walk(UniqueFd(::open("/proc", O_RDONLY | O_DIRECTORY)), "/proc", {});
    EXPECT_THAT(visits.names, IsEmpty());
    EXPECT_EQ(visits.leftFor(Skipped::Excluded), 1U);
}

TEST_F(TreeWalkTest, EntersAnotherFileSystemOnlyWhenTold) {
    KORVALE_NEEDS(mounts());
    make("here");
    fs::create_directory(m_folder / "mounted");
    const auto mount = ScratchMount::tmpfs(m_folder / "mounted", "size=1m");
    ASSERT_TRUE(mount.mounted());
    make("mounted/there");
    walk();
    EXPECT_THAT(m_visits.names, ElementsAre("here"));
    EXPECT_EQ(m_visits.leftFor(Skipped::Excluded), 1U);
    m_visits.names.clear();
    TreeWalk::Options options;
    options.otherFileSystems = true;
    walk(options);
    EXPECT_THAT(m_visits.names, UnorderedElementsAre("here", "there"));
}

TEST_F(TreeWalkTest, GoesOnWhenTheFileSystemIsUnmountedUnderIt) {
    KORVALE_NEEDS(mounts());
    fs::create_directory(m_folder / "mounted");
    auto mount = std::make_optional(ScratchMount::tmpfs(m_folder / "mounted", "size=8m"));
    for (int file = 0; file < 300; ++file) {
        make("mounted/d" + std::to_string(file % 10) + "/f" + std::to_string(file));
    }
    m_visits.onFile = [&](const WalkedFile&) { mount.reset(); };
    walk({}, "/mounted");
    EXPECT_EQ(m_visits.names.size(), 300U) << "what is open stays";
}

TEST_F(TreeWalkTest, OpensAFileAgainByItsPath) {
    const auto path = make("a/b/file");
    const auto top = make("top");
    fs::create_symlink("a", m_folder / "link");
    TreeWalk walk({}, m_visits);
    walk.walk(UniqueFd(::open(m_folder.path().c_str(), O_RDONLY | O_DIRECTORY)), m_folder.path(),
              {});
    EXPECT_TRUE(walk.again(path).descriptor);
    EXPECT_EQ(walk.again(path).path(), path);
    EXPECT_EQ(walk.again(top).path(), top);
    EXPECT_FALSE(walk.again(m_folder / "link/b/file").descriptor);
    EXPECT_FALSE(walk.again(m_folder / "none/file").descriptor);
    EXPECT_FALSE(walk.again(m_folder / "a/../../etc/passwd").descriptor);
}

} // namespace
