"""A Wayland desktop without a screen: sway in an Xvfb, waybar as tray host, the buses of a DesktopSession."""
import contextlib
import json
import os

from desktop_session import DesktopSession, SessionError, wait_until

APP_ID = "com.korvale.ui"
NOBODY = 65534  # sway refuses root

SWAY = """output X11-1 resolution 1280x800 bg #33506b solid_color
default_border normal
for_window [app_id="com.korvale.ui"] floating enable, border {border}
"""
WAYBAR = {"layer": "top", "position": "top", "height": 36, "modules-right": ["tray"],
          "tray": {"icon-size": 24, "show-passive-items": True}}


class WaylandSession(DesktopSession):
    """Context manager; `tell` talks to the compositor."""
    name = "sway"
    window_manager = None  # the compositor fills its screen

    def __init__(self, notifications="recording", border="normal", accessibility=False):
        """With the border "csd" programs draw their title bars themselves, as on GNOME."""
        self.border = border
        super().__init__(panel=False, notifications=notifications, accessibility=accessibility)

    def _start(self):
        super()._start()
        self._start_compositor()
        self.start_panel()

    def _configure_desktop(self):
        super()._configure_desktop()
        (self.folder / "sway.conf").write_text(SWAY.format(border=self.border))
        (self.folder / "waybar.json").write_text(json.dumps(WAYBAR))

    def _start_compositor(self):
        own = self.folder / "compositor"
        own.mkdir(mode=0o700)
        is_root = os.geteuid() == 0
        command = ["sway", "-c", str(self.folder / "sway.conf")]
        if is_root:
            os.chown(own, NOBODY, NOBODY)
            command = ["setpriv", f"--reuid={NOBODY}", f"--regid={NOBODY}", "--clear-groups", *command]
        outer = self.outer = self.env
        self.env = {**outer, "XDG_RUNTIME_DIR": str(own), "XDG_SESSION_TYPE": "wayland", "WLR_BACKENDS": "x11",
                    "WLR_RENDERER": "pixman", "HOME": str(own), "SWAYSOCK": str(own / "ipc")}
        try:
            self.start_part("sway", command)
        finally:
            self.env = outer
        self._wait_part("sway", lambda: list(own.glob("wayland-?")) and (own / "ipc").exists())
        self.env = dict(outer)
        self.env.pop("DISPLAY")
        self.env.pop("GDK_BACKEND")
        self.env.update({"WAYLAND_DISPLAY": str(next(own.glob("wayland-?"))), "XDG_SESSION_TYPE": "wayland",
                         "SWAYSOCK": str(own / "ipc")})

    def start_panel(self):
        self.start_part("panel", ["waybar", "-c", str(self.folder / "waybar.json"), "-s", "/dev/null"])
        self._wait_part("panel", self.has_tray_host)

    # The compositor

    def tell(self, *command):
        return self.run(["swaymsg", "-r", *command])

    def window(self, app_id):
        """The compositor's node of the first window of that program, or None."""
        def search(node):
            if node.get("app_id") == app_id:
                return node
            for child in node["nodes"] + node["floating_nodes"]:
                if found := search(child):
                    return found
            return None
        return search(json.loads(self.tell("-t", "get_tree")))

    def wait_in_front(self, app_id, click=lambda: None):
        """Waits until that program's window is on the visible workspace and has the focus; clicks, and
        again as a person would whose first click came before the program knew that it had lost the focus."""
        def in_front():
            node = self.window(app_id)
            return node and node["visible"] and node["focused"] and node

        def in_front_after_click():
            click()
            with contextlib.suppress(SessionError):
                return wait_until(in_front, "a click to take effect", 3)
            return None
        return wait_until(in_front_after_click, f"the window of {app_id} in front")

    @property
    def screen(self):
        """The X server that the compositor takes for its hardware."""
        return self.outer

    def in_front(self, program):
        node = self.window(APP_ID)
        return bool(node and node["visible"] and node["focused"] and node["pid"] == program.pid)

    def enlarge_active(self):
        self.tell(f'[app_id="{APP_ID}"]', "resize set 1000 650")

    def measures(self):
        node = self.window(APP_ID)
        return node and (node["rect"]["width"], node["rect"]["height"])

    def cover(self):
        """Another workspace hides everything."""
        self.tell("workspace", "2")
        wait_until(lambda: not (self.window(APP_ID) or {}).get("visible"), "the window to go out of sight")

    def uncover(self):
        self.tell("workspace", "1")

    def end(self):
        self.stop_part("sway")
