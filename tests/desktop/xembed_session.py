"""A bare window manager with a tray of the older kind (XEmbed) alone."""
from desktop_session import DesktopSession


class XEmbedSession(DesktopSession):
    name = "XEmbed"
    window_manager = ["openbox"]

    def start_panel(self):
        self.start_part("panel", ["trayer", "--edge", "top", "--align", "right", "--widthtype", "pixel", "--width",
                                  "200", "--height", "32", "--transparent", "false", "--tint", "0x404040",
                                  "--SetPartialStrut", "true", "--monitor", "0"])
        self._wait_part("panel", self.has_xembed_tray)

    def stop_panel(self):
        self.stop_part("panel")

    def has_xembed_tray(self):
        tree = self.run(["xwininfo", "-root", "-tree"], check=False)
        return '("panel" "trayer")' in tree
