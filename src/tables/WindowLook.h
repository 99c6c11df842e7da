#pragma once

#include "model/ProtectionRules.h"

#include <QColor>
#include <QPalette>

#include <optional>

namespace korvale {

// Colours and measures of the windows, in one place, in the lowest room that draws. Measures are
// device-independent pixels. What CustHeaderCell draws is its own: it is given, not chosen.

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
inline constexpr int notificationsWidth = 520;
inline constexpr int notificationsHeight = 480;
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
inline constexpr int stripPadding = 6; ///< above and below what stands in the answer strip
inline constexpr int stripSpacing = 10;
inline constexpr int findCharacters = 24; ///< of average width that the find field has room for
inline constexpr int fewestFindCharacters = 12; ///< the same where the row is full
inline constexpr int findLength = 256;          ///< characters it takes
inline constexpr int exportProgressWidth = 140;
inline constexpr int linkPadding = 6;
inline constexpr int detailsHeight = 210;       ///< of the pane when it first opens
inline constexpr int detailsSpacing = 3;        ///< between its lines
inline constexpr int detailsColumnSpacing = 16; ///< between labels and texts
inline constexpr double focusRingWidth = 2;
inline constexpr double focusRingRadius = 5;
inline constexpr double menuLineLength = 16;
inline constexpr double menuLineDistance = 5;
inline constexpr double menuLineThickness = 1.6;
inline constexpr double menuCornerRadius = 6;

// Tables: light in both appearances, since their texts are black, red and orange; these two as
// dark as it takes to be read on every stripe and selection.
inline constexpr QRgb tableWindow = 0xffefefef;
inline constexpr QRgb tableBase = 0xffffffff;
inline constexpr QRgb cellText = 0xff000000;
inline constexpr QRgb alarmText = 0xffc00000;
inline constexpr QRgb warningText = 0xff984800;
inline constexpr QRgb quietText = 0xff6b6b6b;        ///< what an empty table says
inline constexpr QRgb selectedActive = 0xffd6e6fb;   ///< light enough for all texts
inline constexpr QRgb selectedInactive = 0xffe4e7eb; ///< the same without the focus
inline constexpr QRgb tableFocus = 0xff1f66c1;       ///< the frame of what has the focus
inline constexpr float evenStripe = 1.0F;            ///< grey levels of the faint stripes
inline constexpr float oddStripe = 0.5F;
inline constexpr float stripeAlpha = 0.1F;
inline constexpr int rowPadding = 11;    ///< above and below a row's text, together
inline constexpr int columnPadding = 16; ///< beside a column's widest text, together
inline constexpr int cellMargin = 8;     ///< on each side of a cell's text
inline constexpr int fittedMargin = 20;  ///< beside the text that a column was fitted to
inline constexpr int placeholderMargin = 24;
inline constexpr int headerPadding = 12; ///< separator line and air above and below a title
inline constexpr int smallestColumn = 40;
} // namespace look

/// The colours of a window beyond what a QPalette names.
struct WindowColors {
    QColor titleTop;    ///< background of toolbar and title box, at the window's upper edge
    QColor titleBottom; ///< the same at the lower edge of the title box
    QColor line;        ///< hairline between the parts of the window
};

[[nodiscard]] WindowColors windowColors(bool dark, bool highContrast = false);

/// What the answer strip is drawn in; the texts are readable on it (4.5 to 1 and better).
struct StripColors {
    QColor background;
    QColor text;
};

/// None while all is well: the window's own.
[[nodiscard]] std::optional<StripColors> stripColors(Verdict verdict, bool dark);

/// The palette of the program's windows. They carry it themselves: the toolkit's own palette does
/// not follow the desktop's choice of a dark appearance. With high contrast it is black and white.
[[nodiscard]] QPalette windowPalette(bool dark, bool highContrast = false);

/// The palette of the tables, in both appearances.
[[nodiscard]] QPalette tablePalette();

} // namespace korvale
