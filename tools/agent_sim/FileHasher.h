#pragma once

#include <QByteArray>
#include <QByteArrayMatcher>
#include <QCryptographicHash>
#include <QFile>
#include <QString>

#include <cstdint>

namespace korvale::sim {

/// Reads one regular file piece by piece: its SHA-256, and whether the test string is in it. A
/// symbolic link, FIFO or device is never opened or waited for.
class FileHasher {
public:
    enum class Step { More, Done, Failed };

    FileHasher();

    /// False when the path is no regular file that can be read.
    bool open(const QString& path);
    /// Reads the next piece (at most 1 MiB).
    Step step();
    [[nodiscard]] bool isOpen() const { return m_file.isOpen(); }
    void close() { m_file.close(); }

    /// Lower-case hex; valid after Step::Done.
    [[nodiscard]] QString digest() const { return m_digest; }
    [[nodiscard]] bool hasTestString() const { return m_hasTestString; }

private:
    QFile m_file;
    QCryptographicHash m_hash{QCryptographicHash::Sha256};
    QByteArrayMatcher m_testString;
    QByteArray m_tail; ///< end of the last piece: the string may lie across two
    QString m_digest;
    bool m_hasTestString = false;
};

} // namespace korvale::sim
