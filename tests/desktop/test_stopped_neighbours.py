"""Whoever the program deals with is stopped (SIGSTOP), one by one and all together: it goes on, ends
when it is asked to, and loses nothing once they go on."""
import contextlib
import os
import signal
import socket
import threading
import time

import dbus

from desktop_case import DesktopCase, wait_until
from texts import text

STATUS = "Library/Application Support/Korvale/Desktop/download/status"
EXIT = r'^INFO "-\[AppDelegate applicationWillTerminate:\]\(\) Bastion KorvaleUI Exit"$'
LONGEST_END = 20.0 if "KORVALE_SANITIZE" in os.environ else 2.0  # seconds; leaks are looked for at the end
# What a program started with it sees as /dev/log is the socket named first.
PRIVATE_LOG = ["unshare", "--mount", "--map-current-user", "--keep-caps", "sh", "-c",
               'mkdir -p "$1.dev" && mount --rbind /dev "$1.dev" && mount -t tmpfs dev /dev && '
               'for name in null zero random urandom; do : >/dev/$name && '
               'mount --bind "$1.dev/$name" /dev/$name || exit 1; done && '
               'ln -s /proc/self/fd /dev/fd && ln -s "$1" /dev/log && shift && exec "$@"', "sh"]


class SystemLog:
    """What stands at /dev/log; stopped, it lets its short queue fill up."""

    def __init__(self, path):
        self.lines = []
        self._socket = socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM)
        self._socket.bind(str(path))
        os.chmod(path, 0o777)
        self._reads = threading.Event()
        self._reads.set()
        threading.Thread(target=self._read, daemon=True).start()

    def _read(self):
        while True:
            self._reads.wait()
            line = self._socket.recv(65536).decode("utf-8", "replace")
            self._reads.wait()
            self.lines.append(line)

    def stop(self):
        self._reads.clear()

    def go_on(self):
        self._reads.set()


class Process:
    """A neighbour that is stopped as a whole."""

    def __init__(self, *pids):
        self.pids = pids

    def stop(self):
        for pid in self.pids:
            os.kill(pid, signal.SIGSTOP)

    def go_on(self):
        for pid in self.pids:
            with contextlib.suppress(ProcessLookupError):
                os.kill(pid, signal.SIGCONT)


