"""Starting, ending and what standard error says meanwhile."""
import itertools
import os
import pathlib
import shutil
import signal
import socket
import subprocess
import unittest

from desktop_case import DesktopCase, wait_until
from drivers import BINARIES
from texts import text


class Start(DesktopCase):
    def test_log_lines_stand_in_their_order(self):
        program = self.program()
        at, _ = program.wait_log(r'^INFO "main\(\) Bastion KorveleUI Enter"$')
        at, _ = program.wait_log(
            r'^INFO "UtilLogVersionNumber\(\) Korvale Bastion KorvaleUI version = .+ \(.+\)"$', at)
        at, _ = program.wait_log(r'^INFO "UtilLogOSVersionNumber\(\) System macOS version .+"$', at)
        at, _ = program.wait_log(r'^INFO "main\(\) Bastion KorveleUI Log Level INFO"$', at)
        at, _ = program.wait_log(r'^INFO "main\(\) Bastion KorveleUI Bundle ID com.korvale.ui"$', at)
        # processes of one executable are one application, and tests may run side by side
        program.wait_log(r'^INFO "app\(KorvaleUI\), pid\(\d+\)"$', at)

    def test_it_listens_on_no_socket_and_what_it_writes_is_its_users_alone(self):
        before = os.umask(0)
        try:
            program = self.program()
        finally:
            os.umask(before)
        item = self.item(program)
        item.click(item.entry(text("CM_ShowNotifications")))
        settings = self.desktop.folder / "config" / "Korvale" / "KorvaleUI.conf"
        wait_until(settings.exists, "the preferences")
        self.assertEqual(settings.stat().st_mode & 0o7777, 0o600)
        self.assertEqual(settings.parent.stat().st_mode & 0o7777, 0o700)
        own = {os.readlink(one) for one in pathlib.Path(f"/proc/{program.pid}/fd").iterdir()}
        self.assertTrue(any(one.startswith("socket:") for one in own), "it has connections")
        self.assertEqual(own & self.listening(program.pid), set())

    def listening(self, pid):
        """All sockets of the machine that wait for others to connect."""
        found = set()
        for protocol, state, column in (("unix", "00010000", 3), ("tcp", "0A", 3), ("tcp6", "0A", 3),
                                        ("udp", "07", 3), ("udp6", "07", 3)):
            table = pathlib.Path(f"/proc/{pid}/net/{protocol}")
            for line in table.read_text().splitlines()[1:] if table.exists() else ():
                fields = line.split()
                if fields[column] == state:
                    found.add(f"socket:[{fields[6 if protocol == 'unix' else 9]}]")
        return found

    def test_its_threads_take_memory_from_one_place(self):
        program = self.program()
        self.item(program)
        self.assertGreater(len(os.listdir(f"/proc/{program.pid}/task")), 1)
        self.assertEqual(self.arenas(program.pid), [])

    def arenas(self, pid):
        """Where the C library's places for threads begin, each the start of 64 MiB that it has set aside."""
        aside = 64 << 20
        lines = pathlib.Path(f"/proc/{pid}/maps").read_text().splitlines()
        ranges = [([int(end, 16) for end in place.split("-")], rights)
                  for place, rights in (line.split()[:2] for line in lines)]
        return [hex(start) for ((start, end), rights), ((rest, last), others) in itertools.pairwise(ranges)
                if start % aside == 0 and rest == end and last == start + aside
                and (rights, others) == ("rw-p", "---p")]

    def test_a_root_for_tests_is_warned_of(self):
        self.program().wait_log(r'^WARN ".*KORVALE_ROOT')

    def test_termination_signals_end_with_zero_and_the_exit_line(self):
        for sig in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
            with self.subTest(sig=sig):
                program = self.program()
                self.item(program)
                os.kill(program.pid, sig)
                self.assertEqual(program.wait_exit(), 0)
                program.wait_log(
                    r'^INFO "-\[AppDelegate applicationWillTerminate:\]\(\) Bastion KorvaleUI Exit"$')

    def test_a_termination_during_launch_takes_effect(self):
        program = self.program()
        program.wait_log(r"Bundle ID")
        os.kill(program.pid, signal.SIGTERM)
        self.assertEqual(program.wait_exit(), 0)
        program.wait_log(r"applicationWillTerminate")

    def test_a_second_start_shows_the_window_of_the_first_and_ends(self):
        first = self.program()
        self.item(first)
        second = self.program()
        self.assertEqual(second.wait_exit(), 0)
        second.wait_log(r'^INFO "KorvaleUI: an instance already running"$')
        wait_until(lambda: self.windows(first), "the first one's window")

    def test_an_application_of_the_reserved_name_prevents_the_start(self):
        folder = self.desktop.folder / "data" / "applications"
        folder.mkdir(parents=True, exist_ok=True)
        entry = folder / "bastion.desktop"
        executable = self.desktop.folder / "bin" / "bastion"
        shutil.copy("/usr/bin/sleep", executable)
        entry.write_text("[Desktop Entry]\nType=Application\nName=KorvaleBASTION\n"
                         f"Exec={executable} 60\n")
        self.addCleanup(entry.unlink)
        other = subprocess.Popen([executable, "60"], env=self.desktop.env)
        self.addCleanup(other.wait)
        self.addCleanup(other.kill)
        program = self.program()
        self.assertEqual(program.wait_exit(), 0)
        program.wait_log(rf'^INFO "app\(KorvaleBASTION\), pid\({other.pid}\)"$')
        program.wait_log(r'^INFO "KorvaleUI: an instance already running"$')

    def windows(self, program):
        found = self.desktop.run(["xdotool", "search", "--onlyvisible", "--pid",
                                  str(program.pid)], check=False)
        return found.split()


