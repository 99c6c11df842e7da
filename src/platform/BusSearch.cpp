#include "platform/BusSearch.h"

#include "platform/BusProbe.h"

#include <QElapsedTimer>

#include <algorithm>

namespace korvale {

BusSearch::BusSearch(const QByteArray& addressList, int timeoutMs, QObject* parent)
    : QObject(parent), m_entries(addressList.split(';')) {
    m_limit.setSingleShot(true);
    m_limit.setInterval(timeoutMs);
    connect(&m_limit, &QTimer::timeout, this, [this] {
        m_entries.removeFirst();
        askNext();
    });
}

BusSearch::~BusSearch() = default;

void BusSearch::start() {
    QMetaObject::invokeMethod(this, &BusSearch::askNext, Qt::QueuedConnection);
}

void BusSearch::askNext() {
    while (!m_entries.isEmpty()) {
        m_probe = std::make_unique<BusProbe>(m_entries.constFirst());
        if (m_probe->state() == BusProbe::State::Asking) {
            // Queued, as the probe does not outlive what follows.
            connect(m_probe.get(), &BusProbe::answered, this, &BusSearch::onAnswered,
                    Qt::QueuedConnection);
            m_probe->watch();
            m_limit.start();
            return;
        }
        if (m_probe->state() == BusProbe::State::Answered) {
            break;
        }
        m_entries.removeFirst();
    }
    Q_EMIT finished(QString::fromUtf8(m_entries.value(0)));
}

void BusSearch::onAnswered() {
    // An answer that came together with the time-out is about an entry that is no longer in hand.
    if (!m_limit.isActive() || m_probe->state() == BusProbe::State::Asking) {
        return;
    }
    m_limit.stop();
    if (m_probe->state() == BusProbe::State::Answered) {
        Q_EMIT finished(QString::fromUtf8(m_entries.constFirst()));
        return;
    }
    m_entries.removeFirst();
    askNext();
}

QString BusSearch::wait() {
    QElapsedTimer spent;
    spent.start();
    while (!m_entries.isEmpty()) {
        // An equal share for each that is left, so that a silent one leaves time for the next.
        const auto left = m_limit.interval() - static_cast<int>(spent.elapsed());
        const auto share = std::max(left, 0) / static_cast<int>(m_entries.size());
        const QByteArray entry = m_entries.takeFirst();
        if (BusProbe(entry).waitBriefly(share) == BusProbe::State::Answered) {
            return QString::fromUtf8(entry);
        }
    }
    return {};
}

} // namespace korvale
