#include "platform/LogBacklog.h"

#include <atomic>
#include <condition_variable>
#include <malloc.h>
#include <mutex>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

namespace korvale {
namespace {

constexpr std::size_t largeBacklog = 1U << 20U;
constexpr std::size_t keptRoom = 1U << 14U;

/// Many lines in two blocks of memory.
struct Lines {
    struct Place {
        LogLevel level;
        std::size_t size;
    };
    std::vector<Place> places;
    std::string texts; ///< each ends in a NUL

    void clear() {
        places.clear();
        texts.clear();
    }
};

} // namespace

struct LogBacklog::Work {
    Work(Write writeOne, std::size_t mostBytes) : write(std::move(writeOne)), capacity(mostBytes) {}

    const Write write;
    const std::size_t capacity;
    std::mutex mutex; ///< of all below
    Lines lines;
    Lines room;           ///< no lines, but memory for the next that come
    std::size_t lost = 0; ///< lines that found no room since the last that did
    bool isWriting = false;
    std::condition_variable done; ///< nothing is written any more
    std::atomic<std::size_t> written = 0;

    void writeAll();
    void writeEach(const Lines& taken);
    Lines takeLines();
};

LogBacklog::LogBacklog(Write write, std::size_t capacity)
    : m_work(std::make_shared<Work>(std::move(write), capacity)) {}

LogBacklog::~LogBacklog() {
    finish();
}

void LogBacklog::finish() {
    if (m_thread.joinable()) {
        m_thread.join();
    }
}

bool LogBacklog::finishUnlessStuck(std::chrono::milliseconds patience) {
    if (!m_thread.joinable()) {
        return isEmpty(); // none was needed, or it is left behind already
    }
    std::unique_lock lock(m_work->mutex);
    std::size_t before = m_work->written;
    while (!m_work->done.wait_for(lock, patience, [this] { return !m_work->isWriting; })) {
        const std::size_t now = m_work->written;
        if (std::exchange(before, now) == now) {
            m_thread.detach();
            return false;
        }
    }
    lock.unlock();
    finish();
    return true;
}

bool LogBacklog::isEmpty() const {
    const std::lock_guard lock(m_work->mutex);
    return !m_work->isWriting;
}

void LogBacklog::add(LogLevel level, const QByteArray& line) {
    const std::lock_guard lock(m_work->mutex);
    const auto size = static_cast<std::size_t>(line.size());
    Lines& lines = m_work->lines;
    if (lines.texts.size() + size >= m_work->capacity) {
        ++m_work->lost;
    } else {
        lines.places.push_back({level, size});
        lines.texts.append(line.constData(), size + 1);
    }
    if (!m_work->isWriting) {
        startWriting();
    }
}

void LogBacklog::startWriting() {
    finish(); // the thread before has nothing left to do
    try {
        m_work->isWriting = true;
        m_thread = std::thread([work = m_work] { work->writeAll(); });
    } catch (const std::system_error&) {
        m_work->isWriting = false;
        m_work->writeEach(m_work->takeLines()); // no thread to be had: whoever logs waits
    }
}

void LogBacklog::Work::writeAll() {
    std::unique_lock lock(mutex);
    while (lost > 0 || !lines.places.empty()) {
        Lines taken = takeLines();
        lock.unlock();
        writeEach(taken);
        if (taken.texts.size() >= largeBacklog) {
            taken = {};
            ::malloc_trim(0); // else the C library may keep all of it for this program
        }
        lock.lock();
        if (taken.texts.capacity() <= keptRoom) {
            taken.clear();
            room = std::move(taken);
        }
    }
    isWriting = false;
    done.notify_all();
}

void LogBacklog::Work::writeEach(const Lines& taken) {
    const char* text = taken.texts.data();
    for (const auto& [level, size] : taken.places) {
        write(level, QByteArray::fromRawData(text, static_cast<qsizetype>(size)));
        text += size + 1;
        ++written;
    }
}

Lines LogBacklog::Work::takeLines() {
    if (const std::size_t count = std::exchange(lost, 0); count > 0) {
        const std::string line = "WARN \"" + std::to_string(count) + " lines were lost\"";
        lines.places.push_back({LogLevel::Warn, line.size()});
        lines.texts.append(line.c_str(), line.size() + 1);
    }
    return std::exchange(lines, std::exchange(room, {}));
}

} // namespace korvale
