#!/usr/bin/python3
"""Shows KorvaleUI at work with the reference agent and the real scan engine.

A desktop of its own without a screen; each step is observed from outside, screenshots go to
build/demo-agent/, and the exit status is 0 only when every step was seen. Needs root: the agent
quarantines files and the engine is handed them. What the agent watches is a file system made here; nothing
of this machine is watched.
"""
import contextlib
import json
import os
import pathlib
import re
import shutil
import subprocess
import sys
import time

PROJECT = pathlib.Path(__file__).resolve().parent.parent.parent
sys.path.insert(0, str(PROJECT / "tests" / "desktop"))
sys.path.insert(0, str(PROJECT / "tools" / "demo"))

from desktop_session import BINARIES, DesktopSession, SessionError, wait_until  # noqa: E402
from drivers import HOST_CACHE, Program  # noqa: E402
from steps import READER, SCREEN, Steps, notifications  # noqa: E402
from texts import text  # noqa: E402
from tray import TrayItem  # noqa: E402
from watched import Watched, in_own_mounts  # noqa: E402

OUTPUT = PROJECT / "build" / "demo-agent"
CLAMD = pathlib.Path("/usr/sbin/clamd")
# In the signature database that is made here, and in one file. No scanner knows it.
BAD_CONTENT = b"content that the demonstration's own signatures call bad: 5d1f7c"
BAD_FILE = "invoice_2026.pdf.exe"
WRITTEN_FILE = "statement.pdf.exe"
BAD_PROGRAM = "installer"
FILES = 3000
TABS = ("HPS_Threats", "HPS_Exploits", "HPS_Events", "HPS_ExternalDevices")
SKIPPED = 77  # as the test runner wants it
SYSTEMD = "org.freedesktop.systemd1"


class AgentSession(DesktopSession):
    """With a service manager on the system bus."""

    def start_system_bus(self):
        policies = self.folder / "system.d"
        policies.mkdir(exist_ok=True)
        (policies / f"{SYSTEMD}.conf").write_text(
            '<busconfig><policy user="root">'
            f'<allow own="{SYSTEMD}"/><allow send_destination="{SYSTEMD}"/>'
            "</policy></busconfig>\n")
        super().start_system_bus()


class Engine:
    """clamd with a signature made on the spot."""

    def __init__(self, session):
        self.session = session
        self.folder = session.folder / "clamd"
        signatures = self.folder / "signatures"
        signatures.mkdir(parents=True)
        (signatures / "demo.ndb").write_text(f"Demo.Bad.Content:0:*:{BAD_CONTENT.hex()}\n")
        self.configuration = self.folder / "clamd.conf"
        self.configuration.write_text(
            f"LocalSocket {self.folder}/clamd.ctl\nDatabaseDirectory {signatures}\n"
            "Foreground yes\nUser root\n")

    def start(self):
        self.session.start_part("clamd", [str(CLAMD), f"--config-file={self.configuration}"],
                                stdout=subprocess.DEVNULL)
        wait_until((self.folder / "clamd.ctl").is_socket, "the engine's socket", 60)


class Agent:
    """korvale-agent, and korvale-agentctl to look at it."""

    def __init__(self, session, engine, watched):
        self.session = session
        self.watched = watched
        folder = session.folder / "agent"
        folder.mkdir()
        self.configuration = folder / "agent.toml"
        support = session.root / "Library/Application Support/Korvale"
        self.configuration.write_text(
            f'device_name = "Demonstration"\n[folders]\nhost_cache = "{session.root / HOST_CACHE}"\n'
            f'updater_status = "{support}/Desktop/download/status"\nstate = "{folder}/state"\n'
            f'quarantine = "{folder}/state/quarantine"\n'
            f'[engine]\nconfiguration = "{engine.configuration}"\nunits = []\n'
            f'[watch]\nfolders = ["{watched.folder}"]\nblock = "execute"\n')

    def start(self):
        self.session.start_part("korvale-agent", [str(BINARIES / "korvale-agent"), "--config",
                                                  str(self.configuration)],
                                env=self.watched.environment(self.session.env))

    def ask(self, *words):
        said = subprocess.run([str(BINARIES / "korvale-agentctl"), *words, "--json"],
                              env=self.session.env, capture_output=True, text=True, timeout=60,
                              check=False)
        try:
            return json.loads(said.stdout)
        except ValueError as error:
            raise SessionError(f"korvale-agentctl {words}: {said.stdout}{said.stderr}") from error


