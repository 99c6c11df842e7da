"""The details window: tabs, keys, status line, counters, names, and where it stands."""
import json
import os
import re
import signal
import time
import unittest

from desktop_case import DesktopCase
from drivers import BINARIES
from tray import hue_name
from window_case import READER, WindowCase, text, wait_until, window_of


class Window(WindowCase):
    def test_unseen_threats_are_counted_in_the_tab_until_someone_looks(self):
        self.open_window()
        self.wait_tab(text("HPS_Threats") + " ", 0)
        self.press("ctrl+Next")
        self.wait_tab(text("HPS_Exploits") + " ", 0)  # else the first threat may be seen at once
        self.publish("threat /tmp/x.exe 1 id-x", "threat /tmp/y.exe 1 id-y")
        self.status_item.wait_colour("red")
        wait_until(lambda: text("HPS_Threats") + " (2)" in self.read("tree"), "the count")
        self.press("ctrl+Prior")
        self.status_item.wait_colour("green")
        # the label was written before the count was cleared, and stands until the next refresh
        self.wait_tab(text("HPS_Threats") + " (2)", 2)
        self.press("ctrl+Next", "ctrl+Prior")
        self.wait_tab(text("HPS_Threats") + " ", 2)

    def test_new_events_and_exploits_are_counted_and_devices_are_not(self):
        self.open_window()
        self.publish('event raw event-1 {"ItemType":"1","When":"now","FilePath":"/x"}',
                     "exploit 100 /usr/bin/player alert 1 1", "device USB Block 1 2 3")
        wait_until(lambda: text("HPS_Exploits") + " (1)" in self.read("tree"), "the exploit")
        labels = [name for role, name, _ in self.tree() if role == "page tab"]
        self.assertEqual(labels[3], text("HPS_ExternalDevices") + " ")
        self.assertTrue(labels[2].startswith(text("HPS_Events") + " ("), labels)

    def test_escape_and_control_w_hide_the_window_and_the_program_goes_on(self):
        for key in ("Escape", "ctrl+w"):
            with self.subTest(key=key):
                self.open_window()
                self.press(key)
                wait_until(lambda: not self.window(), "the window to go")
                self.assertTrue(self.details.running())

    def test_every_control_has_a_name(self):
        self.open_window()
        nameless = {role for role, name, _ in self.tree() if not name} & {
            "push button", "page tab", "table", "image", "label", "check box", "menu item"}
        self.assertEqual(nameless, set())

    def test_a_key_shows_the_tooltip_of_the_current_cell(self):
        self.publish("threat /tmp/x.exe 1 id-x")
        self.open_window()
        self.go_to("HPS_Threats", 1)
        self.click_row(0)

        def on_screen():
            return len(self.desktop.run(["xdotool", "search", "--onlyvisible", "--pid",
                                         str(self.details.pid)], check=False).split())
        before = on_screen()
        self.press("shift+F1")
        wait_until(lambda: on_screen() == before + 1, "the tooltip")

    def test_the_counter_line_belongs_to_the_threats(self):
        self.open_window()
        self.publish("analysed 4711", "threat /tmp/q.exe 9 id-q", "threat /tmp/r.exe 9 id-r")
        self.wait_text("4711")
        self.wait_text("2")
        self.go_to("HPS_ExternalDevices", 0)
        wait_until(lambda: not any(name == "4711" for _, name, _ in self.tree()), "no counters")

    def test_the_updaters_message_stands_in_the_status_line(self):
        self.open_window()
        self.reported_agent.tell("update-status Version <b>5</b> & more is being installed")
        self.wait_text("Version <b>5</b> & more is being installed")

    def test_the_status_line_follows_the_agent(self):
        self.open_window()
        self.reported_agent.tell("analyzer /home/me/big.iso")
        self.reported_agent.tell("analyzer /home/me/bigger.iso")
        self.wait_text(text("Inspecting") + " /home/me/bigger.iso")
        self.reported_agent.tell("driver lost")
        self.wait_text(text("NoDriver"))
        self.reported_agent.tell("stop")
        self.wait_text(text("NotRunning"))

    def test_the_about_panel_shows_the_policy_as_plain_text(self):
        self.reported_agent.tell_all("policy name <b>House</b> & rules",
                                     "policy mode Managed Policy", "set companion-version 3.1",
                                     "requests clear")
        second = self.restarted()  # which asks for the policy with its first tick
        wait_until(lambda: {"CMD_": "GOPV"} in self.reported_agent.requests(), "the queries")
        self.status_item.click(self.status_item.entry(text("About")))

        said = wait_until(lambda: next(filter(None, json.loads(self.read("texts") or "[]")), None), "the credits")
        self.assertTrue(second.running())
        self.assertEqual(said.split("\n")[:2],
                         ["SONDAR Version : 3.1",
                          f"{text('AboutPolicy')} <b>House</b> & rules  (Managed Policy)"])

    def restarted(self):
        """The program anew, with the same agent."""
        os.kill(self.details.pid, signal.SIGTERM)
        self.details.wait_exit()
        self.details = self.started(self.reported_agent)
        self.status_item = self.item(self.details)
        return self.details

    def test_place_and_size_are_remembered(self):
        window = self.open_window()
        self.desktop.run(["xdotool", "windowsize", "--sync", window, "1000", "610"])
        self.press("Escape")
        wait_until(lambda: not self.window(), "the window to go")
        self.restarted()
        window = self.open_window()
        geometry = self.desktop.run(["xdotool", "getwindowgeometry", window])
        self.assertIn("1000x610", geometry)

    def left_of_title(self, key):
        return json.loads(self.read(f"place:{text(key)}"))[0]

    def choose_of_title(self, key, *keys):
        """Opens the menu of a title and plays keys in it."""
        x, y = json.loads(self.read(f"place:{text(key)}"))
        before = self.windows()
        self.desktop.run(["xdotool", "mousemove", str(x), str(y), "click", "3"])
        wait_until(lambda: self.windows() - before, "the menu")
        self.press(*keys)

    def is_arranged(self, first, second, *names):
        return self.left_of_title(first) < self.left_of_title(second) and \
            [row[0] for row in self.cells()] == list(names)

    def test_order_of_columns_and_rows_is_remembered_until_it_is_reset(self):
        self.publish("threat /tmp/c.exe 1 id-1", "threat /tmp/a.exe 1 id-2", "threat /tmp/b.exe 1 id-3")
        self.open_window()
        self.go_to("HPS_Threats", 3)
        x, y = json.loads(self.read(f"place:{text('HPS_ColFile')}"))
        self.desktop.run(["xdotool", "mousemove", str(x), str(y), "click", "1"])
        self.choose_of_title("HPS_ColCategory", "Down", "Return")  # to the left
        arranged = ("HPS_ColCategory", "HPS_ColFile", "a.exe", "b.exe", "c.exe")
        wait_until(lambda: self.is_arranged(*arranged), "the order")
        self.restarted()
        self.open_window()
        self.go_to("HPS_Threats", 3)
        self.assertTrue(self.is_arranged(*arranged))
        self.choose_of_title("HPS_ColCategory", "Up", "Return")  # the last entry
        at_first = ("HPS_ColFile", "HPS_ColCategory", "c.exe", "a.exe", "b.exe")
        wait_until(lambda: self.is_arranged(*at_first), "the first order")
        self.restarted()
        self.open_window()
        self.go_to("HPS_Threats", 3)
        self.assertTrue(self.is_arranged(*at_first))

    def test_dragging_the_logo_moves_the_window(self):
        window = self.open_window()

        def geometry():
            return self.desktop.run(["xdotool", "getwindowgeometry", window])
        before = geometry()
        x, y = json.loads(self.read(f"place:{text('HPS_Logo')}"))
        self.desktop.run(["xdotool", "mousemove", str(x), str(y), "mousedown", "1"])
        try:
            for _ in range(10):  # the window manager takes over in between
                self.desktop.run(["xdotool", "mousemove_relative", "--sync", "6", "4"])
        finally:
            self.desktop.run(["xdotool", "mouseup", "1"])
        wait_until(lambda: geometry() != before, "the window to move")
        self.assertEqual(self.desktop.opened_links(), [])  # which is no click

    def test_a_large_batch_leaves_the_menu_alive(self):
        self.open_window()
        self.reported_agent.tell("synthetic 20000 files", 60)
        self.reported_agent.tell("publish", 60)
        started = time.monotonic()
        self.assertTrue(self.status_item.menu())
        self.assertLess(time.monotonic() - started, 10)
        wait_until(lambda: self.current_tab()[1] > 10000, "the rows", 60)


