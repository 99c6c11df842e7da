#pragma once

#include "core/base/LogSink.h"
#include "core/base/StandardError.h"
#include "platform/LogBacklog.h"

#include <chrono>
#include <cstddef>
#include <mutex>

namespace korvale {

/// The system's log, under the identifier "korvale-ui", and standard error; standard error alone
/// where that already is the journal, so that no line stands there twice, and with its priority in
/// front, as sd-daemon(3) has it. Neither holds up whoever logs: syslog(3), which waits for a
/// journal that hangs, is called by a thread only. To standard error a line is written at once,
/// unless it is one of very many or is not taken; then a thread writes it and all that follow. At
/// the end all lines are written, except to a reader that takes none.
class SystemLogSink final : public LogSink {
public:
    /// How many bytes of lines wait at most for each of the two; further ones are lost, and the log
    /// says so.
    static constexpr std::size_t usualCapacity = std::size_t{32} << 20;

    explicit SystemLogSink(std::size_t capacity = usualCapacity);
    ~SystemLogSink() override;
    SystemLogSink(const SystemLogSink&) = delete;
    SystemLogSink& operator=(const SystemLogSink&) = delete;

    void write(LogLevel level, const QByteArray& line) override;
    void finish() override;

private:
    void toStandardError(LogLevel level, const QByteArray& line);
    bool isOneOfMany();
    void finishWriting();

    const bool m_stderrIsJournal;
    std::mutex m_mutex; ///< lets one line after the other in
    std::chrono::steady_clock::time_point m_burstStart;
    int m_burstLines = 0;
    StandardError m_standardError;
    LogBacklog m_forStandardError;
    LogBacklog m_forSystemLog;
};

/// True when `journalStream` (the value of JOURNAL_STREAM, "device:inode") names the file behind
/// `descriptor`; systemd sets it for what it connects to the journal, and children inherit it.
[[nodiscard]] bool isJournalStream(const QByteArray& journalStream, int descriptor);

} // namespace korvale
