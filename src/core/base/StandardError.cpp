#include "core/base/StandardError.h"

#include <QVarLengthArray>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <fcntl.h>
#include <poll.h>
#include <string_view>
#include <sys/eventfd.h>
#include <unistd.h>

namespace korvale {
namespace {

constexpr int patience = 1000; ///< milliseconds

bool isWorthAnotherTry(int error) {
    return error == EINTR || error == EAGAIN;
}

/// Writes the front of `rest` and drops it there. False when nothing can be written any more.
bool writeSome(std::string_view& rest) {
    // No more at once than a pipe with any room takes (POSIX: PIPE_BUF).
    const ssize_t written =
        ::write(STDERR_FILENO, rest.data(), std::min<std::size_t>(rest.size(), PIPE_BUF));
    if (written > 0) {
        rest.remove_prefix(static_cast<std::size_t>(written));
    }
    return written > 0 || (written < 0 && isWorthAnotherTry(errno));
}

} // namespace

void replaceClosedStandardStreams() {
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (::fcntl(stream, F_GETFD) < 0) {
            // Gets the lowest free number, which is this one.
            [[maybe_unused]] const int opened = ::open("/dev/null", O_RDWR);
        }
    }
}

void writeToStandardError(const QByteArray& line) {
    StandardError().writeLine(line);
}

StandardError::StandardError() : m_hurryEvent(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}

StandardError::~StandardError() {
    if (m_hurryEvent >= 0) {
        ::close(m_hurryEvent);
    }
}

bool StandardError::takes(std::size_t size) {
    pollfd standardError{STDERR_FILENO, POLLOUT, 0};
    return size < PIPE_BUF && ::poll(&standardError, 1, 0) == 1;
}

void StandardError::writeLine(const QByteArray& line) {
    QVarLengthArray<char, 512> whole; // most lines need no other memory
    whole.append(line.constData(), line.size());
    whole.append('\n');
    std::string_view rest(whole.data(), static_cast<std::size_t>(whole.size()));
    while (!rest.empty() && waitForReader() && writeSome(rest)) {
    }
}

void StandardError::hurry() const {
    ::eventfd_write(m_hurryEvent, 1);
}

bool StandardError::waitForReader() {
    while (!m_givenUp) {
        std::array<pollfd, 2> events{{{STDERR_FILENO, POLLOUT, 0}, {m_hurryEvent, POLLIN, 0}}};
        const int ready = ::poll(events.data(), m_hurried ? 1 : 2, m_hurried ? patience : -1);
        if (ready < 0 && !isWorthAnotherTry(errno)) {
            return false;
        }
        if (ready > 0 && events[0].revents != 0) {
            return true;
        }
        m_givenUp = ready == 0;
        m_hurried = m_hurried || ready > 0;
    }
    return false;
}

} // namespace korvale
