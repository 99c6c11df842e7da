#include "agent/engine/ClamdCommand.h"

#include "agent/engine/LocalSocket.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <poll.h>
#include <sys/socket.h>

namespace korvale::agent {
namespace {

constexpr std::size_t kLongestAnswer = 1024;

/// Text up to the NUL; no value when the time is over or the connection ends before it.
std::optional<std::string> readAnswer(int socket, std::chrono::steady_clock::time_point deadline) {
    std::string text;
    std::array<char, 256> buffer{};
    while (text.size() <= kLongestAnswer) {
        pollfd entry{socket, POLLIN, 0};
        const int ready = ::poll(&entry, 1, pollTime(deadline, std::chrono::milliseconds(60000)));
        if (ready == 0) {
            return std::nullopt;
        }
        const ssize_t count = ::recv(socket, buffer.data(), buffer.size(), MSG_DONTWAIT);
        if (count == 0 || (count < 0 && errno != EAGAIN && errno != EINTR)) {
            return std::nullopt;
        }
        text.append(buffer.data(), count > 0 ? static_cast<std::size_t>(count) : 0);
        if (const std::size_t end = text.find('\0'); end != std::string::npos) {
            text.resize(end);
            return text;
        }
    }
    return std::nullopt;
}

} // namespace

std::optional<std::string> askClamd(const std::string& socketPath, std::string_view command,
                                    std::chrono::milliseconds patience, std::string& error,
                                    pid_t* peer) {
    const auto deadline = std::chrono::steady_clock::now() + patience;
    const UniqueFd socket = connectLocal(socketPath, deadline, error);
    if (!socket) {
        return std::nullopt;
    }
    ucred credentials{};
    socklen_t size = sizeof credentials;
    if (peer != nullptr &&
        ::getsockopt(socket.get(), SOL_SOCKET, SO_PEERCRED, &credentials, &size) == 0) {
        *peer = credentials.pid;
    }
    std::string message("z");
    message.append(command).push_back('\0');
    if (::send(socket.get(), message.data(), message.size(), MSG_NOSIGNAL | MSG_DONTWAIT) !=
        static_cast<ssize_t>(message.size())) {
        error = socketPath + ": " + std::strerror(errno);
        return std::nullopt;
    }
    std::optional<std::string> answer = readAnswer(socket.get(), deadline);
    if (!answer) {
        error = socketPath + ": clamd does not answer";
    }
    return answer;
}

} // namespace korvale::agent
