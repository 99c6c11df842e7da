"""The whole program on a desktop without a screen: start, rest, window, answers."""
import contextlib
import json
import math
import os
import pathlib
import re
import shutil
import statistics
import subprocess
import tempfile
import time

import process_measures as measure
from desktop_session import wait_until
from drivers import Agent, host_cache
from report import Figure
from tray import TrayItem

START = "Start to tray item, against a minimal Qt 6 tray program (F)"
REST = "At rest"
WINDOW = "The window"
PACKAGE = "What is installed"
BATCH = "com.korvale.timer.aggregated_messages"


def ms(seconds):
    return f"{seconds * 1e3:.1f} ms"


def mib(kib):
    return f"{kib / 1024:.2f} MiB"


class Bench:
    """One desktop with its programs; measures leave it as they found it."""

    def __init__(self, session, binaries, folder, quick):
        self.session = session
        self.folder = folder
        self.quick = quick
        self.binaries = binaries
        self.floor = [str(binaries / "korvale-floor")]
        self.program = [str(binaries / "korvale-ui")]
        self.watch = measure.ItemWatch(session)

    def started(self, command):
        return measure.Started(self.session, self.watch, command)

    def agent(self):
        return Agent(self.session).__enter__().wait_ready()

    def clear_host_cache(self):
        shutil.rmtree(host_cache(self.session), ignore_errors=True)

    def window(self, program):
        found = self.session.run(["xdotool", "search", "--onlyvisible", "--pid", str(program.pid),
                                  "--name", "KorvaleUI"], check=False).split()
        return found[0] if found else None


# Start


@contextlib.contextmanager
def full_desktop(bench):
    """300 menu entries and 150 processes of programs of their own."""
    entries = bench.session.folder / "data" / "applications"
    programs = bench.folder / "programs"
    programs.mkdir()
    languages = ("de", "fr", "es", "ja", "it", "pt_BR", "ru", "zh_CN", "ar", "pl") * 3
    made, running = [], []
    try:
        for number in range(300):
            made.append(entries / f"full{number}.desktop")
            made[-1].write_text(
                f"[Desktop Entry]\nType=Application\nName=Program {number}\n"
                + "".join(f"Comment[{language}{index}]=What the program {number} is good for\n"
                          for index, language in enumerate(languages))
                + f"Exec={programs}/program{number} %U\nIcon=program\nTerminal=false\n")
        for number in range(150):
            program = programs / f"program{number}"
            shutil.copy("/usr/bin/sleep", program)
            running.append(subprocess.Popen([program, "3600"], env=bench.session.env))
        yield
    finally:
        for process in running:
            process.kill()
            process.wait()
        for entry in made:
            entry.unlink()


def start_on_a_full_desktop(bench):
    with full_desktop(bench):
        floor, program = (measure.start_instructions(bench.session, bench.watch, command,
                                                     bench.folder)
                          for command in (bench.floor, bench.program))
    return Figure(START, "instructions on a full desktop (300 entries, 150 processes)",
                  f"{program / 1e6:.1f} M", f"{floor / 1e6:.1f} M", program / floor, "≤ 1.25 F",
                  1.25)


def start(bench):
    count = [measure.start_instructions(bench.session, bench.watch, command, bench.folder)
             for command in (bench.floor, bench.program)]
    figures = [Figure(START, "instructions", f"{count[1] / 1e6:.1f} M", f"{count[0] / 1e6:.1f} M",
                      count[1] / count[0], "≤ 1.5 F", 1.5, gate=True),
               start_on_a_full_desktop(bench)]
    floor, program, later = measure.start_pairs(bench.session, bench.watch, bench.floor,
                                                bench.program, 5 if bench.quick else 15)
    for index, name in enumerate(("wall-clock time", "CPU time")):
        figures.append(Figure(START, name, ms(program[index]), ms(floor[index]),
                              program[index] / floor[index], "≤ 1.5 F", 1.5))
    figures.append(Figure(START, "CPU time of the 5 s after it, empty host cache", ms(later[1]),
                          ms(later[0]), (later[1] - later[0]) * 1e3, "≤ 10 ms more", 10,
                          unit=" ms"))
    return figures, {"start": {"floor": floor, "program": program}}


# Rest


def memory_and_libraries(bench):
    floor, program = [], []
    for _ in range(1 if bench.quick else 3):
        for command, taken in ((bench.floor, floor), (bench.program, program)):
            started = bench.started(command)
            time.sleep(3)
            taken.append((*measure.memory_kib(started.pid), measure.libraries(started.pid)))
            started.end()
    dirty = [statistics.median(one[1] for one in taken) for taken in (floor, program)]
    more = program[0][2] - floor[0][2]
    names = ", ".join(sorted(pathlib.Path(one).name for one in more)) or "none"
    return [
        Figure(REST, "private dirty memory, window never opened", mib(dirty[1]), mib(dirty[0]),
               (dirty[1] - dirty[0]) / 1024, "≤ F + 1.5 MiB", 1.5, unit=" MiB"),
        Figure(REST, f"libraries loaded (more than F: {names})", str(len(program[0][2])),
               str(len(floor[0][2])), len(program[0][2]) - len(floor[0][2]), "≤ F + 4", 4),
    ], dirty[0]


