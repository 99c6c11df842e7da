#include "agent/scan/FileQueue.h"

namespace korvale::agent {

void FileQueue::push(WalkedFile file) {
    std::unique_lock lock(m_mutex);
    m_room.wait(lock, [this] { return m_closed || m_files.size() < m_capacity; });
    if (!m_closed) {
        m_files.push_back(std::move(file));
        m_filled.notify_one();
    }
}

std::optional<WalkedFile> FileQueue::pop() {
    std::unique_lock lock(m_mutex);
    m_filled.wait(lock, [this] { return m_closed || !m_files.empty(); });
    if (m_files.empty()) {
        return std::nullopt;
    }
    WalkedFile file = std::move(m_files.front());
    m_files.pop_front();
    ++m_taken;
    m_room.notify_one();
    return file;
}

void FileQueue::close(bool discard) {
    std::deque<WalkedFile> dropped;
    const std::lock_guard lock(m_mutex);
    m_closed = true;
    if (discard) {
        dropped.swap(m_files);
    }
    m_room.notify_all();
    m_filled.notify_all();
    m_idle.notify_all();
}

void FileQueue::waitUntilDone() {
    std::unique_lock lock(m_mutex);
    m_idle.wait(lock, [this] { return m_closed || (m_files.empty() && m_taken == 0); });
}

void FileQueue::done() {
    const std::lock_guard lock(m_mutex);
    if (--m_taken == 0 && m_files.empty()) {
        m_idle.notify_all();
    }
}

} // namespace korvale::agent
