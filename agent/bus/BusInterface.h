#pragma once

#include <QString>

class QDBusConnection;
class QDBusMessage;

namespace korvale::agent {

/// One D-Bus interface of the agent's object.
class BusInterface {
public:
    virtual ~BusInterface() = default;
    [[nodiscard]] virtual QString interfaceName() const = 0;
    /// The `<interface>` element that introspection shows.
    [[nodiscard]] virtual QString introspection() const = 0;
    /// Takes a call of this interface and answers it, now or later. False: there is no such method.
    virtual bool handle(const QDBusMessage& message, const QDBusConnection& connection) = 0;
};

} // namespace korvale::agent
