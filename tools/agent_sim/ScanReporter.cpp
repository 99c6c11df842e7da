#include "agent_sim/ScanReporter.h"

#include "agent/publish/HostCacheLists.h"

namespace korvale::sim {
namespace {

constexpr qint64 kAnalyserMilliseconds = 100;
constexpr qint64 kBatchMilliseconds = 500;
constexpr int kUnsafeScore = 100;
constexpr int kAbnormalScore = 60;
constexpr qsizetype kDigestLength = 64;

} // namespace

ScanReporter::ScanReporter(FolderScan& scan, HostCacheLists& model, QObject* parent)
    : QObject(parent), m_scan(scan), m_model(model) {
    connect(&scan, &FolderScan::reading, this, &ScanReporter::fileOpened);
    connect(&scan, &FolderScan::scanned, this, &ScanReporter::fileScanned);
    connect(&scan, &FolderScan::ended, this, &ScanReporter::scanEnded);
}

QString ScanReporter::loadAbnormal(const QString& file) {
    QFile list(file);
    if (!list.open(QIODevice::ReadOnly)) {
        return QStringLiteral("cannot read %1: %2").arg(file, list.errorString());
    }
    int number = 0;
    while (!list.atEnd()) {
        ++number;
        const QByteArray line = list.readLine().trimmed();
        if (line.isEmpty() || line.startsWith('#')) {
            continue;
        }
        if (line.size() != kDigestLength || QByteArray::fromHex(line).toHex() != line.toLower()) {
            return QStringLiteral("%1, line %2: not a SHA-256 digest").arg(file).arg(number);
        }
        addAbnormal(QString::fromLatin1(line));
    }
    return {};
}

QString ScanReporter::start(const QString& folder, bool background) {
    QString problem = m_scan.start(folder);
    if (problem.isEmpty()) {
        m_background = background;
        m_unsafe = 0;
        m_abnormalFound = 0;
        m_sinceAnalyser.invalidate();
        m_sinceBatch.start();
        m_model.setScanning(true);
        Q_EMIT batchReady();
    }
    return problem;
}

void ScanReporter::fileOpened(const QString& path) {
    if (!m_sinceAnalyser.isValid() || m_sinceAnalyser.elapsed() >= kAnalyserMilliseconds) {
        m_sinceAnalyser.start();
        Q_EMIT analysing(path);
    }
}

int ScanReporter::verdict(const ScannedFile& file) const {
    if (file.hasTestString) {
        return file_state::kUnsafe;
    }
    return m_abnormal.contains(file.digest) ? file_state::kAbnormal : 0;
}

void ScanReporter::fileScanned(const ScannedFile& file) {
    m_model.addAnalysed(1);
    const int state = verdict(file);
    m_unsafe += state == file_state::kUnsafe ? 1 : 0;
    m_abnormalFound += state == file_state::kAbnormal ? 1 : 0;
    std::optional<FileThreat> known = m_model.file(file.path);
    if (known && (known->state & file_state::kQuarantined) != 0) {
        known.reset(); // what lies here now is another file than the one that was taken away
    }
    const bool sameContent = known && known->id == file.digest;
    if (state != 0 && !(sameContent && (known->state & state) != 0)) {
        m_model.setFile(file.path, {state, file.digest,
                                    state == file_state::kUnsafe ? kUnsafeScore : kAbnormalScore});
        m_model.addThreatEvent(file.path, state, threat_event::kDetected);
    } else if (state == 0 && known) {
        m_model.setFile(file.path, {}); // replaced by a harmless file
        m_model.addThreatEvent(file.path, known->state, threat_event::kRemoved);
    }
    if (m_sinceBatch.elapsed() >= kBatchMilliseconds) {
        m_sinceBatch.start();
        Q_EMIT batchReady();
    }
}

void ScanReporter::scanEnded(bool complete) {
    m_model.setScanning(false);
    Q_EMIT batchReady();
    Q_EMIT ended(complete, m_background,
                 QStringLiteral("files=%1 unsafe=%2 abnormal=%3")
                     .arg(m_scan.filesSeen())
                     .arg(m_unsafe)
                     .arg(m_abnormalFound));
}

} // namespace korvale::sim
