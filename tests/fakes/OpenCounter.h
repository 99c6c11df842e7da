#pragma once

#include <QFile>
#include <QString>

#include <array>
#include <cstddef>
#include <cstring>
#include <stdexcept>
#include <sys/inotify.h>
#include <unistd.h>

namespace korvale::fakes {

/// Counts how often a file is opened, by whomever; the kernel tells.
class OpenCounter {
public:
    explicit OpenCounter(const QString& path) : m_notify(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {
        // Closing is watched too: the kernel makes one event of two equal ones in a row.
        if (inotify_add_watch(m_notify, QFile::encodeName(path).constData(), IN_OPEN | IN_CLOSE) <
            0) {
            throw std::runtime_error("the file cannot be watched");
        }
    }
    OpenCounter(const OpenCounter&) = delete;
    OpenCounter& operator=(const OpenCounter&) = delete;
    ~OpenCounter() { close(m_notify); }

    /// So far.
    [[nodiscard]] int count() const {
        std::array<char, 4096> events{};
        for (ssize_t size = 0; (size = read(m_notify, events.data(), events.size())) > 0;) {
            for (std::size_t at = 0; at < static_cast<std::size_t>(size);) {
                inotify_event event{};
                std::memcpy(&event, events.data() + at, sizeof event);
                at += sizeof event + event.len;
                m_count += (event.mask & IN_OPEN) != 0 ? 1 : 0;
            }
        }
        return m_count;
    }

private:
    int m_notify;
    mutable int m_count = 0;
};

} // namespace korvale::fakes
