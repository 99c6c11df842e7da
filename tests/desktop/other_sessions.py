"""Further desktops without a screen, for ./dev desktops: LXQt and MATE."""
import pathlib

from desktop_session import DesktopSession

SERVICES = pathlib.Path("/usr/share/dbus-1/services")

LXQT_PANEL = """panels=panel1
[panel1]
alignment=-1
desktop=0
iconSize=22
panelSize=32
plugins=statusnotifier
position=Top
width=100
width-percent=true
[statusnotifier]
type=statusnotifier
"""
MATE_PANEL = """[org/mate/panel/general]
toplevel-id-list=['top']
object-id-list=['tray']
[org/mate/panel/toplevels/top]
expand=true
orientation='top'
size=32
[org/mate/panel/objects/tray]
object-type='applet'
applet-iid='NotificationAreaAppletFactory::NotificationArea'
toplevel-id='top'
position=0
panel-right-stick=true
locked=true
"""


def offer_services(session, *patterns):
    """What the session's bus may start, besides what every session has; no systemd is there to do it."""
    for pattern in patterns:
        for service in SERVICES.glob(pattern):
            lines = [line for line in service.read_text().splitlines() if not line.startswith("SystemdService=")]
            (session.folder / "services" / service.name).write_text("\n".join(lines) + "\n")


class LxqtSession(DesktopSession):
    name = "LXQt"
    window_manager = ["openbox"]

    def _configure_desktop(self):
        folder = self.folder / "config" / "lxqt"
        folder.mkdir(parents=True)
        (folder / "panel.conf").write_text(LXQT_PANEL)

    def start_panel(self):
        self.start_part("panel", ["lxqt-panel"])
        self._wait_part("panel", self.has_tray_host)


class MateSession(DesktopSession):
    name = "MATE"
    window_manager = ["marco", "--no-composite"]

    def _configure_desktop(self):
        folder = self.folder / "config" / "glib-2.0" / "settings"
        folder.mkdir(parents=True)
        (folder / "keyfile").write_text(MATE_PANEL)
        self.env["GSETTINGS_BACKEND"] = "keyfile"

    def _start_session_bus(self):
        self.env["GSETTINGS_BACKEND"] = "keyfile"  # for the applet, too, which the bus starts
        offer_services(self, "org.mate.panel.applet.*.service")
        super()._start_session_bus()

    def start_panel(self):
        self.start_part("panel", ["mate-panel"])
        self._wait_part("panel", lambda: self.has_name("org.mate.panel.applet.NotificationAreaAppletFactory"))

    def stop_panel(self):
        self.stop_part("panel")
