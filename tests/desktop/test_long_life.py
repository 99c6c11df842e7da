"""Days of work in minutes: thousands of batches, windows and tray hosts that come and go. What the
program uses at the end is what it used after the first of them. KORVALE_BATCHES says how many."""
import contextlib
import json
import os
import pathlib
import time
import unittest

import dbus

from desktop_case import DesktopCase, wait_until
from drivers import host_cache

BATCHES = int(os.environ.get("KORVALE_BATCHES", "10000"))
SETTLED = min(500, BATCHES // 4)  # batches until everything was there once, and what is kept up to a number is full:
# 1000 rows of devices, of which a batch brings up to 16, and the last 200 notifications, of which it brings one
EVENTS = 100_000
SANITIZED = "KORVALE_SANITIZE" in os.environ  # its allocator keeps what was freed


class Use:
    """What the program uses of the machine; memory in KiB."""

    def __init__(self, desktop, pid):
        process = pathlib.Path(f"/proc/{pid}")
        rollup = (process / "smaps_rollup").read_text().splitlines()
        self.memory = sum(int(line.split()[1]) for line in rollup if line.startswith("Private_Dirty"))
        self.descriptors = len(os.listdir(process / "fd"))
        self.open = sorted(os.readlink(one) for one in (process / "fd").iterdir())
        self.threads = len(os.listdir(process / "task"))
        self.rules = self._rules(desktop.session_bus(), pid) + self._rules(desktop.system_bus(), pid)

    @staticmethod
    def _rules(connection, pid):
        """Match rules of the process on that bus."""
        with contextlib.closing(connection) as bus:
            daemon = bus.get_object("org.freedesktop.DBus", "/org/freedesktop/DBus")
            rules = daemon.GetAllMatchRules(dbus_interface="org.freedesktop.DBus.Debug.Stats")
            return sum(len(own) for name, own in rules.items()
                       if int(daemon.GetConnectionUnixProcessID(
                           name, dbus_interface="org.freedesktop.DBus")) == pid)

    def __repr__(self):
        return (f"{self.memory} KiB, {self.descriptors} descriptors, {self.threads} threads, "
                f"{self.rules} match rules")


def wake_ups(pid, seconds=10):
    """A second, at rest: a timer that was left behind would show. A thread that ends meanwhile is not at rest
    and counts nothing."""
    def switches():
        counts = {}
        for task in pathlib.Path(f"/proc/{pid}/task").iterdir():
            with contextlib.suppress(OSError):
                counts[task.name] = sum(int(line.split()[1]) for line in (task / "status").read_text().splitlines()
                                        if line.startswith("voluntary_ctxt_switches"))
        return counts
    before = switches()
    time.sleep(seconds)
    return sum(count - before.get(thread, 0) for thread, count in switches().items()) / seconds


def has_spare_threads(pid):
    """Of the toolkit's, that end when there was nothing to do for a while."""
    for task in pathlib.Path(f"/proc/{pid}/task").iterdir():
        with contextlib.suppress(OSError):
            if (task / "comm").read_text().startswith("Thread (pooled)"):
                return True
    return False


class LongLife(DesktopCase):
    def setUp(self):
        super().setUp()
        self.empty_folders()
        self.sim = self.agent()
        self.victim = self.started(self.sim)
        self.tray = self.item(self.victim)
        self.cache = host_cache(self.desktop)

    def write(self, name, content):
        coming = self.cache / ".coming"
        coming.write_text(json.dumps(content))
        os.replace(coming, self.cache / name)

    def devices(self, count, when):
        self.write("external_device_control_events.log", {
            str(index): {"Device Type": "USB", "Action": "Block", "When": str(when)} for index in range(count)})
        self.write("header.log", {"MessageMask": 0xFFF})
        self.sim.tell("post timer.aggregated_messages")

    def batch(self, number):
        self.write("file_states.log", {
            f"/home/p/file{number % 97}-{index}.bin": {
                "State": (9, 1, 5, 2)[(number + index) % 4], "ID": f"{number % 13}{index // 2}",
                "Score": -index / 10} for index in range(number % 40)})
        self.write("process_states.log", {
            str(index): {"Path": f"/usr/bin/tool{index}", "State": index % 4, "PID": index,
                         "Count": number} for index in range(number % 5)})
        self.devices(number % 17, number)
        self.sim.tell_all(f"exe-blocked /opt/{number}", (
            "halyx on", "halyx off", "driver lost", "driver connected", f"analyzer /home/p/{number}")[number % 5])

    def window(self):
        def shown():
            return self.desktop.run(["xdotool", "search", "--onlyvisible", "--pid",
                                     str(self.victim.pid), "--name", "KorvaleUI"], check=False).split()
        self.tray.activate()
        found = wait_until(shown, "the window")[0]
        self.desktop.run(["xdotool", "windowfocus", found, "key", "Escape"], check=False)
        wait_until(lambda: not shown(), "the window to close")

    def restart_tray(self):
        self.tray.close()
        self.desktop.stop_panel()
        self.desktop.start_panel()
        self.tray = self.item(self.victim)

    def settle(self):
        self.sim.tell_all("requests clear", "start")
        wait_until(lambda: {"CMD_": "GDRV"} in self.sim.requests(), "the last batch", 60)

    def play(self, numbers):
        for number in numbers:
            self.batch(number)
            if number % 10 == 0:  # none is far behind: what comes while one is read is read as one
                self.settle()
                self.window()
            if number % 250 == 249:
                self.restart_tray()
        self.settle()

    def wait_for_rest(self):
        """Until it does its tick alone; a panel that is busy still asks for pictures that it was told of long ago. What
        is not used any more has gone back by then. Wake-ups a second."""
        wait_until(lambda: not has_spare_threads(self.victim.pid), "its threads to end", 180)
        return wait_until(lambda: (now := wake_ups(self.victim.pid)) <= 1 and now, "it to be at rest", 180)

    def test_after_thousands_of_batches_it_uses_what_it_used_at_first(self):
        self.play(range(SETTLED))
        woken_at_first = self.wait_for_rest()
        at_first = Use(self.desktop, self.victim.pid)
        self.play(range(SETTLED, BATCHES))
        woken = self.wait_for_rest()
        at_last = Use(self.desktop, self.victim.pid)
        print(f"after {SETTLED} batches: {at_first}, {woken_at_first:.1f} wake-ups a second")
        print(f"after {BATCHES} batches: {at_last}, {woken:.1f} wake-ups a second")
        if not SANITIZED:
            self.assertLessEqual(at_last.memory, at_first.memory * 1.05)
        self.assertLessEqual(at_last.descriptors, at_first.descriptors, at_last.open)
        self.assertLessEqual(at_last.threads, at_first.threads)
        self.assertLessEqual(at_last.rules, at_first.rules)

    @unittest.skipIf(SANITIZED, "a sanitizer's allocator gives every piece more room")
    def test_an_event_that_was_shown_costs_little_for_ever(self):
        self.show_events(0, 1000)
        before = Use(self.desktop, self.victim.pid).memory
        for start in range(1000, EVENTS, 1000):
            self.show_events(start, start + 1000)
        cost = (Use(self.desktop, self.victim.pid).memory - before) * 1024 / (EVENTS - 1000)
        print(f"an event that was shown is remembered with {cost:.0f} bytes")
        self.assertLess(cost, 80)

    def show_events(self, start, end):
        self.write("file_process_events.log", {
            f"/home/p/event{number}.bin": {"Category": "Threat", "Event": 1, "State": 9,
                                           "When": "10:00"} for number in range(start, end)})
        self.write("header.log", {"MessageMask": 16})
        self.sim.tell("post timer.aggregated_messages")
        self.settle()
