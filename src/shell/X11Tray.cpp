#include "shell/X11Tray.h"

#include "shell/X11Server.h"

namespace korvale {

X11Tray askForX11Tray() {
    const X11Server server;
    if (!server.isThere()) {
        return X11Tray::NoX11;
    }
    return server.trayWindow() != XCB_NONE ? X11Tray::Present : X11Tray::Absent;
}

} // namespace korvale
