#include "../audit/KilledProcess.h"
#include "WatchedRun.h"
#include "agent/fakes/Needs.h"

namespace korvale::agent {
namespace {

/// The agent as the packaged unit has it run: with its capabilities, its system calls, its view of
/// the machine. unit_sandbox.py does that in the service manager's place, and says what it leaves
/// out.
class UnitSandboxTest : public WatchedRun {
protected:
    void SetUp() override {
        KORVALE_NEEDS(unitSandbox());
        m_wrapper = {QStringLiteral("/usr/bin/python3"), QStringLiteral(KORVALE_UNIT_SANDBOX),
                     QStringLiteral(KORVALE_AGENT_UNIT)};
        WatchedRun::SetUp();
    }
    /// One line of what the kernel says of a process.
    [[nodiscard]] static std::string statusOf(pid_t process, const std::string& key) {
        const std::string all = readFile("/proc/" + std::to_string(process) + "/status");
        const std::size_t at = all.find('\n' + key + ":\t");
        const std::size_t begin = at + key.size() + 3;
        return at == std::string::npos ? "" : all.substr(begin, all.find('\n', begin) - begin);
    }
};

TEST_F(UnitSandboxTest, IsThere) {
    watch();
    ASSERT_TRUE(watchedBy("notify"));
    for (const pid_t process : {agent(), guard()}) {
        ASSERT_GT(process, 0);
        EXPECT_EQ(statusOf(process, "Seccomp"), "2");
        EXPECT_EQ(statusOf(process, "NoNewPrivs"), "1");
        EXPECT_EQ(statusOf(process, "CapEff"), statusOf(process, "CapBnd"));
        EXPECT_NE(statusOf(process, "CapBnd"), statusOf(::getpid(), "CapBnd"));
    }
    const auto mounts = [](pid_t process) {
        return std::filesystem::read_symlink("/proc/" + std::to_string(process) + "/ns/mnt");
    };
    EXPECT_NE(mounts(agent()), mounts(::getpid()));
}

TEST_F(UnitSandboxTest, EverythingThatTheAgentDoesIsAllowed) {
    KORVALE_NEEDS(clamd());
    RealClamd clamd;
    watch("block = \"execute\"\n", &clamd);
    ASSERT_TRUE(watchedBy("execute"));
    // Written outside, seen inside, taken away across file systems, and put back.
    writeFile(file("download"), RealClamd::badMarker);
    EXPECT_TRUE(waitUntil([&] { return publishedState(QStringLiteral("download")) == 1 + 8; }));
    const QJsonArray threats = control("Threats").value(QStringLiteral("threats")).toArray();
    ASSERT_EQ(threats.size(), 1);
    control("Restore", {{QStringLiteral("threats"),
                         QJsonArray{threats[0].toObject().value(QStringLiteral("number"))}}});
    EXPECT_TRUE(waitUntil([&] { return publishedState(QStringLiteral("download")) == 1 + 4; }));
    EXPECT_EQ(readFile(file("download")), RealClamd::badMarker);
    // Scanned because somebody asked.
    EXPECT_EQ(scanFiles(), QStringLiteral("OK"));
    EXPECT_TRUE(
        waitUntil([&] { return control("Status").value(QStringLiteral("last_scan")).isObject(); }));
    // A program that is bad, and one that is not.
    makeProgram(file("good"));
    EXPECT_EQ(runProgram(file("good")), 0);
    std::filesystem::create_directory(file("aside"));
    makeProgram(file("aside/evil"), std::string("further ") + RealClamd::badMarker);
    EXPECT_EQ(runProgram(file("aside/evil")), -EPERM);
    EXPECT_TRUE(control("Status").value(QStringLiteral("problems")).toArray().isEmpty());
}

TEST_F(UnitSandboxTest, ALostGuardIsStartedAgain) {
    KORVALE_NEEDS(clamd());
    RealClamd clamd;
    watch("block = \"execute\"\n[quarantine]\nunsafe = false\n", &clamd);
    ASSERT_TRUE(watchedBy("execute"));
    const pid_t first = guard();
    ::kill(first, SIGKILL);
    EXPECT_TRUE(waitUntil([&] { return guard() > 0 && guard() != first; }));
    ASSERT_TRUE(watchedBy("execute"));
    makeProgram(file("evil"), RealClamd::badMarker);
    EXPECT_EQ(runProgram(file("evil")), -EPERM);
}

TEST_F(UnitSandboxTest, TheAuditStreamIsHeard) {
    KORVALE_NEEDS(auditStream());
    start();
    EXPECT_EQ(control("Status")[QStringLiteral("exploits")][QStringLiteral("heard")], true);
    EXPECT_TRUE(waitUntil([&] {
        killedProcess("any");
        return !published("process_states.log").isEmpty();
    }));
}

/// The other side: who writes and starts has mounts of his own.
TEST_F(UnitSandboxTest, WhoHasMountsOfHisOwnIsWatchedLikeAnybody) {
    KORVALE_NEEDS(clamd());
    RealClamd clamd;
    watch("block = \"execute\"\n[quarantine]\nunsafe = false\n", &clamd);
    ASSERT_TRUE(watchedBy("execute"));
    const pid_t child = ::fork();
    if (child == 0) {
        const bool own = ::unshare(CLONE_NEWNS) == 0 &&
                         ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
        makeProgram(file("evil"), RealClamd::badMarker);
        ::_exit(own && runProgram(file("evil")) == -EPERM ? 0 : 1);
    }
    int status = -1;
    ::waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
    EXPECT_TRUE(waitUntil([&] { return publishedState(QStringLiteral("evil")) == 1; }));
}

} // namespace
} // namespace korvale::agent
