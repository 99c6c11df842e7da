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
inline constexpr int aboutWidth = 380;
inline constexpr int appIconSide = 32;
inline constexpr int logoHeight = 28;
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
