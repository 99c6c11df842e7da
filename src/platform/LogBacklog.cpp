#include "platform/LogBacklog.h"

#include <system_error>
#include <utility>

namespace korvale {

LogBacklog::LogBacklog(Write write, std::size_t capacity)
    : m_write(std::move(write)), m_capacity(capacity) {}

LogBacklog::~LogBacklog() {
    finish();
}

void LogBacklog::finish() {
    if (m_thread.joinable()) {
        m_thread.join();
    }
}

bool LogBacklog::isEmpty() const {
    const std::lock_guard lock(m_mutex);
    return !m_isWriting;
}

void LogBacklog::add(LogLevel level, const QByteArray& line) {
    const std::lock_guard lock(m_mutex);
    const auto size = static_cast<std::size_t>(line.size());
    if (m_lines.texts.size() + size >= m_capacity) {
        ++m_lost;
    } else {
        m_lines.places.push_back({level, size});
        m_lines.texts.append(line.constData(), size + 1);
    }
    if (!m_isWriting) {
        startWriting();
    }
}

void LogBacklog::startWriting() {
    finish(); // the thread before has nothing left to do
    try {
        m_thread = std::thread([this] { writeAll(); });
        m_isWriting = true;
    } catch (const std::system_error&) {
        write(takeLines()); // no thread to be had: whoever logs waits
    }
}

void LogBacklog::writeAll() {
    std::unique_lock lock(m_mutex);
    while (m_lost > 0 || !m_lines.places.empty()) {
        const Lines lines = takeLines();
        lock.unlock();
        write(lines);
        lock.lock();
    }
    m_isWriting = false;
}

void LogBacklog::write(const Lines& lines) const {
    const char* text = lines.texts.data();
    for (const auto& [level, size] : lines.places) {
        m_write(level, QByteArray::fromRawData(text, static_cast<qsizetype>(size)));
        text += size + 1;
    }
}

LogBacklog::Lines LogBacklog::takeLines() {
    if (const std::size_t lost = std::exchange(m_lost, 0); lost > 0) {
        const std::string line = "WARN \"" + std::to_string(lost) + " lines were lost\"";
        m_lines.places.push_back({LogLevel::Warn, line.size()});
        m_lines.texts.append(line.c_str(), line.size() + 1);
    }
    return std::exchange(m_lines, {});
}

} // namespace korvale
