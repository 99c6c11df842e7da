#pragma once

#include <QByteArray>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <gtest/gtest.h>
#include <iterator>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <vector>

namespace korvale {

/// Where a local socket binds or connects to.
class LocalAddress {
public:
    explicit LocalAddress(const QByteArray& path) {
        m_address.sun_family = AF_UNIX;
        std::copy(path.begin(), path.end(), std::begin(m_address.sun_path));
    }
    [[nodiscard]] bool bind(int descriptor) const {
        return ::bind(descriptor, generic(), sizeof m_address) == 0;
    }
    [[nodiscard]] bool connect(int descriptor) const {
        return ::connect(descriptor, generic(), sizeof m_address) == 0;
    }

private:
    [[nodiscard]] const sockaddr* generic() const {
        const void* const any = &m_address;
        return static_cast<const sockaddr*>(any);
    }
    sockaddr_un m_address{};
};

/// A local socket at `path` that takes connections, until its end or close().
class ListeningSocket {
public:
    explicit ListeningSocket(const QByteArray& path)
        : m_path(path), m_descriptor(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        EXPECT_TRUE(LocalAddress(path).bind(m_descriptor));
        EXPECT_EQ(listen(m_descriptor, 16), 0);
    }
    ~ListeningSocket() { close(); }
    ListeningSocket(const ListeningSocket&) = delete;
    ListeningSocket& operator=(const ListeningSocket&) = delete;

    [[nodiscard]] int descriptor() const { return m_descriptor; }

    void close() {
        if (m_descriptor < 0) {
            return;
        }
        ::close(m_descriptor);
        unlink(m_path.constData());
        m_descriptor = -1;
    }

private:
    QByteArray m_path;
    int m_descriptor;
};

/// Clients whom the socket at `path` does not take in, so many that no more can come.
class WaitingClients {
public:
    explicit WaitingClients(const QByteArray& path) {
        const LocalAddress address(path);
        do {
            m_clients.push_back(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
        } while (address.connect(m_clients.back()));
        EXPECT_EQ(errno, EAGAIN);
    }
    ~WaitingClients() {
        for (const int client : m_clients) {
            close(client);
        }
    }
    WaitingClients(const WaitingClients&) = delete;
    WaitingClients& operator=(const WaitingClients&) = delete;

    /// How many are in the queue; the last one did not get in.
    [[nodiscard]] std::size_t count() const { return m_clients.size() - 1; }

private:
    std::vector<int> m_clients;
};

} // namespace korvale
