"""Plasma without a screen, on Wayland (nested in an Xvfb) and on X11."""
import contextlib
import shutil
import subprocess

import dbus

from desktop_session import DesktopSession, wait_until
from other_sessions import offer_services

ACTIVATED = """function tell(window) {
    callDBus("com.korvale.Test.Windows", "/", "com.korvale.Test", "Activated",
             window ? window.pid : 0, window ? window.caption : "");
}
workspace.clientActivated.connect(tell);
"""
ACTIVITIES = "/usr/lib/x86_64-linux-gnu/libexec/kactivitymanagerd"


class PlasmaX11Session(DesktopSession):
    name = "Plasma-X11"
    xdg_name = "KDE"
    window_manager = None
    panel_place = (800, 756, 480, 44)

    def __init__(self):
        super().__init__(panel=False, notifications=None)

    def _start(self):
        super()._start()
        self.start_service("windows", "active_window.py")
        self._start_kwin()
        self._load_script()
        self.start_part("activities", [ACTIVITIES])
        self.start_part("daemon", ["kded5"])
        self._wait_part("daemon", lambda: self.has_name("org.kde.StatusNotifierWatcher"))
        self.start_panel()

    def _start_session_bus(self):
        self.env.update({"KDE_FULL_SESSION": "true", "KDE_SESSION_VERSION": "5", "XDG_MENU_PREFIX": "plasma-",
                         "QT_QUICK_BACKEND": "software", "KWIN_COMPOSE": "Q", "XDG_CONFIG_DIRS": "/etc/xdg",
                         "XDG_DATA_DIRS": "/usr/share"})
        self.env.pop("GDK_BACKEND")
        offer_services(self, "org.kde.ActivityManager*.service", "org.kde.kglobalaccel*.service",
                       "org.freedesktop.portal.*.service", "org.freedesktop.impl.portal.*.service")
        super()._start_session_bus()

    def _configure_desktop(self):
        config = self.folder / "config"
        (config / "kwinrc").write_text("[Compositing]\nEnabled=false\n")
        (config / "kdeglobals").write_text("[KDE]\nAnimationDurationFactor=0\n")

    def _start_kwin(self):
        self.start_part("kwin", ["kwin_x11"])
        self._wait_part("kwin", lambda: self._has_window_manager() and self.has_name("org.kde.KWin"))

    def _load_script(self):
        """The compositor tells which window has the focus."""
        script = self.folder / "activated.js"
        script.write_text(ACTIVATED)
        wait_until(lambda: self._has_loaded(script), "the compositor to take the script")

    def _has_loaded(self, script):
        with contextlib.closing(self.session_bus()) as bus, contextlib.suppress(dbus.DBusException):
            scripting = bus.get_object("org.kde.KWin", "/Scripting", introspect=False)
            scripting.loadScript(str(script), dbus_interface="org.kde.kwin.Scripting")
            scripting.start(dbus_interface="org.kde.kwin.Scripting")
            return True
        return False

    def start_panel(self):
        self.start_part("panel", ["plasmashell", "--no-respawn"])
        wait_until(self.has_host, "the shell", 60)

    def stop_panel(self):
        self.stop_part("panel")
        wait_until(lambda: not self.has_host(), "the host to go")

    def has_host(self):
        """The watcher itself tells of a host without Plasma's shell, too."""
        with contextlib.closing(self.session_bus()) as bus:
            return any(name.startswith("org.kde.StatusNotifierHost-") for name in bus.list_names())

    # Windows

    def active(self):
        with contextlib.closing(self.session_bus()) as bus:
            windows = bus.get_object("com.korvale.Test.Windows", "/", introspect=False)
            pid, title = windows.Active(dbus_interface="com.korvale.Test")
            return int(pid), str(title)

    def in_front(self, program):
        return self.active()[0] == program.pid

    def cover(self):
        self.start_part("cover", ["xev", "-geometry", "1200x700+40+30"], stdout=subprocess.DEVNULL)
        self._wait_part("cover", lambda: self.active()[1] == "Event Tester")


class PlasmaSession(PlasmaX11Session):
    name = "Plasma"

    def _start_kwin(self):
        own = self.folder / "kwin_wayland"  # a copy, without the capability that containers refuse
        shutil.copyfile("/usr/bin/kwin_wayland", own)
        own.chmod(0o755)
        told = self.folder / "environment"
        tell = self.folder / "tell"
        tell.write_text(f"#!/bin/sh\nenv >{told}.new && mv {told}.new {told}\n")
        tell.chmod(0o755)
        self.outer = dict(self.env)
        width, height = self.resolution.split("x")
        self.env["XDG_SESSION_TYPE"] = "wayland"
        self.start_part("kwin", [str(own), "--x11-display", self.env["DISPLAY"], "--width", width, "--height", height,
                                 "--xwayland", "--no-lockscreen", "--no-global-shortcuts", str(tell)])
        self._wait_part("kwin", lambda: told.exists() and self.has_name("org.kde.KWin"))
        inner = dict(line.split("=", 1) for line in told.read_text().splitlines() if "=" in line)
        self.env.update({name: inner[name] for name in ("DISPLAY", "WAYLAND_DISPLAY", "XAUTHORITY") if name in inner})

    @property
    def screen(self):
        return self.outer

    def enlarge_active(self):
        pass

    def measures(self):
        return None

    def end(self):
        self.stop_part("kwin")