@unittest.skipIf("KORVALE_SANITIZE" in os.environ, "a sanitizer's allocator tells nothing of what is in use")
class OpenedAgainAndAgain(DesktopCase):
    """A window without anything in it: what the toolkit leaves behind, and the program takes away."""

    def test_it_leaves_nothing_behind(self):
        bytes_each = int(self.desktop.run([BINARIES.parent / "tests" / "window_openings", "50"]))
        self.assertLess(bytes_each, 64)  # each of the three titles that an opening sets left 32


class TitleBar(WindowCase):
    def colours(self, window):
        """The shield's colours, were they in one pixel only, that the picture of a window has at any size."""
        said = self.desktop.run(["xprop", "-id", window, "-f", "_NET_WM_ICON", "32c", " $0+", "_NET_WM_ICON"])
        words = [int(word) for word in re.findall(r"\d+", said.partition(")")[2])]
        self.assertTrue(words, said)
        found = set()
        while words:
            width, height, words = words[0], words[1], words[2:]
            self.assertIn(width, range(1, 513))
            for pixel in words[:width * height]:
                if pixel >> 24 > 32:
                    found.add(hue_name(pixel >> 16 & 255, pixel >> 8 & 255, pixel & 255))
            words = words[width * height:]
        return found

    def test_its_picture_tells_no_state(self):
        window = self.open_window()
        self.assertEqual(self.colours(window), {None}, "green")
        self.reported_agent.tell("driver lost")
        self.status_item.wait_colour("red")
        self.assertEqual(self.colours(window), {None}, "red")


