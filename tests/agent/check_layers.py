#!/usr/bin/python3
"""Fails when an include of the agent runs against the one-way order of its rooms, or reaches into the
program. Argument: the project folder."""
import pathlib
import re
import sys

# Each room and the rooms it may include besides itself.
ALLOWED = {
    "base": set(),
    "store": {"base"},
    "engine": {"base"},
    "quarantine": {"base", "store", "engine"},
    "scan": {"base", "store", "engine"},
    "watch": {"base", "store", "engine", "scan"},
    "devices": {"base", "store"},
    "audit": {"base"},
    "publish": {"base"},
    "bus": {"base", "publish"},
    "ctl": {"base"},
}
ALLOWED["app"] = set(ALLOWED) - {"ctl"}
INCLUDE = re.compile(r'^\s*#\s*include\s+"([^"]+)"', re.MULTILINE)


def complaints(agent):
    for path in sorted(agent.rglob("*")):
        if path.suffix not in (".h", ".cpp"):
            continue
        room = path.relative_to(agent).parts[0]
        if room not in ALLOWED:
            yield f"{path}: {room} is no room of the agent"
            continue
        for own in INCLUDE.findall(path.read_text(encoding="utf-8")):
            parts = own.split("/")
            if parts[0] != "agent":
                yield f"{path}: only agent/ROOM/HEADER may be included, not {own}"
            elif len(parts) == 3 and parts[1] != room and parts[1] not in ALLOWED[room]:
                yield f"{path}: {room} may not include {own}"


def reaching_in(source):
    for path in sorted(source.rglob("*")):
        if path.suffix not in (".h", ".cpp"):
            continue
        for own in INCLUDE.findall(path.read_text(encoding="utf-8")):
            if own.startswith("agent/"):
                yield f"{path}: the program knows no code of the agent, but includes {own}"


def main():
    project = pathlib.Path(sys.argv[1])
    agent = project / "agent"
    found = list(complaints(agent)) + list(reaching_in(project / "src"))
    files = sum(1 for path in agent.rglob("*") if path.suffix in (".h", ".cpp"))
    print("\n".join(found) if found else f"{files} files, every include points the right way")
    sys.exit(1 if found else 0)


main()
