#include "agent/publish/Publishing.h"

#include "agent/publish/HostCacheNames.h"

#include <QJsonDocument>

#include <algorithm>
#include <utility>

namespace korvale::agent {
namespace {

constexpr std::array<std::uint32_t, 3> kRepeatedBits{bit::kFileStates, bit::kScannerState,
                                                     bit::kAnalysisCount};

} // namespace

Publishing::Publishing(const QString& folder, QObject* parent) : QObject(parent), m_writer(folder) {
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer); // a coarse one may be early: more than two a second
    connect(&m_timer, &QTimer::timeout, this, &Publishing::send);
    connect(&m_writer, &WriterThread::done, this, &Publishing::done);
}

void Publishing::changed() {
    if (m_batchJob == 0 && !m_timer.isActive()) {
        schedule();
    }
}

void Publishing::schedule() {
    std::chrono::milliseconds wait{0};
    if (m_failing) {
        wait = kRetryPeriod;
    } else if (m_sinceBatch.isValid()) {
        const std::chrono::milliseconds passed{m_sinceBatch.elapsed()};
        wait = std::max(wait, kBatchPeriod - passed);
    }
    m_timer.start(wait);
}

std::uint32_t Publishing::maskWithRecent(std::uint32_t changed) {
    std::uint32_t mask = changed;
    for (std::size_t i = 0; i < kRepeatedBits.size(); ++i) {
        QElapsedTimer& since = m_sinceBit.at(i);
        if ((changed & kRepeatedBits.at(i)) != 0) {
            since.start();
        } else if (since.isValid() &&
                   !since.hasExpired(std::chrono::milliseconds(kRepeatPeriod).count())) {
            mask |= kRepeatedBits.at(i);
        }
    }
    return mask;
}

void Publishing::send() {
    if (m_lists.changed() == 0) {
        return;
    }
    HostCacheBatch batch = m_lists.takeBatch(maskWithRecent(m_lists.changed()));
    m_batchBits = batch.bits;
    m_batchJob = ++m_lastJob;
    m_sinceBatch.start();
    m_writer.write(m_batchJob, std::move(batch.files));
}

void Publishing::tell(const QString& file, const QJsonObject& content,
                      const QString& notification) {
    if (m_told.size() >= kMostWaiting) {
        if (!std::exchange(m_failing, true)) {
            Q_EMIT problem(QStringLiteral("The disk of the host cache does not answer."));
        }
        return;
    }
    m_told.insert(++m_lastJob, notification);
    m_writer.write(m_lastJob, {{file, QJsonDocument(content).toJson(QJsonDocument::Compact)}});
}

void Publishing::done(quint64 job, const QString& trouble) {
    const QString name = m_told.take(job);
    if (trouble.isEmpty() && !name.isEmpty()) {
        Q_EMIT notification(name);
    }
    if (!trouble.isEmpty() && !std::exchange(m_failing, true)) {
        Q_EMIT problem(trouble);
    } else if (trouble.isEmpty() && std::exchange(m_failing, false)) {
        Q_EMIT recovered();
    }
    if (job == m_batchJob) {
        batchDone(trouble);
    }
    if (isIdle()) {
        Q_EMIT idle();
    }
}

void Publishing::batchDone(const QString& trouble) {
    m_batchJob = 0;
    if (trouble.isEmpty()) {
        Q_EMIT notification(QStringLiteral("com.korvale.timer.aggregated_messages"));
    } else {
        m_lists.markChanged(m_batchBits);
    }
    if (m_lists.changed() != 0) {
        schedule();
    }
}

bool Publishing::isIdle() const {
    return m_writer.waiting() == 0 && m_lists.changed() == 0 && m_batchJob == 0;
}

} // namespace korvale::agent
