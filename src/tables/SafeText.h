#pragma once

#include <QString>

namespace korvale {

/// `text` as it may be drawn on one line. Control characters, and those that reorder, break or hide
/// text without being seen themselves, become visible; very long texts are cut with an ellipsis.
[[nodiscard]] QString singleLineText(const QString& text);

/// Markup that makes a tooltip show `text` as plain text, line feeds included, with the same care.
/// Empty for an empty text. Tooltips guess: what merely looks like markup would be taken for it.
[[nodiscard]] QString toolTipMarkup(const QString& text);

} // namespace korvale
