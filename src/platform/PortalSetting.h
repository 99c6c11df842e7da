#pragma once

#include "platform/SettingsPortal.h"

#include <QDBusMessage>
#include <QObject>
#include <QString>
#include <QVariant>

namespace korvale {

/// One setting of the user's that the desktop portal tells. Everything is asynchronous; without a
/// session bus or a portal it has no value. Main thread.
class PortalSetting final : public QObject {
    Q_OBJECT

public:
    /// `portal` outlives the object.
    PortalSetting(SettingsPortal& portal, QString group, QString key, QObject* parent = nullptr);

    /// Asks the portal and follows it from now on. To be called whenever the portal has started.
    void start();

    /// As last heard, of whatever kind; invalid when there is none or nothing has been heard yet.
    [[nodiscard]] const QVariant& value() const { return m_value; }

Q_SIGNALS:
    /// The portal said something about it, or answered for the first time, or went. The value need
    /// not be another.
    void changed();

private:
    void read();
    void takeAnswer(const QDBusMessage& reply);
    void ownerChanged(const QString& before, const QString& now);
    void settingChanged(const QString& group, const QString& key, const QVariant& value);
    void drop();
    void take(const QVariant& value);

    SettingsPortal& m_portal;
    QString m_group;
    QString m_key;
    bool m_isFollowed = false;
    bool m_isAsking = false;
    bool m_hasAppeared = false; ///< since the last question
    int m_question = 0;         ///< number of the last one; the answers to earlier ones are stale
    QVariant m_value;
};

} // namespace korvale
