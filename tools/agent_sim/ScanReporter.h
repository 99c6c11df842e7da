#pragma once

#include "agent/publish/HostCacheLists.h"
#include "agent_sim/AgentRooms.h"
#include "agent_sim/FolderScan.h"

#include <QElapsedTimer>
#include <QObject>
#include <QSet>

#include <functional>

namespace korvale::sim {

/// Turns what a scan finds into the agent's lists, and says when the others should hear of it.
/// Analyser messages and batches are rate limited.
class ScanReporter : public QObject {
    Q_OBJECT
public:
    /// Both must outlive this object.
    ScanReporter(FolderScan& scan, HostCacheLists& model, QObject* parent = nullptr);

    /// SHA-256 digests (hex) of the files that count as abnormal.
    void addAbnormal(const QString& digest) { m_abnormal.insert(digest.toLower()); }
    /// One digest a line, blank lines and lines with '#' skipped. An empty text, or what is wrong.
    QString loadAbnormal(const QString& file);

    /// An empty text, or why there is no scan.
    QString start(const QString& folder, bool background);

Q_SIGNALS:
    void analysing(const QString& path);
    /// The model has something to publish.
    void batchReady();
    /// `summary` is a line for people.
    void ended(bool complete, bool background, const QString& summary);

private:
    void fileOpened(const QString& path);
    void fileScanned(const ScannedFile& file);
    void scanEnded(bool complete);
    [[nodiscard]] int verdict(const ScannedFile& file) const;

    FolderScan& m_scan;
    HostCacheLists& m_model;
    QSet<QString> m_abnormal;
    QElapsedTimer m_sinceAnalyser;
    QElapsedTimer m_sinceBatch;
    int m_unsafe = 0;
    int m_abnormalFound = 0;
    bool m_background = false;
};

} // namespace korvale::sim