class WindowThatIsNotDrawn(WindowCase):
    def test_what_comes_meanwhile_stays_unseen(self):
        window = self.open_window()
        # As a desktop that takes the window away without calling it minimised.
        self.desktop.run(["xdotool", "windowunmap", "--sync", window])
        self.publish("threat /tmp/x.exe 1 id-x")
        self.status_item.wait_colour("red")
        self.desktop.run(["xdotool", "windowmap", "--sync", window])
        self.open_window()
        self.status_item.wait_colour("green")


class WindowWithoutTray(DesktopCase):
    parts = {"panel": False, "accessibility": True}

    def test_a_second_start_shows_the_window_with_the_menu_in_its_toolbar(self):
        program = self.program()
        wait_until(lambda: self.desktop.has_name("com.korvale.ui"), "the program's name")
        self.assertEqual(self.program().wait_exit(), 0)
        wait_until(lambda: window_of(self.desktop, program), "the window")

        def menu_button():
            place = self.desktop.run(["/usr/bin/python3", READER, str(program.pid),
                                      f"place:{text('HPS_Menu')}"], check=False)
            return json.loads(place or "null")
        x, y = wait_until(menu_button, "the menu button")
        self.desktop.run(["xdotool", "mousemove", str(x), str(y), "click", "1"])
        wait_until(lambda: self.menus(program) > 1, "the menu")
        self.desktop.run(["xdotool", "key", "Up", "Return"])  # its last item
        self.assertEqual(program.wait_exit(), 0)
        program.wait_log(r'^INFO "exitApp\."$')

    def menus(self, program):
        """How many windows of the program are on screen."""
        return len(self.desktop.run(["xdotool", "search", "--onlyvisible", "--pid",
                                     str(program.pid)], check=False).split())
