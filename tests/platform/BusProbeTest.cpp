#include "platform/BusProbe.h"

#include "fakes/ListeningSocket.h"

#include <QCoreApplication>
#include <QDir>
#include <QEventLoop>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <cstddef>
#include <gtest/gtest.h>
#include <optional>
#include <pthread.h>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

namespace korvale {
namespace {

/// A listening socket that says nothing by itself: a bus that hangs until told to speak.
class SilentBus {
public:
    SilentBus() = default;
    ~SilentBus() { close(m_client); }
    SilentBus(const SilentBus&) = delete;
    SilentBus& operator=(const SilentBus&) = delete;

    [[nodiscard]] QByteArray address() const { return "unix:path=" + path() + ",guid=12"; }
    void speak() {
        m_client = accept(m_listener.descriptor(), nullptr, nullptr);
        EXPECT_EQ(write(m_client, "OK 12\r\n", 7), 7);
    }
    void welcome() const { EXPECT_EQ(write(m_client, "l\2\1\1", 4), 4); }
    QByteArray heard() const {
        std::array<char, 128> text{};
        const ssize_t length = read(m_client, text.data(), text.size());
        return {text.data(), std::max<ssize_t>(length, 0)};
    }
    void hangUp() { close(accept(m_listener.descriptor(), nullptr, nullptr)); }
    /// Clients nobody takes in, until no more can come.
    void fillQueue() { m_waiting.emplace(path()); }
    /// Takes in, and sends away, everyone who waits.
    void emptyQueue() {
        const std::size_t count = m_waiting->count();
        m_waiting.reset();
        for (std::size_t i = 0; i < count; ++i) {
            hangUp();
        }
    }
    /// Shuts the door behind those who are in: whoever connects finds nobody.
    void stopListening() { m_listener.close(); }

private:
    [[nodiscard]] QByteArray path() const {
        return m_folder.filePath(QStringLiteral("bus")).toUtf8();
    }
    QTemporaryDir m_folder;
    ListeningSocket m_listener{path()};
    int m_client = -1;
    std::optional<WaitingClients> m_waiting;
};

TEST(BusProbe, NothingListeningIsAbsent) {
    for (const char* address : {"", "nonsense", "unix:", "unix:path=/nonexistent/bus",
                                "unix:abstract=korvale-nobody-here", "unix:tmpdir=/tmp"}) {
        EXPECT_EQ(BusProbe(address).state(), BusProbe::State::Absent) << address;
    }
    EXPECT_EQ(BusProbe("unix:path=/" + QByteArray(200, 'x')).state(), BusProbe::State::Absent);
}

TEST(BusProbe, OtherTransportsAreTakenOnTrust) {
    EXPECT_EQ(BusProbe("tcp:host=localhost,port=1").state(), BusProbe::State::Answered);
}

TEST(BusProbe, ABusThatHangsIsNotWaitedFor) {
    const SilentBus bus;
    BusProbe probe(bus.address());
    EXPECT_EQ(probe.state(), BusProbe::State::Asking);
    EXPECT_EQ(probe.waitBriefly(10), BusProbe::State::Asking);
}

TEST(BusProbe, ABusHasAnsweredOnceItAnswersTheGreeting) {
    SilentBus bus;
    BusProbe probe(bus.address());
    bus.speak();
    EXPECT_EQ(probe.waitBriefly(10), BusProbe::State::Asking)
        << "it may still hang at the greeting";
    bus.welcome();
    EXPECT_EQ(probe.waitBriefly(10'000), BusProbe::State::Answered);
    EXPECT_TRUE(bus.heard().startsWith(QByteArray(1, '\0') + "AUTH EXTERNAL "));
}

TEST(BusProbe, ALateAnswerIsReported) {
    SilentBus bus;
    BusProbe probe(bus.address());
    QEventLoop loop;
    QObject::connect(&probe, &BusProbe::answered, &loop, &QEventLoop::quit);
    QTimer::singleShot(0, &loop, [&] {
        bus.speak();
        bus.welcome();
    });
    probe.watch();
    loop.exec();
    EXPECT_EQ(probe.state(), BusProbe::State::Answered);
}

TEST(BusProbe, ABusThatHangsUpIsAbsent) {
    SilentBus bus;
    BusProbe probe(bus.address());
    bus.hangUp();
    EXPECT_EQ(probe.waitBriefly(10'000), BusProbe::State::Absent);
}

TEST(BusProbe, ABusWhoseQueueOfClientsIsFullIsOneThatHangs) {
    SilentBus bus;
    bus.fillQueue();
    BusProbe probe(bus.address());
    EXPECT_EQ(probe.state(), BusProbe::State::Asking) << "the toolkit would wait for it in vain";
    EXPECT_EQ(probe.waitBriefly(10), BusProbe::State::Asking);
    bus.emptyQueue();
}

TEST(BusProbe, AFullQueueOfClientsThatEmptiesIsReported) {
    SilentBus bus;
    bus.fillQueue();
    BusProbe probe(bus.address());
    QEventLoop loop;
    QObject::connect(&probe, &BusProbe::answered, &loop, &QEventLoop::quit);
    std::thread awake;
    QTimer::singleShot(0, &loop, [&] {
        bus.emptyQueue();
        awake = std::thread([&bus] { // to the next who knocks
            bus.speak();
            bus.welcome();
        });
    });
    probe.watch();
    loop.exec();
    awake.join();
    EXPECT_EQ(probe.state(), BusProbe::State::Answered);
}

TEST(BusProbe, ABusThatEndsWithAFullQueueIsAbsent) {
    SilentBus bus;
    bus.fillQueue();
    BusProbe probe(bus.address());
    QEventLoop loop;
    QObject::connect(&probe, &BusProbe::answered, &loop, &QEventLoop::quit);
    QTimer::singleShot(0, &loop, [&] { bus.stopListening(); });
    probe.watch();
    loop.exec();
    EXPECT_EQ(probe.state(), BusProbe::State::Absent);
}

int openDescriptors() {
    return static_cast<int>(QDir(QStringLiteral("/proc/self/fd")).count());
}

TEST(BusProbe, NoDescriptorIsLeftBehind) {
    SilentBus bus;
    const int before = openDescriptors();
    { const BusProbe asking(bus.address()); }
    bus.hangUp();
    bus.fillQueue();
    const int full = openDescriptors();
    { const BusProbe outside(bus.address()); }
    EXPECT_EQ(openDescriptors(), full);
    bus.emptyQueue();
    EXPECT_EQ(openDescriptors(), before);
}

extern "C" {
static void interrupted(int /*signal*/) {}
}

TEST(BusProbe, ASignalIsNoAnswer) {
    SilentBus bus;
    BusProbe probe(bus.address());
    struct sigaction interrupting {};
    struct sigaction before {};
    interrupting.sa_handler = interrupted; // without SA_RESTART: poll ends with EINTR
    sigaction(SIGUSR1, &interrupting, &before);
    const pthread_t waiting = pthread_self();
    std::thread disturber([&] {
        for (int i = 0; i < 20; ++i) {
            pthread_kill(waiting, SIGUSR1);
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
        bus.speak();
        bus.welcome();
    });
    EXPECT_EQ(probe.waitBriefly(20'000), BusProbe::State::Answered);
    disturber.join();
    sigaction(SIGUSR1, &before, nullptr);
}

TEST(BusProbe, TheFirstReachableEntryOfAListIsAsked) {
    SilentBus bus;
    BusProbe probe("unix:path=/nonexistent/bus;" + bus.address());
    EXPECT_EQ(probe.state(), BusProbe::State::Asking);
}

TEST(BusAddress, SessionBusIsTheGivenOneElseTheRuntimeFolders) {
    const QTemporaryDir folder;
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/given");
    EXPECT_EQ(sessionBusAddress(), "unix:path=/given");
    qunsetenv("DBUS_SESSION_BUS_ADDRESS");
    qputenv("XDG_RUNTIME_DIR", folder.path().toUtf8());
    EXPECT_EQ(sessionBusAddress(), QByteArray());
    QFile(folder.filePath(QStringLiteral("bus"))).open(QIODevice::WriteOnly);
    EXPECT_EQ(sessionBusAddress(), "unix:path=" + folder.path().toUtf8() + "/bus");
    qunsetenv("XDG_RUNTIME_DIR");
    EXPECT_EQ(sessionBusAddress(), QByteArray());
}

} // namespace
} // namespace korvale
