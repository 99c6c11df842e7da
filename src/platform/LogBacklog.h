#pragma once

#include "core/base/LogSink.h"

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <thread>

namespace korvale {

/// Log lines that could not be written at once. A thread, which lives no longer than there are any,
/// writes them in their order. Any thread.
class LogBacklog {
public:
    using Write = std::function<void(LogLevel, const QByteArray&)>;

    /// `write` writes one line; it is called by the backlog's thread, and owns what it needs.
    /// Beyond `capacity` bytes of lines that wait, further ones are counted instead of kept.
    LogBacklog(Write write, std::size_t capacity);
    ~LogBacklog();
    LogBacklog(const LogBacklog&) = delete;
    LogBacklog& operator=(const LogBacklog&) = delete;

    /// True when no line waits or is being written.
    [[nodiscard]] bool isEmpty() const;
    void add(LogLevel level, const QByteArray& line);

    /// Returns when all lines are written. None may be added any more.
    void finish();
    /// The same, but a thread that needs longer than `patience` for one line is left behind with
    /// what it still has. False then.
    bool finishUnlessStuck(std::chrono::milliseconds patience);

private:
    struct Work;

    void startWriting();

    std::shared_ptr<Work> m_work; ///< the thread's too, which may be left behind
    std::thread m_thread;
};

} // namespace korvale
