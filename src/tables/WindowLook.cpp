#include "tables/WindowLook.h"

#include <array>

namespace korvale {
namespace {

/// One role of the palette in both appearances; `faded` is its colour where a control is disabled.
struct RoleColors {
    QPalette::ColorRole role;
    QRgb light;
    QRgb dark;
};

constexpr std::array roleColors{
    RoleColors{QPalette::Window, 0xfff4f6f9, 0xff1f242c},
    RoleColors{QPalette::WindowText, 0xff1c2430, 0xffe6eaf0},
    RoleColors{QPalette::Base, 0xffffffff, 0xff171b21},
    RoleColors{QPalette::AlternateBase, 0xfff7f8fa, 0xff1b2027},
    RoleColors{QPalette::Text, 0xff1c2430, 0xffe6eaf0},
    RoleColors{QPalette::PlaceholderText, 0xff626c7b, 0xff98a2b0},
    RoleColors{QPalette::Button, 0xffe9edf2, 0xff2b323c},
    RoleColors{QPalette::ButtonText, 0xff1c2430, 0xffe6eaf0},
    RoleColors{QPalette::BrightText, 0xffffffff, 0xffffffff},
    RoleColors{QPalette::Light, 0xffffffff, 0xff3a434f},
    RoleColors{QPalette::Midlight, 0xfff0f3f6, 0xff323a45},
    RoleColors{QPalette::Mid, 0xffc3cad4, 0xff15181d},
    RoleColors{QPalette::Dark, 0xffa9b2be, 0xff12151a},
    RoleColors{QPalette::Shadow, 0xff6b7480, 0xff0b0d10},
    RoleColors{QPalette::Highlight, 0xff1f66c1, 0xff2f74cc},
    RoleColors{QPalette::HighlightedText, 0xffffffff, 0xffffffff},
    RoleColors{QPalette::Link, 0xff1f66c1, 0xff7db4f5},
    RoleColors{QPalette::LinkVisited, 0xff6a4fa3, 0xffb39ddb},
    RoleColors{QPalette::ToolTipBase, 0xffffffff, 0xff2b323c},
    RoleColors{QPalette::ToolTipText, 0xff1c2430, 0xffe6eaf0},
};

constexpr std::array textRoles{QPalette::WindowText, QPalette::Text, QPalette::ButtonText};

/// What the desktop's high contrast asks for. What is selected has the opposite colours.
QPalette blackAndWhite(bool dark) {
    const QColor ground(dark ? Qt::black : Qt::white);
    const QColor ink(dark ? Qt::white : Qt::black);
    QPalette palette;
    for (const RoleColors& colors : roleColors) {
        palette.setColor(colors.role, ink);
    }
    for (const QPalette::ColorRole role :
         {QPalette::Window, QPalette::Base, QPalette::AlternateBase, QPalette::Button,
          QPalette::HighlightedText, QPalette::ToolTipBase}) {
        palette.setColor(role, ground);
    }
    return palette;
}

} // namespace

WindowColors windowColors(bool dark, bool highContrast) {
    if (highContrast) {
        const QColor ground(dark ? Qt::black : Qt::white);
        return {ground, ground, QColor(dark ? Qt::white : Qt::black)};
    }
    if (dark) {
        return {QColor(0xff2b323d), QColor(0xff1f242c), QColor(0xff343c47)};
    }
    return {QColor(0xffffffff), QColor(0xfff4f6f9), QColor(0xffd3d9e1)};
}

std::optional<StripColors> stripColors(Verdict verdict, bool dark) {
    switch (verdict) {
    case Verdict::Unknown:
        return dark ? StripColors{QColor(0xff3d3420), QColor(0xfff3e3b8)}
                    : StripColors{QColor(0xfffff4d6), QColor(0xff5c4300)};
    case Verdict::Danger:
        return dark ? StripColors{QColor(0xff4a2226), QColor(0xffffd9d6)}
                    : StripColors{QColor(0xfffde8e6), QColor(0xff8a1212)};
    case Verdict::Away:
        return StripColors{QColor(0xffb3261e), QColor(0xffffffff)};
    case Verdict::Good:
        break;
    }
    return std::nullopt;
}

QPalette tablePalette() {
    QPalette palette{QColor(look::tableWindow)};
    palette.setColor(QPalette::Base, QColor(look::tableBase));
    palette.setColor(QPalette::Text, QColor(look::cellText));
    return palette;
}

QPalette windowPalette(bool dark, bool highContrast) {
    if (highContrast) {
        return blackAndWhite(dark);
    }
    QPalette palette;
    for (const RoleColors& colors : roleColors) {
        palette.setColor(colors.role, QColor(dark ? colors.dark : colors.light));
    }
    const QColor faded(dark ? 0xff98a2b0 : 0xff626c7b);
    for (const QPalette::ColorRole role : textRoles) {
        palette.setColor(QPalette::Disabled, role, faded);
    }
    return palette;
}

} // namespace korvale
