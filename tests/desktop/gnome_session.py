"""GNOME Shell on Wayland without a screen: nested in an Xvfb, with a stand-in for logind."""
import contextlib
import re
import subprocess

import dbus

from desktop_session import DesktopSession, wait_until
from other_sessions import offer_services

EXTENSION = "ubuntu-appindicators@ubuntu.com"
APP_ID = "com.korvale.ui.desktop"
SETTINGS = """[org/gnome/shell]
welcome-dialog-last-shown-version='99'
disable-user-extensions=false
enabled-extensions=@as [{extensions}]
[org/gnome/desktop/notifications]
show-banners=false
[org/gnome/desktop/background]
picture-uri=''
picture-uri-dark=''
primary-color='#33506b'
[org/gnome/desktop/interface]
enable-animations=false
color-scheme='{scheme}'
"""
LOGIND_POLICY = """<busconfig>
<policy context="default"><allow own="org.freedesktop.login1"/><allow send_destination="org.freedesktop.login1"/></policy>
</busconfig>
"""
MAY_ASK = "org.freedesktop.impl.portal.desktop.gnome"  # whom the shell tells of its windows


class GnomeSession(DesktopSession):
    """With the extension that shows status items. One click opens their menu, two the window."""
    name = "GNOME"
    window_manager = None
    extensions = f"'{EXTENSION}'"
    scheme = "default"
    clicks_for_window = 2
    menu_button = 1
    panel_place = (0, 0, 1280, 32)

    def __init__(self):
        super().__init__(notifications=None)  # the shell shows them

    def _start(self):
        super()._start()
        self._start_shell()
        if self.has_tray:
            wait_until(self.has_tray_host, "the extension", 60)
        self.leave_overview()

    def start_panel(self):
        """The shell is the panel; with the extension it is a host."""
        if "shell" in self.parts:
            self._switch_extension("EnableExtension")
            wait_until(self.has_tray_host, "the extension")

    def stop_panel(self):
        self._switch_extension("DisableExtension")
        wait_until(lambda: not self.has_tray_host(), "the extension to end")

    def _switch_extension(self, method):
        with contextlib.closing(self.session_bus()) as bus:
            shell = bus.get_object("org.gnome.Shell", "/org/gnome/Shell", introspect=False)
            getattr(shell, method)(EXTENSION, dbus_interface="org.gnome.Shell.Extensions")

    def start_system_bus(self):
        policies = self.folder / "system.d"
        policies.mkdir(exist_ok=True)
        (policies / "logind.conf").write_text(LOGIND_POLICY)
        super().start_system_bus()
        self.start_part("logind", ["/usr/bin/python3", "-m", "dbusmock", "--system", "--template", "logind"])

    def _start_session_bus(self):
        folder = self.folder / "config" / "glib-2.0" / "settings"
        folder.mkdir(parents=True)
        (folder / "keyfile").write_text(SETTINGS.format(extensions=self.extensions, scheme=self.scheme))
        self.env.update({"GSETTINGS_BACKEND": "keyfile", "XDG_SESSION_TYPE": "wayland"})
        self.env.pop("GDK_BACKEND")
        offer_services(self, "org.gnome.Shell.*.service", "org.freedesktop.portal.*.service",
                       "org.freedesktop.impl.portal.*.service")
        super()._start_session_bus()

    def _configure_desktop(self):
        pass

    def _start_shell(self):
        runtime = self.folder / "run"
        self.outer = dict(self.env)
        self.env["MUTTER_DEBUG_DUMMY_MODE_SPECS"] = self.resolution
        self.start_part("shell", ["gnome-shell", "--nested", "--wayland", "--wayland-display=wayland-0"])
        self._wait_part("shell", lambda: (runtime / "wayland-0").exists() and self.has_name("org.gnome.Shell"))
        wait_until(lambda: "GNOME Shell started" in self._said(), "the shell to be ready", 60)
        self.env["WAYLAND_DISPLAY"] = "wayland-0"
        self.env.pop("DISPLAY")

    @property
    def screen(self):
        return self.outer

    def _said(self):
        return (self.folder / "log" / "shell").read_text(errors="replace")

    def leave_overview(self):
        """It covers everything after the start."""
        with contextlib.closing(self.session_bus()) as bus:
            shell = bus.get_object("org.gnome.Shell", "/org/gnome/Shell", introspect=False)
            shell.Set("org.gnome.Shell", "OverviewActive", dbus.Boolean(False, variant_level=1),
                      dbus_interface="org.freedesktop.DBus.Properties")

    # Windows

    def windows(self):
        """What the shell tells of every window, to those it trusts."""
        with contextlib.closing(self.session_bus()) as bus, contextlib.suppress(dbus.DBusException):
            bus.request_name(MAY_ASK)
            shell = bus.get_object("org.gnome.Shell.Introspect", "/org/gnome/Shell/Introspect", introspect=False)
            return shell.GetWindows(dbus_interface="org.gnome.Shell.Introspect").values()
        return []

    def in_front(self, program):
        return any(window["app-id"] == APP_ID and window["has-focus"] for window in self.windows())

    def enlarge_active(self):
        self.play("key", "alt+F10")  # to the whole screen

    def measures(self):
        return [(int(window["width"]), int(window["height"])) for window in self.windows() if window["has-focus"]]

    def cover(self):
        own = self.env
        display = re.search(r"public X11 display (:\d+)", self._said()).group(1)
        key = next((self.folder / "run").glob(".mutter-Xwaylandauth.*"))
        self.env = {**own, "DISPLAY": display, "XAUTHORITY": str(key)}
        try:
            self.start_part("cover", ["xev", "-geometry", "1200x700+40+60"], stdout=subprocess.DEVNULL)
        finally:
            self.env = own
        self._wait_part("cover", lambda: any(
            window["title"] == "Event Tester" and window["has-focus"] for window in self.windows()))

    def end(self):
        self.stop_part("shell")


class BareGnomeSession(GnomeSession):
    """As GNOME comes: without a tray. What takes the place of the item is the window's picture and menu."""
    name = "GNOME-bare"
    extensions = ""
    has_tray = False
    panel_place = (400, 125, 480, 45)  # of a window in the middle of the screen


class DarkGnomeSession(BareGnomeSession):
    scheme = "prefer-dark"
