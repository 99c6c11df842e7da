#include "agent/engine/LocalSocket.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <sys/socket.h>
#include <sys/un.h>
#include <thread>

namespace korvale::agent {
namespace {

using namespace std::chrono_literals;

int connectTo(int descriptor, const sockaddr_un& address) {
    // The sockets interface wants another type than the one it is given.
    const auto* const general = static_cast<const sockaddr*>(static_cast<const void*>(&address));
    return ::connect(descriptor, general, sizeof address) == 0 ? 0 : errno;
}

} // namespace

UniqueFd connectLocal(const std::string& path, std::chrono::steady_clock::time_point deadline,
                      std::string& error) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.empty() || path.size() >= sizeof address.sun_path) {
        error = "the path of the socket is empty or too long";
        return UniqueFd();
    }
    std::memcpy(address.sun_path, path.data(), path.size());
    UniqueFd descriptor(::socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
    if (!descriptor) {
        error = std::string("no socket: ") + std::strerror(errno);
        return UniqueFd();
    }
    int result = 0;
    while ((result = connectTo(descriptor.get(), address)) == EAGAIN || result == EINTR) {
        if (std::chrono::steady_clock::now() >= deadline) {
            error = path + ": it accepts no connection";
            return UniqueFd();
        }
        std::this_thread::sleep_for(20ms);
    }
    if (result != 0) {
        error = path + ": " + std::strerror(result);
        return UniqueFd();
    }
    return descriptor;
}

int pollTime(std::chrono::steady_clock::time_point deadline, std::chrono::milliseconds most) {
    const auto left =
        std::chrono::ceil<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
    return static_cast<int>(std::clamp<std::chrono::milliseconds>(left, 0ms, most).count());
}

} // namespace korvale::agent
