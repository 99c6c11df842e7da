"""What the demonstration of the agent watches: a file system of its own, and devices that do not exist.

The file system is a tmpfs in a mount namespace of the demonstration's own, so that nothing of this
machine is watched and no program of it ever waits."""
import os
import pathlib
import subprocess
import sys

from desktop_session import SessionError

OWN_MOUNTS = "KORVALE_DEMO_OWN_MOUNTS"
DEVICES = pathlib.Path(__file__).resolve().parent / "devices.py"
PRELOAD = {"LD_PRELOAD": "libumockdev-preload.so.0"}
# Killed by the kernel for a system call that its own filter forbids (x86-64 and others: getppid).
KILLED = """
import ctypes, struct, sys
libc = ctypes.CDLL(None, use_errno=True)
number = int(sys.argv[1])
steps = ((0x20, 0, 0, 0), (0x15, 0, 1, number), (0x06, 0, 0, 0x80000000), (0x06, 0, 0, 0x7fff0000))
code = ctypes.create_string_buffer(b"".join(struct.pack("HBBI", *step) for step in steps))
program = ctypes.create_string_buffer(struct.pack("HxxxxxxP", len(steps), ctypes.addressof(code)))
libc.prctl(38, 1, 0, 0, 0)
libc.prctl(22, 2, program, 0, 0)
libc.syscall(number)
"""
GETPPID = {"x86_64": 110, "aarch64": 173, "riscv64": 173}


def in_own_mounts():
    """Starts this program again where mounts are seen by nobody else. Returns why it cannot."""
    if os.environ.get(OWN_MOUNTS):
        return None
    command = ["unshare", "--mount", "--propagation", "private"]
    tried = subprocess.run([*command, "true"], capture_output=True, text=True, check=False)
    if tried.returncode != 0:
        return f"demo: no mount namespace of its own: {tried.stderr.strip()}"
    sys.stdout.flush()
    os.execvpe(command[0], [*command, sys.executable, *sys.argv], {**os.environ, OWN_MOUNTS: "1"})


class Watched:
    """The file system and the devices."""

    def __init__(self, session):
        self.place = session.folder / "watched"
        self.place.mkdir()
        session.run(["mount", "-t", "tmpfs", "-o", "size=16m,mode=755", "korvale-demo",
                     str(self.place)])
        self.folder = self.place / "Downloads"
        self.folder.mkdir()
        self.aside = self.place / "aside"
        self.aside.mkdir()
        self.devices = session.start_part(
            "devices", ["/usr/bin/python3", str(DEVICES)], stdin=subprocess.PIPE,
            stdout=subprocess.PIPE, text=True, env={**session.env, **PRELOAD})
        self.device_folder = self.devices.stdout.readline().strip()
        if not self.device_folder:
            raise SessionError("no devices can be made: is gir1.2-umockdev-1.0 installed?")

    def close(self):
        subprocess.run(["umount", "--lazy", str(self.place)], check=False)

    def environment(self, env):
        """Of the agent, which shall see these devices instead of the machine's."""
        return {**env, **PRELOAD, "UMOCKDEV_DIR": self.device_folder}

    def start(self, name, content):
        """Starts a program that came into the folder unseen: by a further name for a file beside it.
        Returns why it was not run; None: it was."""
        (self.aside / name).write_bytes(b"#!/bin/true\n# " + content + b"\n")
        (self.aside / name).chmod(0o755)
        os.link(self.aside / name, self.folder / name)
        try:
            subprocess.run([str(self.folder / name)], check=False)
        except PermissionError as error:
            return error
        return None

    def plug(self):
        self.devices.stdin.write("\n")
        self.devices.stdin.flush()

    @staticmethod
    def break_rule():
        """A process that the kernel kills; its program."""
        number = GETPPID.get(os.uname().machine)
        if number is None:
            raise SessionError(f"no system call number is known for {os.uname().machine}")
        subprocess.run([sys.executable, "-c", KILLED, str(number)], check=False)
        return pathlib.Path(sys.executable).resolve()
