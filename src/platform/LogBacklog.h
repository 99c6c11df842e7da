#pragma once

#include "core/base/LogSink.h"

#include <cstddef>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace korvale {

/// Log lines that could not be written at once. A thread, which lives no longer than there are any,
/// writes them in their order. Any thread.
class LogBacklog {
public:
    using Write = std::function<void(LogLevel, const QByteArray&)>;

    /// `write` writes one line; it is called by the backlog's thread. Beyond `capacity` bytes of
    /// lines that wait, further ones are counted instead of kept.
    LogBacklog(Write write, std::size_t capacity);
    ~LogBacklog();
    LogBacklog(const LogBacklog&) = delete;
    LogBacklog& operator=(const LogBacklog&) = delete;

    /// True when no line waits or is being written.
    [[nodiscard]] bool isEmpty() const;
    void add(LogLevel level, const QByteArray& line);
    /// Returns when all lines are written. None may be added any more.
    void finish();

private:
    /// Many lines in two blocks of memory, which go back to the system as a whole.
    struct Lines {
        struct Place {
            LogLevel level;
            std::size_t size;
        };
        std::vector<Place> places;
        std::string texts; ///< each ends in a NUL
    };

    void startWriting();
    void writeAll();
    void write(const Lines& lines) const;
    Lines takeLines();

    const Write m_write;
    const std::size_t m_capacity;
    mutable std::mutex m_mutex; ///< of all below
    Lines m_lines;
    std::size_t m_lost = 0; ///< lines that found no room since the last that did
    std::thread m_thread;
    bool m_isWriting = false;
};

} // namespace korvale
