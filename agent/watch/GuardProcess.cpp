#include "agent/watch/GuardProcess.h"

#include "agent/watch/DescriptorMessage.h"
#include "agent/watch/GuardLoop.h"
#include "agent/watch/OwnPages.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <new>
#include <poll.h>
#include <sys/fanotify.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

namespace korvale::agent {
namespace {

constexpr int kGroup = 3; // the guard's descriptors have fixed numbers
constexpr int kSocket = 4;
constexpr int kUrgent = -15;
constexpr int kReadyTime = 5000; // milliseconds

/// A crash helper would be a program that waits for us.
void closeGroupAndDie(int signal) {
    ::close(kGroup);
    ::signal(signal, SIG_DFL);
    ::raise(signal);
}

void setSignals() {
    sigset_t none;
    sigemptyset(&none);
    ::pthread_sigmask(SIG_SETMASK, &none, nullptr);
    for (const int signal : {SIGSEGV, SIGBUS, SIGILL, SIGFPE, SIGABRT, SIGSYS, SIGTRAP}) {
        struct sigaction action {};
        action.sa_handler = closeGroupAndDie;
        action.sa_flags = static_cast<int>(SA_NODEFER | SA_RESETHAND);
        ::sigaction(signal, &action, nullptr);
    }
    for (const int signal : {SIGHUP, SIGPIPE, SIGUSR1, SIGUSR2}) {
        ::signal(signal, SIG_IGN);
    }
}

/// The group and the socket at their numbers, and nothing else open but the three standard ones,
/// which nobody is to wait for.
int arrange(int socket) {
    const int group = ::fanotify_init(FAN_CLASS_CONTENT | FAN_CLOEXEC | FAN_NONBLOCK,
                                      O_RDONLY | O_LARGEFILE | O_CLOEXEC | O_NOATIME);
    const int error = group < 0 ? errno : 0;
    const int nothing = ::open("/dev/null", O_RDWR | O_CLOEXEC);
    for (int standard = 0; nothing >= 0 && standard < 3; ++standard) {
        ::dup2(nothing, standard);
    }
    // Out of the way first: each may have the other's number.
    const int highSocket = ::fcntl(socket, F_DUPFD_CLOEXEC, 16);
    const int highGroup = group < 0 ? -1 : ::fcntl(group, F_DUPFD_CLOEXEC, 16);
    ::dup3(highSocket, kSocket, O_CLOEXEC);
    if (highGroup >= 0) {
        ::dup3(highGroup, kGroup, O_CLOEXEC);
    } else {
        ::close(kGroup);
    }
    ::syscall(SYS_close_range, kSocket + 1, ~0U, 0);
    return error;
}

/// There may have been other threads before the fork, so that whatever has a lock (memory, log,
/// libraries) may be locked for ever.
[[noreturn]] void beGuard(pid_t agent, int socket, GuardPage& page, const OwnPages& pages) {
    // The last signal: it ends even a guard that is stopped.
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (::getppid() != agent) {
        ::_exit(0);
    }
    ::prctl(PR_SET_DUMPABLE, 0);
    ::prctl(PR_SET_NAME, "korvale-guard");
    setSignals();
    const int error = arrange(socket);
    ::setpriority(PRIO_PROCESS, 0, kUrgent);
    static KnownStarts known; // of no weight in the agent itself, as nobody touches it there
    known.clear();
    pages.lock();
    const GuardNote ready{GuardNote::Kind::Ready, error, 0};
    if (sendMessage(kSocket, &ready, sizeof ready, -1) && error == 0) {
        GuardLoop(kSocket, kGroup, page, known).run();
    }
    ::close(kGroup);
    ::_exit(0);
}

int readyError(int socket) {
    pollfd waitFor{socket, POLLIN, 0};
    GuardNote ready;
    UniqueFd none;
    if (::poll(&waitFor, 1, kReadyTime) != 1 ||
        receiveMessage(socket, &ready, sizeof ready, none) != Received::Message) {
        return EIO;
    }
    return ready.error;
}

} // namespace

void GuardProcess::fork() {
    std::array<int, 2> pair{-1, -1};
    if (::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, pair.data()) != 0) {
        m_trouble = errno;
        return;
    }
    m_socket = std::make_shared<const UniqueFd>(pair[0]);
    const UniqueFd theirs(pair[1]);
    const OwnPages pages = OwnPages::find();
    const pid_t agent = ::getpid();
    // Without what others want done at a fork: that may need their locks.
    m_pid = ::_Fork();
    if (m_pid == 0) {
        beGuard(agent, theirs.get(), *m_page, pages);
    }
    m_trouble = m_pid < 0 ? errno : 0;
}

GuardProcess GuardProcess::start() {
    GuardProcess guard;
    void* const page = ::mmap(nullptr, sizeof(GuardPage), PROT_READ | PROT_WRITE,
                              MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (page == MAP_FAILED) {
        guard.m_trouble = errno;
        return guard;
    }
    guard.m_page = new (page) GuardPage;
    guard.fork();
    if (guard.m_pid > 0) {
        guard.m_trouble = readyError(guard.socket());
        if (guard.m_trouble != 0) {
            guard.end();
        }
    }
    return guard;
}

bool GuardProcess::restart(std::uint64_t ping) {
    end();
    if (m_page == nullptr) {
        return false;
    }
    m_page->ponged = ping; // nobody is to miss its answers to what the one before was asked
    m_page->silent = false;
    fork();
    return m_pid > 0;
}

GuardProcess::GuardProcess(GuardProcess&& other) noexcept
    : m_pid(std::exchange(other.m_pid, -1)),
      m_socket(std::move(other.m_socket)),
      m_page(std::exchange(other.m_page, nullptr)),
      m_trouble(other.m_trouble) {}

GuardProcess& GuardProcess::operator=(GuardProcess&& other) noexcept {
    std::swap(m_pid, other.m_pid);
    std::swap(m_socket, other.m_socket);
    std::swap(m_page, other.m_page);
    std::swap(m_trouble, other.m_trouble);
    return *this;
}

GuardProcess::~GuardProcess() {
    end();
    if (m_page != nullptr) {
        ::munmap(m_page, sizeof(GuardPage));
    }
}

GuardProcess::State GuardProcess::look() {
    int status = 0;
    if (m_pid <= 0) {
        return State::Ended;
    }
    const pid_t changed = ::waitpid(m_pid, &status, WNOHANG | WUNTRACED);
    if (changed == 0) {
        return State::Runs;
    }
    if (changed == m_pid && WIFSTOPPED(status)) {
        ::kill(m_pid, SIGKILL);
        return State::Stopped;
    }
    m_pid = -1;
    return State::Ended;
}

void GuardProcess::end() {
    constexpr int patience = 500; // milliseconds
    const pid_t pid = std::exchange(m_pid, -1);
    if (pid <= 0) {
        return;
    }
    ::kill(pid, SIGKILL);
    for (int waited = 0; waited < patience && ::waitpid(pid, nullptr, WNOHANG) == 0; ++waited) {
        ::poll(nullptr, 0, 1);
    }
}

} // namespace korvale::agent
