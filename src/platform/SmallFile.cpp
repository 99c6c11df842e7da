#include "platform/SmallFile.h"

#include "platform/RegularFile.h"

#include <QFile>

namespace korvale {

std::optional<QByteArray> readSmallFile(const char* path, qint64 limit) {
    const auto file = RegularFile::open(path, static_cast<std::size_t>(limit));
    const auto content = file ? file->readAll() : std::nullopt;
    return content ? std::optional(
                         QByteArray(content->bytes.get(), static_cast<qsizetype>(content->size)))
                   : std::nullopt;
}

std::optional<QByteArray> readSmallFile(const QString& path, qint64 limit) {
    return readSmallFile(QFile::encodeName(path).constData(), limit);
}

} // namespace korvale
