"""Many people on one machine: sessions with a bus and a display each, and one agent for all."""
import contextlib
import os
import pathlib
import signal
import subprocess
import time

import process_measures as measure
from desktop_measures import BATCH, mib, ms
from desktop_session import wait_until
from drivers import host_cache
from report import Figure

GROUP = "Many people, one machine"
RECORDS = 10_000


class Session:
    """Somebody's session bus, display and program; the system bus and the agent are everybody's."""

    def __init__(self, bench, number):
        folder = bench.folder / f"session{number}"
        for name in ("run", "config", "data", "cache"):
            (folder / name).mkdir(parents=True)
        (folder / "run").chmod(0o700)
        self.env = dict(bench.session.env, XDG_RUNTIME_DIR=str(folder / "run"),
                        XDG_CONFIG_HOME=str(folder / "config"), XDG_DATA_HOME=str(folder / "data"),
                        XDG_STATE_HOME=str(folder / "state"), XDG_CACHE_HOME=str(folder / "cache"),
                        DBUS_SESSION_BUS_ADDRESS=f"unix:path={folder}/run/bus")
        self.processes = []
        self._start("dbus-daemon", "--session", "--nofork", "--nopidfile",
                    f"--address=unix:path={folder}/run/bus")
        wait_until((folder / "run" / "bus").is_socket, "a session bus")
        reading, writing = os.pipe()
        self._start("Xvfb", "-displayfd", str(writing), "-screen", "0", "1280x800x24", "-nolisten",
                    "tcp", "-noreset", pass_fds=[writing])
        os.close(writing)
        with os.fdopen(reading) as display:
            self.env["DISPLAY"] = ":" + display.readline().strip()
        self.program = self._start(*bench.program)

    def _start(self, *command, **options):
        process = subprocess.Popen(command, env=self.env, stdin=subprocess.DEVNULL,
                                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, **options)
        self.processes.append(process)
        return process

    @property
    def pid(self):
        return self.program.pid

    def end(self):
        for process in reversed(self.processes):
            process.send_signal(signal.SIGTERM)
            with contextlib.suppress(subprocess.TimeoutExpired):
                process.wait(20)
            process.kill()


def resident(pid):
    text = pathlib.Path(f"/proc/{pid}/smaps_rollup").read_text()
    return int(text.split("Rss:")[1].split()[0])


def used(sessions):
    """CPU seconds of all programs so far."""
    return sum(measure.cpu_seconds(session.pid) for session in sessions)


def wait_quiet(sessions):
    """Until the programs have done what there was to do; returns when the last of it was seen."""
    def read_by_main_threads():
        return sum(int(pathlib.Path(f"/proc/{session.pid}/schedstat").read_text().split()[0])
                   for session in sessions) * 1e-9
    busy, before = time.monotonic(), read_by_main_threads()
    while time.monotonic() - busy < 2:
        time.sleep(0.02)
        now = read_by_main_threads()
        if now - before > 0.001:  # far more than the polls at rest
            busy = time.monotonic()
        before = now
    return busy


def reset_peak(pid):
    """What the program holds, in KiB; its peak counts from here."""
    pathlib.Path(f"/proc/{pid}/clear_refs").write_text("5")
    return memory_line(pid, "VmRSS")


def memory_line(pid, name):
    text = pathlib.Path(f"/proc/{pid}/status").read_text()
    return int(text.split(f"{name}:")[1].split()[0])


def burst(bench, agent, sessions):
    """CPU seconds of all programs, seconds until the last of them has read it, and by how many KiB
    each grew meanwhile, together, for one list that all are told of at once."""
    path = bench.folder / "sessions.log"
    subprocess.run([str(bench.binaries / "korvale-bench-batch"), "--mode=generate",
                    f"--repeat={RECORDS}", str(path)], check=True)
    folder = host_cache(bench.session)
    os.replace(path, folder / "file_states.log")
    (folder / "header.log").write_text('{"MessageMask": 1}')
    held = [reset_peak(session.pid) for session in sessions]
    before, told = used(sessions), time.monotonic()
    agent.tell(f"post {BATCH}")
    last = wait_quiet(sessions) - told
    grown = sum(memory_line(session.pid, "VmHWM") for session in sessions) - sum(held)
    return used(sessions) - before, last, grown


def sessions(bench):
    count = 10 if bench.quick else 50
    with bench.agent() as agent, contextlib.ExitStack() as stack:
        running = []
        for number in range(count):
            running.append(Session(bench, number))
            stack.callback(running[-1].end)
            if number == 0:
                wait_until(lambda: {"CMD_": "GDRV"} in agent.requests(), "the first program", 60)
                wait_quiet(running)
        wait_until(lambda: sum(request == {"CMD_": "GDRV"} for request in agent.requests()) >= count,
                   "all programs on the bus", 300)
        wait_quiet(running)
        memory = [measure.memory_kib(session.pid) for session in running]
        proportional = sum(pss for pss, _ in memory)
        private = sorted(dirty for _, dirty in memory)[count // 2]
        shared = resident(running[0].pid) - private
        bound = count * private + shared
        seconds = 10 if bench.quick else 60
        before = used(running)
        time.sleep(seconds)
        rest = (used(running) - before) / seconds
        read, last, grown = burst(bench, agent, running)
    bench.clear_host_cache()
    return [
        Figure(GROUP, f"memory of {count} programs at rest (sum of Pss)", mib(proportional),
               f"{count} x {mib(private)} private + {mib(shared)} shared", proportional / bound,
               "≤ private of each + one shared set", 1.0),
        Figure(GROUP, f"processor time of {count} programs at rest, a second", ms(rest),
               f"{ms(rest / count)} each", rest * 1e3 / count, "≤ 1 ms each", 1.0, unit=" ms"),
        Figure(GROUP, f"processor time of {count} programs for a list of {RECORDS:,}", ms(read),
               f"{ms(read / count)} each", read / count, "none", float("inf"), unit=" s"),
        Figure(GROUP, "the same until the last of them has read it", ms(last),
               f"{ms(read)} shared by {os.cpu_count()} cores", last * os.cpu_count() / read, "none",
               float("inf")),
        Figure(GROUP, "memory that takes together at most, were all at their peak at once", mib(grown),
               f"{mib(grown / count)} each", grown / count / 1024, "none", float("inf"),
               unit=" MiB")], {}
