#include "WatchedRun.h"
#include "agent/base/UniqueFd.h"
#include "agent/fakes/Needs.h"

#include <fcntl.h>
#include <ostream>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>

namespace korvale::agent {
namespace {

/// Who is stopped or killed meanwhile.
struct Harm {
    const char* name;
    bool agent = false;
    bool guard = false;
    bool engine = false;
    bool bus = false;
    int signal = SIGSTOP;
};
void PrintTo(const Harm& harm, std::ostream* stream) {
    *stream << harm.name; // which becomes part of the test's name
}

/// Programs go on starting, each within its time limit, whatever happens to the agent and to what
/// it talks to.
class CanaryTest : public WatchedRun, public testing::WithParamInterface<Harm> {
protected:
    /// The time limit of one start (two seconds), on a machine that has other things to do.
    static constexpr std::chrono::milliseconds limit{8000};
};

TEST_P(CanaryTest, ProgramsGoOnStarting) {
    KORVALE_NEEDS(clamd());
    const Harm& harm = GetParam();
    RealClamd clamd;
    watch("block = \"execute\"\n", &clamd);
    ASSERT_TRUE(watchedBy("execute"));
    makeProgram(file("canary"));
    Canary canary(file("canary"));
    ASSERT_TRUE(waitUntil([&] { return canary.songs() >= 5; }));
    const pid_t guardBefore = guard();
    ASSERT_GT(guardBefore, 0);
    const auto strike = [&](int signal) {
        for (const auto& [hit, pid] :
             {std::pair(harm.agent, agent()), std::pair(harm.guard, guardBefore),
              std::pair(harm.engine, clamd.pid()),
              std::pair(harm.bus, static_cast<pid_t>(m_bus.pid()))}) {
            if (hit) {
                ::kill(pid, signal);
            }
        }
    };
    const int before = canary.songs();
    strike(harm.signal);
    if (harm.agent && harm.guard && harm.signal == SIGSTOP) {
        // Nobody is left who could notice, but the service manager: its watchdog does this.
        ::usleep(1'000'000);
        ::kill(agent(), SIGKILL);
    }
    EXPECT_TRUE(waitUntil([&] { return canary.songs() >= before + 60; }))
        << canary.songs() - before << " songs";
    canary.end();
    EXPECT_EQ(canary.failures(), 0);
    EXPECT_LT(canary.longest(), limit);
    std::printf("%s: the longest start took %lld ms\n", harm.name,
                static_cast<long long>(canary.longest().count()));
    if (harm.signal == SIGSTOP) {
        strike(SIGCONT);
    }
}

INSTANTIATE_TEST_SUITE_P(Neighbours, CanaryTest,
                         testing::Values(Harm{"AgentStopped", true, false, false, false},
                                         Harm{"GuardStopped", false, true, false, false},
                                         Harm{"EngineStopped", false, false, true, false},
                                         Harm{"BusStopped", false, false, false, true},
                                         Harm{"AllStopped", true, true, true, true},
                                         Harm{"EngineAndBusStopped", false, false, true, true},
                                         Harm{"AgentKilled", true, false, false, false, SIGKILL},
                                         Harm{"GuardKilled", false, true, false, false, SIGKILL},
                                         Harm{"EngineKilled", false, false, true, false, SIGKILL},
                                         Harm{"BusKilled", false, false, false, true, SIGKILL},
                                         Harm{"AllKilled", true, true, true, true, SIGKILL}),
                         [](const auto& harm) { return harm.param.name; });

class StarvedTest : public WatchedRun {};

TEST_F(StarvedTest, ANotifySocketThatNobodyReadsHoldsNobodyUp) {
    KORVALE_NEEDS(clamd());
    const TestFolder place;
    const int notify = ::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const QByteArray name = QFile::encodeName(place.path(QStringLiteral("notify")));
    std::copy(name.begin(), name.end(), address.sun_path);
    const auto* where = static_cast<const sockaddr*>(static_cast<const void*>(&address));
    ASSERT_EQ(::bind(notify, where, sizeof address), 0);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("NOTIFY_SOCKET"), QString::fromUtf8(name));
    environment.insert(QStringLiteral("WATCHDOG_USEC"), QStringLiteral("20000"));
    m_process.setProcessEnvironment(environment);
    RealClamd clamd;
    watch("block = \"execute\"\n", &clamd);
    // Fed every ten milliseconds, the socket is full soon, and the agent's main thread waits.
    makeProgram(file("canary"));
    Canary canary(file("canary"));
    EXPECT_TRUE(waitUntil([&] { return canary.songs() >= 100; }));
    canary.end();
    EXPECT_EQ(canary.failures(), 0);
    EXPECT_LT(canary.longest(), std::chrono::milliseconds(8000));
    ::close(notify);
}

TEST_F(StarvedTest, ALogThatNobodyReadsHoldsNobodyUp) {
    KORVALE_NEEDS(clamd());
    // As full as a journal's socket while the journal is stopped.
    const std::string log = m_folder.path(QStringLiteral("log")).toStdString();
    ASSERT_EQ(::mkfifo(log.c_str(), 0600), 0);
    const UniqueFd reader(::open(log.c_str(), O_RDWR | O_CLOEXEC | O_NONBLOCK));
    ASSERT_GT(::fcntl(reader.get(), F_SETPIPE_SZ, 4096), 0);
    m_process.setStandardErrorFile(QString::fromStdString(log));
    RealClamd clamd;
    watch("block = \"execute\"\n[quarantine]\nunsafe = false\n", &clamd);
    ASSERT_TRUE(watchedBy("execute"));
    makeProgram(file("evil"), RealClamd::badMarker);
    makeProgram(file("canary"));
    Canary canary(file("canary"));
    // Each refusal is a line of the log, until the agent's main thread waits for a reader.
    const auto isFull = [&] {
        int waiting = 0;
        return ::ioctl(reader.get(), FIONREAD, &waiting) == 0 && waiting > 4096 - 80;
    };
    for (int count = 0; count < 500 && !isFull(); ++count) {
        runProgram(file("evil"));
    }
    ASSERT_TRUE(isFull());
    const int before = canary.songs();
    EXPECT_TRUE(waitUntil([&] { return canary.songs() >= before + 100; }));
    canary.end();
    EXPECT_EQ(canary.failures(), 0);
    EXPECT_LT(canary.longest(), std::chrono::milliseconds(8000));
    EXPECT_EQ(runProgram(file("evil")), -EPERM) << "and what is bad is still refused";
}

} // namespace
} // namespace korvale::agent
