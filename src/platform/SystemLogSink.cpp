#include "platform/SystemLogSink.h"

#include <array>
#include <sys/stat.h>
#include <syslog.h>
#include <unistd.h>

namespace korvale {

bool isJournalStream(const QByteArray& journalStream, int descriptor) {
    struct stat status {};
    if (journalStream.isEmpty() || ::fstat(descriptor, &status) != 0) {
        return false;
    }
    return journalStream ==
           QByteArray::number(status.st_dev) + ':' + QByteArray::number(status.st_ino);
}

void writeToStandardError(const QByteArray& line) {
    const QByteArray whole = line + '\n';
    const char* rest = whole.constData();
    auto left = static_cast<std::size_t>(whole.size());
    while (left > 0) {
        const ssize_t written = ::write(STDERR_FILENO, rest, left);
        if (written <= 0) {
            return;
        }
        rest += written;
        left -= static_cast<std::size_t>(written);
    }
}

SystemLogSink::SystemLogSink()
    : m_stderrIsJournal(isJournalStream(qgetenv("JOURNAL_STREAM"), STDERR_FILENO)) {
    if (!m_stderrIsJournal) {
        ::openlog("korvale-ui", LOG_PID, LOG_USER);
    }
}

SystemLogSink::~SystemLogSink() {
    if (!m_stderrIsJournal) {
        ::closelog();
    }
}

void SystemLogSink::write(LogLevel level, const QByteArray& line) {
    static constexpr std::array priorities{LOG_ERR, LOG_WARNING, LOG_INFO, LOG_DEBUG};
    if (!m_stderrIsJournal) {
        ::syslog(priorities[static_cast<std::size_t>(level)], "%s", line.constData());
    }
    writeToStandardError(line);
}

} // namespace korvale
