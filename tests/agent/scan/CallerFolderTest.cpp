#include "agent/scan/CallerFolder.h"

#include "agent/fakes/FakeEngine.h"
#include "agent/fakes/Needs.h"
#include "agent/fakes/ScratchFolder.h"
#include "agent/scan/RecordingScan.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <thread>
#include <unistd.h>

using namespace korvale::agent;
namespace fs = std::filesystem;

namespace {

constexpr uid_t kUser = 54321;
constexpr uid_t kOther = 54322;
constexpr gid_t kGroup = 54400;

class CallerFolderTest : public testing::Test {
protected:
    CallerFolderTest() { ::chmod(m_folder.path().c_str(), 0755); }

    std::string make(const std::string& name, uid_t owner, gid_t group, mode_t mode) const {
        fs::create_directories(m_folder / name);
        EXPECT_EQ(::chown((m_folder / name).c_str(), owner, group), 0);
        EXPECT_EQ(::chmod((m_folder / name).c_str(), mode), 0);
        return m_folder / name;
    }
    static bool mayRead(const std::string& path, const CallerCredentials& caller) {
        const CallerFolder folder = openCallerFolder(path, caller);
        EXPECT_EQ(folder.error.empty(), folder.descriptor.isOpen());
        return folder.descriptor.isOpen();
    }

    ScratchFolder m_folder;
    const CallerCredentials m_root{0, {0}};
    const CallerCredentials m_user{kUser, {kUser}};
};

TEST_F(CallerFolderTest, IsOpenedOnlyForThoseWhoMayReadIt) {
    KORVALE_NEEDS(root());
    const auto own = make("own", kUser, kUser, 0700);
    const auto others = make("other's", kOther, kOther, 0700);
    const auto roots = make("root's", 0, 0, 0700);
    const auto groups = make("group's", kOther, kGroup, 0750);
    const auto open = make("open", kOther, kOther, 0755);
    const auto beneath = make("root's/open", kUser, kUser, 0755);
    const auto unlistable = make("unlistable", kUser, kUser, 0300);
    EXPECT_TRUE(mayRead(own, m_user));
    EXPECT_FALSE(mayRead(others, m_user));
    EXPECT_FALSE(mayRead(roots, m_user));
    EXPECT_FALSE(mayRead(beneath, m_user));
    EXPECT_FALSE(mayRead(groups, m_user));
    EXPECT_FALSE(mayRead(unlistable, m_user));
    EXPECT_TRUE(mayRead(groups, {kUser, {kGroup, kUser}}));
    EXPECT_TRUE(mayRead(groups, {kUser, {kUser, kGroup}}));
    EXPECT_TRUE(mayRead(open, m_user));
    EXPECT_TRUE(mayRead(roots, m_root));
    EXPECT_FALSE(mayRead(open, {kUser, {}})) << "groups that are not known";
}

TEST_F(CallerFolderTest, LeavesAllOtherThreadsRoot) {
    KORVALE_NEEDS(root());
    const auto own = make("own", kUser, kUser, 0700);
    std::jthread watcher([](const std::stop_token& stop) {
        while (!stop.stop_requested()) {
            ASSERT_EQ(::geteuid(), 0U);
        }
    });
    for (int round = 0; round < 200; ++round) {
        EXPECT_TRUE(mayRead(own, m_user));
        ASSERT_EQ(::geteuid(), 0U);
    }
}

TEST_F(CallerFolderTest, ThreadIsBeyondTheCallersReach) {
    KORVALE_NEEDS(root());
    std::thread([this] {
        std::string error;
        ASSERT_TRUE(assumeRightsOf(m_user, error)) << error;
        EXPECT_EQ(::geteuid(), kUser);
        EXPECT_EQ(::getuid(), 0U) << "by this a signal is judged";
        std::ifstream status("/proc/thread-self/status");
        const std::string text(std::istreambuf_iterator<char>(status), {});
        EXPECT_TRUE(text.empty() || text.find("CapEff:\t0000000000000000") != std::string::npos);
        {
            const OwnRights own;
            EXPECT_EQ(::geteuid(), 0U);
        }
        EXPECT_EQ(::geteuid(), kUser);
    }).join();
    EXPECT_EQ(::geteuid(), 0U);
}

TEST_F(CallerFolderTest, IsWhereTheLinksLead) {
    const auto real = m_folder / "real";
    fs::create_directory(real);
    fs::create_symlink("real", m_folder / "link");
    const CallerCredentials self{::geteuid(), {::getegid()}};
    const CallerFolder folder = openCallerFolder(m_folder / "link", self);
    EXPECT_TRUE(folder.descriptor) << folder.error;
    EXPECT_EQ(folder.path, fs::canonical(real).string());
}

TEST_F(CallerFolderTest, IsNothingButAFolderWithAnAbsolutePath) {
    const CallerCredentials self{::geteuid(), {::getegid()}};
    writeFile(m_folder / "file", "x");
    ASSERT_EQ(::mkfifo((m_folder / "fifo").c_str(), 0666), 0);
    for (const std::string& path : {m_folder / "file", m_folder / "fifo", m_folder / "none",
                                    std::string(), std::string("."), std::string("/proc/self/cwd"),
                                    std::string("/tmp\0x", 6), std::string(70000, '/') + "x"}) {
        EXPECT_FALSE(mayRead(path, self)) << path.substr(0, 100);
    }
}

TEST_F(CallerFolderTest, WhoseSubfoldersThatTheCallerMayNotReadAreNotEvenNamed) {
    KORVALE_NEEDS(root());
    make("tree", kUser, kUser, 0755);
    const auto secret = make("tree/secret", kOther, kOther, 0700);
    make("tree/own", kUser, kUser, 0755);
    writeFile(secret + "/bad", "bad secret");
    writeFile(m_folder / "tree/own/bad", "bad own");
    writeFile(m_folder / "tree/own/unreadable", "bad unreadable");
    ASSERT_EQ(::chmod((m_folder / "tree/own/unreadable").c_str(), 0600), 0);
    FakeEngine engine;
    ScanRequest request = RecordingScan::of(m_folder / "tree");
    request.caller = m_user;
    RecordingScan scan(std::move(request), engine);
    const ScanSummary summary = scan.run();
    ASSERT_EQ(scan.files.size(), 1U);
    EXPECT_EQ(scan.files.front().name, "bad");
    EXPECT_EQ(engine.seen().size(), 1U);
    EXPECT_EQ(summary.unreadable, 2U);
    EXPECT_EQ(summary.found, 1U);
}

TEST_F(CallerFolderTest, ThatMayNotBeReadEndsTheScanAtOnce) {
    KORVALE_NEEDS(root());
    const auto others = make("other's", kOther, kOther, 0700);
    writeFile(others + "/bad", "bad");
    FakeEngine engine;
    ScanRequest request = RecordingScan::of(others);
    request.caller = m_user;
    RecordingScan scan(std::move(request), engine);
    EXPECT_FALSE(scan.run().trouble.empty());
    EXPECT_TRUE(engine.seen().empty());
}

} // namespace
