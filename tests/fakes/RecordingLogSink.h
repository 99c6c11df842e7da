#pragma once

#include "core/base/LogSink.h"
#include "core/base/Logging.h"

#include <mutex>
#include <string>
#include <vector>

namespace korvale {

/// Takes every log line while it lives.
class RecordingLogSink final : public LogSink {
public:
    RecordingLogSink() { setLogSink(this); }
    ~RecordingLogSink() override { setLogSink(nullptr); }
    RecordingLogSink(const RecordingLogSink&) = delete;
    RecordingLogSink& operator=(const RecordingLogSink&) = delete;

    void write(LogLevel /*level*/, const QByteArray& line) override {
        const std::lock_guard lock(m_mutex);
        m_lines.push_back(line.toStdString());
    }

    [[nodiscard]] std::vector<std::string> lines() const {
        const std::lock_guard lock(m_mutex);
        return m_lines;
    }

private:
    mutable std::mutex m_mutex;
    std::vector<std::string> m_lines;
};

} // namespace korvale
