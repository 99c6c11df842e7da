#include "tables/KeyEvents.h"

#include <QKeyEvent>

namespace korvale {
namespace {

struct FlagOfModifier {
    Qt::KeyboardModifier modifier;
    ModifierFlag flag;
};

constexpr FlagOfModifier flags[] = {{Qt::ShiftModifier, ShiftFlag},
                                    {Qt::MetaModifier, MetaFlag},
                                    {Qt::AltModifier, AltFlag},
                                    {Qt::ControlModifier, CommandFlag}};

// X11 and Wayland number the real modifiers alike: bit 1 is Lock. Elsewhere it is not known.
bool capsLockIsOn(const QKeyEvent& event, const QString& platform) {
    constexpr quint32 lockMask = 2;
    const bool known =
        platform == QLatin1String("xcb") || platform.startsWith(QLatin1String("wayland"));
    return known && (event.nativeModifiers() & lockMask) != 0;
}

} // namespace

std::uint32_t modifierFlags(const QKeyEvent& event, const QString& platform) {
    std::uint32_t result = capsLockIsOn(event, platform) ? CapsLockFlag : 0U;
    for (const FlagOfModifier& entry : flags) {
        if (event.modifiers().testFlag(entry.modifier)) {
            result |= entry.flag;
        }
    }
    return result;
}

bool isToolTipKey(const QKeyEvent& event) {
    return event.key() == Qt::Key_F1 &&
           (event.modifiers() == Qt::ShiftModifier || event.modifiers() == Qt::ControlModifier);
}

bool isContextMenuKey(const QKeyEvent& event) {
    return event.key() == Qt::Key_F10 && event.modifiers() == Qt::ShiftModifier;
}

QString characters(const QKeyEvent& event, const QString& platform) {
    const int key = event.key();
    if (!event.modifiers().testFlag(Qt::ControlModifier)) {
        return event.text();
    }
    // With Control held the text is a control character; the key still tells what it would type.
    if (key >= Qt::Key_A && key <= Qt::Key_Z) {
        const bool upper =
            event.modifiers().testFlag(Qt::ShiftModifier) != capsLockIsOn(event, platform);
        return QString(QChar(static_cast<char16_t>(key + (upper ? 0 : u'a' - u'A'))));
    }
    return key < 0x10000 ? QString(QChar(static_cast<char16_t>(key))) : QString();
}

} // namespace korvale
