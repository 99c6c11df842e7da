#!/usr/bin/python3
"""Shows KorvaleUI at work with the stand-in agent.

With a display: private system bus, agent and program on it, until the program ends.
Without one: a desktop of its own; each step is observed from outside, screenshots go to build/demo/,
and the exit status is 0 only when every step was seen.
"""
import contextlib
import os
import pathlib
import shutil
import sys
import time

PROJECT = pathlib.Path(__file__).resolve().parent.parent.parent
sys.path.insert(0, str(PROJECT / "tests" / "desktop"))
sys.path.insert(0, str(PROJECT / "tools" / "demo"))

from desktop_session import DesktopSession, SessionError, wait_until  # noqa: E402
from drivers import Agent, Program  # noqa: E402
from steps import READER, SCREEN, Steps, notifications  # noqa: E402
from texts import text  # noqa: E402
from tray import TrayItem  # noqa: E402

OUTPUT = PROJECT / "build" / "demo"
SCENARIOS = PROJECT / "tools" / "agent_sim" / "scenarios"
# The string every scanner knows, in two parts so that no scanner takes this file for a threat.
EICAR = r"X5O!P%@AP[4\PZX54(P^)7CC)7}$EICAR-STANDARD-" + "ANTIVIRUS-TEST-FILE!$H+H*"
UPDATER_SAYS = "Signatures are up to date (version 4711)."
TABS = (("threats", "HPS_Threats"), ("exploits", "HPS_Exploits"), ("events", "HPS_Events"),
        ("devices", "HPS_ExternalDevices"))


def suspicious_folder(parent):
    """A folder with a harmless test virus, an oddity and plain files in it."""
    folder = parent / "Downloads"
    folder.mkdir(parents=True, exist_ok=True)
    (folder / "invoice_2026.pdf.exe").write_text(EICAR)
    (folder / "Rechnung Größe XL.pdf").write_text("An ordinary file.\n" * 400)
    (folder / "keygen.bin").write_bytes(b"odd but not known to be bad\n")
    for number in range(12):
        (folder / f"photo_{number:02}.jpg").write_bytes(os.urandom(20_000))
    return folder


