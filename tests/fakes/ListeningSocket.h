#pragma once

#include <QByteArray>

#include <algorithm>
#include <gtest/gtest.h>
#include <iterator>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace korvale {

/// A local socket at `path` that takes connections, until its end or close().
class ListeningSocket {
public:
    explicit ListeningSocket(const QByteArray& path)
        : m_path(path), m_descriptor(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        std::copy(path.begin(), path.end(), std::begin(address.sun_path));
        const void* const generic = &address;
        EXPECT_EQ(bind(m_descriptor, static_cast<const sockaddr*>(generic), sizeof address), 0);
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

} // namespace korvale
