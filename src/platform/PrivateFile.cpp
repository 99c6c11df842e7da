#include "platform/PrivateFile.h"

#include <QDir>
#include <QFileInfo>
#include <QSaveFile>

namespace korvale {
namespace {

constexpr QFile::Permissions ownersFile = QFile::ReadOwner | QFile::WriteOwner;
constexpr QFile::Permissions ownersFolder = ownersFile | QFile::ExeOwner;

bool makeFolder(const QString& path) {
    if (QFileInfo(path).isDir()) {
        return true;
    }
    const QString parent = QFileInfo(path).path();
    return parent != path && makeFolder(parent) &&
           (QDir().mkdir(path, ownersFolder) || QFileInfo(path).isDir());
}

} // namespace

bool writePrivateFile(const QString& path, const QByteArray& content) {
    const QFileInfo present(path);
    if ((present.exists() && !present.isFile()) || !makeFolder(present.path())) {
        return false;
    }
    QSaveFile file(path);
    // What the flush inside commit() cannot write is lost without a word, and the old content with
    // it.
    return file.open(QIODevice::WriteOnly) && file.setPermissions(ownersFile) &&
           file.write(content) == content.size() && file.flush() && file.commit();
}

} // namespace korvale
