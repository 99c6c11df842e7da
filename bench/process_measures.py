"""Whole-process measurements: what a tray program costs at its start and at rest.

Everything is taken from outside, the same way for every program, on a DesktopSession.
"""
import contextlib
import os
import pathlib
import re
import signal
import statistics
import subprocess
import threading
import time

import dbus
import dbus.mainloop.glib
from gi.repository import GLib

from desktop_session import wait_until

WATCHER = "org.kde.StatusNotifierWatcher"


class ItemWatch:
    """Notes the moment each new status item registers with the tray host."""

    def __init__(self, session):
        dbus.mainloop.glib.DBusGMainLoop(set_as_default=True)
        self.moments = []
        self.at_next = None  # called once, on the watching thread, when the next item registers
        self._bus = session.session_bus()
        self._bus.add_signal_receiver(self._registered, "StatusNotifierItemRegistered", WATCHER)
        self._loop = GLib.MainLoop()
        self._thread = threading.Thread(target=self._loop.run, daemon=True)
        self._thread.start()

    def _registered(self, _item):
        self.moments.append(time.monotonic())
        if self.at_next:
            self.at_next, action = None, self.at_next
            action()

    def wait(self, count, timeout=60):
        wait_until(lambda: len(self.moments) >= count, "the status item", timeout)
        return self.moments[count - 1]

    def close(self):
        self._loop.quit()
        self._thread.join()


def cpu_seconds(pid):
    """CPU time of all present threads, with the scheduler's own precision (nanoseconds)."""
    total = 0
    for task in pathlib.Path(f"/proc/{pid}/task").iterdir():
        with contextlib.suppress(OSError):
            total += int((task / "schedstat").read_text().split()[0])
    return total * 1e-9


def own_seconds(pid):
    """The same with the time in which its threads could have run but no core was free."""
    total = 0
    for task in pathlib.Path(f"/proc/{pid}/task").iterdir():
        with contextlib.suppress(OSError):
            total += sum(int(word) for word in (task / "schedstat").read_text().split()[:2])
    return total * 1e-9


def memory_kib(pid):
    """(proportional, private dirty) in KiB."""
    text = pathlib.Path(f"/proc/{pid}/smaps_rollup").read_text()
    return tuple(int(re.search(rf"^{name}:\s+(\d+)", text, re.MULTILINE).group(1))
                 for name in ("Pss", "Private_Dirty"))


def libraries(pid):
    """Shared objects mapped into the process."""
    maps = pathlib.Path(f"/proc/{pid}/maps").read_text()
    return {match.group(0) for match in re.finditer(r"/\S+\.so[.\d]*$", maps, re.MULTILINE)}


def wakeups(pid):
    """How often each thread of the process went to sleep by itself so far."""
    found = {}
    for task in pathlib.Path(f"/proc/{pid}/task").iterdir():
        with contextlib.suppress(OSError):
            status = (task / "status").read_text()
            found[task.name] = int(re.search(r"^voluntary_ctxt_switches:\s+(\d+)", status,
                                             re.MULTILINE).group(1))
    return found


class Started:
    """A program that is up with its item registered."""

    def __init__(self, session, watch, command):
        before = len(watch.moments)
        start = time.monotonic()
        self.process = subprocess.Popen(command, env=session.env, stdin=subprocess.DEVNULL,
                                        stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.wall = watch.wait(before + 1) - start
        self.cpu = cpu_seconds(self.process.pid)

    @property
    def pid(self):
        return self.process.pid

    def end(self):
        self.process.send_signal(signal.SIGTERM)
        self.process.wait(20)


def start_pairs(session, watch, baseline, program, pairs, later=5):
    """Medians of interleaved starts: (wall, CPU) of the baseline and of the program until their
    items are registered; then the CPU time of both in the seconds after that, of one pair."""
    taken = {"baseline": [], "program": []}
    afterwards = []
    for pair in range(pairs):
        for name, command in (("baseline", baseline), ("program", program)):
            started = Started(session, watch, command)
            taken[name].append((started.wall, started.cpu))
            if pair == 0:
                time.sleep(later)
                afterwards.append(cpu_seconds(started.pid) - started.cpu)
            started.end()
    return *(tuple(statistics.median(values) for values in zip(*taken[name]))
             for name in ("baseline", "program")), afterwards


def start_instructions(session, watch, command, folder):
    """Instructions of the process from its first to the moment its item is registered.

    It is ended there by a signal that no program handles, so that no clean end is counted.
    """
    output = pathlib.Path(folder) / f"callgrind.{pathlib.Path(command[0]).name}"
    output.unlink(missing_ok=True)
    before = len(watch.moments)
    process = subprocess.Popen(
        ["valgrind", "--tool=callgrind", f"--callgrind-out-file={output}", *command],
        env=session.env, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
        stderr=subprocess.DEVNULL)
    watch.at_next = lambda: process.send_signal(signal.SIGUSR1)
    watch.wait(before + 1, 120)
    process.wait(60)
    return int(re.search(r"^(?:summary|totals): (\d+)", output.read_text(errors="replace"),
                         re.MULTILINE).group(1))


def at_rest(pid, seconds):
    """(wake-ups a second, CPU seconds a minute) over the given time."""
    before, cpu = wakeups(pid), cpu_seconds(pid)
    time.sleep(seconds)
    after = wakeups(pid)
    woken = sum(count - before.get(thread, 0) for thread, count in after.items())
    return woken / seconds, (cpu_seconds(pid) - cpu) * 60 / seconds
