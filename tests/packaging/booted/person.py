"""Somebody who sits before the started machine."""
import pathlib


class Person:
    def __init__(self, machine, name):
        self.machine = machine
        self.name = name
        machine.run("useradd", "--create-home", "--shell", "/bin/sh", name)
        self.number = machine.run("id", "-u", name).stdout.strip()
        self.bubbles_file = f"/run/user/{self.number}/bubbles"

    def log_in(self):
        """As a display manager does it: a session of the login service, on the machine's own seat."""
        here = pathlib.Path(__file__).resolve().parent
        script, _ = self.machine.put(here / "desktop_session.sh", here.parent / "desktop_screen.sh", folder="opt")
        environment = {"XDG_SEAT": "seat0", "XDG_SESSION_TYPE": "x11", "XDG_SESSION_CLASS": "user",
                       "XDG_SESSION_DESKTOP": "LXQt", "LANG": "C.UTF-8"}
        self.machine.inside("systemd-run", "--quiet", "--collect", f"--unit=desktop-of-{self.name}",
                            f"--uid={self.name}", "--property=PAMName=login", "--property=WorkingDirectory=~",
                            *(f"--setenv={key}={value}" for key, value in environment.items()),
                            "/bin/sh", script)

    def _user_run(self, *words, **options):
        # Whoever is entered from outside is in no session: the person's own manager starts it.
        return self.machine.inside("setpriv", f"--reuid={self.name}", f"--regid={self.name}", "--init-groups", "env",
                                   f"XDG_RUNTIME_DIR=/run/user/{self.number}", "systemd-run", "--user", "--quiet",
                                   "--collect", *words, **options)

    def does(self, *command, check=False, timeout=60):
        """A command of the person's; returns what became of it."""
        return self._user_run("--pipe", "--wait", *command, check=check, timeout=timeout)

    def writes(self, path, text):
        return self.does("/bin/sh", "-c", 'printf %s "$1" >"$2"', "sh", text, path, check=True)

    def listen_for_bubbles(self):
        self._user_run("--unit=bubbles", f"--property=StandardOutput=file:{self.bubbles_file}", "dbus-monitor",
                       "--session", "interface='org.freedesktop.Notifications',member='Notify'")

    def bubbles(self):
        """All that notifications have said, as dbus-monitor prints it."""
        file = self.machine.path(self.bubbles_file)
        return file.read_text("utf-8", errors="replace") if file.exists() else ""
