"""The program as launchers and file managers start it: by the bus, by its entry's actions, on a folder."""
import contextlib
import os
import signal

import dbus

from desktop_case import DesktopCase, wait_until
from desktop_session import BINARIES, PROJECT
from texts import text

NAME = "com.korvale.ui"
BUS = "org.freedesktop.DBus"


def file_manager_entry(folder):
    """Thunar's, with the built program."""
    entry = folder / "send-to.desktop"
    entry.write_text((PROJECT / "packaging" / "file-managers" / "thunar-sendto.desktop").read_text()
                     .replace("Exec=korvale-ui", f"Exec={BINARIES / 'korvale-ui'}"))
    return str(entry)


class WithoutAnAgent(DesktopCase):
    def test_whoever_clicks_in_a_file_manager_is_told(self):
        self.desktop.run(["gio", "launch", file_manager_entry(self.desktop.folder), str(self.desktop.folder)])
        told = self.wait_notification(lambda call: text("HPS_TermNoAgent") in call["body"])
        self.assertEqual(told["summary"], text("ProductEP"))
        self.assertEqual(told["body"], f"<b>{text('HPS_TermScanName')}</b>\n{text('HPS_TermNoAgent')}")


class Launcher(DesktopCase):
    """A desktop whose bus can start the program."""
    parts = {"notifications": None}

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        service = (PROJECT / "packaging" / f"{NAME}.service.in").read_text()
        (cls.desktop.folder / "services" / f"{NAME}.service").write_text(
            service.replace("@KORVALE_BINDIR@", str(BINARIES)))

    def setUp(self):
        super().setUp()
        self.empty_folders()
        self.addCleanup(self.end)

    def owner(self):
        """The process that has the program's name, or None."""
        with contextlib.closing(self.desktop.session_bus()) as bus:
            daemon = bus.get_object(BUS, "/org/freedesktop/DBus")
            try:
                return int(daemon.GetConnectionUnixProcessID(NAME, dbus_interface=BUS))
            except dbus.DBusException:
                return None

    def end(self):
        pid = self.owner()
        if pid is not None:
            os.kill(pid, signal.SIGTERM)
            wait_until(lambda: self.owner() is None, "the program's end")

    def titles(self):
        """Of the windows on screen that the owner of the name has."""
        pid = self.owner()
        found = self.desktop.run(["xdotool", "search", "--onlyvisible", "--pid", str(pid), "--name", "."],
                                 check=False).split() if pid else []
        return [self.desktop.run(["xdotool", "getwindowname", window], check=False).strip() for window in found]

    def wait_window(self, title):
        wait_until(lambda: any(one.startswith(title) for one in self.titles()), f"a window {title!r}")

    def gapplication(self, *arguments):
        self.desktop.run(["gapplication", *arguments])

    def test_the_bus_starts_it_and_it_shows_its_window(self):
        self.assertIsNone(self.owner())
        self.gapplication("launch", NAME)
        self.wait_window("KorvaleUI")
        pid = self.owner()
        self.gapplication("launch", NAME)
        self.assertEqual(self.owner(), pid)

    def test_what_only_asks_does_not_start_it(self):
        self.assertEqual(self.program("--status").wait_exit(), 3)
        self.assertIsNone(self.owner())

    def test_a_folder_is_chosen_whether_it_runs_already_or_not(self):
        self.gapplication("action", NAME, "scan-folder")
        self.wait_window(text("ChooseFolderTitle"))
        self.assertEqual([one for one in self.titles() if one == "KorvaleUI"], [], "nothing else is shown")
        self.end()
        running = self.program()
        wait_until(lambda: self.owner() == running.pid, "the program")
        self.gapplication("action", NAME, "scan-folder")
        self.wait_window(text("ChooseFolderTitle"))

    def test_updates_are_looked_for_once_the_agent_can_be_asked(self):
        agent = self.agent()
        self.gapplication("action", NAME, "check-updates")
        wait_until(lambda: {"CMD_": "CHKU"} in agent.requests(), "the request")
        self.wait_window("KorvaleUI")
        agent.tell("requests clear")
        self.gapplication("action", NAME, "check-updates")
        wait_until(lambda: {"CMD_": "CHKU"} in agent.requests(), "the request of the running program")
        self.assertEqual(agent.requests().count({"CMD_": "CHKU"}), 1)

    def test_the_actions_of_the_entry_are_those_that_the_program_knows(self):
        listed = self.desktop.run(["gapplication", "list-actions", NAME]).split()
        self.assertEqual(sorted(listed), ["check-updates", "scan-folder", "show-details"])

    def test_launchers_that_do_not_ask_the_bus_have_the_chooser_too(self):
        first = self.program("--choose-folder")
        self.wait_window(text("ChooseFolderTitle"))
        self.assertEqual(self.owner(), first.pid)
        self.end()
        running = self.program()
        wait_until(lambda: self.owner() == running.pid, "the program")
        second = self.program("--choose-folder")
        self.assertEqual(second.wait_exit(), 0)
        self.wait_window(text("ChooseFolderTitle"))

    def test_file_managers_send_folders_whatever_their_names(self):
        entry = file_manager_entry(self.desktop.folder)
        folders = [self.desktop.folder / name for name in ("it's \"mine\" & $HOME", "-update", "two\nlines")]
        for folder in folders:
            folder.mkdir(exist_ok=True)
        agent = self.agent()
        self.desktop.run(["gio", "launch", entry, *map(str, folders)])
        for folder in folders:
            wait_until(lambda folder=folder: {"CMD_": "SCAN", "START": str(folder)} in agent.requests(),
                       f"a scan of {folder}")
        self.assertIsNone(self.owner(), "no tray program was started for it")
