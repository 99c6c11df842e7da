#include "agent/watch/GuardLoop.h"

#include "agent/watch/DescriptorMessage.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <ctime>
#include <fcntl.h>
#include <poll.h>
#include <sys/fanotify.h>
#include <unistd.h>

namespace korvale::agent {
namespace {

constexpr std::int64_t kMillisecond = 1'000'000;

std::int64_t now() {
    timespec time{};
    ::clock_gettime(CLOCK_MONOTONIC, &time);
    return std::int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
}

} // namespace

GuardLoop::GuardLoop(int socket, int group, GuardPage& page, KnownStarts& known)
    : m_socket(socket), m_group(group), m_page(page), m_known(known) {}

void GuardLoop::run() {
    for (;;) {
        std::array<pollfd, 2> waitFor{pollfd{m_socket, POLLIN, 0}, pollfd{m_group, POLLIN, 0}};
        if (::poll(waitFor.data(), waitFor.size(), pollTime()) < 0 && errno != EINTR) {
            return;
        }
        // Answers first: they let programs run.
        if ((waitFor[0].revents != 0 && !takeOrders()) ||
            (waitFor[1].revents != 0 && !takeEvents())) {
            return;
        }
        expire();
    }
}

int GuardLoop::pollTime() const {
    const std::int64_t next = m_waiting.nextDeadline();
    if (next == WaitingStarts::never) {
        return -1;
    }
    const std::int64_t left = next - now();
    return left <= 0 ? 0 : static_cast<int>(left / kMillisecond + 1);
}

bool GuardLoop::takeEvents() {
    // Not more at once than there may wait: each comes with a descriptor.
    alignas(fanotify_event_metadata) std::array<char, 32 * sizeof(fanotify_event_metadata)> buffer;
    ssize_t left = ::read(m_group, buffer.data(), buffer.size());
    if (left < 0) {
        return errno == EAGAIN || errno == EINTR || errno == EMFILE || errno == ENFILE ||
               errno == ETXTBSY || errno == EPERM;
    }
    const auto* event =
        static_cast<const fanotify_event_metadata*>(static_cast<const void*>(buffer.data()));
    for (; FAN_EVENT_OK(event, left); event = FAN_EVENT_NEXT(event, left)) {
        if (event->fd < 0) {
            continue; // an overflow: of permission events there is none
        }
        if ((event->mask & FAN_OPEN_EXEC_PERM) != 0) {
            takeStart(*event);
        } else {
            ::close(event->fd);
        }
    }
    return true;
}

void GuardLoop::takeStart(const fanotify_event_metadata& event) {
    struct stat status {};
    if (m_asleep || isExempt(event.pid) || ::fstat(event.fd, &status) != 0) {
        m_page.unasked.fetch_add(1, std::memory_order_relaxed);
        respond(event.fd, true);
        return;
    }
    const StartKey key = startKeyOf(status);
    if (m_known.contains(key)) {
        m_page.known.fetch_add(1, std::memory_order_relaxed);
        respond(event.fd, true);
        return;
    }
    std::uint64_t token = m_waiting.tokenOf(key);
    const bool mayWait = m_missed < patience && !m_waiting.isFull();
    if (!mayWait || (token == 0 && !ask(event.fd, token = ++m_lastToken))) {
        m_page.unasked.fetch_add(1, std::memory_order_relaxed);
        respond(event.fd, true);
        return;
    }
    m_waiting.add({event.fd, token, now() + deadline, key});
}

bool GuardLoop::isExempt(pid_t process) const {
    return std::find(m_exempt.begin(), m_exempt.end(), process) != m_exempt.end();
}

bool GuardLoop::ask(int descriptor, std::uint64_t token) {
    const GuardNote question{GuardNote::Kind::Question, 0, token};
    if (!sendMessage(m_socket, &question, sizeof question, descriptor)) {
        return false;
    }
    m_page.asked.fetch_add(1, std::memory_order_relaxed);
    return true;
}

bool GuardLoop::takeOrders() {
    // A few at a time: programs wait meanwhile.
    for (int count = 0; count < 64; ++count) {
        GuardOrder order;
        UniqueFd passed;
        switch (receiveMessage(m_socket, &order, sizeof order, passed)) {
        case Received::Message:
            obey(order, std::move(passed));
            break;
        case Received::Nothing:
            return true;
        case Received::End:
            return false;
        }
    }
    return true;
}

void GuardLoop::obey(const GuardOrder& order, UniqueFd passed) {
    m_missed = 0;
    m_page.silent.store(false, std::memory_order_relaxed);
    switch (order.kind) {
    case GuardOrder::Kind::Answer:
        takeAnswer(order);
        break;
    case GuardOrder::Kind::Forget:
        m_generation = order.generation;
        m_known.clear();
        break;
    case GuardOrder::Kind::Mark: {
        const int marked = ::fanotify_mark(m_group, FAN_MARK_ADD | FAN_MARK_FILESYSTEM,
                                           FAN_OPEN_EXEC_PERM, passed.get(), nullptr);
        note({GuardNote::Kind::Marked, marked == 0 ? 0 : errno, order.token});
        break;
    }
    case GuardOrder::Kind::Release:
        ::fanotify_mark(m_group, FAN_MARK_FLUSH | FAN_MARK_FILESYSTEM, 0, AT_FDCWD, "/");
        letAllRun();
        break;
    case GuardOrder::Kind::Exempt:
        m_exempt = order.processes;
        break;
    case GuardOrder::Kind::Sleep:
        m_asleep = order.flag;
        if (m_asleep) {
            letAllRun();
        }
        break;
    case GuardOrder::Kind::Ping:
        m_page.ponged.store(order.token, std::memory_order_relaxed);
        break;
    }
}

void GuardLoop::takeAnswer(const GuardOrder& order) {
    if (const StartKey* key = m_waiting.keyOf(order.token);
        key != nullptr && order.remember && !order.refuse && order.generation == m_generation) {
        m_known.insert(*key);
    }
    for (WaitingStarts::Start start = m_waiting.takeAnswered(order.token); start.descriptor >= 0;
         start = m_waiting.takeAnswered(order.token)) {
        if (order.refuse) { // counted first: who is answered may look
            m_page.refused.fetch_add(1, std::memory_order_relaxed);
        }
        respond(start.descriptor, !order.refuse);
    }
}

void GuardLoop::expire() {
    const std::int64_t time = now();
    bool missed = false;
    for (WaitingStarts::Start start = m_waiting.takeExpired(time); start.descriptor >= 0;
         start = m_waiting.takeExpired(time)) {
        m_page.timedOut.fetch_add(1, std::memory_order_relaxed);
        respond(start.descriptor, true);
        missed = true;
    }
    if (missed && ++m_missed >= patience) {
        m_page.silent.store(true, std::memory_order_relaxed);
        letAllRun();
    }
}

void GuardLoop::letAllRun() {
    for (WaitingStarts::Start start = m_waiting.takeAny(); start.descriptor >= 0;
         start = m_waiting.takeAny()) {
        m_page.unasked.fetch_add(1, std::memory_order_relaxed);
        respond(start.descriptor, true);
    }
}

void GuardLoop::respond(int descriptor, bool allow) {
    const fanotify_response response{descriptor,
                                     static_cast<std::uint32_t>(allow ? FAN_ALLOW : FAN_DENY)};
    while (::write(m_group, &response, sizeof response) < 0 && errno == EINTR) {
    }
    ::close(descriptor);
}

void GuardLoop::note(const GuardNote& note) {
    (void)sendMessage(m_socket, &note, sizeof note, -1);
}

} // namespace korvale::agent
