#!/bin/sh
# What a display manager starts once somebody has logged in; the session's bus is the person's own, as on Debian's
# desktops (/etc/X11/Xsession.d/20dbus_xdg-runtime).
set -eu
. /opt/desktop_screen.sh
export DBUS_SESSION_BUS_ADDRESS="unix:path=$XDG_RUNTIME_DIR/bus"
dbus-update-activation-environment --systemd DBUS_SESSION_BUS_ADDRESS DISPLAY XDG_CURRENT_DESKTOP
exec lxqt-session >"$XDG_RUNTIME_DIR/session.log" 2>&1
