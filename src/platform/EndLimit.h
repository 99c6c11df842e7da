#pragma once

#include <chrono>
#include <functional>
#include <thread>

namespace korvale {

class TerminationSignals;

/// Sees to it that the process ends when it is asked to: the main thread may be inside the toolkit,
/// which waits for other programs (the owner of the clipboard and its manager, a message bus). Once
/// a signal has come and `limit` has passed, `willTerminate` runs, on a thread of its own, the log
/// is finished and the process ends with status 0, without destructors. Destroyed in time, it does
/// nothing.
class EndLimit {
public:
    EndLimit(const TerminationSignals& signalsOfTheSystem, std::function<void()> willTerminate,
             std::chrono::milliseconds limit = std::chrono::milliseconds(1500));
    ~EndLimit();
    EndLimit(const EndLimit&) = delete;
    EndLimit& operator=(const EndLimit&) = delete;

private:
    void watch(int signalCame) const;

    std::function<void()> m_willTerminate;
    std::chrono::milliseconds m_limit;
    int m_isOver; ///< readable once the end has come by itself
    std::thread m_thread;
};

} // namespace korvale
