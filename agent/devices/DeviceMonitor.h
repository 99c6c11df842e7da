#pragma once

#include "agent/devices/DeviceFacts.h"

#include <QObject>
#include <QSocketNotifier>

#include <memory>
#include <set>
#include <string>

struct udev;
struct udev_monitor;
struct udev_device;

namespace korvale::agent {

/// Hears from udev of USB devices that are plugged in while the agent runs. Main thread; never
/// waits.
class DeviceMonitor : public QObject {
    Q_OBJECT
public:
    explicit DeviceMonitor(QObject* parent = nullptr);
    ~DeviceMonitor() override;

    /// Devices can be heard of.
    [[nodiscard]] bool works() const { return m_notifier != nullptr; }

Q_SIGNALS:
    /// `port` is where it was plugged in, "1-2": the name that USBGuard knows it by.
    void came(const std::string& port, const korvale::agent::DeviceFacts& device);
    void went(const std::string& port);

private:
    void take();
    void look(udev_device* device);

    struct Release {
        void operator()(udev* context) const;
        void operator()(udev_monitor* monitor) const;
    };
    std::unique_ptr<udev, Release> m_udev;
    std::unique_ptr<udev_monitor, Release> m_monitor;
    std::unique_ptr<QSocketNotifier> m_notifier;
    std::set<std::string> m_present; ///< told already: udev tells of a device more than once
};

} // namespace korvale::agent
