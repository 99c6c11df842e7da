#pragma once

#include <QByteArray>
#include <QElapsedTimer>
#include <QString>
#include <QStringList>

#include <chrono>
#include <unistd.h>

namespace korvale {

/// What a terminal command prints: lines, and one line that is written anew while something goes
/// on. Where the output is no terminal that can do so, that line becomes a plain one now and then.
/// Every text is made safe for a terminal. What cannot be written is dropped.
class TerminalOutput {
public:
    static constexpr std::chrono::seconds betweenPlainLines{10};

    explicit TerminalOutput(int output = STDOUT_FILENO, int errors = STDERR_FILENO);
    /// Takes the unfinished line away.
    ~TerminalOutput();
    TerminalOutput(const TerminalOutput&) = delete;
    TerminalOutput& operator=(const TerminalOutput&) = delete;

    void say(const QString& line);
    /// On standard error, behind the program's name.
    void complain(const QString& line);
    /// So far.
    [[nodiscard]] const QStringList& complaints() const { return m_complaints; }
    /// `head` stays whole; of `path` the start is left out where there is no room.
    void progress(const QString& head, const QString& path);

private:
    void clearProgress();

    int m_output;
    int m_errors;
    bool m_canRewrite;
    bool m_hasProgress = false; ///< on screen, without a line feed
    QElapsedTimer m_sincePlainLine;
    QStringList m_complaints;
};

/// The end of `text` in so many columns of a terminal, with an ellipsis in front where something is
/// left out. Wide characters have two columns, marks none.
[[nodiscard]] QString endInColumns(const QString& text, int columns);
[[nodiscard]] int columnsOf(const QString& text);

} // namespace korvale