def downloads(parent):
    """A folder with one bad file among many."""
    folder = parent / "Downloads"
    folder.mkdir(parents=True, exist_ok=True)
    for number in range(FILES):
        (folder / f"photo_{number:04}.jpg").write_bytes(os.urandom(12_000))
    (folder / BAD_FILE).write_bytes(BAD_CONTENT)
    return folder


class Demonstration:
    def __init__(self, session, stack, steps):
        self.session = session
        self.stack = stack
        self.steps = steps
        self.shots = 0
        self.tab = 0
        self.folder = downloads(session.folder / "home")
        self.bad = self.folder / BAD_FILE
        self.watched = Watched(session)
        stack.callback(self.watched.close)

    def shot(self, name):
        self.shots += 1
        self.session.screenshot(OUTPUT / f"{self.shots}-{name}.png")

    def play(self):
        self.notified = notifications(self.session)
        self.start()
        self.scan()
        self.restore()
        self.write()
        self.run_program()
        self.plug_device()
        self.break_rule()
        self.update()
        self.lose_the_engine()
        self.end()

    def start(self):
        self.engine = Engine(self.session)
        with self.steps.step("the engine starts with a signature made on the spot"):
            self.engine.start()
        self.session.start_service("service-manager", "service_manager.py")
        self.agent = Agent(self.session, self.engine, self.watched)
        with self.steps.step("the program is there before the agent: yellow"):
            self.program = self.stack.enter_context(Program(self.session))
            self.item = TrayItem(self.session, self.program)
            self.stack.callback(self.item.close)
            self.item.wait_colour("yellow")
        with self.steps.step("the agent starts, the engine answers: green"):
            self.agent.start()
            self.item.wait_colour("green")
        with self.steps.step("the policy allows notifications"):
            wait_until(lambda: self.item.entry(text("CM_ShowNotifications")).checked,
                       "the check mark")
        with self.steps.step("a left click opens the window; the events tab is chosen"):
            self.item.activate()
            self.window = wait_until(self.find_window, "the window")
            self.session.run(["xdotool", "windowactivate", "--sync", self.window])
            self.session.run(["xdotool", "windowmove", "--sync", self.window, "60", "130"])
            self.turn_to("HPS_Events")
        self.shot("green")

    def scan(self):
        with self.steps.step("korvale-ui -folder-scan Downloads: the request is accepted"):
            scan = self.stack.enter_context(
                Program(self.session, "-folder-scan", str(self.folder)))
            scan.wait_log("Service returned 'OK' for forwardFolderScan")
        with self.steps.step("the status line shows the file at hand"):
            wait_until(lambda: "photo_" in self.read("tree"), "a file name", 60)
            self.shot("scanning")
        with self.steps.step("the bad file turns the shield red"):
            self.item.wait_colour("red", 120)
        with self.steps.step("the bubble names it"):
            self.notified.wait_for(BAD_FILE.replace(".", r"\."))
        self.shot("red")
        with self.steps.step("the agent tells what the scan found"):
            self.notified.wait_for(rf"{FILES + 1} files, 1 threat found", timeout=120)
        with self.steps.step("the file is gone from the folder and lies in quarantine"):
            wait_until(lambda: not self.bad.exists(), "the file's absence")
            wait_until(lambda: self.states() == ["quarantined"], "its state")
        with self.steps.step("the threats tab shows it; looked at, the shield is green again"):
            self.turn_to("HPS_Threats")
            wait_until(lambda: self.read("rows").strip().endswith("\t1"), "one row")
            self.item.wait_colour("green")
        self.shot("quarantined")

    def restore(self):
        with self.steps.step("korvale-agentctl restore puts it back as it was, waived"):
            number = str(self.agent.ask("threats")["threats"][0]["number"])
            answer = self.agent.ask("restore", number)
            if not answer.get("ok") or self.bad.read_bytes() != BAD_CONTENT:
                raise SessionError(f"restore: {answer}")
            wait_until(lambda: self.states() == ["waived"], "its state")
            wait_until(lambda: text("Waived") in self.read("cells"), "the row's category")
        self.shot("restored")

    def write(self):
        with self.steps.step("the agent watches a folder, and programs in it before they run"):
            self.turn_to("HPS_Events")
            wait_until(lambda: [system["mode"] for system in self.agent.ask("status")["watch"]] ==
                       ["execute"], "the watch")
        written = self.watched.folder / WRITTEN_FILE
        with self.steps.step("a bad file is written there: the shield turns red by itself"):
            written.write_bytes(BAD_CONTENT + b" written")
            began = time.monotonic()
            self.item.wait_colour("red")
            print(f"    after {time.monotonic() - began:.1f} s", flush=True)
        with self.steps.step("the bubble names it, and it is gone to quarantine"):
            self.notified.wait_for(re.escape(WRITTEN_FILE))
            wait_until(lambda: not written.exists(), "the file's absence")
        self.shot("written")

    def run_program(self):
        with self.steps.step("a bad program there is not run"):
            refused = self.watched.start(BAD_PROGRAM, BAD_CONTENT + b" program")
            if refused is None:
                raise SessionError("it was run")
        with self.steps.step("the bubble says so"):
            subtitle, _ = self.notified.wait_for(re.escape(text("NotificationSubtitleExecutionBlock")))
            self.notified.wait_for(BAD_PROGRAM, start=subtitle)
            wait_until(lambda: BAD_PROGRAM in self.read("cells"), "its event")
        self.shot("refused")

    def plug_device(self):
        with self.steps.step("a device comes: the external devices tab has it"):
            self.turn_to("HPS_ExternalDevices")
            self.watched.plug()
            wait_until(lambda: "Data Stick" in self.read("cells"), "its row")
            wait_until(lambda: text("FullAccess") in self.read("cells"), "what it may")
        self.shot("device")

    def break_rule(self):
        status = self.agent.ask("status")["exploits"]
        if not status["heard"]:
            print(f"    without exploits: {status['problem']}", flush=True)
            return
        with self.steps.step("a process is killed by its system call filter: the exploits tab has it"):
            self.turn_to("HPS_Exploits")
            program = self.watched.break_rule()
            wait_until(lambda: text("Terminated") in self.read("cells"), "its row")
            subtitle, _ = self.notified.wait_for(
                re.escape(text("NotificationSubtitleProcessTerminated")))
            self.notified.wait_for(re.escape(program.name), start=subtitle)
        self.shot("killed")

    def update(self):
        with self.steps.step("the threats are looked at: green again"):
            self.turn_to("HPS_Threats")
            self.item.wait_colour("green")
        with self.steps.step("the menu asks for updates; the status line tells the outcome"):
            self.item.click(self.item.entry(text("CheckForUpdates")))
            wait_until(lambda: "Signatures are up to date." in self.read("tree"), "the sentence", 40)
        self.shot("updated")

    def lose_the_engine(self):
        with self.steps.step("the engine is killed: the shield turns yellow"):
            self.session.stop_part("clamd", 9)
            self.item.wait_colour("yellow", 60)
        with self.steps.step("korvale-agentctl status says why"):
            status = self.agent.ask("status")
            if status["engine"]["reachable"] or not status["problems"]:
                raise SessionError(f"status: {status}")
        self.shot("without-engine")

    def end(self):
        with self.steps.step("Exit ends the program with status 0, SIGTERM the agent"):
            self.item.click(self.item.entry(text("Exit")))
            if self.program.wait_exit() != 0:
                raise SessionError("not status 0")
            self.session.stop_part("korvale-agent")

    def states(self):
        return [threat["state"] for threat in self.agent.ask("threats")["threats"]]

    def find_window(self):
        found = self.session.run(["xdotool", "search", "--onlyvisible", "--pid",
                                  str(self.program.pid), "--name", "KorvaleUI"], check=False)
        return found.split()[0] if found.split() else None

    def turn_to(self, tab):
        for _ in range(abs(TABS.index(tab) - self.tab)):
            self.press("ctrl+Next" if TABS.index(tab) > self.tab else "ctrl+Prior")
        self.tab = TABS.index(tab)
        wait_until(lambda: self.read("rows").startswith(text(tab)), "the tab")

    def press(self, key):
        self.session.run(["xdotool", "key", "--window", self.window, key])

    def read(self, what):
        return self.session.run(["/usr/bin/python3", READER, str(self.program.pid), what],
                                check=False)


def main():
    missing = None
    if os.geteuid() != 0:
        missing = "demo: the agent and its engine need root: sudo ./dev demo --agent"
    elif not CLAMD.exists():
        missing = "demo: the package clamav-daemon is not installed."
    else:
        missing = in_own_mounts()
    if missing:
        print(missing, file=sys.stderr)
        sys.exit(SKIPPED if "--test" in sys.argv[1:] else 1)
    shutil.rmtree(OUTPUT, ignore_errors=True)
    OUTPUT.mkdir(parents=True)
    steps = Steps()
    with AgentSession(notifications="xfce", accessibility=True, screen=SCREEN) as session, \
            contextlib.ExitStack() as stack:
        Demonstration(session, stack, steps).play()
    print(f"screenshots: {OUTPUT}")
    if steps.missed:
        sys.exit(f"{steps.missed} of {steps.number} steps were not observed.")


try:
    main()
except SessionError as error:
    sys.exit(f"demo: {error}")
except KeyboardInterrupt:
    sys.exit(130)
