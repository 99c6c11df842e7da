#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QString>

#include <cstdint>

namespace korvale::sim {

/// Writes the files of the host cache. A file is written whole under a temporary name in the same
/// folder and then renamed, so that a reader sees either the old or the new content. Files can be
/// read by everyone. All functions give false on failure, with the reason in `error()`.
class HostCacheWriter {
public:
    explicit HostCacheWriter(QString folder);

    bool write(const QString& name, const QByteArray& content);
    bool write(const QString& name, const QJsonObject& object);
    /// Puts an empty FIFO, an empty folder or a file of that many bytes (holes) in the place of
    /// `name`.
    bool placeFifo(const QString& name);
    bool placeFolder(const QString& name);
    bool placeSparse(const QString& name, std::int64_t size);
    bool remove(const QString& name);

    [[nodiscard]] const QString& folder() const { return m_folder; }
    [[nodiscard]] const QString& error() const { return m_error; }
    /// True for a name that stays inside the folder.
    [[nodiscard]] static bool isPlainName(const QString& name);

private:
    bool prepare(const QString& name);
    bool moveIntoPlace(const QByteArray& temporary, const QString& name);
    bool fail(const QString& action, const QString& path);

    QString m_folder;
    QString m_error;
};

} // namespace korvale::sim
