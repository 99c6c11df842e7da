#include "agent/devices/UsbGuard.h"

namespace korvale::agent {
namespace {

constexpr uint kAllow = 0; // else 1 block, 2 reject

} // namespace

std::string portOfRule(const std::string& rule) {
    constexpr std::string_view key = " via-port \"";
    const std::size_t at = rule.find(key);
    const std::size_t begin = at + key.size();
    const std::size_t end = at == std::string::npos ? at : rule.find('"', begin);
    return end == std::string::npos ? std::string() : rule.substr(begin, end - begin);
}

void UsbGuard::use(const QDBusConnection& bus) {
    m_bus = bus;
    m_bus->connect(QStringLiteral("org.usbguard1"), QStringLiteral("/org/usbguard1/Devices"),
                   QStringLiteral("org.usbguard.Devices1"), QStringLiteral("DevicePolicyApplied"),
                   this, SLOT(onPolicyApplied(QDBusMessage)));
}

void UsbGuard::onPolicyApplied(const QDBusMessage& message) {
    // Number, what was decided, the device as a rule, the rule that decided, attributes.
    if (message.signature() != QLatin1String("uusua{ss}")) {
        return;
    }
    const std::string port = portOfRule(message.arguments().at(2).toString().toStdString());
    if (!port.empty()) {
        Q_EMIT decided(port, message.arguments().at(1).toUInt() != kAllow);
    }
}

} // namespace korvale::agent