class Headless:
    """The demonstration on a desktop of its own."""

    def __init__(self, session, stack, steps):
        self.session = session
        self.stack = stack
        self.steps = steps
        self.shots = 0

    def shot(self, name):
        self.shots += 1
        path = OUTPUT / f"{self.shots}-{name}.png"
        time.sleep(0.3)  # what was just asked for is painted by another process
        self.session.screenshot(path)
        return path

    def paint_background(self):
        self.session.run(["display", "-window", "root", "-size", SCREEN,
                          "gradient:#33506b-#0f1b28"], check=False)  # for the eye only

    def play(self):
        self.paint_background()
        folder = suspicious_folder(self.session.folder / "home")
        notified = notifications(self.session)
        self.start_program()
        self.connect_agent()
        self.find_a_threat(folder, notified)
        self.open_the_window(folder)
        self.export_the_rows(folder)
        self.show_what_bubbles_said()
        self.choose_a_folder()
        self.end()

    def start_program(self):
        with self.steps.step("the item is there, yellow: the agent is not running yet"):
            self.program = self.stack.enter_context(Program(self.session))
            self.item = TrayItem(self.session, self.program)
            self.stack.callback(self.item.close)
            self.item.wait_colour("yellow")
        self.shot("yellow-at-start")

    def connect_agent(self):
        with self.steps.step("the agent starts and connects: green"):
            self.agent = self.stack.enter_context(Agent(self.session)).wait_ready()
            self.agent.tell("policy notifications on")
            self.agent.tell_all("start", "halyx on", "quillmar on")
            self.item.wait_colour("green")
        with self.steps.step("the policy allows notifications"):
            wait_until(lambda: self.item.entry(text("CM_ShowNotifications")).checked,
                       "the check mark")
        self.shot("green-connected")

    def find_a_threat(self, folder, notified):
        with self.steps.step(f"korvale-ui -folder-scan {folder.name}: the request is accepted"):
            scan = self.stack.enter_context(Program(self.session, "-folder-scan", str(folder)))
            scan.wait_log("Service returned 'OK' for forwardFolderScan")
            scan.wait_exit()
        with self.steps.step("the agent finds the test virus: red"):
            self.item.wait_colour("red")
        with self.steps.step("the desktop notification names the file"):
            notified.wait_for("invoice_2026.pdf.exe")
        self.shot("red-with-notification")

    def open_the_window(self, folder):
        for command in (SCENARIOS / "tables.scenario").read_text().splitlines():
            if command and not command.startswith("#"):
                self.agent.tell(command.replace("${KORVALE_DEMO_FOLDER}", str(folder)))
        with self.steps.step("a left click opens the details window"):
            self.item.activate()
            window = wait_until(self.window, "the window")
            self.session.run(["xdotool", "windowactivate", "--sync", window])
            self.session.run(["xdotool", "windowmove", "--sync", window, "60", "130"])
        with self.steps.step("the status line tells the updater's message"):
            self.agent.tell(f"update-status {UPDATER_SAYS}")
            wait_until(lambda: UPDATER_SAYS in self.read("tree"), "the message")
        for index, (name, key) in enumerate(TABS):
            with self.steps.step(f"the tab “{text(key)}” shows its rows"):
                if index:
                    self.session.run(["xdotool", "key", "--window", window, "ctrl+Next"])
                wait_until(lambda key=key: self.tab_shows_rows(key), "rows in the tab")
            self.shot(f"window-{name}")
            if not index:
                self.show_the_details()

    def show_the_details(self):
        with self.steps.step("Enter on a row shows what its category means and what to do"):
            self.session.play("key", "Down", "Return")
            wait_until(lambda: text("HPS_PaneMeans") in self.read("texts"), "the details")
        self.shot("window-details")
        with self.steps.step("Escape closes them and leads back to the row"):
            self.session.play("key", "Escape")
            wait_until(lambda: text("HPS_PaneCopyPath") not in self.read("tree"), "the table alone")

    def export_the_rows(self, folder):
        target = folder.parent / "threats.csv"
        self.session.play("key", "ctrl+Next")
        with self.steps.step("Ctrl+S offers to write the rows to a file"):
            wait_until(lambda: self.tab_shows_rows("HPS_Threats"), "the first tab")
            before = self.windows()
            self.session.play("key", "ctrl+s")
            wait_until(lambda: self.windows() - before, "the menu")
        self.shot("export-menu")
        with self.steps.step("they are in the file that was chosen, and a line says so"):
            self.session.play("key", "Return")
            dialog = wait_until(lambda: self.windows(text("HPS_ExportTitle")), "the dialog").pop()
            self.session.run(["xdotool", "windowactivate", "--sync", dialog])
            wait_until(lambda: target.name in self.read("texts"), "the offered name")
            self.session.play("key", "Return")
            wait_until(lambda: str(target) in self.read("tree"), "the line")
            if not target.read_text().startswith("file,category,"):
                raise SessionError("no list in the file")
        self.shot("export-done")

    def windows(self, name=""):
        """All that the program has on the screen, menus too."""
        return set(self.session.run(["xdotool", "search", "--onlyvisible", "--pid", str(self.program.pid), "--name",
                                     name], check=False).split())

    def show_what_bubbles_said(self):
        self.agent.tell('consumer-notification "Please restart this device tonight." https://korvale.example/restart')
        with self.steps.step("Ctrl+N shows what the notifications said, with a button for the link"):
            self.session.run(["xdotool", "key", "ctrl+n"])
            wait_until(lambda: "invoice_2026.pdf.exe" in self.read("tree")
                       and text("NotificationActionOpenLink") in self.read("tree"), "what they said")
            window = self.session.run(["xdotool", "getactivewindow"]).strip()
            self.session.run(["xdotool", "windowmove", "--sync", window, "400", "330"])
        self.shot("notifications")
        self.session.run(["xdotool", "key", "Escape"])

    def choose_a_folder(self):
        with self.steps.step("the launcher's “Scan a Folder…” has a folder chosen"):
            self.session.run(["gapplication", "action", "com.korvale.ui", "scan-folder"])
            wait_until(lambda: text("ChooseFolderTitle") in self.read("tree"), "the chooser")
        self.shot("choose-a-folder")
        self.session.run(["xdotool", "key", "Escape"])

    def window(self):
        found = self.session.run(["xdotool", "search", "--onlyvisible", "--pid",
                                  str(self.program.pid), "--name", "KorvaleUI"], check=False)
        return found.split()[0] if found.split() else None

    def read(self, what):
        return self.session.run(["/usr/bin/python3", READER, str(self.program.pid), what],
                                check=False)

    def tab_shows_rows(self, key):
        label, _, rows = self.read("rows").strip().rpartition("\t")
        return label.startswith(text(key)) and rows.isdigit() and int(rows) > 0

    def end(self):
        with self.steps.step("Exit ends it with status 0"):
            self.item.click(self.item.entry(text("Exit")))
            status = self.program.wait_exit()
            if status != 0:
                raise SessionError(f"status {status}")


