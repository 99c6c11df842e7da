#include "agent/bus/SleepWatch.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

namespace korvale::agent {
namespace {

const QString kService = QStringLiteral("org.freedesktop.login1");
const QString kPath = QStringLiteral("/org/freedesktop/login1");
const QString kManager = QStringLiteral("org.freedesktop.login1.Manager");

} // namespace

void SleepWatch::use(const QDBusConnection& bus) {
    m_bus = bus;
    m_bus->connect(kService, kPath, kManager, QStringLiteral("PrepareForSleep"), this,
                   SLOT(prepare(bool)));
    m_coming = std::make_unique<QDBusServiceWatcher>(kService, bus,
                                                     QDBusServiceWatcher::WatchForRegistration);
    connect(m_coming.get(), &QDBusServiceWatcher::serviceRegistered, this, &SleepWatch::delay);
    delay();
}

void SleepWatch::delay() {
    QDBusMessage message =
        QDBusMessage::createMethodCall(kService, kPath, kManager, QStringLiteral("Inhibit"));
    message << QStringLiteral("sleep") << QStringLiteral("korvale-agent")
            << QStringLiteral("Programs that wait for a verdict are let run first")
            << QStringLiteral("delay");
    message.setAutoStartService(false);
    auto* const watcher = new QDBusPendingCallWatcher(m_bus->asyncCall(message), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        watcher->deleteLater();
        const QDBusPendingReply<QDBusUnixFileDescriptor> reply = *watcher;
        m_delay = reply.isValid() ? reply.value() : QDBusUnixFileDescriptor();
    });
}

void SleepWatch::prepare(bool asleep) {
    Q_EMIT sleeping(asleep);
    if (asleep) {
        m_delay = QDBusUnixFileDescriptor();
    } else {
        delay();
    }
}

} // namespace korvale::agent
