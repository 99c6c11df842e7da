#pragma once

#include <QString>

namespace korvale {

/// Of a text on several lines so many characters are shown at most. Who makes a long one to be
/// shown may stop behind them.
inline constexpr qsizetype longestShownText = 4096;

// How texts of others (file names, device names, messages of the agent and its console) are shown,
// wherever that is. Control characters, and those that reorder, break or hide text without being
// seen themselves, become visible as [U+XXXX]; half a surrogate pair is U+FFFD; very long texts are
// cut with an ellipsis. What real scripts and pictographs need stays: joiners, marks, selectors.
// Copying is the exception: a copied row holds its texts as they are but for what would break it.

/// `text` as it may be drawn on one line.
[[nodiscard]] QString singleLineText(const QString& text);

/// `text` on one line that may be as long as any path that can be opened; `isCut` tells of longer
/// ones.
[[nodiscard]] QString wholeLineText(const QString& text, bool& isCut);

/// `text` where several lines have room: line feeds and tabs stay.
[[nodiscard]] QString severalLinesText(const QString& text);

/// `text` as it may be one of several on a line that others read: what ends a line or steers a
/// terminal becomes visible, and nothing else changes.
[[nodiscard]] QString unbrokenText(const QString& text);

/// Markup that makes a tooltip show `text` on several lines as plain text. Empty for an empty text.
/// Tooltips guess: what merely looks like markup would be taken for it.
[[nodiscard]] QString toolTipMarkup(const QString& text);

/// `text` for a tray that may or may not take its tooltip for markup: shows the same in both, as no
/// tag or entity can come of it. Only the first line feed stays; of a long text the start and the
/// end do, which say what the item is and how it stands.
[[nodiscard]] QString trayToolTip(const QString& text);

} // namespace korvale
