#include "platform/SystemBus.h"

#include "platform/BusCalls.h"
#include "platform/BusSearch.h"

#include <QDBusPendingCall>
#include <QDBusPendingCallWatcher>
#include <QElapsedTimer>
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
    dropGreeting();
    if (m_state == State::Connected) {
        QDBusConnection::disconnectFromPeer(m_name);
    }
}

QDBusConnection SystemBus::connection() const {
    return QDBusConnection(m_state == State::Connected ? m_name : QString());
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
    dropGreeting();
    QElapsedTimer spent;
    spent.start();
    const QString address = BusSearch(m_address(), timeoutMs).wait();
    const int left = timeoutMs - static_cast<int>(spent.elapsed());
    if (address.isNull() || left <= 0 || !greet(address, left)) {
        becomeAbsent();
        return;
    }
    m_greeting->waitForFinished();
    onGreeted();
}

void SystemBus::tryNow() {
    m_search = std::make_unique<BusSearch>(m_address(), m_answerLimitMs);
    connect(m_search.get(), &BusSearch::finished, this, &SystemBus::onSearched);
    m_search->start();
}

void SystemBus::onSearched(const QString& address) {
    m_search.release()->deleteLater(); // it is the one that is speaking
    if (address.isNull() || !greet(address, m_answerLimitMs)) {
        becomeAbsent();
        return;
    }
    connect(m_greeting.get(), &QDBusPendingCallWatcher::finished, this, &SystemBus::onGreeted);
}

/// By the address that has just answered: of a list, Qt might pick one that does not.
bool SystemBus::greet(const QString& address, int timeoutMs) {
    m_name = nextConnectionName();
    QDBusConnection bus = QDBusConnection::connectToPeer(address, m_name);
    const bool watched = bus.connect(QString(), QStringLiteral("/org/freedesktop/DBus/Local"),
                                     QStringLiteral("org.freedesktop.DBus.Local"),
                                     QStringLiteral("Disconnected"), this, SLOT(onDisconnected()));
    const QDBusPendingCall hello = bus.asyncCall(busCall("Hello"), timeoutMs);
    if (!watched || hasFailedAtOnce(hello)) {
        QDBusConnection::disconnectFromPeer(m_name);
        return false;
    }
    m_greeting = std::make_unique<QDBusPendingCallWatcher>(hello);
    return true;
}

void SystemBus::onGreeted() {
    if (m_greeting->isError()) {
        dropGreeting(); // refused, or no word for too long
        becomeAbsent();
        return;
    }
    m_greeting.release()->deleteLater();
    becomeConnected();
}

void SystemBus::dropGreeting() {
    if (m_greeting) {
        m_greeting.release()->deleteLater();
        QDBusConnection::disconnectFromPeer(m_name);
    }
}

void SystemBus::becomeConnected() {
    m_state = State::Connected;
    m_retryDelayMs = firstRetryMs;
    m_folders.reset();
    Q_EMIT connected();
}

void SystemBus::becomeAbsent() {
    const bool first = m_state == State::FirstAttempt;
    m_state = State::Absent;
    retryLater();
    if (first) {
        Q_EMIT firstAttemptFailed();
    }
}

void SystemBus::onDisconnected() {
    if (m_state != State::Connected || connection().isConnected()) {
        return; // a greeting that fails says so itself
    }
    QDBusConnection::disconnectFromPeer(m_name);
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
