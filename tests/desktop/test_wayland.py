"""The whole program on a Wayland compositor (sway, waybar)."""
import json
import os
import unittest

from at_home import PICTURES
from desktop_case import DesktopCase, wait_until
from wayland_session import WaylandSession
from window_case import WindowCase, text

APP_ID = "com.korvale.ui"
EXIT_LINE = r'^INFO "-\[AppDelegate applicationWillTerminate:\]\(\) Bastion KorvaleUI Exit"$'


class Wayland(DesktopCase):
    @classmethod
    def setUpClass(cls):
        cls.desktop = WaylandSession().__enter__()
        cls.addClassCleanup(cls.desktop.stop)

    def setUp(self):
        super().setUp()
        self.addCleanup(self.desktop.tell, "workspace", "1")

    def shown(self):
        program = self.program()
        item = self.item(program)
        item.activate()
        self.desktop.wait_in_front(APP_ID)
        return program, item

    def test_the_item_shows_its_colour_and_a_click_the_window(self):
        _, item = self.shown()
        self.assertEqual(item.colour(), "yellow")
        self.assertTrue(item.menu())

    def go_away(self):
        """To another workspace."""
        self.desktop.tell("workspace", "2")
        wait_until(lambda: not self.desktop.window(APP_ID)["visible"], "the window to go out of sight")

    def test_a_click_brings_the_window_up_from_another_workspace(self):
        _, item = self.shown()
        self.go_away()
        self.desktop.wait_in_front(APP_ID, item.activate)

    def test_a_second_start_brings_the_window_up_from_another_workspace(self):
        self.shown()
        self.go_away()
        self.assertEqual(self.program().wait_exit(), 0)
        self.desktop.wait_in_front(APP_ID)

    def test_the_compositor_gets_the_token_that_the_tray_sent(self):
        program = self.program(environment={"WAYLAND_DEBUG": "1"})
        item = self.item(program)
        item.activate()
        self.desktop.wait_in_front(APP_ID)
        self.go_away()
        item.provide_token("of-the-tray")
        item.activate()
        program.wait_log(r'xdg_activation_v1@\d+\.activate\("of-the-tray"')

    def test_a_token_that_the_compositor_refuses_brings_the_window_up_all_the_same(self):
        _, item = self.shown()
        self.go_away()

        def click():
            item.provide_token("nobody-knows-it")
            item.activate()
        self.desktop.wait_in_front(APP_ID, click)

    def test_the_window_keeps_its_size_when_it_comes_up(self):
        _, item = self.shown()
        self.desktop.tell(f'[app_id="{APP_ID}"]', "resize set 1000 650")
        chosen = {"width": 1000, "height": 650}
        wait_until(lambda: self.size() == chosen and self.is_drawn(), "the new size")
        self.go_away()
        self.desktop.wait_in_front(APP_ID, item.activate)
        wait_until(lambda: self.size() == chosen, "the size before")

    def size(self):
        """With the title bar, which the compositor draws."""
        node = self.desktop.window(APP_ID)
        return {"width": node["rect"]["width"], "height": node["rect"]["height"] + node["deco_rect"]["height"]}

    def is_drawn(self):
        """Whether the program has drawn its light window up to the corner: it has taken the size that it was told."""
        place = self.desktop.window(APP_ID)["rect"]
        corner = self.desktop.pixels(place["x"] + place["width"] - 14, place["y"] + place["height"] - 14, 6, 6)
        return min(corner) > 200

    def test_a_restarted_panel_gets_the_item_again(self):
        program, _ = self.shown()
        self.desktop.stop_part("panel")
        self.desktop.start_panel()
        self.item(program)


