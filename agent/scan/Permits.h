#pragma once

#include <condition_variable>
#include <cstddef>
#include <memory>
#include <mutex>
#include <stop_token>

namespace korvale::agent {

/// So many things may be on their way at a time. Any thread.
class Permits : public std::enable_shared_from_this<Permits> {
public:
    explicit Permits(std::size_t count) : m_free(count) {}

    /// Waits for a permit, which is given back when the last copy is gone. Null: stopped.
    std::shared_ptr<void> take(const std::stop_token& stop) {
        std::unique_lock lock(m_mutex);
        if (!m_returned.wait(lock, stop, [this] { return m_free > 0; })) {
            return nullptr;
        }
        --m_free;
        return {this, [self = shared_from_this()](void*) { self->giveBack(); }};
    }

private:
    void giveBack() {
        const std::lock_guard lock(m_mutex);
        ++m_free;
        m_returned.notify_one();
    }

    std::mutex m_mutex;
    std::condition_variable_any m_returned;
    std::size_t m_free;
};

} // namespace korvale::agent
