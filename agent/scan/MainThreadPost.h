#pragma once

#include <QObject>

#include <functional>
#include <mutex>
#include <utility>

namespace korvale::agent {

/// Lets other threads call into an object of the main thread as long as there is one. Shared by
/// them; any thread.
class MainThreadPost {
public:
    explicit MainThreadPost(QObject& target) : m_target(&target) {}

    /// Runs `call` on the target's thread, later. Dropped when the target is gone.
    void operator()(std::function<void()> call) {
        const std::lock_guard lock(m_mutex);
        if (m_target != nullptr) {
            QMetaObject::invokeMethod(m_target, std::move(call), Qt::QueuedConnection);
        }
    }

    void targetIsGone() {
        const std::lock_guard lock(m_mutex);
        m_target = nullptr;
    }

private:
    std::mutex m_mutex;
    QObject* m_target;
};

} // namespace korvale::agent
