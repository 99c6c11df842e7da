"""A fresh Debian 12 in a folder of its own, to install packages in. Needs root, mmdebstrap and the network."""
import os
import pathlib
import shutil
import subprocess
import tempfile

SUITE = "bookworm"
# In a mount and a process namespace of its own, so that nothing that was started outlives a command.
ENTER = """mount -t proc proc "$0/proc" && mount --rbind /dev "$0/dev" && exec chroot "$0" "$@" """


def checked(done, command):
    """The same, if it ended well."""
    if done.returncode != 0:
        raise AssertionError(f"{' '.join(map(str, command))} failed ({done.returncode}):\n{done.stdout[-4000:]}")
    return done


class CleanRoot:
    """Context manager. The root is made once and kept packed in `cache`, a folder; each use unpacks it anew."""

    def __init__(self, cache, packages=()):
        self.packed = pathlib.Path(cache) / f"root-{SUITE}{''.join('-' + name for name in sorted(packages))}.tar"
        self.packages = packages
        self.folder = None

    def __enter__(self):
        if not self.packed.exists():
            self._make()
        self.folder = self.place()
        self.folder.chmod(0o755)
        subprocess.run(["tar", "--numeric-owner", "-xpf", self.packed, "-C", self.folder], check=True)
        # What has no network of its own asks as this machine does.
        shutil.copy("/etc/resolv.conf", self.folder / "etc" / "resolv.conf")
        self.prepare()
        return self

    def __exit__(self, *unused):
        shutil.rmtree(self.folder, ignore_errors=True)

    def place(self):
        """A new folder for the root."""
        return pathlib.Path(tempfile.mkdtemp(prefix="korvale-root-"))

    def prepare(self):
        """What a root that is only entered, and not started, needs."""
        policy = self.folder / "usr" / "sbin" / "policy-rc.d"
        policy.write_text("#!/bin/sh\nexit 101\n")  # no service starts by being installed
        policy.chmod(0o755)

    def _make(self):
        self.packed.parent.mkdir(parents=True, exist_ok=True)
        half = self.packed.with_suffix(".half")
        include = [f"--include={','.join(self.packages)}"] if self.packages else []
        subprocess.run(["mmdebstrap", "--mode=root", "--variant=apt", "--format=tar", *include,
                        "--aptopt=APT::Install-Recommends \"false\"", SUITE, str(half)], check=True)
        half.rename(self.packed)

    def run(self, *command, check=True, user=None, environment=None, timeout=600):
        """A command inside; returns what became of it, with all it said as text."""
        env = {"PATH": "/usr/sbin:/usr/bin:/sbin:/bin", "LANG": "C.UTF-8", "HOME": "/root",
               "DEBIAN_FRONTEND": "noninteractive", **(environment or {})}
        as_user = ["setpriv", f"--reuid={user}", f"--regid={user}", "--init-groups"] if user else []
        done = subprocess.run(["unshare", "--mount", "--pid", "--fork", "--kill-child", "sh", "-c", ENTER,
                               str(self.folder), *as_user, *map(str, command)], env=env, text=True, timeout=timeout,
                              stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
        return checked(done, command) if check else done

    def put(self, *files, folder="tmp"):
        """Copies files of this machine into a folder of the root; returns their paths there."""
        for file in files:
            shutil.copy(file, self.folder / folder)
        return [f"/{folder}/{pathlib.Path(file).name}" for file in files]

    def apt(self, *arguments):
        return self.run("apt-get", "-y", "-q", *arguments, timeout=1800)

    def holding(self, word):
        """Every path whose name has `word` in it, in any spelling, but those of /proc, /dev and /tmp."""
        found = set()
        for folder, names, files in os.walk(self.folder):
            inside = pathlib.Path(folder).relative_to(self.folder)
            if inside == pathlib.Path("."):
                names[:] = [name for name in names if name not in ("proc", "dev", "sys", "tmp")]
            found |= {str(inside / name) for name in [*names, *files] if word in name.lower()}
        return found
