#pragma once

#include <map>
#include <optional>
#include <string>

namespace korvale::agent {

/// What udev knows of a device, by name: its properties, and "ATTR/NAME" for attributes.
using DeviceProperties = std::map<std::string, std::string>;

/// What a person is told of a device that came. Valid UTF-8 without control characters; empty: not
/// known.
struct DeviceFacts {
    std::string type; ///< "USB Drive", "Phone or Camera", "USB Device"
    std::string vendor;
    std::string product;
    std::string serial;

    friend bool operator==(const DeviceFacts&, const DeviceFacts&) = default;
};

/// Nothing for what nobody plugged in: hubs, and devices that are no usb_device.
[[nodiscard]] std::optional<DeviceFacts> deviceFactsOf(const DeviceProperties& properties);

} // namespace korvale::agent
