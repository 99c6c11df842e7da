#pragma once

namespace korvale {

/// What the X server knows of a system tray of the older kind (System Tray Protocol Specification).
enum class X11Tray {
    NoX11,  ///< this session has no X server: there will never be one
    Absent, ///< nobody manages the tray now
    Present,
};

/// Asks the X server that the application is connected to. Needs a QGuiApplication.
[[nodiscard]] X11Tray askForX11Tray();

} // namespace korvale
