#pragma once

#include "model/StatusWatch.h"

#include <QDBusConnection>
#include <QObject>
#include <QVariantMap>

#include <optional>

namespace korvale {

/// Keeps com.korvale.ui.Status1 on the session bus in step with the state: what has become another
/// value is told in one PropertiesChanged. Main thread; nothing waits.
class StatusPublisher final : public QObject {
    Q_OBJECT
public:
    /// `watch` outlives the object.
    explicit StatusPublisher(StatusWatch& watch, QObject* parent = nullptr);

    /// Makes the interface part of `object`, once, before that is exported. Nobody asks `object`
    /// any more once the publisher has ended.
    void offerOn(QObject& object);

    /// Changes are told from now on; what is so at this moment is read by whoever finds the
    /// program's name. To be called once.
    void start();
    /// Changes are told on this bus from now on; one that is not connected hears none.
    void useSessionBus(const QDBusConnection& sessionBus);

private:
    [[nodiscard]] QVariantMap properties() const;
    void tell();

    StatusWatch& m_watch;
    std::optional<QDBusConnection> m_bus;
    QVariantMap m_told;
};

} // namespace korvale
