#include "tables/KeyEvents.h"

#include <QKeyEvent>

#include <gtest/gtest.h>

namespace korvale {
namespace {

using namespace Qt::StringLiterals;

QKeyEvent press(Qt::Key key, Qt::KeyboardModifiers modifiers, const QString& text = {}) {
    return {QEvent::KeyPress, key, modifiers, text};
}

TEST(KeyEvents, EveryModifierHasItsFlag) {
    EXPECT_EQ(modifierFlags(press(Qt::Key_C, Qt::NoModifier)), 0U);
    EXPECT_EQ(modifierFlags(press(Qt::Key_C, Qt::ShiftModifier)), 131072U);
    EXPECT_EQ(modifierFlags(press(Qt::Key_C, Qt::MetaModifier)), 262144U);
    EXPECT_EQ(modifierFlags(press(Qt::Key_C, Qt::AltModifier)), 524288U);
    EXPECT_EQ(modifierFlags(press(Qt::Key_C, Qt::ControlModifier)), 1048576U);
    EXPECT_EQ(modifierFlags(press(Qt::Key_C, Qt::ControlModifier | Qt::AltModifier)), 1572864U);
    // The numeric keypad is a place, not a modifier.
    EXPECT_EQ(modifierFlags(press(Qt::Key_C, Qt::ControlModifier | Qt::KeypadModifier)), 1048576U);
}

TEST(KeyEvents, CharactersAreThoseTypedWithoutControl) {
    EXPECT_EQ(characters(press(Qt::Key_C, Qt::ControlModifier, u"\u0003"_s)), u"c"_s);
    EXPECT_EQ(characters(press(Qt::Key_C, Qt::ControlModifier | Qt::AltModifier)), u"c"_s);
    EXPECT_EQ(characters(press(Qt::Key_C, Qt::ControlModifier | Qt::ShiftModifier)), u"C"_s);
    EXPECT_EQ(characters(press(Qt::Key_C, Qt::NoModifier, u"c"_s)), u"c"_s);
    EXPECT_EQ(characters(press(Qt::Key_cent, Qt::ControlModifier, u"\u00a2"_s)), u"\u00a2"_s);
    EXPECT_EQ(characters(press(Qt::Key_F5, Qt::ControlModifier)), QString());
}

/// A press of Control and C as the windowing system reports it.
QKeyEvent pressWithNativeModifiers(quint32 native, Qt::KeyboardModifiers others = {}) {
    return {QEvent::KeyPress, Qt::Key_C, Qt::ControlModifier | others, 54, 99, native};
}

TEST(KeyEvents, CapsLockIsAModifierWhereItIsKnown) {
    const QKeyEvent locked = pressWithNativeModifiers(2 | 4);
    for (const QString& known : {u"xcb"_s, u"wayland"_s, u"wayland-egl"_s}) {
        EXPECT_EQ(modifierFlags(locked, known), 1048576U | 65536U);
        EXPECT_EQ(characters(locked, known), u"C"_s);
        EXPECT_EQ(characters(pressWithNativeModifiers(2, Qt::ShiftModifier), known), u"c"_s);
        EXPECT_EQ(modifierFlags(pressWithNativeModifiers(4), known), 1048576U);
        EXPECT_EQ(characters(pressWithNativeModifiers(4), known), u"c"_s);
    }
    EXPECT_EQ(modifierFlags(locked, u"offscreen"_s), 1048576U);
    EXPECT_EQ(characters(locked, u"offscreen"_s), u"c"_s);
}

} // namespace
} // namespace korvale
