#!/usr/bin/python3
"""Fails when an include runs against the one-way order of the rooms. Argument: the src folder."""
import pathlib
import re
import sys

# Each room and the rooms it may include besides itself. core's state and log are everybody's.
ALLOWED = {
    "platform": set(),
    "model": {"platform"},
    "agent_link": {"platform", "model"},
    "tables": {"platform", "model"},
    "shell": {"platform", "model", "tables"},
    "core": {"platform", "model", "agent_link", "tables", "shell"},
}
EVERYBODYS = {"core/AppState.h", "core/Logging.h"}
WIDGETLESS = {"platform", "model", "agent_link"}
ONLY_DELEGATE = {"tables", "shell"}  # inside core, only the composition root knows these
COMPOSITION_ROOT = re.compile(r"AppDelegate|Launch|main\.cpp")
WIDGET_HEADER = re.compile(r"<Q(Widget|Application|MainWindow|Menu|SystemTrayIcon|Label|Dialog|"
                           r"MessageBox|FileDialog|AbstractItemView|T(able|ree|ab)\w*)>")
INCLUDE = re.compile(r'^\s*#\s*include\s+(?:"([^"]+)"|(<[^>]+>))', re.MULTILINE)


def complaints(source):
    for path in sorted(source.rglob("*")):
        if path.suffix not in (".h", ".cpp"):
            continue
        relative = path.relative_to(source)
        room = relative.parts[0] if len(relative.parts) > 1 else "core"
        for own, system in INCLUDE.findall(path.read_text(encoding="utf-8")):
            if system:
                if room in WIDGETLESS and WIDGET_HEADER.match(system):
                    yield f"{relative}: {room} knows no widget, but includes {system}"
                continue
            target = own.split("/")[0]
            if target not in ALLOWED or target == room:
                continue
            if room == "platform" and own in EVERYBODYS:
                yield f"{relative}: platform knows nothing above it, but includes {own}"
            elif room != "platform" and own in EVERYBODYS:
                continue
            elif target not in ALLOWED[room]:
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
