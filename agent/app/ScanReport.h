#pragma once

#include "agent/scan/ScanTypes.h"

#include <QElapsedTimer>
#include <QObject>

#include <deque>
#include <map>

namespace korvale::agent {

class Publishing;
class Scanner;
struct ScanInfo;

/// Tells programs how scans go: the file at hand at most five times a second, the number of files,
/// whether one runs, and what came of it. Main thread.
class ScanReport : public QObject {
    Q_OBJECT
public:
    static constexpr qint64 kAnalyserPeriod = 200; ///< milliseconds
    static constexpr std::size_t kMostEnded = 32;
    struct Ended {
        ScanSummary summary;
        qint64 time = 0; ///< seconds since 1970
    };

    /// Both must outlive this object.
    ScanReport(Scanner& scanner, Publishing& publishing, QObject* parent = nullptr);

    /// The scans that ended last, `kMostEnded` at most, the newest behind. Each stands here before
    /// its end is told.
    [[nodiscard]] const std::deque<Ended>& ended() const { return m_ended; }

Q_SIGNALS:
    /// One of the twenty notifications is to be sent.
    void notification(const QString& name);

private:
    void runningChanged(bool running);
    void progress(const ScanInfo& scan, const std::string& path);
    void hasEnded(const ScanSummary& summary);
    void showCount();

    Publishing& m_publishing;
    std::map<std::uint64_t, std::uint64_t> m_analysed; ///< by running scan
    std::uint64_t m_before = 0;                        ///< files of scans that have ended
    QElapsedTimer m_sinceAnalyser;
    std::deque<Ended> m_ended;
};

/// What a person who asked for the scan is told at its end.
[[nodiscard]] QString scanSentence(const ScanSummary& summary);

} // namespace korvale::agent
