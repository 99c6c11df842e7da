#pragma once

#include "agent_sim/FileHasher.h"

#include <QDirIterator>
#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <memory>
#include <vector>

namespace korvale::sim {

/// What the scan saw of one file.
struct ScannedFile {
    QString path;
    QString digest; ///< SHA-256, lower-case hex
    bool hasTestString = false;
};

/// Walks a folder and hashes its files, in slices of the event loop: requests and commands are
/// served meanwhile. Links are not followed, other file systems not entered, and depth and number
/// of files are bounded.
class FolderScan : public QObject {
    Q_OBJECT
public:
    static constexpr std::size_t kMostDepth = 64;
    static constexpr qint64 kMostFiles = 1'000'000;

    explicit FolderScan(QObject* parent = nullptr);

    /// An empty text, or why there is no scan. A scan that runs is replaced.
    QString start(const QString& folder);
    /// Ends the scan early (`ended` follows with `complete` false); false when none runs.
    bool stop();
    [[nodiscard]] bool isRunning() const { return m_running; }
    [[nodiscard]] qint64 filesSeen() const { return m_files; }
    /// Least time spent on one file, for people who want to watch.
    void setPace(int milliseconds) { m_paceMilliseconds = milliseconds; }

Q_SIGNALS:
    void reading(const QString& path);
    void scanned(const ScannedFile& file);
    void ended(bool complete);

private:
    void slice();
    bool nextStep();
    bool openNextFile();
    void enter(const QString& folder);
    void finish(bool complete);

    std::vector<std::unique_ptr<QDirIterator>> m_folders; ///< the way down to the present folder
    FileHasher m_hasher;
    QString m_path;
    QTimer m_slices;
    QElapsedTimer m_sinceFile;
    quint64 m_device = 0;
    qint64 m_files = 0;
    int m_paceMilliseconds = 0;
    bool m_running = false;
};

} // namespace korvale::sim
