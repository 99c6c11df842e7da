"""A desktop without a screen: Xvfb, a window manager, a panel with a StatusNotifier host, a
notification server and private session and system buses; everything in it is gone at the end."""
import contextlib
import os
import pathlib
import random
import shutil
import signal
import socket
import subprocess
import tempfile
import time
import uuid

import dbus
import dbus.bus

HERE = pathlib.Path(__file__).resolve().parent
PROJECT = HERE.parent.parent
BINARIES = pathlib.Path(os.environ.get("KORVALE_BINARIES", PROJECT / "build" / "bin"))
NOTIFYD = "/usr/lib/x86_64-linux-gnu/xfce4/notifyd/xfce4-notifyd"
MARK = "KORVALE_DESKTOP_SESSION"
LEAKING = ("DBUS_", "XDG_", "QT_", "GTK_", "AT_SPI_", "KORVALE_", "LC_", "LANG")
LEAKING_NAMES = ("DISPLAY", "WAYLAND_DISPLAY", "SESSION_MANAGER", "XAUTHORITY", "DESKTOP_SESSION",
                 "JOURNAL_STREAM")


class SessionError(Exception):
    """A part of the desktop did not come up."""


def accepts_clients(path):
    """A socket is there before anybody listens on it."""
    with socket.socket(socket.AF_UNIX) as client, contextlib.suppress(OSError):
        client.connect(str(path))
        return True
    return False


def wait_until(condition, what, timeout=20.0):
    """Waits for condition() to be truthy and returns its value; fails loudly after timeout."""
    deadline = time.monotonic() + timeout
    while True:
        value = condition()
        if value:
            return value
        if time.monotonic() > deadline:
            raise SessionError(f"timed out waiting for {what}")
        time.sleep(0.03)


