#pragma once

#include "core/StatusText.h"
#include "platform/NameOwner.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>

#include <functional>

namespace korvale {

/// Asks a running program for its properties over and over, whenever it says that they changed and
/// whenever it comes or goes. Needs an event loop. Main thread.
class StatusFollower final : public QObject {
    Q_OBJECT
public:
    using Told = std::function<void(StatusAnswer answer, const QVariantMap& properties)>;

    /// `told` gets each answer, also an unchanged one; the first soon after the event loop runs.
    StatusFollower(const QDBusConnection& sessionBus, Told told);

private Q_SLOTS:
    void ask();
    void busLost();

private:
    void answered(const QDBusMessage& reply);

    QDBusConnection m_bus;
    NameOwner m_program;
    Told m_told;
    bool m_isAsking = false;
    bool m_isStale = false; ///< something changed while it asked
};

} // namespace korvale
