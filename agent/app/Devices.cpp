#include "agent/app/Devices.h"

#include "agent/base/Log.h"
#include "agent/publish/Publishing.h"

#include <QDateTime>
#include <QJsonObject>
#include <QTimer>

namespace korvale::agent {

Devices::Devices(Publishing& publishing, QObject* parent)
    : QObject(parent), m_publishing(publishing) {
    connect(&m_monitor, &DeviceMonitor::came, this, &Devices::came);
    connect(&m_monitor, &DeviceMonitor::went, this, &Devices::went);
    connect(&m_guard, &UsbGuard::decided, this, &Devices::decided);
    m_publishing.lists().setDevicesOnce(true);
}

void Devices::came(const std::string& port, const DeviceFacts& device) {
    const QString name = QString::fromStdString(port);
    if (m_ports.size() >= kMostPorts) {
        m_ports.clear();
    }
    m_ports.insert(name, {device, m_decisions.take(name), false});
    QTimer::singleShot(kDecisionTime, this, [this, name] {
        if (const auto found = m_ports.find(name); found != m_ports.end() && !found->told) {
            tell(*found);
        }
    });
}

void Devices::went(const std::string& port) {
    const QString name = QString::fromStdString(port);
    m_ports.remove(name);
    m_decisions.remove(name);
}

void Devices::decided(const std::string& port, bool blocked) {
    const QString name = QString::fromStdString(port);
    const auto found = m_ports.find(name);
    if (found == m_ports.end()) {
        if (m_decisions.size() >= kMostPorts) {
            m_decisions.clear();
        }
        m_decisions.insert(name, blocked);
    } else if (found->blocked != blocked || !found->told) {
        found->blocked = blocked;
        tell(*found);
    }
}

void Devices::tell(Port& port) {
    port.told = true;
    const auto text = [](const std::string& utf8) { return QString::fromStdString(utf8); };
    const DeviceEvent event{text(port.device.type),
                            port.blocked ? QStringLiteral("Block") : QStringLiteral("FullAccess"),
                            text(port.device.vendor), text(port.device.product),
                            text(port.device.serial)};
    logInfo("A device came: " + port.device.type + ", " + port.device.vendor + ' ' +
            port.device.product + (port.blocked ? ", blocked" : ""));
    m_list.append(QJsonObject{{QStringLiteral("type"), event.type},
                              {QStringLiteral("action"), event.action},
                              {QStringLiteral("vendor"), event.vendor},
                              {QStringLiteral("product"), event.product},
                              {QStringLiteral("serial"), event.serial},
                              {QStringLiteral("time"), QDateTime::currentSecsSinceEpoch()}});
    if (m_list.size() > kMostListed) {
        m_list.removeFirst();
    }
    m_publishing.lists().addDeviceEvent(event);
    m_publishing.changed();
    Q_EMIT notification(QStringLiteral("com.korvale.devicecontrol.event"));
}

} // namespace korvale::agent
