"""The whole program on three kinds of desktop: sway, a bare window manager with an X11 tray, XFCE."""
import json
import unittest

from at_home import AtHome, EndsWell
from desktop_case import DesktopCase, wait_until
from desktop_session import DesktopSession
from texts import text
from wayland_session import WaylandSession
from window_case import READER
from xembed_session import XEmbedSession


class Sway(AtHome, DesktopCase):
    session = WaylandSession


class SwayEnds(EndsWell, DesktopCase):
    session = WaylandSession


class Xfce(AtHome, DesktopCase):
    session = DesktopSession


class XfceEnds(EndsWell, DesktopCase):
    session = DesktopSession


class XEmbed(AtHome, DesktopCase):
    @staticmethod
    def session():
        return XEmbedSession(accessibility=True)

    def test_without_its_tray_the_window_has_the_menu_within_ten_seconds(self):
        program = self.shown()
        self.assertFalse(self.menu_button(program))
        self.desktop.stop_panel()
        wait_until(lambda: self.menu_button(program), "the menu button", 10)
        self.desktop.start_panel()
        self.panel.wait_colour("yellow")
        wait_until(lambda: not self.menu_button(program), "the menu button to go")

    def test_a_statusnotifier_host_that_comes_later_gets_the_item(self):
        program = self.program()
        self.panel.wait_colour("yellow")
        DesktopSession.start_panel(self.desktop)
        self.addCleanup(self.restore_tray)
        self.assertEqual(self.item(program).colour(), "yellow")

    def restore_tray(self):
        self.desktop.stop_part("panel")
        self.desktop.start_panel()

    def menu_button(self, program):
        place = self.desktop.run(["/usr/bin/python3", READER, str(program.pid), f"place:{text('HPS_Menu')}"],
                                 check=False)
        return json.loads(place or "null")


class XEmbedEnds(EndsWell, DesktopCase):
    session = XEmbedSession


if __name__ == "__main__":
    unittest.main()
