"""The agent with the real engine: scans against the engine's own client, memory, rest."""
import contextlib
import json
import os
import pathlib
import shutil
import signal
import socket
import statistics
import subprocess
import threading
import time

import dbus

import process_measures as measure
from report import Figure

GROUP = "The agent, with the engine's own client beside it"
SERVICE, OBJECT = "com.korvale.agent_server", "/com/korvale/agent_server"
CONTROL = "com.korvale.agent_control"
CLAMD, CLIENT = "/usr/sbin/clamd", "/usr/bin/clamdscan"


def missing():
    """Why the agent cannot be measured here; empty: it can."""
    if os.geteuid() != 0:
        return "the agent and the engine run as root: measuring them needs root"
    for program in (CLAMD, CLIENT):
        if not os.access(program, os.X_OK):
            return f"{program} is not installed"
    return ""


def wait_until(condition, what, timeout=120, pause=0.02):
    limit = time.monotonic() + timeout
    while not condition():
        if time.monotonic() > limit:
            raise RuntimeError(f"waited too long for {what}")
        time.sleep(pause)


class Clamd:
    """The engine with a small database of its own; started anew it has forgotten all it saw."""

    def __init__(self, folder, user="root", further=""):
        self.folder = folder
        self.configuration = folder / "clamd.conf"
        self.process = None
        signatures, temporary = folder / "signatures", folder / "temporary"
        signatures.mkdir()
        temporary.mkdir()
        shutil.chown(temporary, user)  # without it the engine calls everything clean
        (signatures / "bench.ndb").write_text("Korvale.Bench.Bad:0:*:" + b"korvale bench bad content".hex() + "\n")
        # Enough threads for both cores, and the limits of Debian's configuration.
        self.configuration.write_text(
            f"LocalSocket {self.socket}\nDatabaseDirectory {signatures}\nForeground yes\nUser {user}\n"
            f"TemporaryDirectory {temporary}\nMaxThreads 4\nMaxFileSize 25M\nMaxScanSize 100M\n" + further)

    @property
    def socket(self):
        return self.folder / "clamd.ctl"

    def _answers(self):
        with contextlib.suppress(OSError), socket.socket(socket.AF_UNIX) as connection:
            connection.connect(str(self.socket))
            connection.sendall(b"zPING\0")
            return connection.recv(16).startswith(b"PONG")
        return False

    def start(self):
        self.stop()
        self.socket.unlink(missing_ok=True)
        self.process = subprocess.Popen([CLAMD, "-c", str(self.configuration)], stdin=subprocess.DEVNULL,
                                        stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        wait_until(self._answers, "the engine")

    def stop(self):
        if self.process:
            self.process.kill()
            self.process.wait()
            self.process = None


def copy_files(source, tree, count):
    """That many regular files of `source` with content, at most 25 MiB each; their bytes together."""
    taken = total = 0
    for folder, folders, names in os.walk(source):
        folders.sort()
        target = tree / os.path.relpath(folder, source)
        for name in sorted(names):
            path = pathlib.Path(folder, name)
            if path.is_symlink() or not path.is_file() or not 0 < path.stat().st_size <= 25 << 20:
                continue
            target.mkdir(parents=True, exist_ok=True)
            shutil.copyfile(path, target / name)
            taken, total = taken + 1, total + path.stat().st_size
            if taken == count:
                return taken, total
    return taken, total


class Scans:
    def __init__(self, binaries, folder, count):
        self.program = str(binaries / "korvale-bench-agent")
        self.folder = folder
        self.tree = folder / "tree"
        self.files, self.bytes = copy_files("/usr", self.tree, count)
        self.clamd = Clamd(folder)

    def client(self):
        self.clamd.start()
        begin = time.monotonic()
        subprocess.run([CLIENT, "-c", str(self.clamd.configuration), "--multiscan", "--fdpass", "--quiet",
                        str(self.tree)], check=True, stdout=subprocess.DEVNULL)
        return time.monotonic() - begin

    def ours(self, cache, again=False):
        if not again:
            self.clamd.start()
        begin = time.monotonic()
        done = subprocess.run([self.program, "scan", str(self.clamd.configuration), str(cache),
                               str(self.tree)], check=True, stdout=subprocess.PIPE)
        taken = time.monotonic() - begin
        figures = json.loads(done.stdout)
        if figures["analysed"] != self.files or figures["unanswered"] or not figures["with_engine"]:
            raise RuntimeError(f"not all of {self.files} files were judged: {figures}")
        return taken, figures


def scans(bench_scans, pairs):
    cache = bench_scans.folder / "verdicts.sqlite"
    client, first, second = [], [], []
    bench_scans.client()  # every file is in memory from now on
    for pair in range(pairs):
        for name in ("client", "ours") if pair % 2 == 0 else ("ours", "client"):
            if name == "client":
                client.append(bench_scans.client())
                continue
            for old in bench_scans.folder.glob("verdicts.sqlite*"):
                old.unlink()
            first.append(bench_scans.ours(cache)[0])
            taken, figures = bench_scans.ours(cache, again=True)
            second.append(taken)
            if figures["known"] != bench_scans.files:
                raise RuntimeError(f"the second scan read files again: {figures}")
    ratio = statistics.median(ours / theirs for ours, theirs in zip(first, client))
    gain = statistics.median(one / other for one, other in zip(first, second))
    what = f"{bench_scans.files:,} files of /usr, {bench_scans.bytes / 1e6:.0f} MB"
    bench_scans.clamd.stop()
    return [
        Figure(GROUP, f"first scan of {what}", f"{statistics.median(first):.1f} s",
               f"{statistics.median(client):.1f} s, clamdscan --multiscan --fdpass", ratio, "≤ 1.1", 1.1),
        Figure(GROUP, "second scan of the same", f"{statistics.median(second) * 1e3:.0f} ms",
               f"{statistics.median(first):.1f} s, the first", gain, "≥ 20 times faster", 20.0,
               at_least=True, unit=" times"),
    ]


@contextlib.contextmanager
def private_bus(folder):
    address = f"unix:path={folder}/bus"
    daemon = subprocess.Popen(["dbus-daemon", "--session", "--nofork", "--nopidfile", "--nosyslog",
                               f"--address={address}", "--print-address"], stdout=subprocess.PIPE,
                              stderr=subprocess.DEVNULL)
    try:
        daemon.stdout.readline()
        yield address
    finally:
        daemon.kill()
        daemon.wait()


class Agent:
    """The service itself, with a service manager that expects a sign of life every five seconds."""

    def __init__(self, binaries, folder, address, clamd, further=""):
        self.state = folder / "state"
        self.state.mkdir()
        configuration = folder / "agent.toml"
        configuration.write_text(
            f'[folders]\nhost_cache = "{folder}/HostCache"\nupdater_status = "{folder}/status"\n'
            f'state = "{self.state}"\nquarantine = "{folder}/quarantine"\n'
            f'[engine]\nconfiguration = "{clamd.configuration}"\nunits = []\n{further}')
        self.notify = socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM)
        self.notify.bind(str(folder / "notify"))
        self.ready = threading.Event()
        threading.Thread(target=self._drain, daemon=True).start()
        self.environment = {**os.environ, "DBUS_SYSTEM_BUS_ADDRESS": address,
                            "NOTIFY_SOCKET": str(folder / "notify"), "WATCHDOG_USEC": "10000000"}
        self.command = [str(binaries / "korvale-agent"), "--config", str(configuration)]
        self.address = address
        self.process = None

    def _drain(self):
        while True:
            if b"READY=1" in self.notify.recv(4096):
                self.ready.set()

    def start(self):
        self.process = subprocess.Popen(self.command, env=self.environment, stdin=subprocess.DEVNULL,
                                        stderr=subprocess.DEVNULL)
        if not self.ready.wait(30):
            raise RuntimeError("the agent is not ready")
        self.bus = dbus.bus.BusConnection(self.address)
        wait_until(lambda: self.bus.name_has_owner(SERVICE), "the agent on the bus")
        return self.process.pid

    def ask(self, method, **arguments):
        control = dbus.Interface(self.bus.get_object(SERVICE, OBJECT, introspect=False), CONTROL)
        answer = json.loads(control.get_dbus_method(method)(json.dumps(arguments), signature="s"))
        if not answer.get("ok"):
            raise RuntimeError(f"{method}: {answer}")
        return answer

    def scan(self, tree):
        number = self.ask("Scan", path=str(tree))["scan"]
        wait_until(lambda: self.ask("Status").get("last_scan", {}).get("number") == number,
                   "the end of the scan", 600, pause=0.5)

    def stop(self):
        if self.process:
            self.process.send_signal(signal.SIGTERM)
            self.process.wait(20)


