#pragma once

#include <QString>

QT_BEGIN_NAMESPACE
class QWidget;
QT_END_NAMESPACE

namespace korvale {

/// Gives `widget` a tooltip that is never taken for markup, and the same text as its accessible
/// description. An empty text clears both.
void setPlainToolTip(QWidget& widget, const QString& text);

} // namespace korvale
