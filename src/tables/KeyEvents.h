#pragma once

#include <QGuiApplication>
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

/// `platform` is the toolkit's name of it: Caps Lock is known on some only.
[[nodiscard]] std::uint32_t
modifierFlags(const QKeyEvent& event, const QString& platform = QGuiApplication::platformName());

/// Shift+F1 or Control+F1: whoever presses it wants the tooltip of what has the focus. Two, because
/// some window managers keep the second for themselves.
[[nodiscard]] bool isToolTipKey(const QKeyEvent& event);

/// Shift+F10: the Menu key, which the toolkit knows by itself, is not on every keyboard.
[[nodiscard]] bool isContextMenuKey(const QKeyEvent& event);

/// What the key types with Control left out.
[[nodiscard]] QString characters(const QKeyEvent& event,
                                 const QString& platform = QGuiApplication::platformName());

} // namespace korvale