def memory_after_window(bench, floor_dirty):
    with bench.agent() as agent:
        program = bench.started(bench.program)
        agent.tell("synthetic 1000 all", 60)
        item = TrayItem(bench.session, program.process)
        item.activate()
        window = wait_until(lambda: bench.window(program), "the window")
        bench.session.run(["xdotool", "windowactivate", "--sync", window])
        time.sleep(5)
        wakeups, _ = measure.at_rest(program.pid, 10 if bench.quick else 30)
        bench.session.run(["xdotool", "key", "Escape"])
        wait_until(lambda: not bench.window(program), "the window to go")
        time.sleep(2)
        dirty = measure.memory_kib(program.pid)[1]
        item.close()
        program.end()
    bench.clear_host_cache()
    return [Figure(REST, "the same, window opened and closed, 1,000 rows a table", mib(dirty),
                   mib(floor_dirty), (dirty - floor_dirty) / 1024, "≤ F + 12 MiB", 12,
                   unit=" MiB"),
            Figure(REST, "wake-ups a second, window open (no repaint)", f"{wakeups:.2f}",
                   "tick and its queries", wakeups, "≤ 0.6", 0.6)]


def session_messages(bench, item, seconds):
    """Messages on the session bus from or to the program, its answers to panels included."""
    done = bench.session.run(["timeout", str(seconds), "dbus-monitor", "--session"], check=False,
                             timeout=seconds + 10)
    return len(re.findall(rf"(?:sender|destination)={re.escape(item.service)} ", done))


def quiet(bench):
    seconds = 20 if bench.quick else 60
    with bench.agent():
        program = bench.started(bench.program)
        item = TrayItem(bench.session, program.process)
        time.sleep(6)
        messages = session_messages(bench, item, 12)
        item.close()
        wakeups, cpu = measure.at_rest(program.pid, seconds)
        program.end()
    bench.clear_host_cache()
    return [
        Figure(REST, "wake-ups a second, agent connected and quiet", f"{wakeups:.2f}",
               "tick and its queries", wakeups, "≤ 0.6", 0.6),
        Figure(REST, "CPU time a minute, quiet", ms(cpu), "", cpu * 1e3, "≤ 4 ms", 4, unit=" ms"),
        Figure(REST, "messages on the session bus in 12 s", str(messages), "", messages, "none",
               0),
    ]


def cpu_share(bench, agent, program, mask):
    """Of a core, with the same lists again every 10 s."""
    (host_cache(bench.session) / "header.log").write_text(json.dumps({"MessageMask": mask}))
    agent.tell(f"post {BATCH}")
    time.sleep(3)
    begin, moment = measure.cpu_seconds(program.pid), time.monotonic()
    for _ in range(2 if bench.quick else 6):
        agent.tell(f"post {BATCH}")
        time.sleep(10)
    return (measure.cpu_seconds(program.pid) - begin) / (time.monotonic() - moment)


def unchanged_batches(bench):
    lists = 1 | 16  # file threats; processes and, with them, events
    devices = 2048
    with bench.agent() as agent:
        program = bench.started(bench.program)
        agent.tell("synthetic 1000 all", 60)
        unchanged = cpu_share(bench, agent, program, lists)
        every = cpu_share(bench, agent, program, lists | devices)
        program.end()
    bench.clear_host_cache()
    return [
        Figure(REST, "CPU, unchanged lists of 1,000 threats, processes, events every 10 s",
               f"{unchanged:.4%} of a core", "", unchanged * 100, "≤ 0.1 %", 0.1, unit=" %"),
        Figure(REST, "the same with 1,000 device events, which count as changed and are logged",
               f"{every:.4%} of a core", "", every * 100, "none of its own", math.inf, unit=" %"),
    ]


def rest(bench):
    figures, floor_dirty = memory_and_libraries(bench)
    figures += memory_after_window(bench, floor_dirty)
    figures += quiet(bench) + unchanged_batches(bench)
    return figures, {}


# Window


def opening_times(bench, command):
    words = bench.session.run(command).split()
    return float(words[1]), float(words[3])


def window(bench):
    commands = {"plain": [*bench.floor, "--window"],
                "few": [str(bench.binaries / "korvale-bench-window"), "1000"],
                "many": [str(bench.binaries / "korvale-bench-window"), "100000"]}
    taken = {name: [] for name in commands}
    for _ in range(3 if bench.quick else 11):
        for name, command in commands.items():
            taken[name].append(opening_times(bench, command))
    found = {name: [statistics.median(values) for values in zip(*times)]
             for name, times in taken.items()}
    figures = []
    for index, (name, limit) in enumerate((("first opening", 50), ("opening again", 15))):
        few, plain = found["few"][index], found["plain"][index]
        figures.append(Figure(WINDOW, f"{name}, 1,000 rows a table", f"{few:.1f} ms",
                              f"{plain:.1f} ms, a plain window with one table", few,
                              f"≤ {limit} ms", limit, unit=" ms"))
    for index, name in enumerate(("first opening", "opening again")):
        few, many = found["few"][index], found["many"][index]
        figures.append(Figure(WINDOW, f"{name}, 100,000 rows a table against 1,000",
                              f"{many:.1f} ms", f"{few:.1f} ms", many / few, "≤ 1.25", 1.25))
    return figures, {"window": found}


# Package


def package(bench):
    build = bench.binaries.parent
    with tempfile.TemporaryDirectory() as folder:
        subprocess.run(["cmake", "--install", str(build), "--prefix", "/usr", "--strip"],
                       check=True, env={**os.environ, "DESTDIR": folder},
                       stdout=subprocess.DEVNULL)
        files = [path for path in pathlib.Path(folder).rglob("*") if path.is_file()]
        size = sum(path.stat().st_size for path in files) / 2**20
    return [Figure(PACKAGE, f"size of the {len(files)} installed files", f"{size:.2f} MiB", "",
                   size, "≤ 2 MiB", 2, unit=" MiB")], {}