def rest(binaries, folder, bench_scans, seconds):
    clamd = bench_scans.clamd
    clamd.start()
    with private_bus(folder) as address:
        agent = Agent(binaries, folder, address, clamd)
        cache = str(agent.state / "verdicts.sqlite")
        subprocess.run([bench_scans.program, "remember", cache, "1000000"], check=True)
        recalled = int(subprocess.run([bench_scans.program, "recall", cache, "1000000"], check=True,
                                      stdout=subprocess.PIPE).stdout)
        pid = agent.start()
        try:
            agent.scan(bench_scans.tree)
            agent.scan(bench_scans.tree)
            memory = measure.memory_kib(pid)[1]
            time.sleep(15)  # the engine's sessions end, memory that waits to be written is
            before = measure.wakeups(pid)
            time.sleep(seconds)
            after = measure.wakeups(pid)
        finally:
            agent.stop()
            clamd.stop()
    woken = sum(count - before.get(task, 0) for task, count in after.items()) / seconds
    return [
        # The service's own, which asked for few of them, and what asking for all of them adds.
        Figure(GROUP, "private memory with 1,000,000 remembered files, after two scans and asking for all",
               f"{memory / 1024:.1f} + {recalled / 1024:.1f} MiB", "-", (memory + recalled) / 1024,
               "≤ 20 MB", 20e6 / (1 << 20), unit=" MiB"),
        Figure(GROUP, "wake-ups of all threads at rest, watchdog and engine included",
               f"{woken:.2f} per second", "-", woken, "≤ 0.5 per second", 0.5, unit="/s"),
    ]


def agent(binaries, folder, quick):
    folder = folder / "agent"
    folder.mkdir()
    bench_scans = Scans(binaries, folder, 5_000 if quick else 20_000)
    try:
        figures = scans(bench_scans, 3 if quick else 7)
        figures += rest(binaries, folder, bench_scans, 60 if quick else 120)
    finally:
        bench_scans.clamd.stop()
    return figures, {}
