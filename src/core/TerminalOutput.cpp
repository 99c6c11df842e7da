#include "core/TerminalOutput.h"

#include "platform/SafeText.h"

#include <QList>

#include <algorithm>
#include <cerrno>
#include <cwchar>
#include <sys/ioctl.h>

namespace korvale {
namespace {

constexpr int usualColumns = 80;

bool canRewrite(int descriptor) {
    const QByteArray kind = qgetenv("TERM");
    return !kind.isEmpty() && kind != "dumb" && ::isatty(descriptor) == 1;
}

int widthOf(int descriptor) {
    winsize size{};
    const bool isKnown = ::ioctl(descriptor, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return isKnown ? size.ws_col : usualColumns;
}

int columnsOf(char32_t character) {
    return std::max(::wcwidth(static_cast<wchar_t>(character)), 0);
}

void writeAll(int descriptor, const QByteArray& bytes) {
    for (qsizetype at = 0; at < bytes.size();) {
        const ssize_t written = ::write(descriptor, bytes.constData() + at,
                                        static_cast<std::size_t>(bytes.size() - at));
        if (written < 0 && errno != EINTR) {
            return;
        }
        at += std::max<ssize_t>(written, 0);
    }
}

} // namespace

int columnsOf(const QString& text) {
    int columns = 0;
    for (const uint character : text.toUcs4()) {
        columns += columnsOf(char32_t{character});
    }
    return columns;
}

QString endInColumns(const QString& text, int columns) {
    const QList<uint> characters = text.toUcs4();
    if (columnsOf(text) <= columns) {
        return text;
    }
    int left = columns - 1; // the ellipsis
    qsizetype begin = characters.size();
    while (begin > 0 && columnsOf(char32_t{characters[begin - 1]}) <= left) {
        left -= columnsOf(char32_t{characters[--begin]});
    }
    QString end(QChar(u'\u2026'));
    for (const uint character : characters.sliced(begin)) {
        end += QChar::fromUcs4(character);
    }
    return columns > 0 ? end : QString();
}

TerminalOutput::TerminalOutput(int output, int errors)
    : m_output(output), m_errors(errors), m_canRewrite(canRewrite(output)) {}

TerminalOutput::~TerminalOutput() {
    clearProgress();
}

void TerminalOutput::say(const QString& line) {
    clearProgress();
    writeAll(m_output, singleLineText(line).toUtf8() + '\n');
}

void TerminalOutput::complain(const QString& line) {
    clearProgress();
    m_complaints << singleLineText(line);
    writeAll(m_errors, "korvale-ui: " + m_complaints.constLast().toUtf8() + '\n');
}

void TerminalOutput::progress(const QString& head, const QString& path) {
    const QString safeHead = singleLineText(head) + u' ';
    const QString safePath = singleLineText(path);
    if (m_canRewrite) {
        const int room = widthOf(m_output) - 1; // a full line would wrap
        const QString shownHead = endInColumns(safeHead, room);
        const QString shown = shownHead + endInColumns(safePath, room - columnsOf(shownHead));
        writeAll(m_output, '\r' + shown.toUtf8() + "\x1b[K");
        m_hasProgress = true;
    } else if (!m_sincePlainLine.isValid() ||
               m_sincePlainLine.hasExpired(std::chrono::milliseconds(betweenPlainLines).count())) {
        m_sincePlainLine.start();
        writeAll(m_output, (safeHead + safePath).toUtf8() + '\n');
    }
}

void TerminalOutput::clearProgress() {
    if (m_hasProgress) {
        m_hasProgress = false;
        writeAll(m_output, "\r\x1b[K");
    }
}

} // namespace korvale
