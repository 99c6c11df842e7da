"""The agent's watch beside the engine's own one: building, starting programs, many files at once, rest.

Marks are put on a file system of the bench's own alone, which is a file in its folder.
"""
import contextlib
import math
import os
import pathlib
import pwd
import shutil
import subprocess
import tarfile
import threading
import time

import process_measures as measure
from agent_measures import Agent, Clamd, private_bus, wait_until
from report import Figure

GROUP = "The agent's watch, with the engine's own beside it"
ONACCESS = "/usr/sbin/clamonacc"
ENGINE_USER = "clamav"
BAD = b"korvale bench bad content"
HEADERS, SOURCES = 480, 150


def missing():
    """Why the watch cannot be measured here; empty: it can."""
    for program in (ONACCESS, "/usr/sbin/mkfs.ext4", "/usr/bin/cc"):
        if not os.access(program, os.X_OK):
            return f"{program} is not installed"
    try:
        pwd.getpwnam(ENGINE_USER)
    except KeyError:
        return f"there is no user {ENGINE_USER} for the engine"
    return ""


@contextlib.contextmanager
def own_file_system(folder, megabytes=1024):
    folder.mkdir()
    image = folder.with_suffix(".image")
    with image.open("wb") as file:
        file.truncate(megabytes << 20)
    subprocess.run(["/usr/sbin/mkfs.ext4", "-q", "-F", image], check=True)
    subprocess.run(["mount", "-o", "loop", image, folder], check=True)
    try:
        yield folder
    finally:
        subprocess.run(["umount", "--lazy", folder], check=True)
        image.unlink()


def source_tree(folder):
    """A packed source tree of headers and C files, as programs of middle size have them."""
    tree = folder / "source"
    tree.mkdir()
    for number in range(HEADERS):
        (tree / f"part{number}.h").write_text(
            f"#ifndef PART{number}\n#define PART{number}\n"
            + "".join(f"int part{number}_{index}(int value, const char *name);\n" for index in range(40))
            + "#endif\n")
    for number in range(SOURCES):
        used = [(number * 7 + index * 31) % HEADERS for index in range(24)]
        (tree / f"source{number}.c").write_text(
            "".join(f'#include "part{header}.h"\n' for header in used)
            + "".join(f"int own{number}_{index}(int value) {{ return value * {index} + {number}; }}\n"
                      for index in range(200)))
    packed = folder / "source.tar"
    with tarfile.open(packed, "w") as archive:
        archive.add(tree, "source")
    shutil.rmtree(tree)
    return packed


def unpack_and_build(packed, place):
    """Seconds until every object file is there."""
    target = place / "build"
    shutil.rmtree(target, ignore_errors=True)
    target.mkdir()
    os.sync()  # what earlier rounds left to be written is not this one's
    begin = time.monotonic()
    subprocess.run(["tar", "-xf", packed, "-C", target], check=True)
    names = "\n".join(f"source{number}" for number in range(SOURCES))
    subprocess.run(["xargs", "-P", str(os.cpu_count()), "-I{}", "cc", "-c", "{}.c", "-o", "{}.o"], input=names,
                   text=True, check=True, cwd=target / "source")
    taken = time.monotonic() - begin
    if len(list((target / "source").glob("*.o"))) != SOURCES:
        raise RuntimeError("not every object file was built")
    return taken


