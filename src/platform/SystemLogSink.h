#pragma once

#include "core/base/LogSink.h"
#include "core/base/StandardError.h"
#include "platform/LogBacklog.h"

#include <chrono>
#include <cstddef>
#include <mutex>

namespace korvale {

/// The system's log, under the identifier "korvale-ui", and standard error; standard error alone
/// where that already is the journal, so that no line stands there twice. A line is written at once
/// by whoever logs it, unless it is one of very many or standard error does not take it: then a
/// thread writes it and all that follow, so that neither a long list nor a slow reader holds up
/// anything else. At the end all lines are written, except to a reader that takes none.
class SystemLogSink final : public LogSink {
public:
    /// How many bytes of lines wait at most; further ones are lost, and the log says so.
    static constexpr std::size_t usualCapacity = std::size_t{64} << 20;

    explicit SystemLogSink(std::size_t capacity = usualCapacity);
    ~SystemLogSink() override;
    SystemLogSink(const SystemLogSink&) = delete;
    SystemLogSink& operator=(const SystemLogSink&) = delete;

    void write(LogLevel level, const QByteArray& line) override;
    void finish() override;

private:
    void writeNow(LogLevel level, const QByteArray& line);
    bool isOneOfMany();
    void finishWriting();

    bool m_stderrIsJournal;
    std::mutex m_mutex; ///< lets one line after the other in
    std::chrono::steady_clock::time_point m_burstStart;
    int m_burstLines = 0;
    StandardError m_standardError;
    LogBacklog m_backlog;
};

/// True when `journalStream` (the value of JOURNAL_STREAM, "device:inode") names the file behind
/// `descriptor`; systemd sets it for what it connects to the journal, and children inherit it.
[[nodiscard]] bool isJournalStream(const QByteArray& journalStream, int descriptor);

} // namespace korvale
