#include "agent/fakes/ScriptedClamd.h"

#include <array>
#include <cstring>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace korvale::agent {

struct ScriptedClamd::Connection {
    UniqueFd socket;
    std::thread thread;
    std::uint32_t number = 0;
    bool session = false;
    bool fileFollows = false;
    std::string begun;
    std::list<UniqueFd> passed;
};

namespace {

sockaddr_un addressOf(const std::string& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::memcpy(address.sun_path, path.data(), std::min(path.size(), sizeof address.sun_path - 1));
    return address;
}

std::string headOf(int file) {
    std::array<char, 1024> buffer{};
    const ssize_t count = ::pread(file, buffer.data(), buffer.size(), 0);
    return count > 0 ? std::string(buffer.data(), static_cast<std::size_t>(count)) : std::string();
}

/// Bytes read; 0 or less at the end.
ssize_t receive(int socket, std::array<char, 4096>& buffer, std::list<UniqueFd>& passed) {
    iovec part{buffer.data(), buffer.size()};
    alignas(cmsghdr) std::array<char, CMSG_SPACE(16 * sizeof(int))> control{};
    msghdr message{};
    message.msg_iov = &part;
    message.msg_iovlen = 1;
    message.msg_control = control.data();
    message.msg_controllen = control.size();
    const ssize_t count = ::recvmsg(socket, &message, MSG_CMSG_CLOEXEC);
    if (count <= 0) {
        return count;
    }
    for (cmsghdr* header = CMSG_FIRSTHDR(&message); header != nullptr;
         header = CMSG_NXTHDR(&message, header)) {
        int file = -1;
        std::memcpy(&file, CMSG_DATA(header), sizeof file);
        passed.emplace_back(file);
    }
    return count;
}

} // namespace

ScriptedClamd::ScriptedClamd(std::string socketPath) : m_socketPath(std::move(socketPath)) {
    onFile([](const Asked& asked) { return says(asked, "OK"); });
    listen();
}

ScriptedClamd::~ScriptedClamd() {
    stop();
}

ScriptedClamd::Reaction ScriptedClamd::says(const Asked& asked, const std::string& what) {
    return {std::to_string(asked.number) + ": fd[9]: " + what + '\0', false, false};
}

void ScriptedClamd::onFile(Behaviour behaviour) {
    const std::lock_guard lock(m_mutex);
    m_behaviour = std::move(behaviour);
}

void ScriptedClamd::setVersion(const std::string& version) {
    const std::lock_guard lock(m_mutex);
    m_version = version;
}

void ScriptedClamd::listen() {
    m_ending = false;
    m_listener.reset(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    const sockaddr_un address = addressOf(m_socketPath);
    ::unlink(m_socketPath.c_str());
    const auto* const general = static_cast<const sockaddr*>(static_cast<const void*>(&address));
    ASSERT_EQ(::bind(m_listener.get(), general, sizeof address), 0);
    ASSERT_EQ(::listen(m_listener.get(), 16), 0);
    m_acceptor = std::thread([this] { acceptAll(); });
}

void ScriptedClamd::stop() {
    hangUpAll();
    if (m_acceptor.joinable()) {
        m_acceptor.join();
    }
    for (auto& connection : m_open) {
        connection->thread.join();
    }
    m_open.clear();
    m_listener.reset();
}

void ScriptedClamd::hangUpAll() {
    m_ending = true;
    ::shutdown(m_listener.get(), SHUT_RDWR);
    const std::lock_guard lock(m_mutex);
    for (auto& connection : m_open) {
        ::shutdown(connection->socket.get(), SHUT_RDWR);
    }
}

void ScriptedClamd::acceptAll() {
    while (!m_ending) {
        UniqueFd socket(::accept4(m_listener.get(), nullptr, nullptr, SOCK_CLOEXEC));
        if (!socket || m_ending) {
            return;
        }
        ++m_connections;
        const std::lock_guard lock(m_mutex);
        Connection& connection = *m_open.emplace_back(std::make_unique<Connection>());
        connection.socket = std::move(socket);
        connection.thread = std::thread([this, &connection] { serve(connection); });
    }
}

void ScriptedClamd::serve(Connection& connection) {
    std::array<char, 4096> buffer{};
    bool goesOn = true;
    while (goesOn && !m_ending) {
        const ssize_t count = receive(connection.socket.get(), buffer, connection.passed);
        if (count <= 0) {
            break;
        }
        for (ssize_t index = 0; index < count && goesOn; ++index) {
            const char byte = buffer.at(static_cast<std::size_t>(index));
            if (connection.fileFollows) {
                connection.fileFollows = false;
                UniqueFd passed;
                if (!connection.passed.empty()) {
                    passed = std::move(connection.passed.front());
                    connection.passed.pop_front();
                }
                goesOn = file(connection, std::move(passed));
            } else if (byte != '\0') {
                connection.begun += byte;
            } else {
                goesOn = command(connection, std::exchange(connection.begun, std::string()));
            }
        }
    }
    ::shutdown(connection.socket.get(), SHUT_RDWR);
}

bool ScriptedClamd::command(Connection& connection, const std::string& name) {
    if (name == "zIDSESSION") {
        connection.session = true;
        return true;
    }
    if (name == "zEND") {
        return false;
    }
    if (m_muted) {
        connection.fileFollows = name == "zFILDES";
        return true;
    }
    if (name == "zVERSION" || name == "zPING") {
        const std::lock_guard lock(m_mutex);
        return react(connection, {(name == "zPING" ? "PONG" : m_version) + '\0', true, false});
    }
    if (name == "zRELOAD") {
        ++m_reloads;
        return react(connection, {std::string("RELOADING") + '\0', true, false});
    }
    connection.fileFollows = name == "zFILDES";
    return connection.fileFollows;
}

bool ScriptedClamd::file(Connection& connection, UniqueFd passed) {
    ++m_files;
    const Asked asked{++connection.number, headOf(passed.get())};
    if (m_muted) {
        return true;
    }
    Behaviour behaviour;
    {
        const std::lock_guard lock(m_mutex);
        behaviour = m_behaviour;
    }
    return react(connection, behaviour(asked));
}

bool ScriptedClamd::react(Connection& connection, const Reaction& reaction) {
    if (!reaction.bytes.empty()) {
        static_cast<void>(::send(connection.socket.get(), reaction.bytes.data(),
                                 reaction.bytes.size(), MSG_NOSIGNAL));
    }
    if (reaction.die) {
        hangUpAll();
    }
    return !reaction.close && !reaction.die;
}

} // namespace korvale::agent
