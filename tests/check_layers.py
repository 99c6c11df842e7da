#!/usr/bin/python3
"""Fails when an include runs against the one-way order of the rooms. Argument: the src folder."""
import pathlib
import re
import sys

# Each room and the rooms it may include besides itself. core/base is the lowest floor: every room may
# include it, and it includes none.
LOWEST = "core/base"
ALLOWED = {
    LOWEST: set(),
    "platform": set(),
    "model": {"platform"},
    "agent_link": {"platform", "model"},
    "tables": {"platform", "model"},
    "shell": {"platform", "model", "tables"},
    "core": {"platform", "model", "agent_link", "tables", "shell"},
}
WIDGETLESS = {LOWEST, "platform", "model", "agent_link"}
ONLY_DELEGATE = {"tables", "shell"}  # inside core, only the composition root knows these
COMPOSITION_ROOT = re.compile(r"AppDelegate|Launch|main\.cpp")
WIDGET_HEADER = re.compile(r"<Q(Widget|Application|MainWindow|Menu|SystemTrayIcon|Label|Dialog|"
                           r"MessageBox|FileDialog|AbstractItemView|T(able|ree|ab)\w*)>")
INCLUDE = re.compile(r'^\s*#\s*include\s+(?:"([^"]+)"|(<[^>]+>))', re.MULTILINE)


def room_of(relative):
    """The room of a path below src; what stands in no room's folder (main.cpp) is core's."""
    if relative.as_posix().startswith(LOWEST + "/"):
        return LOWEST
    return relative.parts[0] if len(relative.parts) > 1 else "core"


def complaints(source):
    for path in sorted(source.rglob("*")):
        if path.suffix not in (".h", ".cpp"):
            continue
        relative = path.relative_to(source)
        room = room_of(relative)
        for own, system in INCLUDE.findall(path.read_text(encoding="utf-8")):
            if system:
                if room in WIDGETLESS and WIDGET_HEADER.match(system):
                    yield f"{relative}: {room} knows no widget, but includes {system}"
                continue
            target = room_of(pathlib.PurePosixPath(own))
            if "/" not in own or target in (room, LOWEST):  # without a folder: made by the build
                continue
            if target in ALLOWED and target not in ALLOWED[room]:
                yield f"{relative}: {room} may not include {own}"
            elif (room == "core" and target in ONLY_DELEGATE
                  and not COMPOSITION_ROOT.search(relative.name)):
                yield f"{relative}: only the composition root may include {own}"


def main():
    source = pathlib.Path(sys.argv[1])
    found = list(complaints(source))
    files = sum(1 for path in source.rglob("*.h")) + sum(1 for path in source.rglob("*.cpp"))
    if files == 0:
        sys.exit(f"{source} holds no sources")
    print("\n".join(found) if found else f"{files} files, every include points the right way")
    sys.exit(1 if found else 0)


main()
