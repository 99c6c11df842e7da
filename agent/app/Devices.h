#pragma once

#include "agent/devices/DeviceMonitor.h"
#include "agent/devices/UsbGuard.h"

#include <QDBusConnection>
#include <QHash>
#include <QJsonArray>
#include <QObject>

#include <chrono>

namespace korvale::agent {

class Publishing;

/// Tells programs of devices that come, and whether they may be used. Main thread.
class Devices : public QObject {
    Q_OBJECT
public:
    /// So long USBGuard has to decide, once a device is there.
    static constexpr std::chrono::milliseconds kDecisionTime{500};
    static constexpr qsizetype kMostListed = 200;
    static constexpr qsizetype kMostPorts = 256;

    /// Must outlive this object.
    explicit Devices(Publishing& publishing, QObject* parent = nullptr);

    void use(const QDBusConnection& bus) { m_guard.use(bus); }
    /// A device was plugged in at that port.
    void came(const std::string& port, const DeviceFacts& device);
    void went(const std::string& port);
    /// USBGuard refuses it, or not.
    void decided(const std::string& port, bool blocked);
    /// Those that came since the start, oldest first.
    [[nodiscard]] const QJsonArray& list() const { return m_list; }

Q_SIGNALS:
    /// One of the twenty notifications is to be sent.
    void notification(const QString& name);

private:
    struct Port {
        DeviceFacts device;
        bool blocked = false;
        bool told = false; ///< with that action
    };
    void tell(Port& port);

    Publishing& m_publishing;
    DeviceMonitor m_monitor;
    UsbGuard m_guard;
    QHash<QString, Port> m_ports;
    QHash<QString, bool> m_decisions; ///< that came before their devices
    QJsonArray m_list;
};

} // namespace korvale::agent
