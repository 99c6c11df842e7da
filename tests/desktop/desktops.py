#!/usr/bin/python3
"""Plays what every desktop has to give on one desktop after the other and prints a table, desktop by check.

desktops.py --output FOLDER [--without NAME]... [NAME...]; desktops.py --packages NAME prints what it needs."""
import argparse
import os
import pathlib
import sys
import time
import unittest

GNOME = ["gnome-shell", "gnome-shell-extension-appindicator", "python3-dbusmock", "qt6-wayland", "xwayland"]
PLASMA = ["kwin-wayland", "kwin-x11", "plasma-desktop", "plasma-workspace", "qt6-wayland", "qtwayland5",
          "xdg-desktop-portal-kde", "xwayland"]
PACKAGES = {"sway": ["sway", "waybar", "qt6-wayland"], "XFCE": [], "XEmbed": ["openbox", "trayer"],
            "LXQt": ["lxqt-panel", "openbox"], "MATE": ["mate-panel", "marco", "mate-settings-daemon-common"],
            "GNOME": GNOME, "GNOME-bare": GNOME, "Plasma": PLASMA, "Plasma-X11": PLASMA}
CHECKS = ["start", "colours", "click", "raise_from_behind", "second_start", "menu", "host_restart", "end_of_session",
          "title_bar"]
NOT_ITS_OWN = {"title_bar": "the desktop's"}  # what a desktop may leave out, and why
WITHOUT_TRAY = {check: "no tray" for check in ("click", "raise_from_behind", "host_restart")}


class Outcomes(unittest.TestResult):
    """What became of each check; says it at once."""

    def __init__(self, desktop):
        super().__init__()
        self.desktop = desktop
        self.found = {}
        self.expected = []  # the checks of the case that is played

    def _note(self, test, outcome, why=""):
        if test is not None and hasattr(test, "_testMethodName"):
            checks = [test._testMethodName.removeprefix("test_")]
        else:  # the desktop itself did not come up
            checks = [check for check in self.expected if check not in self.found]
        for check in checks:
            self.found[check] = outcome
            print(f"{self.desktop:12} {check:20} {outcome}", flush=True)
        if why:
            print(why, file=sys.stderr, flush=True)

    def addSuccess(self, test):
        self._note(test, "good")

    def addError(self, test, err):
        super().addError(test, err)
        self._note(test, "broken", self.errors[-1][1])

    addFailure = addError

    def addSkip(self, test, reason):
        self._note(test, f"not there: {reason}")


def cases():
    """Of each desktop: what makes it, and the checks to be played on it."""
    from at_home import AtHome, EndsWell, OwnTitleBar, WithoutTray
    from desktop_session import DesktopSession
    from gnome_session import BareGnomeSession, DarkGnomeSession, GnomeSession
    from other_sessions import LxqtSession, MateSession
    from plasma_session import PlasmaSession, PlasmaX11Session
    from wayland_session import WaylandSession
    from xembed_session import XEmbedSession
    usual = {"sway": WaylandSession, "XFCE": DesktopSession, "XEmbed": XEmbedSession, "LXQt": LxqtSession,
             "MATE": MateSession, "Plasma": PlasmaSession, "Plasma-X11": PlasmaX11Session}
    found = {name: [(session, AtHome), (session, EndsWell)] for name, session in usual.items()}
    found["GNOME"] = [(GnomeSession, AtHome), (GnomeSession, EndsWell), (DarkGnomeSession, OwnTitleBar)]
    found["GNOME-bare"] = [(BareGnomeSession, WithoutTray), (BareGnomeSession, EndsWell)]
    return found


def play(name, cases):
    from desktop_case import DesktopCase
    outcomes = Outcomes(name)
    for session, checks in cases:
        case = type(checks.__name__, (checks, DesktopCase), {"session": session})
        tests = unittest.defaultTestLoader.loadTestsFromTestCase(case)
        outcomes.expected = [test._testMethodName.removeprefix("test_") for test in tests]
        tests.run(outcomes)
    return outcomes.found


def table(results):
    lines = ["| Desktop | " + " | ".join(check.replace("_", " ") for check in CHECKS) + " |",
             "| --- |" + " --- |" * len(CHECKS)]
    for name, found in results.items():
        left_out = {**NOT_ITS_OWN, **(WITHOUT_TRAY if name == "GNOME-bare" else {})}
        cells = [found.get(check) or left_out.get(check, "broken") for check in CHECKS]
        lines.append(f"| {name} | {' | '.join(cells)} |")
    return "\n".join(lines)


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--packages", choices=PACKAGES)
    parser.add_argument("--output", type=pathlib.Path)
    parser.add_argument("--without", action="append", default=[], help="its packages cannot be installed here")
    parser.add_argument("names", nargs="*", metavar="NAME")
    options = parser.parse_args()
    if options.packages:
        print(" ".join(PACKAGES[options.packages]))
        return 0
    if unknown := set(options.names) - set(PACKAGES):
        parser.error(f"no such desktop: {', '.join(sorted(unknown))}; there are {', '.join(PACKAGES)}")
    options.output.mkdir(parents=True, exist_ok=True)
    os.environ["KORVALE_PICTURES"] = str(options.output)
    results = {}
    started = time.monotonic()
    for name in options.names or PACKAGES:
        results[name] = {check: "not installable" for check in CHECKS} if name in options.without else play(
            name, cases()[name])
    shown = table(results)
    (options.output / "table.md").write_text(shown + "\n")
    print(f"\n{shown}\n\n{time.monotonic() - started:.0f} s; screenshots: {options.output}")
    return any("broken" in found.values() for found in results.values())


if __name__ == "__main__":
    sys.exit(main())
