#pragma once

#include "agent/publish/HostCacheBatch.h"

#include <QObject>
#include <QThread>

#include <memory>

namespace korvale::agent {

/// Writes host-cache files on a thread of its own, so that a full or hanging disk holds up nobody
/// else. Jobs are done one after the other, in the order given; a file whose content is what was
/// written last stays as it is. Used from the thread that made it.
class WriterThread : public QObject {
    Q_OBJECT
public:
    explicit WriterThread(QString folder, QObject* parent = nullptr);
    /// Waits for the job at hand; those behind it are dropped.
    ~WriterThread() override;

    /// `done` follows, with the same number.
    void write(quint64 job, std::vector<HostCacheBatch::File> files);
    /// Jobs given and not yet done.
    [[nodiscard]] int waiting() const { return m_waiting; }

Q_SIGNALS:
    /// `problem` is empty when every file of the job is in its place. After a problem the files
    /// behind the one that failed were not tried.
    void done(quint64 job, const QString& problem);

private:
    class Worker;

    QThread m_thread;
    std::unique_ptr<Worker> m_worker;
    int m_waiting = 0;
};

} // namespace korvale::agent
