"""The whole program in other languages, in the other direction, and on sharp screens."""
import json
import os
import subprocess

from at_home import PICTURES
from desktop_case import DesktopCase
from desktop_session import BINARIES
from window_case import READER, WindowCase, text, wait_until, window_of

TABS = ("HPS_Threats", "HPS_Exploits", "HPS_Events", "HPS_ExternalDevices")
PATH = "/home/ada/見積書.xlsx"


class SpokenCase(WindowCase):
    """The program is started by the test, in an environment of its own."""

    def setUp(self):
        super(WindowCase, self).setUp()
        self.empty_folders()
        self.reported_agent = self.agent()

    def opened(self, *arguments, **environment):
        self.details = self.started(self.reported_agent, *arguments, environment=environment)
        self.status_item = self.item(self.details)
        self.reported_agent.tell_all("start", "halyx on", "quillmar on", "batch on")
        self.status_item.wait_colour("green")
        self.publish(f"threat {PATH} 1 id-x", "analysed 4711")
        return self.open_window()

    def picture(self, name):
        if PICTURES:
            os.makedirs(PICTURES, exist_ok=True)
            self.desktop.screenshot(os.path.join(PICTURES, f"{name}.png"))

    def check_names(self):
        nameless = {role for role, name, _ in self.tree() if not name} & {"push button", "page tab", "table", "image",
                                                                           "text", "frame", "dialog"}
        self.assertEqual(nameless, set())

    def tab_names(self):
        return [name.rpartition(" (")[0] or name.rstrip() for role, name, _ in self.tree() if role == "page tab"]


class Languages(SpokenCase):
    def check(self, language, locale):
        self.opened(LANG=locale, LANGUAGE=None)
        self.assertEqual(self.tab_names(), [text(key, language) for key in TABS])
        self.wait_text(text("Analyzed", language))
        self.assertEqual(repr(self.status_item.menu()[0]), text("ShowDetailsMenu", language))
        self.picture(f"window-{language}")
        self.status_item.click(self.status_item.entry(text("About", language)))
        policy = text("AboutPolicy", language).strip()
        wait_until(lambda: any(policy in each for each in json.loads(self.read("texts") or "[]")), "the credits")
        self.picture(f"about-{language}")

    def test_german(self):
        self.check("de", "de_DE.UTF-8")

    def test_japanese_with_a_font_for_it(self):
        self.assertTrue(self.desktop.run(["fc-list", ":lang=ja"]).strip(), "install fonts-ipaexfont-gothic")
        self.check("ja", "ja_JP.UTF-8")

    def test_the_toolkits_own_buttons_are_german_too(self):
        program = self.program("-a", environment={"LANG": "de_DE.UTF-8", "LANGUAGE": None})
        item = self.item(program)
        item.click(item.entry(text("TM_Folder", "de")))
        wait_until(lambda: "Abbrechen" in self.desktop.run(["/usr/bin/python3", READER, str(program.pid), "tree"],
                                                           check=False), "the chooser in German")
        self.picture("chooser-de")

    def test_from_right_to_left_the_tabs_begin_at_the_right(self):
        self.opened("-reverse")

        def place(key):
            name = next(name for role, name, _ in self.tree() if role == "page tab" and name.startswith(text(key)))
            return json.loads(self.read(f"place:{name}"))
        self.picture("window-reversed")
        self.assertGreater(place("HPS_Exploits")[0], place("HPS_ExternalDevices")[0])


