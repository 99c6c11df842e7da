#pragma once

#include "platform/NameOwner.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QString>
#include <QVariant>

namespace korvale {

/// One setting of the user's that the desktop portal tells (org.freedesktop.portal.Settings).
/// Everything is asynchronous; without a session bus or a portal it has no value. What others than
/// the portal's owner send is not heard. Main thread.
class PortalSetting final : public QObject {
    Q_OBJECT

public:
    PortalSetting(QString group, QString key, QObject* parent = nullptr);

    /// Asks the portal and follows it from now on, for each new connection. A bus that is not
    /// connected is no portal.
    void start(const QDBusConnection& sessionBus);

    /// As last heard, of whatever kind; invalid when there is none or nothing has been heard yet.
    [[nodiscard]] const QVariant& value() const { return m_value; }

Q_SIGNALS:
    /// The portal said something about it, or answered for the first time, or went. The value need
    /// not be another.
    void changed();

private Q_SLOTS:
    void settingChanged(const QDBusMessage& message);

private:
    void read();
    void takeAnswer(const QDBusMessage& reply);
    void ownerChanged(const QString& before, const QString& now);
    void drop();
    void take(const QVariant& value);

    QString m_group;
    QString m_key;
    QDBusConnection m_bus{QString()};
    NameOwner m_portal;
    bool m_isAsking = false;
    bool m_hasAppeared = false; ///< since the last question
    int m_question = 0;         ///< number of the last one; the answers to earlier ones are stale
    QVariant m_value;
};

} // namespace korvale
