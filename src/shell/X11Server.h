#pragma once

#include <cstdint>
#include <optional>
#include <xcb/xcb.h>

namespace korvale {

/// The X server that the application is connected to, for the few things that the toolkit has no
/// words for. Needs a QGuiApplication; made where it is used. Main thread. Questions wait for the
/// server's answer, as the toolkit's own do.
class X11Server {
public:
    X11Server();

    /// Without one nothing else may be called.
    [[nodiscard]] bool isThere() const { return m_connection != nullptr; }
    [[nodiscard]] xcb_connection_t* connection() const { return m_connection; }

    /// Of the first screen, the one that has the tray.
    [[nodiscard]] xcb_window_t root() const;
    [[nodiscard]] xcb_atom_t atom(const char* name) const;
    /// The window of the tray's manager; XCB_NONE without a tray.
    [[nodiscard]] xcb_window_t trayWindow() const;
    /// A window's property of one 32-bit number of the type `type`.
    [[nodiscard]] std::optional<std::uint32_t> number(xcb_window_t window, const char* property,
                                                      xcb_atom_t type) const;
    /// Bits a pixel; 0 for an unknown visual.
    [[nodiscard]] std::uint8_t depthOf(xcb_visualid_t visual) const;

    /// The toolkit sets titles through Xlib, which notes each such request until somebody waits for
    /// an answer through it. Waits for one, so that none is left.
    void forgetAnsweredRequests() const;

    void send(xcb_window_t receiver, const xcb_client_message_event_t& message,
              std::uint32_t mask) const;

private:
    xcb_connection_t* m_connection;
};

} // namespace korvale
