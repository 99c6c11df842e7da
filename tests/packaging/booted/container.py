"""A folder's system, started as a machine of its own by systemd-nspawn: with its own service manager, without network,
and no longer than the process that started it."""
import contextlib
import ctypes
import os
import pathlib
import signal
import socket
import subprocess

# What the agent needs and containers are refused otherwise.
CALLS = "fanotify_init fanotify_mark name_to_handle_at open_by_handle_at"
OPTIONS = ("--quiet", "--boot", "--register=no", "--private-network", "--link-journal=no", "--resolv-conf=off",
           "--timezone=off", "--capability=all", f"--system-call-filter={CALLS}", "--notify-ready=yes",
           "--console=read-only", "--hostname=korvale-test")
PR_SET_PDEATHSIG = 1
GROUPS = pathlib.Path("/sys/fs/cgroup")
HAS_SYSTEMD = pathlib.Path("/run/systemd/system").is_dir()
ENVIRONMENT = ("PATH=/usr/sbin:/usr/bin:/sbin:/bin", "LANG=C.UTF-8", "HOME=/root", "DEBIAN_FRONTEND=noninteractive")


class Container:
    def __init__(self, root, work):
        self.root = root
        self.work = work
        self.process = None
        self.leader = 0  # its first process, as this machine counts; 0: it does not run

    def start(self, patience):
        """Returns when everything that is started with the machine is."""
        ready = socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM)
        address = self.work / "ready"
        address.unlink(missing_ok=True)
        ready.bind(str(address))
        ready.settimeout(patience)
        command = ["systemd-nspawn", "--directory", self.root, *OPTIONS, *([] if HAS_SYSTEMD else ["--keep-unit"])]
        with open(self.work / "console", "ab") as console:
            self.process = subprocess.Popen(  # pylint: disable=consider-using-with
                command, stdin=subprocess.DEVNULL, stdout=console, stderr=subprocess.STDOUT, preexec_fn=self._begin,
                env={**os.environ, "NOTIFY_SOCKET": str(address), "SYSTEMD_NSPAWN_UNIFIED_HIERARCHY": "1"})
        try:
            while b"READY=1" not in ready.recv(4096).split(b"\n"):
                pass
        except TimeoutError:
            raise AssertionError(f"the machine does not start:\n{self.console()}") from None
        finally:
            ready.close()
        self.leader = self._children()[0]

    def _children(self):
        children = pathlib.Path(f"/proc/{self.process.pid}/task/{self.process.pid}/children")
        return [int(number) for number in children.read_text("ascii").split()]

    def enter(self, *command, **options):
        """A command of root's inside; returns what became of it, with all it said as text."""
        return subprocess.run(["nsenter", f"--target={self.leader}", "--mount", "--uts", "--ipc", "--net", "--pid",
                               "--cgroup", "--wdns=/", "env", "-i", *ENVIRONMENT, *map(str, command)], text=True,
                              stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False,
                              **options)

    def wait(self, patience):
        """Returns when it has ended by itself."""
        try:
            status = self.process.wait(patience)
        except subprocess.TimeoutExpired:
            raise AssertionError(f"the machine does not end:\n{self.console()}") from None
        self.process, self.leader = None, 0
        if status != 0:
            raise AssertionError(f"the machine ended with {status}:\n{self.console()}")

    def kill(self):
        if self.process is not None:
            for leader in self._children():  # which would outlive systemd-nspawn; with it go all of its machine
                os.kill(leader, signal.SIGKILL)
            with contextlib.suppress(subprocess.TimeoutExpired):
                self.process.wait(30)  # it ends when they all have
            self.process.kill()
            self.process.wait()
            self.process, self.leader = None, 0
        for group in self._groups():
            for folder, _, _ in os.walk(group, topdown=False):
                with contextlib.suppress(OSError):
                    os.rmdir(folder)

    def console(self):
        return (self.work / "console").read_text("utf-8", errors="replace")[-4000:]

    def _begin(self):
        """In the new process. The machine's first process shall not take the place of this machine's."""
        ctypes.CDLL(None).prctl(PR_SET_PDEATHSIG, signal.SIGKILL)
        for group in self._groups():
            group.mkdir(exist_ok=True)
            (group / "cgroup.procs").write_text(str(os.getpid()))

    def _groups(self):
        """Its control groups, where no service manager of this machine makes one."""
        trees = () if HAS_SYSTEMD else (GROUPS, GROUPS / "systemd", GROUPS / "unified")
        return [tree / self.work.name for tree in trees if (tree / "cgroup.procs").exists()]
