#include "platform/BusSearch.h"

#include "platform/BusProbe.h"

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
    for (const QByteArray& entry : m_entries) {
        BusProbe probe(entry);
        if (probe.waitBriefly(m_limit.interval()) == BusProbe::State::Answered) {
            return QString::fromUtf8(entry);
        }
    }
    return {};
}

} // namespace korvale
