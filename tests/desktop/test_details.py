"""The details of a row: by keyboard and mouse, read over AT-SPI, and what can be done from there."""
import contextlib
import json
import subprocess

from desktop_session import HERE
from drivers import LineReader
from window_case import WindowCase, text, wait_until

LISTENER = str(HERE / "services" / "accessible_events.py")
BUTTONS = ("HPS_PaneCopy", "HPS_PaneCopyPath", "HPS_PaneSelectAll", "HPS_PaneShow")


class DetailsCase(WindowCase):
    def click(self, name):
        x, y = self.place(name)
        self.desktop.run(["xdotool", "mousemove", str(x), str(y), "click", "1"])

    def copied_now(self, act):
        """What `act` puts on the clipboard."""
        before = self.clipboard()
        act()
        return wait_until(lambda: self.clipboard() != before and self.clipboard(), "the clipboard")

    def existing_file(self, name):
        path = self.desktop.folder / "home" / name
        path.write_text("harmless")
        return path


class Pane(DetailsCase):
    def test_enter_shows_every_field_and_escape_gives_the_row_back(self):
        self.publish("threat /home/me/One.exe 1 id-a 70", "threat /home/me/Two.exe 1 id-a 70",
                     "threat /home/me/Three.exe 10 id-b")
        self.open_window()
        self.go_to("HPS_Threats", 2)
        self.assertNotIn(text("HPS_PaneCopyPath"), self.names())
        self.click_row(0)
        row = self.copied()
        self.press("Return")
        self.wait_line("HPS_ColFile", "one.exe")
        lines = self.details_text().split("\n")
        for key, value in (("HPS_ColCategory", text("Unsafe")), ("HPS_ColFound", "2"),
                           ("HPS_ColID", "id-a"), ("HPS_PaneMeans", text("HPS_MeansUnsafe")),
                           ("HPS_PaneDo", text("HPS_DoUnsafe")),
                           ("HPS_PanePath", "/home/me/One.exe")):
            self.assertIn(f"{text(key)}\t{value}", lines)
        self.assertIn("\t/home/me/Two.exe", lines)
        self.assertTrue(any(line.startswith(text("HPS_ColScore") + "\t") for line in lines), lines)
        tree = self.tree()
        self.assertIn(text("HPS_ColDetails"), [name for role, name, _ in tree if role == "text"])
        for key in BUTTONS:
            self.assertIn(text(key), [name for role, name, _ in tree if "button" in role], tree)
        # the focus is in the text: its selection is what is copied there
        whole = self.copied_now(lambda: self.press("ctrl+a", "ctrl+c"))
        self.assertEqual(whole, self.details_text())
        self.press("Escape")
        self.wait_details_closed()
        again = self.copied_now(lambda: self.press("ctrl+c"))  # the row has the focus again
        self.assertEqual(again.split("\n"), row)
        self.press("Down", "space")
        self.wait_line("HPS_ColFile", "three.exe")
        self.press("Escape")
        self.wait_details_closed()
        self.assertIsNotNone(self.window())

    def test_a_double_click_opens_it_and_a_refresh_goes_on_with_the_row(self):
        self.publish("threat /tmp/b.exe 1 id-b")
        self.open_window()
        self.go_to("HPS_Threats", 1)
        x, y = self.middle_of_row(0)
        self.desktop.run(["xdotool", "mousemove", str(x), str(y), "click", "--repeat", "2",
                          "--delay", "50", "1"])
        self.wait_line("HPS_ColFile", "b.exe")
        self.publish("threat /tmp/b.exe 9 id-b", "threat /tmp/c.exe 1 id-c")
        self.wait_line("HPS_PaneMeans", text("HPS_MeansQuarantined"))
        self.assertNotIn(text("HPS_PaneGone"), self.names())
        self.publish("threat /tmp/b.exe 0 id-b")
        self.wait_text(text("HPS_PaneGone"))
        self.assertIn(f"{text('HPS_ColFile')}\tb.exe", self.details_text().split("\n"))
        self.press("Escape")
        self.wait_details_closed()

    def test_every_tab_has_its_details(self):
        self.open_window()
        self.publish("threat /tmp/a.exe 1 id-a", "exploit 7 /usr/bin/player blocked 1 12")
        self.publish('device "USB Drive" Block 0781 5567 4C53')
        for tab, rows, key, value in (
                ("HPS_Exploits", 1, "HPS_PanePath", "/usr/bin/player"),
                ("HPS_Events", 2, "HPS_PaneMeans", text("HPS_MeansDetected")),
                ("HPS_ExternalDevices", 1, "HPS_PaneDo", text("HPS_DoDeviceBlocked"))):
            self.go_to(tab, rows)
            self.wait_details_closed()  # another tab closes it
            row = next(index for index, cells in enumerate(self.cells())
                       if tab != "HPS_Events" or cells[1] == "Threat")
            self.click_row(row)
            self.press("Return")
            self.wait_line(key, value)

    def test_hostile_and_huge_texts_are_only_texts(self):
        name = "/tmp/<b>bold</b>&amp;\u202egpj." + "x" * (1024 * 1024)
        record = json.dumps({name: {"State": 1, "ID": "id-x"}})
        self.reported_agent.tell_all('raw-file header.log {"MessageMask":17}',
                                     f"raw-file file_states.log {record}",
                                     "post timer.aggregated_messages")
        self.open_window()
        self.go_to("HPS_Threats", 1)
        self.click_row(0)
        self.press("Return")
        wait_until(lambda: text("HPS_PaneCut") in self.details_text(), "the shortened path")
        self.assertIn("/tmp/<b>bold</b>&amp;[U+202E]gpj.xxx", self.details_text())
        self.press("Escape")
        self.wait_details_closed()


