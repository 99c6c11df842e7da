#pragma once

#include <QByteArray>
#include <QtGui/qwindowdefs.h>

#include <cstdint>
#include <optional>

namespace korvale {

/// A window's right to take the focus on X11: the id of a startup sequence (Startup Notification
/// Protocol), which says when the user asked for the window. Where there is no X server, no window
/// or no id it does nothing. Main thread.
class X11Activation {
public:
    /// `window` is the id of a window of this process, 0 for none.
    X11Activation(WId window, QByteArray startupId);

    /// Before the window is shown: what the window manager looks at when it is.
    void announce() const;
    /// After that: asks for the focus as of the user's wish, and ends the startup sequence.
    void request() const;

private:
    WId m_window;
    QByteArray m_id;
    std::optional<std::uint32_t> m_time;
};

/// When the user asked, in the X server's milliseconds, as a startup id's end "_TIME123" says it.
[[nodiscard]] std::optional<std::uint32_t> timeOfStartupId(const QByteArray& startupId);

} // namespace korvale
