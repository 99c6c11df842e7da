#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

namespace korvale {

/// Calls `tooLate` on a thread of its own when it has not ended after `limit`: for waits inside the
/// toolkit, which nothing else can end.
class AnswerLimit {
public:
    AnswerLimit(std::chrono::milliseconds limit, std::function<void()> tooLate)
        : m_thread([this, limit, tooLate = std::move(tooLate)] {
              std::unique_lock lock(m_mutex);
              if (!m_ended.wait_for(lock, limit, [this] { return m_isOver; })) {
                  tooLate();
              }
          }) {}
    ~AnswerLimit() {
        {
            const std::lock_guard lock(m_mutex);
            m_isOver = true;
        }
        m_ended.notify_all();
        m_thread.join();
    }
    AnswerLimit(const AnswerLimit&) = delete;
    AnswerLimit& operator=(const AnswerLimit&) = delete;

private:
    std::mutex m_mutex;
    std::condition_variable m_ended;
    bool m_isOver = false;
    std::thread m_thread;
};

} // namespace korvale