class Actions(DetailsCase):
    def manager_calls(self):
        with contextlib.closing(self.desktop.session_bus()) as bus:
            manager = bus.get_object("org.freedesktop.FileManager1",
                                     "/org/freedesktop/FileManager1")
            return json.loads(manager.Calls(dbus_interface="com.korvale.Test"))

    def open_details_of(self, *paths):
        self.publish(*(f"threat {path} 1 id-{path}" for path in paths))
        self.open_window()
        self.go_to("HPS_Threats", len(paths))
        self.click_row(0)

    def test_the_file_manager_shows_the_file(self):
        self.desktop.start_service("file-manager", "recording_file_manager.py")
        self.cleanup.callback(self.desktop.stop_part, "file-manager")
        path = self.existing_file("a#b.exe")
        self.open_details_of(path)
        self.press("Return")
        self.wait_line("HPS_PanePath", str(path))
        address = "file://" + str(path).replace("#", "%23")
        before = self.desktop.opened_links()
        wait_until(self.enabled, "the file to be found")
        self.click(text("HPS_PaneShow"))
        wait_until(lambda: self.manager_calls() == [[[address], ""]], "the file manager's call")
        self.assertEqual(self.desktop.opened_links(), before)

    def test_without_a_file_manager_its_folder_opens(self):
        path = self.existing_file("x.exe")
        self.open_details_of(path)
        self.press("Return")
        wait_until(self.enabled, "the file to be found")
        before = len(self.desktop.opened_links())
        self.click(text("HPS_PaneShow"))
        wait_until(lambda: len(self.desktop.opened_links()) > before, "the folder")
        self.assertEqual(self.desktop.opened_links()[before:], [f"file://{path.parent}/"])

    def enabled(self):
        """Whether "Show in File Manager" can be pressed."""
        return text("HPS_PaneShow") in json.loads(self.read("sensitive") or "[]")

    def has_menu(self):
        """Whether the program has a second window: menus are not in the window's tree."""
        return len(self.desktop.run(["xdotool", "search", "--onlyvisible", "--pid",
                                     str(self.details.pid)], check=False).split()) > 1

    def test_the_menu_key_offers_the_same_on_the_row(self):
        self.open_details_of("/nonexistent/a.exe", "/nonexistent/b.exe")
        lines = self.listen()
        for key in ("Menu", "shift+F10"):
            self.press(key)
            wait_until(self.has_menu, "the menu")
            for name in BUTTONS[:3]:  # the last is not offered, as there is no such file
                self.press("Down")
                lines.wait_for(json.dumps(["focus", "menu item", text(name)])[1:-1])
            self.press("Escape")
            wait_until(lambda: not self.has_menu(), "the menu to close")
            self.assertIsNotNone(self.window())
        path = self.copied_now(lambda: self.press("Menu", "Down", "Down", "Return"))
        self.assertEqual(path, "/nonexistent/a.exe")

    def listen(self):
        """What screen readers are told from now on, line by line."""
        listener = subprocess.Popen(["/usr/bin/python3", LISTENER, str(self.details.pid)],
                                    env=self.desktop.env, text=True, stdout=subprocess.PIPE)
        lines = LineReader(listener.stdout)

        def end():
            listener.kill()
            listener.wait()
            lines.join()
            listener.stdout.close()
        self.cleanup.callback(end)
        lines.wait_for("^ready$")
        return lines

    def test_a_right_click_means_the_row_under_it(self):
        self.open_details_of("/nonexistent/a.exe", "/nonexistent/b.exe")
        x, y = self.middle_of_row(1)
        self.desktop.run(["xdotool", "mousemove", str(x), str(y), "click", "3"])
        wait_until(self.has_menu, "the menu")
        path = self.copied_now(lambda: self.press("Down", "Down", "Return"))
        self.assertEqual(path, "/nonexistent/b.exe")

    def test_the_buttons_are_reached_by_keyboard(self):
        self.open_details_of("/nonexistent/a.exe")
        self.press("Return")
        self.wait_line("HPS_ColFile", "a.exe")
        # back from the text: close, then what can be pressed, from the last to the first
        path = self.copied_now(
            lambda: self.press("shift+Tab", "shift+Tab", "shift+Tab", "space"))
        self.assertEqual(path, "/nonexistent/a.exe")
