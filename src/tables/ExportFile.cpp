#include "tables/ExportFile.h"

#include <QFileInfo>
#include <QSaveFile>

#include <cerrno>
#include <new>

namespace korvale {
namespace {

using Outcome = ExportResult::Outcome;

constexpr std::size_t blockSize = 65536;
constexpr std::size_t rowsBetweenQuestions = 256;

bool isFileOrNothing(const QString& path) {
    const QFileInfo present(path);
    return !(present.exists() || present.isSymLink()) || present.isFile();
}

ExportResult failure(const QSaveFile& file, int error) {
    const bool noRoom = file.error() == QFileDevice::ResourceError || error == ENOSPC ||
                        error == EDQUOT || error == EFBIG;
    return {noRoom ? Outcome::NoRoom : Outcome::Failed, file.errorString()};
}

/// Rows in blocks.
class Writer {
public:
    Writer(const RowSnapshot& rows, RowExport text, QSaveFile& file,
           const std::function<bool(std::size_t)>& goOn)
        : m_rows(rows), m_text(text), m_file(file), m_goOn(goOn) {}

    ExportResult write() {
        m_text.begin(m_block);
        if (!m_rows.forEach([this](std::size_t row) { return take(row); })) {
            return m_isCancelled ? ExportResult{Outcome::Cancelled, {}} : failure(m_file, m_error);
        }
        m_text.end(m_block);
        // What the flush inside commit() cannot write is lost without a word.
        if (!flush() || !check(m_file.flush())) {
            return failure(m_file, m_error);
        }
        return {m_goOn(m_done) ? Outcome::Written : Outcome::Cancelled, {}};
    }

private:
    bool take(std::size_t row) {
        if (m_done % rowsBetweenQuestions == 0 && !m_goOn(m_done)) {
            m_isCancelled = true;
            return false;
        }
        ++m_done;
        m_text.append(m_rows.rows(), row, m_block);
        return m_block.size() < blockSize || flush();
    }
    bool flush() {
        errno = 0;
        const auto size = static_cast<qint64>(m_block.size());
        const bool isWritten = check(m_file.write(m_block.data(), size) == size);
        m_block.clear();
        return isWritten;
    }
    bool check(bool isWritten) {
        if (!isWritten) {
            m_error = errno;
        }
        return isWritten;
    }

    const RowSnapshot& m_rows;
    RowExport m_text;
    QSaveFile& m_file;
    const std::function<bool(std::size_t)>& m_goOn;
    std::string m_block;
    std::size_t m_done = 0;
    bool m_isCancelled = false;
    int m_error = 0;
};

ExportResult writeWhole(const RowSnapshot& rows, RowExport text, const QString& path,
                        const std::function<bool(std::size_t)>& goOn) {
    if (!isFileOrNothing(path)) {
        return {Outcome::NoFile, {}};
    }
    QSaveFile file(path); // which is gone with its object, unless commit() was called
    if (!file.open(QIODevice::WriteOnly)) {
        return failure(file, 0);
    }
    ExportResult result = Writer(rows, text, file, goOn).write();
    if (result.outcome == Outcome::Written && !isFileOrNothing(path)) {
        return {Outcome::NoFile, {}}; // somebody put it there meanwhile
    }
    if (result.outcome == Outcome::Written && !file.commit()) {
        return failure(file, 0);
    }
    return result;
}

} // namespace

ExportResult writeRows(const RowSnapshot& rows, std::span<const ExportField> fields,
                       ExportFormat format, const QString& path,
                       const std::function<bool(std::size_t done)>& goOn) {
    try {
        return writeWhole(rows, RowExport(fields, format), path, goOn);
    } catch (const std::bad_alloc&) {
        return {Outcome::Failed, qt_error_string(ENOMEM)}; // one row alone may be large
    }
}

} // namespace korvale