class DisplayServer(DesktopCase):
    parts = {"panel": False, "notifications": None}

    def test_its_death_is_an_end_like_any_other(self):
        program = self.program()
        wait_until(lambda: self.desktop.has_name("com.korvale.ui"), "the program's name")
        self.desktop.stop_part("xvfb", signal.SIGKILL)
        self.assertEqual(program.wait_exit(), 0)
        self.assertEqual(program.count("applicationWillTerminate"), 1)


class StartWithoutHelp(DesktopCase):
    """No session bus, no system bus, no panel."""
    parts = {"panel": False, "notifications": None, "system_bus": False}

    def test_no_session_bus_is_no_obstacle(self):
        program = self.program(environment={"DBUS_SESSION_BUS_ADDRESS": "unix:path=/nonexistent"})
        program.wait_log(r"Bundle ID")
        with self.assertRaises(subprocess.TimeoutExpired):
            program.wait_exit(3)
        os.kill(program.pid, signal.SIGTERM)
        self.assertEqual(program.wait_exit(), 0)

    def test_a_second_starts_startup_id_gives_the_window_its_right_to_the_focus(self):
        program = self.program()
        wait_until(lambda: self.desktop.has_name("com.korvale.ui"), "the program's name")
        self.program(environment={"DESKTOP_STARTUP_ID": "launcher-1_TIME4711"}).wait_exit()
        windows = ["xdotool", "search", "--onlyvisible", "--pid", str(program.pid)]
        window = wait_until(lambda: self.desktop.run(windows, check=False), "the window").split()[0]
        told = self.desktop.run(["xprop", "-id", window, "_NET_STARTUP_ID"])
        self.assertIn('"launcher-1_TIME4711"', told)

    def test_no_address_of_a_session_bus_starts_none(self):
        before = self.desktop.commands()
        program = self.program(environment={
            "DBUS_SESSION_BUS_ADDRESS": None, "XDG_RUNTIME_DIR": str(self.desktop.folder / "home")})
        program.wait_log(r"Bundle ID")
        with self.assertRaises(subprocess.TimeoutExpired):
            program.wait_exit(3)
        self.assertEqual(self.desktop.commands() - before, {"korvale-ui"})
        os.kill(program.pid, signal.SIGTERM)
        self.assertEqual(program.wait_exit(), 0)

    def test_a_dead_display_is_one_clear_line(self):
        for display in (":4711", "nonsense", None):
            with self.subTest(display=display):
                program = self.program(environment={"DISPLAY": display})
                self.assertGreater(program.wait_exit(), 0)
                plain = [line for line in program.log.lines
                         if not line.startswith(("INFO", "WARN"))]
                self.assertEqual(len(plain), 1, plain)
                self.assertIn("display", plain[0])

    def test_a_bus_that_accepts_and_never_answers_blocks_nothing(self):
        path = str(self.desktop.folder / "deaf_bus")
        with socket.socket(socket.AF_UNIX) as deaf:
            deaf.bind(path)
            deaf.listen()
            program = self.program(environment={"DBUS_SYSTEM_BUS_ADDRESS": f"unix:path={path}"})
            program.wait_log(r"Bundle ID")
            wait_until(lambda: self.desktop.has_name("com.korvale.ui"), "the program's name", 10)
            os.kill(program.pid, signal.SIGTERM)
            self.assertEqual(program.wait_exit(5), 0)


class StartAmongSilentServices(DesktopCase):
    """Portal, notification server and tray watcher own their names and answer nothing."""
    parts = {"panel": False, "notifications": None}

    def test_it_starts_shows_its_window_and_ends(self):
        self.desktop.start_service("silent", "silent_names.py", "org.freedesktop.portal.Desktop",
                                   "org.freedesktop.Notifications",
                                   "org.kde.StatusNotifierWatcher")
        agent = self.agent()
        agent.tell("policy notifications on")
        program = self.started(agent)
        agent.tell_all("start", "halyx on", "exe-blocked /opt/unheard")
        self.assertEqual(self.program().wait_exit(8), 0)  # a second start
        wait_until(lambda: self.desktop.run(["xdotool", "search", "--onlyvisible", "--pid",
                                             str(program.pid)], check=False), "the window", 8)
        os.kill(program.pid, signal.SIGTERM)
        self.assertEqual(program.wait_exit(5), 0)

    def test_a_session_bus_that_never_answers_blocks_nothing(self):
        path = str(self.desktop.folder / "deaf_session_bus")
        with socket.socket(socket.AF_UNIX) as deaf:
            deaf.bind(path)
            deaf.listen()
            agent = self.agent()
            program = self.started(
                agent, environment={"DBUS_SESSION_BUS_ADDRESS": f"unix:path={path}"})
            os.kill(program.pid, signal.SIGTERM)
            self.assertEqual(program.wait_exit(5), 0)


class WithoutDesktop(unittest.TestCase):
    """--help and --version answer anywhere."""

    def test_help_and_version_answer_and_end(self):
        for option in ("--help", "--version"):
            done = subprocess.run([BINARIES / "korvale-ui", option], env={"PATH": "/usr/bin"},
                                  capture_output=True, text=True, timeout=20)
            self.assertEqual(done.returncode, 0)
            self.assertIn("korvale", done.stdout.lower())
