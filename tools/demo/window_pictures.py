#!/usr/bin/python3
"""Takes docs/window.png and docs/window-dark.png, the README's pictures, of the program on a desktop without a screen."""
import contextlib
import pathlib
import subprocess
import sys

PROJECT = pathlib.Path(__file__).resolve().parent.parent.parent
sys.path.insert(0, str(PROJECT / "tests" / "desktop"))

from desktop_session import DesktopSession, wait_until  # noqa: E402
from drivers import Agent, Program  # noqa: E402
from tray import TrayItem  # noqa: E402
from window_case import window_of  # noqa: E402

DARK = 1  # as the portal's color-scheme counts
SCENARIO = PROJECT / "tools" / "agent_sim" / "scenarios" / "tables.scenario"


def is_dark(session, window):
    level = session.run(["convert", f"x:{window}", "-gravity", "south", "-crop", "100%x4%+0+0", "-colorspace", "gray",
                         "-format", "%[fx:mean]", "info:"])
    return float(level) < 0.4


def take(scheme, file):
    with DesktopSession(screen="1280x800") as session, contextlib.ExitStack() as stack:
        session.start_service("portal", "settings_portal.py", str(scheme))
        agent = stack.enter_context(Agent(session)).wait_ready()
        program = stack.enter_context(Program(session, environment={"LANG": "en_GB.UTF-8"}))
        item = TrayItem(session, program)
        stack.callback(item.close)
        wait_until(lambda: {"CMD_": "GDRV"} in agent.requests(), "the program on the bus")
        agent.tell_all("start", "halyx on", "quillmar on")
        item.wait_colour("green")
        for command in SCENARIO.read_text().splitlines():
            if command and not command.startswith("#"):
                agent.tell(command.replace("${KORVALE_DEMO_FOLDER}", "/home/ada/Downloads"))
        item.wait_colour("red")
        item.activate()
        window = wait_until(lambda: window_of(session, program), "the window")
        session.run(["xdotool", "windowactivate", "--sync", window])
        session.play("mousemove", 2, 780)
        item.wait_colour("green")
        wait_until(lambda: is_dark(session, window) == (scheme == DARK), "the window's colours")
        subprocess.run(["import", "-window", window, "-frame", str(file)], env=session.env, check=True, timeout=30)
    print(file)


take(0, PROJECT / "docs" / "window.png")
take(DARK, PROJECT / "docs" / "window-dark.png")
