#!/usr/bin/python3
"""Plays what every desktop has to give on one desktop after the other and prints a table, desktop by check.

desktops.py --output FOLDER [--without NAME]... [NAME...]; desktops.py --packages NAME prints what it needs."""
import argparse
import os
import pathlib
import sys
import time
import unittest

PACKAGES = {"sway": ["sway", "waybar", "qt6-wayland"], "XFCE": [], "XEmbed": ["openbox", "trayer"],
            "LXQt": ["lxqt-panel", "openbox"], "MATE": ["mate-panel", "marco", "mate-settings-daemon-common"]}
CHECKS = ["start", "colours", "click", "raise_from_behind", "second_start", "menu", "host_restart", "end_of_session"]


class Outcomes(unittest.TestResult):
    """What became of each check; says it at once."""

    def __init__(self, desktop):
        super().__init__()
        self.desktop = desktop
        self.found = {}

    def _note(self, test, outcome, why=""):
        if test is not None and hasattr(test, "_testMethodName"):
            checks = [test._testMethodName.removeprefix("test_")]
        else:  # the desktop itself did not come up
            checks = [check for check in CHECKS if check not in self.found]
        for check in checks:
            self.found[check] = outcome
            print(f"{self.desktop:12} {check:20} {outcome}", flush=True)
        if why:
            print(why, file=sys.stderr, flush=True)

    def addSuccess(self, test):
        self._note(test, "good")

    def addError(self, test, err):
        self._note(test, "broken", self._exc_info_to_string(err, test))

    addFailure = addError

    def addSkip(self, test, reason):
        self._note(test, f"not there: {reason}")


def sessions():
    from desktop_session import DesktopSession
    from other_sessions import LxqtSession, MateSession
    from wayland_session import WaylandSession
    from xembed_session import XEmbedSession
    return {"sway": WaylandSession, "XFCE": DesktopSession, "XEmbed": XEmbedSession, "LXQt": LxqtSession,
            "MATE": MateSession}


def play(name, session):
    from at_home import AtHome, EndsWell
    from desktop_case import DesktopCase
    outcomes = Outcomes(name)
    for checks in (AtHome, EndsWell):
        case = type(checks.__name__, (checks, DesktopCase), {"session": session})
        unittest.defaultTestLoader.loadTestsFromTestCase(case).run(outcomes)
    return outcomes.found


def table(results):
    lines = ["| Desktop | " + " | ".join(check.replace("_", " ") for check in CHECKS) + " |",
             "| --- |" + " --- |" * len(CHECKS)]
    lines += [f"| {name} | " + " | ".join(found.get(check, "not tried") for check in CHECKS) + " |"
              for name, found in results.items()]
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
            name, sessions()[name])
    shown = table(results)
    (options.output / "table.md").write_text(shown + "\n")
    print(f"\n{shown}\n\n{time.monotonic() - started:.0f} s; screenshots: {options.output}")
    return any("broken" in found.values() for found in results.values())


if __name__ == "__main__":
    sys.exit(main())
