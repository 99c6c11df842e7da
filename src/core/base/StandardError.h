#pragma once

#include <QByteArray>

#include <cstddef>

namespace korvale {

/// Opens the null device in place of each standard stream that the parent closed, so that no file
/// of the program's own takes its number. The first act of the process.
void replaceClosedStandardStreams();

/// Writes `line` and a line feed to standard error in one go, so that lines of two threads do not
/// mix. Waits for whoever reads; a failure is ignored.
void writeToStandardError(const QByteArray& line);

/// Standard error as a thread writes it that may wait for a slow reader. One thread, except where
/// said otherwise.
class StandardError {
public:
    StandardError();
    ~StandardError();
    StandardError(const StandardError&) = delete;
    StandardError& operator=(const StandardError&) = delete;

    /// True when a line of `size` bytes would be taken without waiting.
    [[nodiscard]] static bool takes(std::size_t size);

    /// Waits as long as the reader needs. A failure is ignored.
    void writeLine(const QByteArray& line);

    /// From now on a reader that takes nothing for a second gets nothing any more. Any thread, also
    /// while another one waits in writeLine.
    void hurry() const;

private:
    [[nodiscard]] bool waitForReader();

    int m_hurryEvent;
    bool m_hurried = false;
    bool m_givenUp = false;
};

} // namespace korvale