class DesktopSession:
    """Context manager. Parts can be left out at the start and started or stopped later."""
    name = "XFCE"
    xdg_name = None  # as XDG_CURRENT_DESKTOP calls it, where that is another
    window_manager = ["xfwm4", "--compositor=off", "--replace"]
    panel_place = (0, 0, 1280, 40)  # x, y, width, height: where the tray shows pictures
    has_tray = True
    clicks_for_window = 1  # on the item
    menu_button = 3  # of the mouse

    def __init__(self, display=True, panel=True, notifications="recording", system_bus=True,
                 accessibility=False, capabilities="body,body-markup,actions", folder=None,
                 screen="1280x800"):
        self.wanted = dict(display=display, panel=panel, notifications=notifications,
                           system_bus=system_bus, accessibility=accessibility)
        self.capabilities = capabilities
        self.resolution = screen
        self.kept = folder is not None
        self.folder = pathlib.Path(folder or tempfile.mkdtemp(prefix="korvale-desktop-"))
        self.token = uuid.uuid4().hex
        self.parts = {}
        self.env = {}
        self.root = self.folder / "root"

    # Life

    def __enter__(self):
        try:
            self._start()
        except BaseException:
            self.stop()
            raise
        return self

    def __exit__(self, *unused):
        self.stop()

    def _start(self):
        for name in ("run", "config", "cache", "data", "home", "log", "services", "root"):
            (self.folder / name).mkdir(parents=True, exist_ok=True)
        (self.folder / "run").chmod(0o700)
        self.folder.chmod(0o755)
        self.env = {name: value for name, value in os.environ.items()
                    if not name.startswith(LEAKING) and name not in LEAKING_NAMES}
        self.env.update({
            MARK: self.token, "HOME": str(self.folder / "home"), "LANG": "C.UTF-8",
            "XDG_RUNTIME_DIR": str(self.folder / "run"),
            "XDG_CONFIG_HOME": str(self.folder / "config"),
            "XDG_CACHE_HOME": str(self.folder / "cache"),
            "XDG_DATA_HOME": str(self.folder / "data"), "XDG_CURRENT_DESKTOP": self.xdg_name or self.name,
            "XDG_SESSION_TYPE": "x11", "GDK_BACKEND": "x11", "LIBGL_ALWAYS_SOFTWARE": "1",
            "DBUS_SESSION_BUS_ADDRESS": f"unix:path={self.folder}/run/bus",
            "DBUS_SYSTEM_BUS_ADDRESS": f"unix:path={self.folder}/system_bus_socket",
            "KORVALE_ROOT": str(self.root)})
        self._install_program()
        if self.wanted["accessibility"]:
            self.env["QT_LINUX_ACCESSIBILITY_ALWAYS_ON"] = "1"
        else:
            self.env["NO_AT_BRIDGE"] = "1"
        if self.wanted["system_bus"]:
            self.start_system_bus()
        if self.wanted["display"]:
            self._start_display()  # before the session bus: what that activates needs DISPLAY
        self._start_session_bus()
        if self.wanted["display"]:
            self._configure_desktop()
            if self.window_manager:
                self.start_part("window-manager", self.window_manager)
                self._wait_part("window-manager", self._has_window_manager)
        if self.wanted["accessibility"]:
            self._start_accessibility()
        if self.wanted["notifications"]:
            self.start_notifications(self.wanted["notifications"])
        if self.wanted["panel"] and self.wanted["display"]:
            self.start_panel()

    def _install_program(self):
        """What a desktop has of the program once it is installed: its menu entry, for the binary
        under test, its icon, and an xdg-open, which only writes down what it is asked to open."""
        applications = self.folder / "data" / "applications"
        applications.mkdir(parents=True, exist_ok=True)
        entry = (PROJECT / "packaging" / "com.korvale.ui.desktop").read_text()
        (applications / "com.korvale.ui.desktop").write_text(
            entry.replace("Exec=korvale-ui", f"Exec={BINARIES / 'korvale-ui'}"))
        icons = self.folder / "data" / "icons" / "hicolor" / "scalable" / "apps"
        icons.mkdir(parents=True, exist_ok=True)
        shutil.copy(PROJECT / "resources" / "pictures" / "com.korvale.ui.svg", icons)
        commands = self.folder / "bin"
        commands.mkdir(exist_ok=True)
        opener = commands / "xdg-open"
        opener.write_text(f'#!/bin/sh\ncat /proc/$$/environ >"{self.folder}/environment"\n'
                          f'printf "%s\\n" "$*" >>"{self.folder}/opened"\n')
        opener.chmod(0o755)
        self.env["PATH"] = f"{commands}:{self.env['PATH']}"

    def opened_links(self):
        """What xdg-open was asked for so far, one call a line."""
        opened = self.folder / "opened"
        return opened.read_text().splitlines() if opened.exists() else []

    def openers_environment(self):
        """What the last xdg-open was given."""
        variables = (self.folder / "environment").read_text().rstrip("\0").split("\0")
        return dict(variable.split("=", 1) for variable in variables)

    def stop(self):
        for sig in (signal.SIGTERM, signal.SIGTERM, signal.SIGKILL):
            pids = self._marked()
            if not pids:
                break
            for pid in pids:
                with contextlib.suppress(ProcessLookupError):
                    os.kill(pid, signal.SIGCONT)
                    os.kill(pid, sig)
            with contextlib.suppress(SessionError):
                wait_until(lambda: not self._marked(), "the session's processes to end", 3)
        for process in self.parts.values():
            process.wait()
        self.parts.clear()
        if not self.kept:
            shutil.rmtree(self.folder, ignore_errors=True)

    def _marked(self):
        """Every process started in this session: they inherit its mark."""
        needle = f"{MARK}={self.token}".encode()
        found = []
        for entry in pathlib.Path("/proc").iterdir():
            if entry.name.isdigit():
                with contextlib.suppress(OSError):
                    state = (entry / "stat").read_text().rsplit(")", 1)[1].split()[0]
                    if state != "Z" and needle in (entry / "environ").read_bytes().split(b"\0"):
                        found.append(int(entry.name))
        return found

    def commands(self):
        """The names of the processes in this session."""
        names = set()
        for pid in self._marked():
            with contextlib.suppress(OSError):
                names.add(pathlib.Path(f"/proc/{pid}/comm").read_text().strip())
        return names

    # Parts

    def start_part(self, name, command, **options):
        log = open(self.folder / "log" / name, "ab")
        options.setdefault("stdout", log)
        options.setdefault("env", self.env)
        options.setdefault("stdin", subprocess.DEVNULL)
        process = subprocess.Popen(command, stderr=log, **options)
        log.close()
        self.parts[name] = process
        return process

    def stop_part(self, name, sig=signal.SIGTERM):
        process = self.parts.pop(name)
        process.send_signal(sig)
        process.wait(10)

    def _wait_part(self, name, condition):
        """Waits for a part to be ready; what it said stands in the error when it is not."""
        try:
            wait_until(lambda: self.parts[name].poll() is not None or condition(), name)
            if self.parts[name].poll() is not None:
                raise SessionError(f"{name} ended")
        except SessionError as error:
            said = (self.folder / "log" / name).read_text(errors="replace")
            raise SessionError(f"{error}; it said:\n{said[-2000:]}") from None

    def start_system_bus(self):
        policies = self.folder / "system.d"
        policies.mkdir(exist_ok=True)
        policy = (PROJECT / "packaging" / "com.korvale.agent_server.conf").read_text()
        if os.geteuid() != 0:  # on a bus of his own the user plays root
            policy = policy.replace('<policy user="root">', f'<policy user="{os.geteuid()}">')
        (policies / "com.korvale.agent_server.conf").write_text(policy)
        self._start_bus("system-bus", "system_bus_socket")

    def _start_session_bus(self):
        for name in ("org.xfce.Xfconf", "org.a11y.Bus"):
            service = pathlib.Path(f"/usr/share/dbus-1/services/{name}.service")
            lines = [line for line in service.read_text().splitlines()
                     if not line.startswith("SystemdService=")]
            (self.folder / "services" / service.name).write_text("\n".join(lines) + "\n")
        self._start_bus("session-bus", "run/bus")

    def _start_bus(self, name, where):
        path = self.folder / where
        path.unlink(missing_ok=True)
        config = self.folder / f"{name}.conf"
        template = (HERE / "conf" / f"{name}.conf.in").read_text()
        config.write_text(template.replace("@DIR@", str(self.folder)))
        self.start_part(name, ["dbus-daemon", f"--config-file={config}", "--nofork",
                               "--nopidfile", "--nosyslog"])
        self._wait_part(name, lambda: accepts_clients(path))

    def _start_display(self):
        # A number of its own for each server, since several tests run side by side; without reset,
        # which refuses whoever comes while the last client is going.
        for _ in range(5):
            display = f":{random.randrange(100, 30000)}"
            reading, writing = os.pipe()
            self.start_part("xvfb", ["Xvfb", display, "-displayfd", str(writing), "-screen", "0",
                                     f"{self.resolution}x24", "-nolisten", "tcp", "-ac", "-noreset"],
                            pass_fds=[writing])
            os.close(writing)
            with os.fdopen(reading) as numbers:
                if numbers.readline().strip():
                    self.env["DISPLAY"] = display
                    return
        raise SessionError("Xvfb did not start")

    def _configure_desktop(self):
        target = self.folder / "config" / "xfce4" / "xfconf" / "xfce-perchannel-xml"
        target.mkdir(parents=True, exist_ok=True)
        for name in ("xfce4-panel", "xfce4-notifyd", "xfwm4"):
            shutil.copy(HERE / "conf" / f"{name}.xml", target)

    def _has_window_manager(self):
        answer = self.run(["xprop", "-root", "_NET_SUPPORTING_WM_CHECK"], check=False)
        return "window id" in answer

    def start_panel(self):
        self.start_part("panel", ["xfce4-panel", "--disable-wm-check"])
        self._wait_part("panel", self.has_tray_host)

    def stop_panel(self):
        self.stop_part("panel")
        wait_until(lambda: not self.has_name("org.kde.StatusNotifierWatcher"), "the host to go")

    def start_notifications(self, kind="recording"):
        if kind == "recording":
            self.start_service("notifications", "recording_notifications.py", self.capabilities)
        else:
            self.start_part("notifications", [NOTIFYD])
            self._wait_part("notifications",
                            lambda: self.has_name("org.freedesktop.Notifications"))

    def start_service(self, part, script, *arguments):
        """One of the services/ scripts; returns when it owns its name."""
        process = self.start_part(part, ["/usr/bin/python3", str(HERE / "services" / script),
                                         *arguments], stdout=subprocess.PIPE)
        with process.stdout as said:
            is_ready = said.readline() == b"ready\n"
        if not is_ready:
            raise SessionError(f"{script} did not start")

    def _start_accessibility(self):
        bus = self.session_bus()
        launcher = bus.get_object("org.a11y.Bus", "/org/a11y/bus")
        launcher.GetAddress(dbus_interface="org.a11y.Bus")
        launcher.Set("org.a11y.Status", "IsEnabled", True,
                     dbus_interface="org.freedesktop.DBus.Properties")
        bus.close()

    # Looking

    def run(self, command, check=True, timeout=30, **options):
        """A command inside the session; its standard output."""
        done = subprocess.run(command, env=self.env, timeout=timeout, text=True,
                              stdout=subprocess.PIPE, stderr=subprocess.PIPE, **options)
        if check and done.returncode != 0:
            raise SessionError(f"{command[0]} failed: {done.stderr.strip()}")
        return done.stdout

    @property
    def screen(self):
        """The environment for whoever looks at the whole screen, or plays mouse and keyboard."""
        return self.env

    def play(self, *command):
        subprocess.run(["xdotool", *map(str, command)], env=self.screen, check=True, timeout=30)

    def screenshot(self, path):
        subprocess.run(["import", "-window", "root", str(path)], env=self.screen, check=True, timeout=30)

    def pixels(self, x, y, width, height):
        """A part of the screen, 3 bytes a pixel."""
        area = f"{width}x{height}+{x}+{y}"
        return subprocess.run(["import", "-window", "root", "-crop", area, "-depth", "8", "rgb:-"],
                              env=self.screen, check=True, timeout=30, stdout=subprocess.PIPE).stdout

    # The program's window among others

    def in_front(self, program):
        """Whether a window of the program has the focus."""
        window = self.run(["xdotool", "getactivewindow"], check=False).strip()
        return bool(window) and self.run(["xdotool", "getwindowpid", window],
                                         check=False).strip() == str(program.pid)

    def enlarge_active(self):
        self.play("getactivewindow", "windowsize", "--sync", 1000, 650)

    def measures(self):
        """Of the window in front, what it is to keep: place and size; under Wayland, where the compositor alone
        places windows, its size; None where nobody is told of that."""
        return self.run(["xdotool", "getactivewindow", "getwindowgeometry"], check=False)

    def cover(self):
        """Puts another window in front of all; uncover() takes it away."""
        self.start_part("cover", ["xev", "-geometry", "1200x700+40+60"], stdout=subprocess.DEVNULL)
        self._wait_part("cover", lambda: self.run(["xdotool", "getactivewindow", "getwindowname"],
                                                  check=False).strip() == "Event Tester")

    def uncover(self):
        if "cover" in self.parts:
            self.stop_part("cover")

    def end(self):
        """As the display server ends under whoever is still there."""
        self.stop_part("xvfb")

    def session_bus(self):
        return dbus.bus.BusConnection(self.env["DBUS_SESSION_BUS_ADDRESS"])

    def system_bus(self):
        return dbus.bus.BusConnection(self.env["DBUS_SYSTEM_BUS_ADDRESS"])

    def has_name(self, name):
        with contextlib.closing(self.session_bus()) as bus:
            return bus.name_has_owner(name)

    def has_tray_host(self):
        with contextlib.closing(self.session_bus()) as bus, \
                contextlib.suppress(dbus.DBusException):
            watcher = bus.get_object("org.kde.StatusNotifierWatcher", "/StatusNotifierWatcher",
                                     introspect=False)
            return bool(watcher.Get("org.kde.StatusNotifierWatcher",
                                    "IsStatusNotifierHostRegistered",
                                    dbus_interface="org.freedesktop.DBus.Properties"))
        return False