class Bench:
    def __init__(self, binaries, folder, place):
        self.binaries, self.folder, self.place = binaries, folder, place
        self.watched = place / "watched"
        self.watched.mkdir()
        signatures = folder / "engine"
        signatures.mkdir()
        for one in (*list(folder.parents)[:2], folder, signatures):
            os.chmod(one, 0o755)  # the engine runs as a user of its own
        self.clamd = Clamd(signatures, ENGINE_USER,
                           f"OnAccessIncludePath {self.watched}\nOnAccessExcludeUname {ENGINE_USER}\n")
        shutil.chown(signatures, ENGINE_USER)

    @contextlib.contextmanager
    def agent(self, further=""):
        """The agent, which watches, and has heard of the engine."""
        folder = self.folder / f"agent{time.monotonic_ns()}"
        folder.mkdir()
        with private_bus(folder) as address:
            agent = Agent(self.binaries, folder, address, self.clamd,
                          f'[watch]\nfolders = ["{self.watched}"]\n{further}')
            agent.start()
            try:
                wait_until(lambda: agent.ask("Status")["engine"]["reachable"], "the agent to find the engine")
                yield agent
            finally:
                agent.stop()

    @contextlib.contextmanager
    def engines_own(self):
        log = self.folder / f"onaccess{time.monotonic_ns()}.log"
        process = subprocess.Popen([ONACCESS, "--foreground", "--fdpass", "-c", str(self.clamd.configuration),
                                    "--log", str(log)], stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                                   stderr=subprocess.DEVNULL)
        try:
            wait_until(lambda: log.exists() and "watching" in log.read_text(errors="replace"),
                       "the engine's own watch", 60)
            yield
        finally:
            process.terminate()
            process.wait(20)

    def building(self, rounds):
        packed = source_tree(self.folder)
        modes = {"nothing": contextlib.nullcontext, "agent": self.agent, "engine's own": self.engines_own}
        taken = {name: [] for name in modes}
        unpack_and_build(packed, self.watched)  # compiler and archive are in memory from now on
        for number in range(rounds):
            order = list(modes)
            for name in order[number % 3:] + order[:number % 3]:
                self.clamd.start()
                with modes[name]() as agent:
                    before = agent.ask("Status")["watch_counts"]["judged"] if name == "agent" else 0
                    taken[name].append(unpack_and_build(packed, self.watched))
                    if name == "agent":
                        self.judged(agent, before + HEADERS + 2 * SOURCES)
        # Of each the best round: what else the machine does only ever adds to it.
        without = min(taken["nothing"])
        ours, theirs = min(taken["agent"]) - without, min(taken["engine's own"]) - without
        return Figure(GROUP, f"unpacking and building a source tree ({HEADERS} headers, {SOURCES} C files; "
                      f"{without * 1e3:.0f} ms without), added", f"{ours * 1e3:.0f} ms",
                      f"{theirs * 1e3:.0f} ms, clamonacc", ours / theirs if theirs > 0 else math.inf, "≤ 0.5", 0.5)

    @staticmethod
    def judged(agent, count):
        def done():
            counts = agent.ask("Status")["watch_counts"]
            return counts["judged"] >= count and not counts["waiting"] and counts
        wait_until(done, f"{count} files to be judged", 300, pause=0.25)
        return done()

    def starting(self, count):
        program, other = self.watched / "program", self.place / "program"
        for copy in (program, other):
            shutil.copy("/usr/bin/true", copy)
        time.sleep(1)  # a file that has just changed is asked about each time
        self.clamd.start()
        with self.agent('block = "execute"\n') as agent:
            wait_until(lambda: any(one["mode"].startswith("execute") for one in agent.ask("Status")["watch"]),
                       "programs to be asked about")
            subprocess.run([program], check=True)
            before = agent.ask("Status")["watch_counts"]
            done = subprocess.run([self.binaries / "korvale-bench-agent", "starts", program, other, str(count)],
                                  check=True, stdout=subprocess.PIPE, text=True)
            after = agent.ask("Status")["watch_counts"]
            asked = sum(after[name] - before[name] for name in ("starts_known", "starts_asked"))
            if asked < count:
                raise RuntimeError(f"of {count} starts only {asked} were asked about")
        watched, free = (int(line) / 1e3 for line in done.stdout.split())
        return Figure(GROUP, f"starting a known program with blocking on, the median of {count:,}",
                      f"{watched:.0f} µs", f"{free:.0f} µs, not watched", watched - free, "≤ 60 µs more", 60.0,
                      unit=" µs more")

    def many_at_once(self, count):
        self.clamd.start()
        with self.agent() as agent:
            before = agent.ask("Status")["watch_counts"]["judged"]
            most, ended = [0], threading.Event()

            def look():
                while not ended.wait(0.1):
                    most[0] = max(most[0], measure.memory_kib(agent.process.pid)[1])
            looking = threading.Thread(target=look)
            looking.start()
            folder = self.watched / "many"
            folder.mkdir()
            begin = time.monotonic()
            bad = 0
            for number in range(count):
                is_bad = number % 1000 == 999
                bad += is_bad
                (folder / f"file{number}").write_bytes(f"{number}\n".encode() * 64 + BAD * is_bad)
            written = time.monotonic() - begin
            try:
                # Those in quarantine may be judged once more as they are moved; none may be missing.
                self.judged(agent, before + count)
                wait_until(lambda: len(agent.ask("Threats")["threats"]) == bad, "every bad file to be told", 60)
            finally:
                ended.set()
                looking.join()
            taken = time.monotonic() - begin
            lost = bad - len(agent.ask("Threats")["threats"])
        return [
            Figure(GROUP, f"{count:,} files written in {written:.1f} s: bad ones not found ({bad} are)",
                   f"{lost}, all judged after {taken:.1f} s", "-", lost, "none", 0),
            Figure(GROUP, "private memory meanwhile, at most", f"{most[0] / 1024:.1f} MiB", "-", most[0] / 1024,
                   "≤ 20 MB", 20e6 / (1 << 20), unit=" MiB")]

    def rest(self, seconds):
        self.clamd.start()
        with self.agent('block = "execute"\n') as agent:
            wait_until(lambda: any(one["mode"].startswith("execute") for one in agent.ask("Status")["watch"]),
                       "programs to be asked about")
            pid = agent.process.pid
            guards = pathlib.Path(f"/proc/{pid}/task/{pid}/children").read_text().split()
            if not guards:
                raise RuntimeError("there is no guard process")
            time.sleep(15)
            before = [measure.wakeups(int(one)) for one in (pid, *guards)]
            time.sleep(seconds)
            after = [measure.wakeups(int(one)) for one in (pid, *guards)]
        woken = sum(count - earlier.get(task, 0) for earlier, later in zip(before, after)
                    for task, count in later.items()) / seconds
        return Figure(GROUP, "wake-ups at rest of agent and guard, watchdog included", f"{woken:.2f} per second", "-",
                      woken, "≤ 0.5 per second", 0.5, unit="/s")


def watch(binaries, folder, quick):
    folder = folder / "watch"
    folder.mkdir()
    with own_file_system(folder / "place") as place:
        bench = Bench(binaries, folder, place)
        try:
            figures = [bench.building(3 if quick else 7), bench.starting(500 if quick else 3000),
                       *bench.many_at_once(10_000), bench.rest(60 if quick else 120)]
        finally:
            bench.clamd.stop()
    return figures, {}