class Scales(SpokenCase):
    """With twice and one and a half times the pixels. The toolkit tells screen readers positions before its scaling
    (ToolkitPositions below), so all of them are to be multiplied."""

    def check(self, factor):
        self.factor = float(factor)
        self.opened(QT_SCALE_FACTOR=factor, QT_SCALE_FACTOR_ROUNDING_POLICY="PassThrough")
        self.picture(f"window-{factor}")
        wait_until(lambda: self.current_tab()[1] == 1, "the row")
        self.check_keys()
        self.check_focus()
        self.check_names()
        self.check_details()
        self.check_notifications()
        self.check_export()
        self.check_positions()
        self.press("Escape", "Escape")
        wait_until(lambda: window_of(self.desktop, self.details) is None, "the window to go")

    def check_details(self):
        self.press("Return")
        self.wait_text(text("HPS_PaneCopyPath"))
        self.picture(f"details-{self.factor}")
        self.check_focus()
        self.check_names()
        self.click_at(self.read(f"place:{text('HPS_PaneCopyPath')}"))
        wait_until(lambda: self.clipboard() == PATH, "the path")
        self.press("Escape")
        self.wait_details_closed()

    def check_notifications(self):
        self.press("ctrl+n")
        self.wait_text(text("HPS_ClearNotifications"))
        self.picture(f"notifications-{self.factor}")
        self.check_names()
        self.press("Escape")
        wait_until(lambda: text("HPS_ClearNotifications") not in self.names(), "the notifications to go")

    def check_export(self):
        before = self.windows()
        self.click_at(self.read(f"place:{text('HPS_Export')}"))
        menu = wait_until(lambda: self.windows() - before, "the menu").pop()
        self.picture(f"export-{self.factor}")
        places = dict(line.split("=") for line in
                      self.desktop.run(["xdotool", "getwindowgeometry", "--shell", menu]).split())
        self.assertGreaterEqual(int(places["X"]), 0)
        self.assertLessEqual(int(places["X"]) + int(places["WIDTH"]), 1280)
        self.press("Escape")
        wait_until(lambda: self.windows() == before, "the menu to close")

    def check_keys(self):
        self.press("ctrl+Next")
        self.wait_tab(text("HPS_Exploits") + " ", 0)
        self.press("ctrl+Prior")
        self.wait_tab(text("HPS_Threats") + " ", 1)
        self.press("Down")
        self.assertIn("見積書.xlsx", "\n".join(self.copied()))

    def check_focus(self):
        """Tab reaches everything that can have the keyboard, the tab bar standing for its tabs."""
        self.wait_text("Demonstration machine")  # asked for with the first poll: a label changes its name
        reached = set()
        begin = focus = self.read("focus")
        while True:
            self.press("Tab")
            wait_until(lambda before=focus: self.read("focus") != before, "the focus to go on")
            focus = self.read("focus")
            reached |= {name for _, name in json.loads(focus)}
            if focus == begin:
                break
        pressable = json.loads(self.read("sensitive"))
        wanted = {name for role, name in json.loads(self.read("focusable"))
                  if role != "page tab" and (role != "push button" or name in pressable)}
        self.assertLessEqual(wanted, reached)

    def click_at(self, place):
        x, y = (round(value * self.factor) for value in json.loads(place))
        self.desktop.play("mousemove", x, y, "click", 1)

    def check_positions(self):
        """What stands where it is said to be gets the click."""
        for key in (*TABS[1:], TABS[0]):
            name = next(name for role, name, _ in self.tree() if role == "page tab" and name.startswith(text(key)))
            self.click_at(self.read(f"place:{name}"))
            wait_until(lambda key=key: self.current_tab()[0].startswith(text(key)), f"the tab {key}")
        self.click_at(self.read("cell:0"))
        self.assertIn("見積書.xlsx", "\n".join(self.copied()))
        self.click_at(self.read(f"place:{text('HPS_Find')}"))
        self.desktop.play("type", "nowhere")
        wait_until(lambda: self.current_tab()[1] == 0, "the rows to be left out")

    def test_the_window_is_worked_by_keyboard_and_by_reported_places_at_twice_the_size(self):
        self.check("2")

    def test_the_window_is_worked_by_keyboard_and_by_reported_places_at_one_and_a_half_times_the_size(self):
        self.check("1.5")

    def test_larger_text_of_an_x_server_enlarges_everything(self):
        """As the desktops' settings for large text make it: by the resolution of fonts."""
        resources = ("xprop", "-root", "-f", "RESOURCE_MANAGER", "8s", "-set", "RESOURCE_MANAGER")
        self.desktop.run([*resources, "Xft.dpi:\t144\n"])
        self.addCleanup(self.desktop.run, [*resources, ""])
        self.factor = 1.5
        window = self.opened()
        self.picture("window-large-text")
        hints = self.desktop.run(["xprop", "-id", window, "WM_NORMAL_HINTS"])
        self.assertIn(f"minimum size: {560 * 3 // 2} by {320 * 3 // 2}", hints)
        wait_until(lambda: self.current_tab()[1] == 1, "the row")
        self.click_at(self.read("cell:0"))
        self.check_details()
        self.check_notifications()
        self.check_export()
        self.check_positions()


