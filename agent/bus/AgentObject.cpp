#include "agent/bus/AgentObject.h"

#include "agent/bus/BusInterface.h"
#include "agent/publish/NotificationNames.h"

#include <QDBusConnection>
#include <QDBusMessage>

#include <algorithm>
#include <utility>

namespace korvale::agent {

AgentObject::AgentObject(std::vector<BusInterface*> interfaces, QObject* parent)
    : QDBusVirtualObject(parent), m_interfaces(std::move(interfaces)) {}

bool AgentObject::handleMessage(const QDBusMessage& message, const QDBusConnection& connection) {
    // What is not taken here is answered by the library: no such method.
    return std::any_of(m_interfaces.begin(), m_interfaces.end(), [&](BusInterface* interface) {
        const bool isFor = message.interface().isEmpty()
                               ? interface == m_interfaces.front()
                               : message.interface() == interface->interfaceName();
        return isFor && interface->handle(message, connection);
    });
}

QString AgentObject::introspect(const QString& path) const {
    QString xml;
    if (path == kObjectPath) {
        for (const BusInterface* interface : m_interfaces) {
            xml += interface->introspection();
        }
    }
    return xml;
}

} // namespace korvale::agent
