#pragma once

#include "fakes/ListeningSocket.h"

#include <QByteArray>

#include <array>
#include <atomic>
#include <gtest/gtest.h>
#include <map>
#include <poll.h>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace korvale {

/// A bus that lets its clients in (AUTH) and then hangs: what they send from BEGIN on gets no word.
/// On a thread of its own, so that a client that blocks finds out.
class HalfAliveBus {
public:
    explicit HalfAliveBus(const QByteArray& path) : m_listener(path) {
        EXPECT_EQ(pipe(m_end.data()), 0);
        m_thread = std::thread([this] { serve(); });
    }
    ~HalfAliveBus() {
        close(m_end[1]); // wakes the thread
        m_thread.join();
        close(m_end[0]);
    }
    HalfAliveBus(const HalfAliveBus&) = delete;
    HalfAliveBus& operator=(const HalfAliveBus&) = delete;

    /// How many clients have said BEGIN so far.
    [[nodiscard]] int letIn() const { return m_letIn; }

private:
    void serve() {
        std::vector<pollfd> watched{{m_end[0], POLLIN, 0}, {m_listener.descriptor(), POLLIN, 0}};
        while (::poll(watched.data(), watched.size(), -1) > 0 && watched[0].revents == 0) {
            for (std::size_t i = 2; i < watched.size(); ++i) {
                if (watched[i].revents != 0 && !read(watched[i].fd)) {
                    close(watched[i].fd);
                    watched[i].fd = -1;
                }
            }
            if (watched[1].revents != 0) {
                watched.push_back(
                    {accept4(m_listener.descriptor(), nullptr, nullptr, SOCK_CLOEXEC), POLLIN, 0});
            }
            std::erase_if(watched, [](const pollfd& entry) { return entry.fd < 0; });
        }
        for (std::size_t i = 2; i < watched.size(); ++i) {
            close(watched[i].fd);
        }
    }

    bool read(int client) {
        std::array<char, 4096> bytes{};
        const ssize_t length = recv(client, bytes.data(), bytes.size(), 0);
        if (length <= 0) {
            return false;
        }
        QByteArray& text = m_texts[client];
        text.append(bytes.data(), length);
        for (qsizetype end = text.indexOf("\r\n"); end >= 0; end = text.indexOf("\r\n")) {
            const QByteArray line = text.first(end);
            text.remove(0, end + 2);
            if (line.endsWith("BEGIN")) {
                ++m_letIn;
            }
            const QByteArray answer = line.contains("AUTH") ? "OK 00112233445566778899aabbccddeeff"
                                      : line.startsWith("NEGOTIATE") ? "ERROR"
                                                                     : "";
            if (!answer.isEmpty()) {
                send(client, (answer + "\r\n").constData(), std::size_t(answer.size()) + 2,
                     MSG_NOSIGNAL);
            }
        }
        return true;
    }

    ListeningSocket m_listener;
    std::array<int, 2> m_end{};
    std::map<int, QByteArray> m_texts; ///< what each client has said and is not a line yet
    std::atomic<int> m_letIn = 0;
    std::thread m_thread;
};

} // namespace korvale
