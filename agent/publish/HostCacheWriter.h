#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QString>

namespace korvale::agent {

/// Writes the files of the host cache. A file is written whole under a temporary name in the same
/// folder and then renamed, so that a reader sees either the old or the new content. Files can be
/// read by everyone. All functions give false on failure, with the reason in `error()`. One writer
/// a folder: the temporary name of a file is always the same, so that a writer that was killed
/// leaves at most one behind, which the next write replaces. May block on the disk; not
/// thread-safe.
class HostCacheWriter {
public:
    explicit HostCacheWriter(QString folder);

    bool write(const QString& name, const QByteArray& content);
    bool write(const QString& name, const QJsonObject& object);
    bool remove(const QString& name);

    [[nodiscard]] const QString& folder() const { return m_folder; }
    [[nodiscard]] const QString& error() const { return m_error; }
    /// True for a name that stays inside the folder.
    [[nodiscard]] static bool isPlainName(const QString& name);

private:
    bool prepare(const QString& name);
    bool fill(const QByteArray& temporary, const QString& name, const QByteArray& content);
    bool fail(const QString& action, const QString& path);

    QString m_folder;
    QString m_error;
};

} // namespace korvale::agent
