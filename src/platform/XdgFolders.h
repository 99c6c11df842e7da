#pragma once

#include <QString>

namespace korvale {

// The user's folders (XDG Base Directory Specification). A path that is not absolute does not
// count.

/// For settings: XDG_CONFIG_HOME, else ~/.config.
[[nodiscard]] QString userConfigFolder();

/// For application data: XDG_DATA_HOME, else ~/.local/share.
[[nodiscard]] QString applicationSupportFolder();

/// For what is remembered of earlier runs: XDG_STATE_HOME, else ~/.local/state.
[[nodiscard]] QString userStateFolder();

} // namespace korvale