class HighContrast(SpokenCase):
    """As the portal tells it, on a light and on a dark desktop."""

    def color(self, window, x, y):
        """Of a point of the window, as three bytes."""
        place = dict(line.split("=") for line in
                     self.desktop.run(["xdotool", "getwindowgeometry", "--shell", window]).split())
        return self.desktop.pixels(int(place["X"]) + x, int(place["Y"]) + y, 1, 1)

    def check(self, scheme, ground):
        self.desktop.start_service("portal", "settings_portal.py", str(scheme), "1")
        self.addCleanup(self.desktop.stop_part, "portal")
        window = self.opened()
        wait_until(lambda: self.color(window, 3, 3) == ground, "the ground of the window")
        wait_until(lambda: self.current_tab()[1] == 1, "the row")
        self.click_row(0)
        self.press("Return")
        self.wait_text(text("HPS_PaneCopyPath"))
        self.press("ctrl+f")
        self.desktop.play("type", "xlsx")
        wait_until(lambda: "xlsx" in json.loads(self.read("texts")), "the words to find")
        self.picture(f"contrast-{scheme}-details")
        x, y = json.loads(self.read(f"size:{text('HPS_ColDetails')}"))
        self.assertGreater(x * y, 0)
        self.press("ctrl+n")
        self.wait_text(text("HPS_ClearNotifications"))
        told = wait_until(lambda: self.windows() - {window}, "the notifications").pop()
        wait_until(lambda: self.color(told, 3, 3) == ground, "the ground of the notifications")
        self.picture(f"contrast-{scheme}-notifications")

    def test_is_black_on_white_on_a_light_desktop(self):
        self.check(0, b"\xff\xff\xff")

    def test_is_white_on_black_on_a_dark_desktop(self):
        self.check(1, b"\0\0\0")


class ToolkitPositions(DesktopCase):
    """A program of ten lines, without any of ours. When this fails, the toolkit has been mended."""
    parts = {"accessibility": True, "panel": False}

    def test_are_those_before_scaling(self):
        said = {factor: self.middle(factor) for factor in ("1", "2")}
        self.assertEqual(said["1"], [200, 150])
        self.assertEqual(said["2"], said["1"])

    def middle(self, factor):
        """Where the button's middle is said to be, once its X window has the scaled size."""
        environment = {**self.desktop.env, "QT_SCALE_FACTOR": factor}
        with subprocess.Popen([BINARIES.parent / "tests" / "toolkit_positions"], env=environment) as probe:
            self.addCleanup(probe.kill)
            size = f"{200 * int(factor)}x{100 * int(factor)}"
            wait_until(lambda: size in self.geometry(probe.pid), "the button")
            place = wait_until(lambda: self.desktop.run(["/usr/bin/python3", READER, str(probe.pid), "place:probe"],
                                                        check=False), "the accessible button")
            probe.kill()
            return json.loads(place)

    def geometry(self, pid):
        found = self.desktop.run(["xdotool", "search", "--onlyvisible", "--pid", str(pid)], check=False).split()
        return self.desktop.run(["xdotool", "getwindowgeometry", found[0]], check=False) if found else ""
