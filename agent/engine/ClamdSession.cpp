#include "agent/engine/ClamdSession.h"

#include "agent/engine/LocalSocket.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <string_view>
#include <sys/socket.h>

namespace korvale::agent {
namespace {

// Each with its NUL. The second NUL is the one byte that carries the descriptor.
constexpr std::string_view kBegin("zIDSESSION\0", 11);
constexpr std::string_view kAsk("zFILDES\0\0", 9);
constexpr std::string_view kEnd("zEND\0", 5);

/// Bytes sent, or the negative error number.
ssize_t sendWithFile(int socket, std::string_view bytes, int file) {
    iovec part{const_cast<char*>(bytes.data()), bytes.size()};
    alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof(int))> control{};
    msghdr message{};
    message.msg_iov = &part;
    message.msg_iovlen = 1;
    message.msg_control = control.data();
    message.msg_controllen = control.size();
    cmsghdr* const header = CMSG_FIRSTHDR(&message);
    header->cmsg_level = SOL_SOCKET;
    header->cmsg_type = SCM_RIGHTS;
    header->cmsg_len = CMSG_LEN(sizeof(int));
    std::memcpy(CMSG_DATA(header), &file, sizeof file);
    while (true) {
        const ssize_t count = ::sendmsg(socket, &message, MSG_NOSIGNAL | MSG_DONTWAIT);
        if (count >= 0 || errno != EINTR) {
            return count >= 0 ? count : -errno;
        }
    }
}

bool sendWhole(int socket, std::string_view bytes) {
    return ::send(socket, bytes.data(), bytes.size(), MSG_NOSIGNAL | MSG_DONTWAIT) ==
           static_cast<ssize_t>(bytes.size());
}

} // namespace

std::unique_ptr<ClamdSession> ClamdSession::open(const std::string& socketPath,
                                                 std::chrono::steady_clock::time_point deadline,
                                                 std::string& error) {
    UniqueFd socket = connectLocal(socketPath, deadline, error);
    if (!socket) {
        return nullptr;
    }
    if (!sendWhole(socket.get(), kBegin)) {
        error = socketPath + ": " + std::strerror(errno);
        return nullptr;
    }
    return std::unique_ptr<ClamdSession>(new ClamdSession(std::move(socket)));
}

ClamdSession::~ClamdSession() {
    if (m_fault.empty()) {
        static_cast<void>(sendWhole(m_socket.get(), kEnd));
    }
}

ClamdSession::Sent ClamdSession::ask(int file, std::uint32_t& number) {
    const ssize_t count = sendWithFile(m_socket.get(), kAsk, file);
    if (count == static_cast<ssize_t>(kAsk.size())) {
        number = ++m_lastNumber;
        m_unanswered.insert(number);
        return Sent::Yes;
    }
    switch (count) {
    case -EAGAIN:
    case -ENOBUFS:
    case -ETOOMANYREFS:
        return Sent::Full;
    case -EBADF:
    case -EINVAL:
        return Sent::BadFile;
    default: // half a command was taken, or nobody listens any more
        over(count < 0 ? std::strerror(static_cast<int>(-count)) : "half a command was sent");
        return Sent::Broken;
    }
}

bool ClamdSession::receive(std::vector<ClamdReply>& replies) {
    std::array<char, 4096> buffer{};
    while (true) {
        const ssize_t count = ::recv(m_socket.get(), buffer.data(), buffer.size(), MSG_DONTWAIT);
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0) {
            return errno == EAGAIN ? true : over(std::strerror(errno));
        }
        if (count == 0) {
            return over("clamd closed the session");
        }
        const auto length = static_cast<std::size_t>(count);
        if (!accept(std::string_view(buffer.data(), length), replies)) {
            return false;
        }
        if (length < buffer.size()) {
            return true;
        }
    }
}

bool ClamdSession::accept(std::string_view bytes, std::vector<ClamdReply>& replies) {
    std::vector<ClamdReply> fresh;
    const bool whole = m_replies.feed(bytes, fresh);
    for (ClamdReply& reply : fresh) {
        if (m_unanswered.erase(reply.number) == 0) {
            return over("a reply to nothing: " + reply.text.substr(0, 80));
        }
        replies.push_back(std::move(reply));
    }
    return whole || over("not a reply: " + m_replies.fault());
}

bool ClamdSession::over(std::string fault) {
    if (m_fault.empty()) {
        m_fault = fault.empty() ? "over" : std::move(fault);
    }
    return false;
}

void ClamdSession::hangUp() {
    ::shutdown(m_socket.get(), SHUT_RDWR);
}

} // namespace korvale::agent
