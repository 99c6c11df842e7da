#pragma once

#include <QString>

#include <cstdint>

QT_BEGIN_NAMESPACE
class QKeyEvent;
QT_END_NAMESPACE

namespace korvale {

/// Modifier flags of a key event. Command is the Control key.
enum ModifierFlag : std::uint32_t {
    CapsLockFlag = 65536,
    ShiftFlag = 131072,
    MetaFlag = 262144,
    AltFlag = 524288,
    CommandFlag = 1048576,
    DeviceIndependentFlags = 0xFFFF0000,
};

[[nodiscard]] std::uint32_t modifierFlags(const QKeyEvent& event);

/// What the key types with Control left out.
[[nodiscard]] QString characters(const QKeyEvent& event);

} // namespace korvale
