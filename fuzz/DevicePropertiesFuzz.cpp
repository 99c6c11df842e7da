// What udev says of a device, and with it what the device says of itself, "NAME=VALUE" a line; and
// what USBGuard calls a rule.

#include "Target.h"
#include "agent/base/Utf8.h"
#include "agent/devices/DeviceFacts.h"
#include "agent/devices/UsbGuard.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>

using namespace korvale::agent;
using korvale::fuzz::require;

namespace {

constexpr std::array<std::string_view, 16> words{"DEVTYPE=usb_device\n",
                                                 "ID_VENDOR_ENC=",
                                                 "ID_MODEL_ENC=",
                                                 "ID_VENDOR_FROM_DATABASE=",
                                                 "ID_SERIAL_SHORT=",
                                                 "ATTR/serial=",
                                                 "ATTR/manufacturer=",
                                                 "ID_USB_INTERFACES=:080650:\n",
                                                 "ID_USB_INTERFACES=:090000:\n",
                                                 "ID_MTP_DEVICE=1\n",
                                                 "\\x20",
                                                 "\\xff",
                                                 "\\x0a",
                                                 "\\x",
                                                 "\xe2\x80\xae",
                                                 " via-port \"1-2\""};
constexpr korvale::fuzz::Grammar udev{"\n\\:\" ", '=', korvale::fuzz::Spelling::AsItIs, words};

DeviceProperties propertiesOf(std::string_view text) {
    DeviceProperties properties;
    while (!text.empty()) {
        const std::string_view line = text.substr(0, text.find('\n'));
        const std::size_t assign = line.find('=');
        if (assign != std::string_view::npos) {
            properties[std::string(line.substr(0, assign))] = line.substr(assign + 1);
        }
        text.remove_prefix(std::min(line.size() + 1, text.size()));
    }
    return properties;
}

/// One short line that controls nothing.
void check(std::string_view text) {
    require(text.size() < 128 + 4);
    require(!text.starts_with(' ') && !text.ends_with(' '));
    while (!text.empty()) {
        const std::size_t length = utf8Length(text);
        require(length > 0 && !isControl(text.substr(0, length)));
        text.remove_prefix(length);
    }
}

} // namespace

const korvale::fuzz::Grammar& korvale::fuzz::targetGrammar() {
    return udev;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text = korvale::fuzz::textOf(data, size);
    if (const auto facts = deviceFactsOf(propertiesOf(text))) {
        ++korvale::fuzz::taken;
        require(!facts->type.empty());
        for (const std::string& said :
             {facts->type, facts->vendor, facts->product, facts->serial}) {
            check(said);
        }
    }
    const std::string port = portOfRule(std::string(text));
    require(port.find('"') == std::string::npos);
    require(port.empty() || text.find("via-port \"" + port + '"') != std::string_view::npos);
    return 0;
}
