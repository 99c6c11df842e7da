#pragma once

#include "agent/publish/HostCacheLists.h"
#include "agent/publish/WriterThread.h"

#include <QElapsedTimer>
#include <QHash>
#include <QObject>
#include <QTimer>

#include <array>
#include <chrono>

namespace korvale::agent {

/// Brings the lists to their readers: writes the files that changed, then "header.log", then asks
/// for the notification, at most twice a second. What cannot be written (a full disk) stays changed
/// and is tried again until there is room. Main thread; never waits for the disk.
class Publishing : public QObject {
    Q_OBJECT
public:
    static constexpr std::chrono::milliseconds kBatchPeriod{500};
    static constexpr std::chrono::seconds kRetryPeriod{5};
    /// So long a batch repeats the bits of the lists that the batches before it changed: a reader
    /// that was busy sees only the latest header, and must not miss a finding for that. Device
    /// events are left out: their reader takes every record of an announced file for a new one.
    static constexpr std::chrono::seconds kRepeatPeriod{5};

    explicit Publishing(const QString& folder, QObject* parent = nullptr);

    [[nodiscard]] HostCacheLists& lists() { return m_lists; }
    /// To be called after every change of the lists.
    void changed();
    /// Writes one file of its own and asks for its notification once it is there. Dropped, with
    /// `problem`, while more than `kMostWaiting` of them wait for the disk.
    void tell(const QString& file, const QJsonObject& content, const QString& notification);
    /// True when all is written and announced.
    [[nodiscard]] bool isIdle() const;

    static constexpr int kMostWaiting = 64;

Q_SIGNALS:
    /// One of the twenty notifications is to be sent.
    void notification(const QString& name);
    /// The files could not be written; one sentence, only once in a row.
    void problem(const QString& sentence);
    /// After `problem`: the files are written again.
    void recovered();
    void idle();

private:
    void schedule();
    void send();
    void done(quint64 job, const QString& problem);
    void batchDone(const QString& problem);
    [[nodiscard]] std::uint32_t maskWithRecent(std::uint32_t changed);

    HostCacheLists m_lists;
    WriterThread m_writer;
    QTimer m_timer;
    QElapsedTimer m_sinceBatch;
    std::array<QElapsedTimer, 3> m_sinceBit; ///< since bits 1, 2 and 4 were changed last
    QHash<quint64, QString> m_told;          ///< job to notification
    quint64 m_lastJob = 0;
    quint64 m_batchJob = 0; ///< 0: none on its way
    std::uint32_t m_batchBits = 0;
    bool m_failing = false;
};

} // namespace korvale::agent
