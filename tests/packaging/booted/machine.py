"""A fresh Debian 12 that is started: systemd, the bus and the login service are the real ones.

It lies on a file system of its own, in a file, so that an agent that watches it watches nothing else."""
import os
import pathlib
import shutil
import subprocess
import tempfile

from booted.container import Container
from fresh_debian import CleanRoot, checked

PACKAGES = ("dbus", "dbus-user-session", "libpam-systemd", "lxqt-notificationd", "lxqt-session", "openbox", "procps",
            "python3-minimal", "systemd", "systemd-sysv", "util-linux", "xvfb")
DISK = 6 << 30  # bytes; what is not written takes no room


def why_not():
    """Why no machine can be started here; None if one can."""
    if os.geteuid() != 0:
        return "starting a machine of its own needs root"
    for program in ("systemd-nspawn", "mmdebstrap", "mkfs.ext4"):
        if shutil.which(program) is None:
            return f"starting a machine of its own needs {program}"
    tried = subprocess.run(["unshare", "--mount", "--pid", "--fork", "true"], capture_output=True, text=True,
                           check=False)
    if tried.returncode != 0:
        return f"starting a machine of its own needs more rights than this root has: {tried.stderr.strip()}"
    return None


class Machine(CleanRoot):
    def __init__(self, cache):
        super().__init__(cache, PACKAGES)
        self.work = self.container = None

    def place(self):
        self.work = pathlib.Path(tempfile.mkdtemp(prefix="korvale-machine-"))
        root, disk = self.work / "root", self.work / "disk"
        root.mkdir()
        with open(disk, "wb") as file:
            file.truncate(DISK)
        subprocess.run(["mkfs.ext4", "-q", "-F", disk], check=True)
        subprocess.run(["mount", "-o", "loop", disk, root], check=True)
        self.container = Container(root, self.work)
        return root

    def prepare(self):
        (self.folder / "etc/hostname").write_text("korvale-test\n")

    def __exit__(self, *unused):
        if self.container is not None:
            self.container.kill()
            subprocess.run(["umount", "--lazy", self.container.root], check=False)
            shutil.rmtree(self.work, ignore_errors=True)

    def fetch(self, *packages):
        """What installing them takes; the started machine has no network."""
        self.apt("update")
        self.apt("--download-only", "-o", "APT::Install-Recommends=true", "install", *packages)

    def boot(self, patience=180):
        self.container.start(patience)

    def inside(self, *command, check=True, timeout=60):
        """A command of root's on the started machine; returns what became of it."""
        done = self.container.enter(*command, timeout=timeout)
        return checked(done, command) if check else done

    def says(self, *command, **options):
        return self.inside(*command, **options).stdout.strip()

    def path(self, path):
        """A file of the machine as this one sees it; while it runs, also of what it mounted."""
        leader = self.container.leader
        return pathlib.Path(f"/proc/{leader}/root" if leader else self.folder, path.lstrip("/"))

    def power_off(self, patience):
        """Returns when it has ended, of itself."""
        self.inside("systemctl", "--no-block", "poweroff")
        self.container.wait(patience)
