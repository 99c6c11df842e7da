#pragma once

#include <QString>

namespace korvale {

/// Who draws a menu: this process's toolkit, or the desktop's panel, which gets it over D-Bus.
enum class MenuRenderer { Toolkit, Panel };

/// `text` as the label of a menu item that shows exactly `text`: no character of it becomes a
/// keyboard mnemonic's mark (& for the toolkit, _ in com.canonical.dbusmenu) and vanishes.
[[nodiscard]] QString menuLabel(const QString& text, MenuRenderer renderer);

} // namespace korvale
