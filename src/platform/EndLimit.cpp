#include "platform/EndLimit.h"

#include "core/base/Logging.h"
#include "platform/Termination.h"

#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>
#include <utility>

namespace korvale {
namespace {

int pollAgain(pollfd* watched, nfds_t count, int milliseconds) {
    int ready = 0;
    do {
        ready = ::poll(watched, count, milliseconds);
    } while (ready < 0 && errno == EINTR);
    return ready;
}

} // namespace

EndLimit::EndLimit(const TerminationSignals& signalsOfTheSystem,
                   std::function<void()> willTerminate, std::chrono::milliseconds limit)
    : m_willTerminate(std::move(willTerminate)),
      m_limit(limit),
      m_isOver(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)),
      m_thread([this, signalCame = signalsOfTheSystem.descriptor()] { watch(signalCame); }) {}

EndLimit::~EndLimit() {
    const std::uint64_t one = 1;
    [[maybe_unused]] const ssize_t written = ::write(m_isOver, &one, sizeof one);
    m_thread.join();
    ::close(m_isOver);
}

void EndLimit::watch(int signalCame) const {
    std::array<pollfd, 2> watched{{{m_isOver, POLLIN, 0}, {signalCame, POLLIN, 0}}};
    pollAgain(watched.data(), watched.size(), -1);
    if (pollAgain(watched.data(), 1, static_cast<int>(m_limit.count())) == 0) {
        m_willTerminate();
        finishLog();
        std::_Exit(EXIT_SUCCESS);
    }
}

} // namespace korvale
