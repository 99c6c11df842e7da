#pragma once

#include <QString>

class QWidget;

namespace korvale {

/// `text` in a form that Qt's tooltips show letter by letter: they guess rich text, and a file's
/// name may look like markup.
[[nodiscard]] QString plainToolTip(const QString& text);

/// Gives `widget` a tooltip that is never taken for markup, and the same text, as it is, as its
/// accessible description. An empty text clears both.
void setPlainToolTip(QWidget& widget, const QString& text);

} // namespace korvale
