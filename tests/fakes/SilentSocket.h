#pragma once

#include <QByteArray>

#include <algorithm>
#include <gtest/gtest.h>
#include <iterator>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace korvale {

/// A bus that hangs: takes connections at `path` and never says a word. hangUp() ends it.
class SilentSocket {
public:
    explicit SilentSocket(const QByteArray& path)
        : m_path(path), m_listener(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        std::copy(path.begin(), path.end(), std::begin(address.sun_path));
        const void* const generic = &address;
        EXPECT_EQ(bind(m_listener, static_cast<const sockaddr*>(generic), sizeof address), 0);
        EXPECT_EQ(listen(m_listener, 16), 0);
    }
    ~SilentSocket() { hangUp(); }
    SilentSocket(const SilentSocket&) = delete;
    SilentSocket& operator=(const SilentSocket&) = delete;

    void hangUp() {
        if (m_listener < 0) {
            return;
        }
        close(m_listener);
        unlink(m_path.constData());
        m_listener = -1;
    }

private:
    QByteArray m_path;
    int m_listener;
};

} // namespace korvale
