#include "agent/devices/DeviceMonitor.h"

#include <libudev.h>
#include <string_view>

namespace korvale::agent {
namespace {

std::string textOf(const char* text) {
    return text == nullptr ? std::string() : std::string(text);
}

DeviceProperties propertiesOf(udev_device* device) {
    DeviceProperties properties;
    for (udev_list_entry* entry = udev_device_get_properties_list_entry(device); entry != nullptr;
         entry = udev_list_entry_get_next(entry)) {
        properties[textOf(udev_list_entry_get_name(entry))] =
            textOf(udev_list_entry_get_value(entry));
    }
    for (const char* const name : {"manufacturer", "product", "serial"}) {
        properties[std::string("ATTR/") + name] =
            textOf(udev_device_get_sysattr_value(device, name));
    }
    return properties;
}

} // namespace

void DeviceMonitor::Release::operator()(udev* context) const {
    udev_unref(context);
}

void DeviceMonitor::Release::operator()(udev_monitor* monitor) const {
    udev_monitor_unref(monitor);
}

DeviceMonitor::DeviceMonitor(QObject* parent)
    : QObject(parent),
      m_udev(udev_new()),
      m_monitor(m_udev ? udev_monitor_new_from_netlink(m_udev.get(), "udev") : nullptr) {
    if (!m_monitor ||
        udev_monitor_filter_add_match_subsystem_devtype(m_monitor.get(), "usb", "usb_device") < 0 ||
        udev_monitor_enable_receiving(m_monitor.get()) < 0) {
        return;
    }
    m_notifier = std::make_unique<QSocketNotifier>(udev_monitor_get_fd(m_monitor.get()),
                                                   QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &DeviceMonitor::take);
}

DeviceMonitor::~DeviceMonitor() = default;

void DeviceMonitor::take() {
    // The socket does not block: null when there is nothing (left).
    while (udev_device* const device = udev_monitor_receive_device(m_monitor.get())) {
        look(device);
        udev_device_unref(device);
    }
}

void DeviceMonitor::look(udev_device* device) {
    const std::string path = textOf(udev_device_get_syspath(device));
    const std::string action = textOf(udev_device_get_action(device));
    if (action == "remove") {
        m_present.erase(path);
        Q_EMIT went(textOf(udev_device_get_sysname(device)));
        return;
    }
    if ((action != "add" && action != "bind") || m_present.contains(path)) {
        return;
    }
    if (const auto facts = deviceFactsOf(propertiesOf(device))) {
        m_present.insert(path);
        Q_EMIT came(textOf(udev_device_get_sysname(device)), *facts);
    }
}

} // namespace korvale::agent
