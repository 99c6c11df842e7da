#pragma once

#include "platform/LogSink.h"

namespace korvale {

/// The system's log, under the identifier "korvale-ui", and standard error; standard error alone
/// where that already is the journal, so that no line stands there twice.
class SystemLogSink final : public LogSink {
public:
    SystemLogSink();
    ~SystemLogSink() override;
    SystemLogSink(const SystemLogSink&) = delete;
    SystemLogSink& operator=(const SystemLogSink&) = delete;

    void write(LogLevel level, const QByteArray& line) override;

private:
    bool m_stderrIsJournal;
};

/// True when `journalStream` (the value of JOURNAL_STREAM, "device:inode") names the file behind
/// `descriptor`; systemd sets it for what it connects to the journal, and children inherit it.
[[nodiscard]] bool isJournalStream(const QByteArray& journalStream, int descriptor);

/// Writes `line` and a line feed to standard error in one go, so that lines of two threads do not
/// mix. A failure is ignored.
void writeToStandardError(const QByteArray& line);

} // namespace korvale
