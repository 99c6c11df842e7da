#include "platform/SystemBus.h"

#include "platform/BusSearch.h"

#include <QFile>
#include <QFileInfo>
#include <QFileSystemWatcher>

#include <algorithm>

namespace korvale {
namespace {

constexpr int firstRetryMs = 20;
constexpr int longestRetryMs = 2500;

QString nextConnectionName() {
    static int count = 0; // main thread only
    return QStringLiteral("com.korvale.ui.system-bus-%1").arg(++count);
}

} // namespace

SystemBus::SystemBus(int answerLimitMs, QByteArray (*address)(), QObject* parent)
    : QObject(parent),
      m_answerLimitMs(answerLimitMs),
      m_address(address),
      m_retryDelayMs(firstRetryMs) {
    m_retry.setSingleShot(true);
    connect(&m_retry, &QTimer::timeout, this, &SystemBus::tryNow);
}

SystemBus::~SystemBus() {
    if (m_state == State::Connected) {
        QDBusConnection::disconnectFromBus(m_name);
    }
}

QDBusConnection SystemBus::connection() const {
    return QDBusConnection(m_name);
}

void SystemBus::start() {
    if (m_state != State::Idle) {
        return;
    }
    m_state = State::FirstAttempt;
    tryNow();
}

void SystemBus::finishFirstAttempt(int timeoutMs) {
    if (m_state != State::FirstAttempt) {
        return;
    }
    m_search.reset();
    BusSearch search(m_address(), timeoutMs);
    onSearched(search.wait());
}

void SystemBus::tryNow() {
    m_search = std::make_unique<BusSearch>(m_address(), m_answerLimitMs);
    connect(m_search.get(), &BusSearch::finished, this, &SystemBus::onSearched);
    m_search->start();
}

void SystemBus::onSearched(const QString& address) {
    if (m_search) {
        m_search.release()->deleteLater(); // it is the one that is speaking
    }
    if (!address.isNull()) {
        connectTo(address);
    }
    if (m_state == State::Connected) {
        return;
    }
    const bool first = m_state == State::FirstAttempt;
    m_state = State::Absent;
    retryLater();
    if (first) {
        Q_EMIT firstAttemptFailed();
    }
}

void SystemBus::connectTo(const QString& address) {
    m_name = nextConnectionName();
    // By the address that has just answered: of a list, Qt might pick one that does not.
    QDBusConnection bus = QDBusConnection::connectToBus(address, m_name);
    const bool watched = bus.connect(QString(), QStringLiteral("/org/freedesktop/DBus/Local"),
                                     QStringLiteral("org.freedesktop.DBus.Local"),
                                     QStringLiteral("Disconnected"), this, SLOT(onDisconnected()));
    if (!watched || !bus.isConnected()) {
        QDBusConnection::disconnectFromBus(m_name);
        return;
    }
    m_state = State::Connected;
    m_retryDelayMs = firstRetryMs;
    m_folders.reset();
    Q_EMIT connected();
}

void SystemBus::onDisconnected() {
    if (m_state != State::Connected || connection().isConnected()) {
        return;
    }
    QDBusConnection::disconnectFromBus(m_name);
    m_state = State::Absent;
    retryLater();
    Q_EMIT lost();
}

void SystemBus::retryLater() {
    watchSocketFolders();
    m_retry.start(m_retryDelayMs);
    m_retryDelayMs = std::min(2 * m_retryDelayMs, longestRetryMs);
}

void SystemBus::watchSocketFolders() {
    if (m_folders) {
        return;
    }
    m_folders = std::make_unique<QFileSystemWatcher>();
    for (const QByteArray& entry : m_address().split(';')) {
        const QString socket = QFile::decodeName(busAddressValue(entry, "path"));
        const QString folder = QFileInfo(socket).path();
        if (!socket.isEmpty() && QFileInfo::exists(folder)) {
            m_folders->addPath(folder);
        }
    }
    connect(m_folders.get(), &QFileSystemWatcher::directoryChanged, this, [this] {
        // The socket appears a moment before the daemon listens: look again in quick succession.
        m_retryDelayMs = firstRetryMs;
        if (m_retry.isActive() && m_retry.remainingTime() > firstRetryMs) {
            m_retry.start(firstRetryMs);
        }
    });
}

} // namespace korvale
