#include "agent/devices/DeviceFacts.h"

#include "agent/base/Utf8.h"

#include <algorithm>
#include <initializer_list>
#include <string_view>

namespace korvale::agent {
namespace {

constexpr std::size_t kLongest = 128;

std::string valueOf(const DeviceProperties& properties, const char* name) {
    const auto found = properties.find(name);
    return found == properties.end() ? std::string() : found->second;
}

int digitOf(char c) {
    constexpr std::string_view digits = "0123456789abcdef";
    const std::size_t at = digits.find(c >= 'A' && c <= 'F' ? static_cast<char>(c + 32) : c);
    return at == std::string_view::npos ? -1 : static_cast<int>(at);
}

/// udev writes what is no plain character as \xNN in the names that end in _ENC.
std::string decoded(std::string_view text) {
    std::string bytes;
    while (!text.empty()) {
        if (text.size() >= 4 && text.starts_with("\\x") && digitOf(text[2]) >= 0 &&
            digitOf(text[3]) >= 0) {
            bytes += static_cast<char>(digitOf(text[2]) * 16 + digitOf(text[3]));
            text.remove_prefix(4);
        } else {
            bytes += text.front();
            text.remove_prefix(1);
        }
    }
    return bytes;
}

/// What the maker of a device wrote into it may be anything.
std::string tidy(const std::string& bytes) {
    std::string text;
    const std::string valid = validUtf8(bytes);
    std::string_view left = valid;
    while (!left.empty() && text.size() < kLongest) {
        const std::size_t length = std::max<std::size_t>(utf8Length(left), 1);
        const std::string_view character = left.substr(0, length);
        text += isControl(character) ? std::string_view(" ") : character;
        left.remove_prefix(character.size());
    }
    const std::size_t first = text.find_first_not_of(' ');
    const std::size_t last = text.find_last_not_of(' ');
    return first == std::string::npos ? std::string() : text.substr(first, last - first + 1);
}

std::string firstOf(const DeviceProperties& properties, std::initializer_list<const char*> names) {
    for (const char* const name : names) {
        std::string text = tidy(decoded(valueOf(properties, name)));
        if (!text.empty()) {
            return text;
        }
    }
    return {};
}

std::string typeOf(const DeviceProperties& properties) {
    const std::string interfaces = valueOf(properties, "ID_USB_INTERFACES");
    const auto has = [&](std::string_view part) {
        return interfaces.find(part) != std::string::npos;
    };
    if (valueOf(properties, "ID_MTP_DEVICE") == "1" || valueOf(properties, "ID_GPHOTO2") == "1" ||
        has(":060101:")) {
        return "Phone or Camera";
    }
    return has(":08") ? "USB Drive" : has(":03") ? "Input Device" : "USB Device";
}

} // namespace

std::optional<DeviceFacts> deviceFactsOf(const DeviceProperties& properties) {
    constexpr std::string_view hub = ":09";
    if (valueOf(properties, "DEVTYPE") != "usb_device" ||
        valueOf(properties, "ID_USB_INTERFACES").starts_with(hub)) {
        return std::nullopt;
    }
    return DeviceFacts{
        typeOf(properties),
        firstOf(properties, {"ID_VENDOR_FROM_DATABASE", "ID_VENDOR_ENC", "ATTR/manufacturer"}),
        firstOf(properties, {"ID_MODEL_FROM_DATABASE", "ID_MODEL_ENC", "ATTR/product"}),
        firstOf(properties, {"ID_SERIAL_SHORT", "ATTR/serial"})};
}

} // namespace korvale::agent