class StoppedNeighbours(DesktopCase):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.desktop.start_service("portal", "settings_portal.py", "0")
        cls.desktop.start_part("clipboard", ["xclip", "-quiet", "-selection", "clipboard",
                                             "/etc/hostname"])
        cls.log_path = cls.desktop.folder / "devlog"
        cls.neighbours = {
            "system bus": cls.part("system-bus"), "session bus": cls.part("session-bus"),
            "portal": cls.part("portal"), "notification server": cls.part("notifications"),
            "clipboard owner": cls.part("clipboard"), "tray host": cls.tray_host(),
            "system log": SystemLog(cls.log_path)}
        cls.numbers = iter(range(1, 1000))

    @classmethod
    def part(cls, name):
        return Process(cls.desktop.parts[name].pid)

    @classmethod
    def tray_host(cls):
        with contextlib.closing(cls.desktop.session_bus()) as bus:
            daemon = bus.get_object("org.freedesktop.DBus", "/org/freedesktop/DBus")
            pid = daemon.GetConnectionUnixProcessID("org.kde.StatusNotifierWatcher",
                                                    dbus_interface="org.freedesktop.DBus")
        return Process(*{int(pid), cls.desktop.parts["panel"].pid})

    def setUp(self):
        super().setUp()
        self.addCleanup(self.go_on, *self.neighbours)
        self.programs = []

    def stop(self, *names):
        for name in names:
            self.neighbours[name].stop()

    def go_on(self, *names):
        for name in names:
            self.neighbours[name].go_on()

    @contextlib.contextmanager
    def case(self, names):
        """Nobody is left stopped, and no program left running, for the next one."""
        with self.subTest(stopped=names):
            try:
                yield
            finally:
                self.go_on(*names)
                for program in self.programs:
                    if program.running():
                        program.process.kill()
                        program.wait_exit()

    def cases(self):
        return [[name] for name in self.neighbours] + [list(self.neighbours)]

    def logged_program(self, *arguments):
        """The program with the log of this test as its /dev/log."""
        program = self.program(*arguments, prefix=[*PRIVATE_LOG, str(self.log_path)])
        self.programs.append(program)
        return program

    def show_it_lives(self, program):
        """The poll finds an updater file: the main thread turns."""
        folder = self.desktop.root / STATUS
        folder.mkdir(parents=True, exist_ok=True)
        name = f"{next(self.numbers):04}.kvupupdate"
        (folder / name).write_text("x")
        try:
            program.wait_log(rf"^INFO .Displaying \(.*/{name}\)", timeout=15)
        finally:
            (folder / name).unlink()  # later programs would show it first

    def end(self, program):
        start = time.monotonic()
        os.kill(program.pid, signal.SIGTERM)
        self.assertEqual(program.wait_exit(), 0)
        self.assertLess(time.monotonic() - start, LONGEST_END)
        program.wait_log(EXIT)

    def test_stopped_at_the_start_they_hold_up_neither_work_nor_end(self):
        for names in self.cases():
            with self.case(names):
                self.stop(*names)
                program = self.logged_program()
                self.show_it_lives(program)
                self.end(program)

    def test_stopped_later_they_hold_up_neither_work_nor_menu_nor_end(self):
        for names in self.cases():
            with self.case(names):
                program = self.logged_program()
                item = self.item(program)
                self.stop(*names)
                self.show_it_lives(program)
                if "session bus" not in names:
                    start = time.monotonic()
                    self.assertTrue(item.menu())
                    self.assertLess(time.monotonic() - start, LONGEST_END)
                self.end(program)

    def test_nothing_is_lost_once_they_go_on(self):
        self.empty_folders()
        agent = self.agent()
        agent.tell("policy notifications on")
        for names in self.cases():
            with self.case(names):
                program = self.logged_program()
                item = self.item(program)
                wait_until(lambda: item.entry(text("CM_ShowNotifications")).checked, "the policy")
                before = len(self.notifications())
                file = f"bad{next(self.numbers)}.bin"
                self.stop(*names)
                if "system bus" not in names:
                    agent.tell(f"exe-blocked /opt/{file}")
                self.show_it_lives(program)
                self.go_on(*names)
                if "system bus" in names:
                    agent.tell(f"exe-blocked /opt/{file}")
                call = self.wait_notification(lambda call: file in call["body"], before)
                self.assertTrue(call["body"].endswith(file))
                self.assertTrue(item.menu())
                self.show_it_lives(program)
                self.end(program)
                wait_until(lambda: sum("KorvaleUI Exit" in line for line in self.logged(program)),
                           "the last line in the system log")

    def logged(self, program):
        log = self.neighbours["system log"]
        return [line for line in log.lines if f"korvale-ui[{program.pid}]" in line]


class Stopped(DesktopCase):
    """The program itself is stopped, as by a machine that sleeps or a debugger."""

    def test_after_half_a_minute_it_goes_on_where_things_are_by_then(self):
        self.empty_folders()
        agent = self.agent()
        agent.tell("policy notifications on")
        program = self.started(agent)
        item = self.item(program)
        agent.tell_all("start", "halyx on")
        item.wait_colour("green")
        wait_until(lambda: item.entry(text("CM_ShowNotifications")).checked, "the policy")
        tooltip, before = item.tooltip(), len(self.notifications())
        os.kill(program.pid, signal.SIGSTOP)
        try:
            for number in range(300):
                agent.tell("post timer.aggregated_messages")
                agent.tell("halyx off" if number % 2 == 0 else "halyx on")
            agent.tell("exe-blocked /opt/while-it-slept")
            time.sleep(31)  # twelve ticks, and more than the bus gives a call by default
        finally:
            os.kill(program.pid, signal.SIGCONT)
        self.wait_notification(lambda call: "while-it-slept" in call["body"], before)
        self.assertEqual(item.colour(), "green")
        self.assertEqual(item.tooltip().rpartition(":")[2], tooltip.rpartition(":")[2])
        self.assertEqual(len(self.notifications()), before + 1)
        item.click(item.entry(text("CheckForUpdates")))
        wait_until(lambda: {"CMD_": "CHKU"} in agent.requests(), "the request")
        self.assertTrue(program.running())
