#include "core/StatusPublisher.h"

#include "core/StatusAdaptor.h"
#include "core/StatusProperties.h"

#include <QDBusMessage>
#include <QStringList>

namespace korvale {

StatusPublisher::StatusPublisher(StatusWatch& watch, QObject* parent)
    : QObject(parent), m_watch(watch) {}

void StatusPublisher::start() {
    m_watch.look();
    m_told = properties();
    connect(&m_watch, &StatusWatch::changed, this, &StatusPublisher::tell);
}

QVariantMap StatusPublisher::properties() const {
    return statusProperties(m_watch.report());
}

void StatusPublisher::offerOn(QObject& object) {
    new StatusAdaptor(object, [this] { return properties(); });
}

void StatusPublisher::useSessionBus(const QDBusConnection& sessionBus) {
    m_bus = sessionBus;
}

void StatusPublisher::tell() {
    const QVariantMap now = properties();
    QVariantMap changed;
    for (auto property = now.begin(); property != now.end(); ++property) {
        if (m_told.value(property.key()) != property.value()) {
            changed.insert(property.key(), property.value());
        }
    }
    m_told = now;
    if (changed.isEmpty() || !m_bus || !m_bus->isConnected()) {
        return;
    }
    QDBusMessage signal = QDBusMessage::createSignal(
        QString::fromLatin1(statusPath), QStringLiteral("org.freedesktop.DBus.Properties"),
        QStringLiteral("PropertiesChanged"));
    signal << QString::fromLatin1(statusInterface) << changed << QStringList();
    m_bus->send(signal);
}

} // namespace korvale
