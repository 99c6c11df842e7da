#pragma once

#include <QString>
#include <QStringView>

QT_BEGIN_NAMESPACE
class QWidget;
QT_END_NAMESPACE

namespace korvale {

/// Shows `window` in front of all others, out of the minimised state too, and asks the desktop to
/// make it the active one. `activationToken` is what the desktop handed on with the user's wish, or
/// empty; without one a desktop may refuse to let the window take the focus.
void bringToFront(QWidget& window, const QString& activationToken);

/// Whether the toolkit's platform of that name takes tokens from XDG_ACTIVATION_TOKEN.
[[nodiscard]] bool readsTokenFromEnvironment(QStringView platform);

} // namespace korvale
