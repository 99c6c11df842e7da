#include "agent/publish/HostCacheWriter.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace korvale::agent {
namespace {

constexpr mode_t kOwnerOnly = 0600;
constexpr mode_t kReadableByAll = 0644;

bool writeAll(int file, const QByteArray& content) {
    qsizetype done = 0;
    while (done < content.size()) {
        const ssize_t written =
            ::write(file, content.constData() + done, static_cast<size_t>(content.size() - done));
        if (written < 0) {
            if (errno == EINTR) {
                continue;
            }
            return false;
        }
        done += written;
    }
    return true;
}

} // namespace

HostCacheWriter::HostCacheWriter(QString folder) : m_folder(std::move(folder)) {}

bool HostCacheWriter::isPlainName(const QString& name) {
    return !name.isEmpty() && name != QLatin1String(".") && name != QLatin1String("..") &&
           !name.contains(u'/') && !name.contains(QChar::Null);
}

bool HostCacheWriter::fail(const QString& action, const QString& path) {
    const int reason = errno;
    m_error =
        action + u' ' + path + QStringLiteral(": ") + QString::fromLocal8Bit(std::strerror(reason));
    return false;
}

bool HostCacheWriter::prepare(const QString& name) {
    if (!isPlainName(name)) {
        m_error = QStringLiteral("not a file name: ") + name;
        return false;
    }
    if (!QDir().mkpath(m_folder)) {
        return fail(QStringLiteral("cannot create the folder"), m_folder);
    }
    return true;
}

bool HostCacheWriter::fill(const QByteArray& temporary, const QString& name,
                           const QByteArray& content) {
    ::unlink(temporary.constData()); // left by a writer that was killed
    const int file = ::open(temporary.constData(),
                            O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, kOwnerOnly);
    if (file < 0) {
        return fail(QStringLiteral("cannot write in"), m_folder);
    }
    const bool written = writeAll(file, content) && ::fchmod(file, kReadableByAll) == 0;
    if (!written) {
        fail(QStringLiteral("cannot write"), name);
    }
    ::close(file);
    return written;
}

bool HostCacheWriter::write(const QString& name, const QByteArray& content) {
    if (!prepare(name)) {
        return false;
    }
    const QByteArray temporary = QFile::encodeName(m_folder + QStringLiteral("/.") + name) + ".new";
    const QString target = m_folder + u'/' + name;
    const QByteArray targetName = QFile::encodeName(target);
    bool done = fill(temporary, name, content);
    if (done) {
        ::rmdir(targetName.constData()); // an empty folder in its place gives way
        done = std::rename(temporary.constData(), targetName.constData()) == 0 ||
               fail(QStringLiteral("cannot rename to"), target);
    }
    if (!done) {
        ::unlink(temporary.constData());
    }
    return done;
}

bool HostCacheWriter::write(const QString& name, const QJsonObject& object) {
    return write(name, QJsonDocument(object).toJson(QJsonDocument::Compact));
}

bool HostCacheWriter::remove(const QString& name) {
    if (!prepare(name)) {
        return false;
    }
    const QString path = m_folder + u'/' + name;
    const QByteArray encoded = QFile::encodeName(path);
    if (::unlink(encoded.constData()) != 0 && errno != ENOENT) {
        if (::rmdir(encoded.constData()) != 0) {
            return fail(QStringLiteral("cannot remove"), path);
        }
    }
    return true;
}

} // namespace korvale::agent
