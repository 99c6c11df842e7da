#pragma once

#include <QString>

class QWidget;

namespace korvale {

/// Gives `widget` a tooltip that is never taken for markup, and the same text, as it is, as its
/// accessible description. An empty text clears both.
void setPlainToolTip(QWidget& widget, const QString& text);

} // namespace korvale
