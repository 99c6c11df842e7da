"""What the demonstrations share: the counting of steps, and how the window is read."""
import contextlib
import pathlib
import time

from desktop_session import SessionError
from drivers import LineReader

SCREEN = "1440x900"
READER = str(pathlib.Path(__file__).resolve().parent.parent.parent / "tests" / "desktop" /
             "services" / "accessible_window.py")


def notifications(session):
    """Every desktop notification of the session, as lines of a monitor."""
    monitor = session.start_part(
        "monitor", ["dbus-monitor", "--session", "interface='org.freedesktop.Notifications',member='Notify'"],
        stdout=-1, text=True)
    return LineReader(monitor.stdout)


class Steps:
    """Prints what is done and keeps count of what was not seen."""

    def __init__(self):
        self.number = 0
        self.missed = 0
        self.started = time.monotonic()

    @contextlib.contextmanager
    def step(self, what):
        self.number += 1
        try:
            yield
            seen = "seen"
        except SessionError as error:
            self.missed += 1
            seen = f"NOT SEEN: {error}"
        elapsed = time.monotonic() - self.started
        print(f"{self.number:2}. [{elapsed:5.1f} s] {what}: {seen}", flush=True)