def headless():
    shutil.rmtree(OUTPUT, ignore_errors=True)
    OUTPUT.mkdir(parents=True)
    steps = Steps()
    with DesktopSession(notifications="xfce", accessibility=True, screen=SCREEN) as session, \
            contextlib.ExitStack() as stack:
        Headless(session, stack, steps).play()
    print(f"screenshots: {OUTPUT}")
    if steps.missed:
        sys.exit(f"{steps.missed} of {steps.number} steps were not observed.")


def on_this_display():
    """The user's own desktop; only the system bus is private."""
    with DesktopSession(display=False, notifications=None) as session, \
            contextlib.ExitStack() as stack:
        own = {name: value for name, value in os.environ.items()
               if name.startswith(("XDG_", "QT_", "LANG", "LC_", "AT_SPI")) or name in (
                   "DISPLAY", "WAYLAND_DISPLAY", "XAUTHORITY", "HOME",
                   "DBUS_SESSION_BUS_ADDRESS")}
        folder = suspicious_folder(session.folder / "home")
        session.env["KORVALE_DEMO_FOLDER"] = str(folder)
        bus = pathlib.Path(own.get("XDG_RUNTIME_DIR", "/nonexistent")) / "bus"
        if "DBUS_SESSION_BUS_ADDRESS" not in own and bus.exists():
            own["DBUS_SESSION_BUS_ADDRESS"] = f"unix:path={bus}"
        agent = stack.enter_context(
            Agent(session, "--scenario", str(SCENARIOS / "demo.scenario")))
        program = stack.enter_context(Program(session, "-a", environment=own))
        print("KorvaleUI is in your tray; the scenario runs. End it with its menu's last item or "
              "with Ctrl+C.", flush=True)
        shown = 0
        while program.running():
            for line in agent.output.lines[shown:]:
                shown += 1
                print(f"agent: {line}", flush=True)
            time.sleep(0.2)
        status = program.wait_exit()
        if program.count("an instance already running"):
            raise SessionError("KorvaleUI is running already on this desktop; end that one first.")
        sys.exit(status)


def main():
    if os.environ.get("DISPLAY") or os.environ.get("WAYLAND_DISPLAY"):
        on_this_display()
    else:
        print("No display: bringing up a desktop without a screen.", flush=True)
        headless()


try:
    main()
except SessionError as error:
    sys.exit(f"demo: {error}")
except KeyboardInterrupt:
    sys.exit(130)
