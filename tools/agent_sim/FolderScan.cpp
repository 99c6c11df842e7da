#include "agent_sim/FolderScan.h"

#include <QFileInfo>

#include <algorithm>
#include <sys/stat.h>

namespace korvale::sim {
namespace {

constexpr qint64 kSliceMilliseconds = 10;

/// The file system that holds `path`; 0 when it cannot be told.
quint64 deviceOf(const QString& path) {
    struct stat status {};
    return ::stat(QFile::encodeName(path).constData(), &status) == 0 ? status.st_dev : 0;
}

} // namespace

FolderScan::FolderScan(QObject* parent) : QObject(parent) {
    m_slices.setSingleShot(true);
    connect(&m_slices, &QTimer::timeout, this, &FolderScan::slice);
}

QString FolderScan::start(const QString& folder) {
    const QFileInfo info(folder);
    if (!info.isDir() || !info.isReadable()) {
        return QStringLiteral("no folder that can be read: ") + folder;
    }
    stop();
    // A link is followed here only, and the files keep the names that they were asked for under.
    const QString root = QDir::cleanPath(info.absoluteFilePath());
    m_device = deviceOf(root);
    m_files = 0;
    m_running = true;
    enter(root);
    m_slices.start(0);
    return {};
}

bool FolderScan::stop() {
    if (!m_running) {
        return false;
    }
    finish(false);
    return true;
}

void FolderScan::enter(const QString& folder) {
    if (m_folders.size() < kMostDepth && deviceOf(folder) == m_device) {
        m_folders.push_back(std::make_unique<QDirIterator>(folder, QDir::AllEntries | QDir::Hidden |
                                                                       QDir::NoDotAndDotDot));
    }
}

void FolderScan::slice() {
    QElapsedTimer spent;
    spent.start();
    while (m_running && !m_slices.isActive() && spent.elapsed() < kSliceMilliseconds) {
        if (!nextStep()) {
            finish(true);
        }
    }
    if (m_running && !m_slices.isActive()) {
        m_slices.start(0);
    }
}

bool FolderScan::nextStep() {
    if (!m_hasher.isOpen()) {
        return openNextFile();
    }
    const FileHasher::Step step = m_hasher.step();
    if (step == FileHasher::Step::More) {
        return true;
    }
    if (step == FileHasher::Step::Done) {
        ++m_files;
        Q_EMIT scanned({m_path, m_hasher.digest(), m_hasher.hasTestString()});
    }
    const auto left =
        static_cast<int>(std::max<qint64>(m_paceMilliseconds - m_sinceFile.elapsed(), 0));
    if (left > 0 && m_running) {
        m_slices.start(left);
    }
    return true;
}

bool FolderScan::openNextFile() {
    if (m_folders.empty() || m_files >= kMostFiles) {
        return false;
    }
    QDirIterator& folder = *m_folders.back();
    if (!folder.hasNext()) {
        m_folders.pop_back();
        return true;
    }
    const QString path = folder.next();
    const QFileInfo info = folder.fileInfo();
    if (info.isSymLink()) {
        return true;
    }
    if (info.isDir()) {
        enter(path);
    } else if (m_hasher.open(path)) {
        m_path = path;
        m_sinceFile.start();
        Q_EMIT reading(path);
    }
    return true;
}

void FolderScan::finish(bool complete) {
    m_running = false;
    m_slices.stop();
    m_hasher.close();
    m_folders.clear();
    Q_EMIT ended(complete);
}

} // namespace korvale::sim
