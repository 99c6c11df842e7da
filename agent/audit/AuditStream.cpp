#include "agent/audit/AuditStream.h"

#include <QTimer>

#include <arpa/inet.h>
#include <array>
#include <cerrno>
#include <cstring>
#include <linux/audit.h>
#include <linux/filter.h>
#include <linux/netlink.h>
#include <sys/socket.h>

namespace korvale::agent {
namespace {

constexpr std::size_t kBuffer = 16384; // the kernel's longest record has 8970 bytes

/// Lets through the two types of record that tell of violations.
int attachFilter(int socket) {
    constexpr auto typeAt = static_cast<std::uint32_t>(offsetof(nlmsghdr, nlmsg_type));
    // The filter reads numbers as networks send them, and the header has them as the machine does.
    const std::uint32_t seccomp = htons(AUDIT_SECCOMP);
    const std::uint32_t avc = htons(AUDIT_AVC);
    std::array<sock_filter, 5> steps{sock_filter{BPF_LD | BPF_H | BPF_ABS, 0, 0, typeAt},
                                     sock_filter{BPF_JMP | BPF_JEQ | BPF_K, 1, 0, seccomp},
                                     sock_filter{BPF_JMP | BPF_JEQ | BPF_K, 0, 1, avc},
                                     sock_filter{BPF_RET | BPF_K, 0, 0, 0xFFFFFFFFU},
                                     sock_filter{BPF_RET | BPF_K, 0, 0, 0}};
    const sock_fprog filter{steps.size(), steps.data()};
    return ::setsockopt(socket, SOL_SOCKET, SO_ATTACH_FILTER, &filter, sizeof filter);
}

UniqueFd openStream() {
    UniqueFd stream(::socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC | SOCK_NONBLOCK, NETLINK_AUDIT));
    sockaddr_nl group{};
    group.nl_family = AF_NETLINK;
    group.nl_groups = 1U << (AUDIT_NLGRP_READLOG - 1);
    const void* const address = &group;
    if (stream &&
        (attachFilter(stream.get()) != 0 ||
         ::bind(stream.get(), static_cast<const sockaddr*>(address), sizeof group) != 0)) {
        const int error = errno;
        stream.reset();
        errno = error;
    }
    return stream;
}

} // namespace

AuditStream::AuditStream(QObject* parent) : QObject(parent) {}

void AuditStream::listen(bool on) {
    if (on && hears()) {
        return;
    }
    close();
    m_problem.clear();
    if (!on) {
        return;
    }
    m_socket = openStream();
    if (!m_socket) {
        fail(errno);
        return;
    }
    m_notifier = std::make_unique<QSocketNotifier>(m_socket.get(), QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &AuditStream::take);
}

void AuditStream::fail(int error) {
    m_problem = std::string("The kernel does not tell of killed and denied processes: ") +
                std::strerror(error) + '.';
    close();
}

void AuditStream::close() {
    if (m_notifier) {
        m_notifier->setEnabled(false);
        m_notifier.release()->deleteLater(); // it may be what called
    }
    m_socket.reset();
}

void AuditStream::take() {
    // Whoever hears of a violation may end it.
    for (int count = 0; count < mostAtOnce && hears(); ++count) {
        const Taken taken = takeOne();
        if (taken == Taken::Failure) {
            fail(errno);
        }
        if (taken != Taken::Record) {
            return;
        }
    }
    if (!hears()) {
        return;
    }
    m_notifier->setEnabled(false);
    QTimer::singleShot(rest, m_notifier.get(),
                       [notifier = m_notifier.get()] { notifier->setEnabled(true); });
}

AuditStream::Taken AuditStream::takeOne() {
    alignas(nlmsghdr) std::array<char, kBuffer> buffer; // NOLINT(*-member-init): what came counts
    sockaddr_nl from{};
    socklen_t length = sizeof from;
    void* const address = &from;
    const ssize_t got = ::recvfrom(m_socket.get(), buffer.data(), buffer.size(), 0,
                                   static_cast<sockaddr*>(address), &length);
    if (got < 0 && errno == ENOBUFS) {
        ++m_lost; // the kernel's queue was full
        return Taken::Record;
    }
    if (got < 0) {
        return errno == EAGAIN || errno == EINTR ? Taken::Nothing : Taken::Failure;
    }
    // Only the kernel is number 0; a privileged process could send to the group, too.
    if (from.nl_pid == 0) {
        judge({buffer.data(), static_cast<std::size_t>(got)});
    }
    return Taken::Record;
}

void AuditStream::judge(std::string_view message) {
    nlmsghdr header{};
    if (message.size() < NLMSG_HDRLEN) {
        return;
    }
    std::memcpy(&header, message.data(), sizeof header);
    // To its end, not to the length in the header: kernels do not agree what that counts.
    const auto record = parseAuditRecord(header.nlmsg_type, message.substr(NLMSG_HDRLEN));
    if (!record) {
        ++m_lost;
        return;
    }
    if (const std::optional<Violation> violation = violationOf(*record)) {
        Q_EMIT violated(*violation);
    }
}

} // namespace korvale::agent
