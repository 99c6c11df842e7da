#pragma once

#include "fakes/TestFolder.h"

#include <QByteArrayList>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace korvale::agent {

/// In the place of the service manager: takes what the agent tells it.
class NotifySocket {
public:
    NotifySocket() : m_descriptor(::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)) {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        const QByteArray name = path();
        std::copy(name.begin(), name.end(), address.sun_path);
        const auto* place = static_cast<const sockaddr*>(static_cast<const void*>(&address));
        EXPECT_EQ(::bind(m_descriptor, place, sizeof address), 0);
    }
    ~NotifySocket() { ::close(m_descriptor); }
    NotifySocket(const NotifySocket&) = delete;
    NotifySocket& operator=(const NotifySocket&) = delete;

    /// The value of NOTIFY_SOCKET.
    [[nodiscard]] QByteArray path() const {
        return QFile::encodeName(m_folder.path(QStringLiteral("notify")));
    }
    /// All that was told so far, oldest first.
    const QByteArrayList& told() {
        QByteArray message(4096, '\0');
        for (;;) {
            const ssize_t got =
                ::recv(m_descriptor, message.data(), static_cast<size_t>(message.size()), 0);
            if (got < 0) {
                return m_told;
            }
            m_told.append(message.left(got));
        }
    }

private:
    TestFolder m_folder;
    int m_descriptor;
    QByteArrayList m_told;
};

} // namespace korvale::agent
