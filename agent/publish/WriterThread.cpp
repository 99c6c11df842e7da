#include "agent/publish/WriterThread.h"

#include "agent/publish/HostCacheWriter.h"

#include <QCryptographicHash>
#include <QHash>

#include <atomic>

namespace korvale::agent {

/// Lives on the thread.
class WriterThread::Worker : public QObject {
public:
    explicit Worker(QString folder) : m_writer(std::move(folder)) {}

    QString write(const std::vector<HostCacheBatch::File>& files) {
        for (const HostCacheBatch::File& file : files) {
            if (m_gaveUp) {
                return QStringLiteral("the agent is stopping");
            }
            const QByteArray digest =
                QCryptographicHash::hash(file.content, QCryptographicHash::Sha256);
            if (m_written.value(file.name) == digest) {
                continue;
            }
            m_written.remove(file.name);
            if (!m_writer.write(file.name, file.content)) {
                return m_writer.error();
            }
            m_written.insert(file.name, digest);
        }
        return {};
    }

    void giveUp() { m_gaveUp = true; }

private:
    HostCacheWriter m_writer;
    QHash<QString, QByteArray> m_written; ///< digests of what lies on the disk
    std::atomic<bool> m_gaveUp{false};
};

WriterThread::WriterThread(QString folder, QObject* parent)
    : QObject(parent), m_worker(std::make_unique<Worker>(std::move(folder))) {
    m_worker->moveToThread(&m_thread);
    m_thread.setObjectName(QStringLiteral("host cache"));
    m_thread.start();
}

WriterThread::~WriterThread() {
    m_worker->giveUp();
    m_thread.quit();
    m_thread.wait();
}

void WriterThread::write(quint64 job, std::vector<HostCacheBatch::File> files) {
    ++m_waiting;
    QMetaObject::invokeMethod(m_worker.get(),
                              [this, worker = m_worker.get(), job, files = std::move(files)] {
                                  const QString problem = worker->write(files);
                                  QMetaObject::invokeMethod(
                                      this,
                                      [this, job, problem] {
                                          --m_waiting;
                                          Q_EMIT done(job, problem);
                                      },
                                      Qt::QueuedConnection);
                              });
}

} // namespace korvale::agent
