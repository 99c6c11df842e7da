#pragma once

#include <QColor>
#include <QPalette>

namespace korvale {

// Colours and measures of the windows, in one place. Measures are device-independent pixels.

namespace look {
inline constexpr int windowWidth = 920;
inline constexpr int windowHeight = 560;
inline constexpr int smallestWidth = 560;
inline constexpr int smallestHeight = 320;
inline constexpr int aboutWidth = 400;
inline constexpr int aboutMargin = 28;
inline constexpr int aboutSpacing = 8;
inline constexpr int aboutIconSide = 72;
inline constexpr double aboutNameScale = 1.4;
inline constexpr int aboutCreditsLines = 5;
inline constexpr int appIconSide = 32;
inline constexpr int logoWidth = 132;
inline constexpr int logoHeight = 32;
inline constexpr int margin = 16;         ///< between a window's edge and what stands in it
inline constexpr int toolbarPadding = 10; ///< above and below the toolbar's items
inline constexpr int toolbarSpacing = 10; ///< between the toolbar's items
inline constexpr int menuButtonSide = 32;
inline constexpr int tabPadding = 16; ///< on each side of a tab's label
inline constexpr int tabHeight = 38;
inline constexpr int tabUnderline = 3; ///< thickness of the line under the selected tab
} // namespace look

/// The colours of a window beyond what a QPalette names.
struct WindowColors {
    QColor titleTop;    ///< background of toolbar and title box, at the window's upper edge
    QColor titleBottom; ///< the same at the lower edge of the title box
    QColor line;        ///< hairline between the parts of the window
};

[[nodiscard]] WindowColors windowColors(bool dark);

/// The palette of the program's windows. They carry it themselves: the toolkit's own palette does
/// not follow the desktop's choice of a dark appearance.
[[nodiscard]] QPalette windowPalette(bool dark);

} // namespace korvale
