#include "platform/Termination.h"

#include "core/base/Logging.h"

#include <QSocketNotifier>

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>
#include <utility>

namespace korvale {
namespace {

constexpr std::array terminationSignals{SIGTERM, SIGINT, SIGHUP};

std::atomic<int> signalEvent{-1};
std::atomic<int> firstSignal{0};
static_assert(std::atomic<int>::is_always_lock_free, "read by a signal handler");

std::function<void()>& toolkitExitAction() {
    // Never destroyed, as exit handlers may run after static destructors.
    static auto* const action = new std::function<void()>;
    return *action;
}

void onExit() {
    if (toolkitExitAction()) {
        toolkitExitAction()();
        finishLog();
        // Objects of the main thread are still alive and in use: no destructor may run any more.
        std::_Exit(EXIT_SUCCESS);
    }
}

bool isIgnored(int signal) {
    struct sigaction action {};
    return ::sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

void setHandler(int signal, void (*handler)(int)) {
    struct sigaction action {};
    action.sa_handler = handler;
    sigemptyset(&action.sa_mask);
    ::sigaction(signal, &action, nullptr);
}

} // namespace

extern "C" {
static void korvaleTerminationHandler(int signal) {
    const int savedError = errno;
    int none = 0;
    firstSignal.compare_exchange_strong(none, signal);
    const std::uint64_t one = 1;
    // Nothing could be done about a failure here.
    [[maybe_unused]] const ssize_t written = ::write(signalEvent, &one, sizeof one);
    errno = savedError;
}
}

TerminationSignals::TerminationSignals() : m_event(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
    signalEvent = m_event;
    firstSignal = 0;
    for (const int signal : terminationSignals) {
        // Whoever had it ignored (nohup, a shell for what runs behind) meant it.
        if (!isIgnored(signal)) {
            setHandler(signal, korvaleTerminationHandler);
        }
    }
}

TerminationSignals::~TerminationSignals() {
    for (const int signal : terminationSignals) {
        if (!isIgnored(signal)) {
            setHandler(signal, SIG_DFL);
        }
    }
    m_notifier.reset();
    signalEvent = -1;
    ::close(m_event);
}

void TerminationSignals::watch() {
    m_notifier = std::make_unique<QSocketNotifier>(m_event, QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, [this] {
        m_notifier->setEnabled(false);
        Q_EMIT requested();
    });
}

int TerminationSignals::received() {
    return firstSignal;
}

void TerminationSignals::sleepOneSecond() const {
    pollfd waiting{m_event, POLLIN, 0};
    ::poll(&waiting, 1, 1000);
}

ToolkitExitGuard::ToolkitExitGuard(std::function<void()> willTerminate) {
    [[maybe_unused]] static const int registered = std::atexit(onExit);
    toolkitExitAction() = std::move(willTerminate);
}

ToolkitExitGuard::~ToolkitExitGuard() {
    toolkitExitAction() = nullptr;
}

void ignoreBrokenPipes() {
    setHandler(SIGPIPE, SIG_IGN);
}

} // namespace korvale
