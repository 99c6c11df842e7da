#pragma once

#include "agent/scan/TreeWalk.h"

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <mutex>
#include <optional>

namespace korvale::agent {

/// Open files on their way from the walk to those who judge them; few, as each is a descriptor.
class FileQueue {
public:
    explicit FileQueue(std::size_t capacity) : m_capacity(capacity) {}

    /// Waits for room. After close() the file is dropped.
    void push(WalkedFile file);
    /// Waits for a file. No value: closed, and nothing is left.
    std::optional<WalkedFile> pop();
    /// No more files will come; `discard`: those that wait are dropped, too.
    void close(bool discard);
    /// Waits until all files were taken and `done` was called for each of them, or it is closed.
    void waitUntilDone();
    void done();

private:
    const std::size_t m_capacity;
    std::mutex m_mutex;
    std::condition_variable m_room;
    std::condition_variable m_filled;
    std::condition_variable m_idle;
    std::deque<WalkedFile> m_files;
    std::size_t m_taken = 0;
    bool m_closed = false;
};

} // namespace korvale::agent