class Window(WindowCase):
    """Worked by keyboard, and read as screen readers do."""

    @classmethod
    def setUpClass(cls):
        cls.desktop = WaylandSession(accessibility=True).__enter__()
        cls.addClassCleanup(cls.desktop.stop)

    def press(self, *keys):
        for key in keys:
            self.desktop.play("key", key)

    def open_window(self):
        self.desktop.wait_in_front(APP_ID, self.status_item.activate)
        return wait_until(self.current_tab, "the window's accessibles")

    def opened(self):
        self.publish("threat /home/ada/alpha.exe 1 id-a", "threat /home/ada/gamma.exe 1 id-c")
        self.open_window()
        self.go_to("HPS_Threats", 2)

    def picture(self, name):
        if PICTURES:
            os.makedirs(PICTURES, exist_ok=True)
            self.desktop.screenshot(os.path.join(PICTURES, f"wayland-{name}.png"))

    def test_rows_are_found_and_exported(self):
        self.opened()
        self.press("ctrl+f")
        self.desktop.play("type", "gamma")
        wait_until(lambda: self.current_tab()[1] == 1, "one row")
        self.press("ctrl+s", "Return")
        wait_until(lambda: "threats.csv" in self.read("texts"), "the dialog")
        self.picture("export-dialog")
        self.press("Return")
        path = self.desktop.folder / "home" / "threats.csv"
        first, second = text("HPS_ExportDone").split("%@")[:2]
        self.wait_text(f"{first}{path}{second}1")
        self.assertIn("gamma.exe", path.read_text())

    def test_the_details_of_a_row_by_keyboard_and_screen_reader(self):
        self.opened()
        self.wait_focus("table")
        self.press("Down", "Return")
        self.wait_line("HPS_PanePath", "/home/ada/alpha.exe")
        self.wait_line("HPS_PaneMeans", text("HPS_MeansUnsafe"))
        self.picture("details")
        self.wait_focus("text", text("HPS_ColDetails"))
        self.read(f"press:{text('HPS_PaneCopyPath')}")
        self.press("Escape")
        self.wait_details_closed()
        self.wait_focus("table")
        self.press("ctrl+f", "ctrl+v")  # what was copied, where it can be read
        wait_until(lambda: "/home/ada/alpha.exe" in json.loads(self.read("texts")), "the copied path")
        self.press("Escape")
        self.wait_focus("table")
        self.press("ctrl+End", "Return")
        self.wait_line("HPS_PanePath", "/home/ada/gamma.exe")
        self.read(f"press:{text('HPS_PaneClose')}")
        self.wait_details_closed()
        self.wait_focus("table")

    def wait_focus(self, role, name=None):
        def is_there():
            focus = json.loads(self.read("focus") or "[]")
            return any(own == role and name in (None, its) for own, its in focus)
        wait_until(is_there, f"the focus of {name or role}")

    def test_notifications_are_a_window_of_their_own(self):
        self.opened()
        self.press("ctrl+n")
        self.wait_text(text("HPS_ClearNotifications"))
        self.picture("notifications")
        self.press("Escape")
        wait_until(lambda: text("HPS_ClearNotifications") not in self.names(), "the window to go")
        self.desktop.wait_in_front(APP_ID)

    def test_larger_text_of_the_portal_enlarges_what_stands_around_the_tables(self):
        self.open_window()
        before = json.loads(self.read(f"size:{text('HPS_Notifications')}"))
        self.desktop.start_service("portal", "settings_portal.py", "0", "0", "1.5")
        self.cleanup.callback(self.desktop.stop_part, "portal")
        wait_until(lambda: json.loads(self.read(f"size:{text('HPS_Notifications')}"))[1] >= 1.3 * before[1],
                   "larger text")
        self.press("Return")
        self.picture("large-text")


class EndOfTheCompositor(DesktopCase):
    @classmethod
    def setUpClass(cls):
        cls.desktop = WaylandSession(notifications=None).__enter__()
        cls.addClassCleanup(cls.desktop.stop)

    def test_is_an_end_like_any_other(self):
        program = self.program()
        self.item(program).activate()
        self.desktop.wait_in_front(APP_ID)
        self.desktop.stop_part("sway")
        self.assertEqual(program.wait_exit(), 0)
        program.wait_log(EXIT_LINE)


class OwnTitleBar(DesktopCase):
    """As on desktops that leave it to each program."""

    @classmethod
    def setUpClass(cls):
        cls.desktop = WaylandSession(border="csd").__enter__()
        cls.addClassCleanup(cls.desktop.stop)

    def brightness(self, scheme):
        """Of the title bar, from 0 to 255, under the portal's colour scheme."""
        self.desktop.start_service("portal", "settings_portal.py", str(scheme))
        self.addCleanup(self.desktop.stop_part, "portal")
        program = self.program()
        self.item(program).activate()
        place = self.desktop.wait_in_front(APP_ID)["rect"]
        strip = wait_until(lambda: self.title_bar(place), "the title bar")
        return sum(strip) / len(strip)

    def title_bar(self, place):
        """A part of it without text; None before it is drawn, when the background shows through."""
        strip = self.desktop.pixels(place["x"] + 40, place["y"] + 8, 40, 8)
        return None if bytes.fromhex("33506b") in strip else strip

    def test_is_dark_on_a_dark_desktop(self):
        self.assertLess(self.brightness(1), 90)

    def test_is_light_on_a_light_one(self):
        self.assertGreater(self.brightness(0), 170)


if __name__ == "__main__":
    unittest.main()
