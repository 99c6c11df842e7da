#include "platform/PortalSetting.h"

#include "platform/BusCalls.h"

#include <QDBusPendingCall>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>

#include <utility>

namespace korvale {
namespace {

/// Read answers a variant inside a variant.
QVariant unwrapped(QVariant value) {
    while (value.metaType() == QMetaType::fromType<QDBusVariant>()) {
        value = value.value<QDBusVariant>().variant();
    }
    return value;
}

} // namespace

PortalSetting::PortalSetting(SettingsPortal& portal, QString group, QString key, QObject* parent)
    : QObject(parent), m_portal(portal), m_group(std::move(group)), m_key(std::move(key)) {
    connect(&portal, &SettingsPortal::ownerChanged, this, &PortalSetting::ownerChanged);
    connect(&portal, &SettingsPortal::settingChanged, this, &PortalSetting::settingChanged);
}

void PortalSetting::start() {
    m_isFollowed = true;
    ++m_question; // whoever was asked is on another bus
    m_isAsking = false;
    drop();
    if (m_portal.isOnABus()) {
        read();
    }
}

void PortalSetting::read() {
    m_hasAppeared = false;
    ++m_question;
    const QDBusPendingCall question = m_portal.read(m_group, m_key);
    m_isAsking = !hasFailedAtOnce(question);
    if (!m_isAsking) {
        return; // the bus has just gone
    }
    auto* watcher = new QDBusPendingCallWatcher(question, this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [this, watcher, number = m_question] {
                watcher->deleteLater();
                if (number == m_question) {
                    takeAnswer(watcher->reply());
                }
            });
}

void PortalSetting::takeAnswer(const QDBusMessage& reply) {
    m_isAsking = false;
    if (reply.type() == QDBusMessage::ReplyMessage && !reply.arguments().isEmpty()) {
        take(reply.arguments().constFirst());
    } else if (m_hasAppeared && !reply.service().startsWith(u':')) {
        read(); // nobody was there when the bus was asked, but somebody is now
    }
}

void PortalSetting::ownerChanged(const QString& before, const QString& now) {
    if (!before.isEmpty()) {
        ++m_question; // whoever was asked is gone
        m_isAsking = false;
        drop();
    }
    if (now.isEmpty() || !m_isFollowed) {
        return;
    }
    if (m_isAsking) {
        m_hasAppeared = true; // and answers, unless the bus has refused in its place before
    } else {
        read();
    }
}

/// A portal that goes takes its value along.
void PortalSetting::drop() {
    if (m_value.isValid()) {
        m_value = QVariant();
        Q_EMIT changed();
    }
}

void PortalSetting::settingChanged(const QString& group, const QString& key,
                                   const QVariant& value) {
    if (m_isFollowed && group == m_group && key == m_key) {
        take(value);
    }
}

void PortalSetting::take(const QVariant& value) {
    m_value = unwrapped(value);
    Q_EMIT changed();
}

} // namespace korvale
