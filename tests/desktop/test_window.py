"""The details window, read and worked from outside: AT-SPI, X and the clipboard."""
import json
import os
import signal

from desktop_case import DesktopCase, wait_until
from desktop_session import HERE, SessionError
from texts import text

READER = str(HERE / "services" / "accessible_window.py")
TAB_KEYS = ("HPS_Threats", "HPS_Exploits", "HPS_Events", "HPS_ExternalDevices")


class Window(DesktopCase):
    parts = {"accessibility": True}

    def setUp(self):
        super().setUp()
        self.empty_folders()
        self.reported_agent = self.agent()
        self.details = self.started(self.reported_agent)
        self.status_item = self.item(self.details)
        self.reported_agent.tell_all("start", "halyx on", "quillmar on")
        self.status_item.wait_colour("green")

    # What the window looks like from outside

    def read(self, what):
        return self.desktop.run(["/usr/bin/python3", READER, str(self.details.pid), what],
                                check=False)

    def current_tab(self):
        """(label, number of rows) of the tab on screen, or None."""
        label, separator, rows = self.read("rows").rstrip("\n").rpartition("\t")
        return (label, int(rows)) if separator else None

    def wait_tab(self, label, rows):
        seen = []

        def is_there():
            seen.append(self.current_tab())
            return seen[-1] == (label, rows)
        try:
            wait_until(is_there, f"{label!r} with {rows} rows")
        except SessionError as error:
            raise SessionError(f"{error}, last seen: {seen[-1]}") from None

    def cells(self):
        return json.loads(self.read("cells"))

    def names(self):
        """role -> names of everything in the window."""
        found = {}
        for line in self.read("tree").splitlines():
            _, role, name, _ = json.loads(line)
            found.setdefault(role, []).append(name)
        return found

    def window(self):
        found = self.desktop.run(["xdotool", "search", "--onlyvisible", "--pid",
                                  str(self.details.pid), "--name", "KorvaleUI"], check=False)
        return found.split()[0] if found.split() else None

    def open_window(self):
        self.status_item.activate()
        window = wait_until(self.window, "the window")
        self.desktop.run(["xdotool", "windowactivate", "--sync", window])
        return window

    def press(self, *keys):
        for key in keys:
            self.desktop.run(["xdotool", "key", key])

    def clipboard(self):
        return self.desktop.run(["xclip", "-selection", "clipboard", "-o"], check=False)

    # Tests

    def test_a_batch_fills_the_four_tables_and_their_labels(self):
        self.reported_agent.tell_all(
            "batch on", "threat /home/me/One.exe 1 id-a", "threat /home/me/Two.exe 1 id-a",
            "threat /home/me/Three.exe 10 id-b", "exploit 100 /usr/bin/player alert 3 1",
            "device USB-Storage Block 0781 5583 4C53", "publish")
        self.status_item.wait_colour("red")
        self.open_window()
        wait_until(lambda: self.current_tab() and self.current_tab()[1] == 2, "two rows")
        rows = {row[0]: row for row in self.cells()}
        self.assertEqual(rows["one.exe"][1:], [text("Unsafe"), "2", "id-a"])
        self.assertEqual(rows["three.exe"][1:], [text("Quarantined"), "1", "id-b"])
        # looking at the tab clears its unseen count, and the icon with it
        self.status_item.wait_colour("green")
        self.press("ctrl+Next")
        wait_until(lambda: self.current_tab()[0].startswith(text("HPS_Exploits")), "the tab")
        self.assertEqual(self.cells(), [["player", text("Alert"), "3", "100"]])
        self.press("ctrl+Next", "ctrl+Next")
        self.wait_tab(text("HPS_ExternalDevices") + " ", 1)

    def test_unseen_threats_are_counted_in_the_tab_until_someone_looks(self):
        self.open_window()
        self.wait_tab(text("HPS_Threats") + " ", 0)
        self.press("ctrl+Next")
        self.wait_tab(text("HPS_Exploits") + " ", 0)  # else the first threat may be seen at once
        self.reported_agent.tell_all("batch on", "threat /tmp/x.exe 1 id-x", "threat /tmp/y.exe 1 id-y",
                                     "publish")
        self.status_item.wait_colour("red")
        wait_until(lambda: text("HPS_Threats") + " (2)" in self.read("tree"), "the count")
        self.press("ctrl+Prior")
        self.status_item.wait_colour("green")
        # the label was written before the count was cleared, and stands until the next refresh
        self.wait_tab(text("HPS_Threats") + " (2)", 2)
        self.press("ctrl+Next", "ctrl+Prior")
        self.wait_tab(text("HPS_Threats") + " ", 2)

    def test_the_copy_key_puts_lines_on_the_clipboard(self):
        self.reported_agent.tell_all("batch on", "threat /home/me/one.exe 1 id-a",
                                     "threat /home/me/two.exe 1 id-a", "publish")
        self.status_item.wait_colour("red")
        self.open_window()
        wait_until(lambda: self.current_tab() and self.current_tab()[1] == 1, "the row")
        self.click_first_row()
        self.press("ctrl+c")
        copied = wait_until(self.clipboard, "the clipboard").split("\n")
        self.assertEqual(copied[0], '"File","Category","Score","Found","ID","Path"')
        self.assertTrue(copied[1].startswith("one.exe," + text("Unsafe") + ","), copied)
        self.assertTrue(copied[1].endswith(",2,id-a,/home/me/one.exe"), copied)
        self.assertIn("/home/me/two.exe", "\n".join(copied))

    def click_first_row(self):
        x, y = json.loads(self.read("firstcell"))
        self.desktop.run(["xdotool", "mousemove", str(x), str(y), "click", "1"])

    def test_escape_and_control_w_hide_the_window_and_the_program_goes_on(self):
        for key in ("Escape", "ctrl+w"):
            with self.subTest(key=key):
                self.open_window()
                self.press(key)
                wait_until(lambda: not self.window(), "the window to go")
                self.assertTrue(self.details.running())

    def test_every_control_has_a_name(self):
        self.open_window()
        wait_until(lambda: "page tab" in self.names(), "the window's accessibles")
        nameless = [role for role, names in self.names().items() if "" in names and role in (
            "push button", "page tab", "table", "image", "label", "check box", "menu item")]
        self.assertEqual(nameless, [])

    def test_texts_from_files_are_no_markup(self):
        hostile = "<b>bold</b>&amp;<img src=x>\u202egpj.exe"
        self.reported_agent.tell(f'device "{hostile}" Block 1 2 3')
        self.open_window()
        self.press("ctrl+Prior")
        wait_until(lambda: self.current_tab()[1] == 1, "the row")
        self.assertIn("<b>bold</b>&amp;", self.cells()[0][0])

    def test_place_and_size_are_remembered(self):
        window = self.open_window()
        self.desktop.run(["xdotool", "windowsize", "--sync", window, "1000", "610"])
        self.press("Escape")
        wait_until(lambda: not self.window(), "the window to go")
        os.kill(self.details.pid, signal.SIGTERM)
        self.details.wait_exit()
        self.details = self.program()
        self.status_item = self.item(self.details)
        window = self.open_window()
        geometry = self.desktop.run(["xdotool", "getwindowgeometry", window])
        self.assertIn("1000x610", geometry)


class WindowWithoutTray(DesktopCase):
    parts = {"panel": False, "accessibility": True}

    def test_a_second_start_shows_the_window_with_the_menu_in_its_toolbar(self):
        program = self.program()
        program.wait_log("Bundle ID")
        wait_until(lambda: self.desktop.has_name("com.korvale.ui"), "the program's name")
        self.assertEqual(self.program().wait_exit(), 0)

        def window():
            return self.desktop.run(["xdotool", "search", "--onlyvisible", "--pid",
                                     str(program.pid), "--name", "KorvaleUI"],
                                    check=False).split()
        wait_until(window, "the window")

        def buttons():
            tree = self.desktop.run(["/usr/bin/python3", READER, str(program.pid), "tree"],
                                    check=False)
            return [json.loads(line) for line in tree.splitlines()
                    if json.loads(line)[1] in ("push button", "push button menu", "button menu")]
        self.assertTrue(wait_until(buttons, "the menu button"))
