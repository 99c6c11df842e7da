#!/usr/bin/python3
"""Runs a command as the service manager would run it by a unit, on machines where it is not running.

Usage: unit_sandbox.py UNIT COMMAND...    (root)

What the unit says of capabilities, privileges, system calls, address families, namespaces, memory, limits,
devices and the kernel's folders is done with the kernel's own means. It is not the service manager itself: left
out are IPAddressDeny (the socket families that remain have no addresses), the device list of the control group,
inaccessible kernel modules, watchdog, restart and notification."""
import contextlib
import ctypes
import functools
import os
import pathlib
import re
import resource
import subprocess
import sys
import tempfile

LIBC = ctypes.CDLL(None, use_errno=True)
CLONE_NEWNS, CLONE_NEWUTS = 0x00020000, 0x04000000
NEW_NAMESPACES = 0x7E020080  # all CLONE_NEW* flags that clone(2) takes
MS_RDONLY, MS_REMOUNT, MS_BIND, MS_MOVE, MS_REC, MS_SLAVE = 1, 32, 4096, 8192, 16384, 1 << 19
DEVICES = ("null", "zero", "full", "random", "urandom", "tty")
FAMILIES = {"AF_UNIX": 1, "AF_NETLINK": 16}
PROT_WRITE, PROT_EXEC = 2, 4


def settings(unit):
    """The [Service] section; a key that comes again is a further line of its value."""
    found = {}
    for line in pathlib.Path(unit).read_text(encoding="utf-8").splitlines():
        key, assign, value = line.partition("=")
        if assign and not line.startswith("#"):
            found.setdefault(key, []).append(value)
    return found


def is_on(service, key):
    return service.get(key, ["no"])[-1] == "yes"


def must(result):
    if result != 0:
        error = ctypes.get_errno()
        raise OSError(error, os.strerror(error))


def mount(source, target, kind, flags, data=""):
    must(LIBC.mount(source.encode(), target.encode(), kind.encode(), flags, data.encode()))


def private_devices():
    place = tempfile.mkdtemp()
    mount("tmpfs", place, "tmpfs", 0, "mode=755,size=1m")
    for name in DEVICES:
        pathlib.Path(place, name).touch()
        mount(f"/dev/{name}", f"{place}/{name}", "none", MS_BIND)
    for name in ("shm", "pts"):
        os.mkdir(f"{place}/{name}")
        if os.path.isdir(f"/dev/{name}"):
            mount(f"/dev/{name}", f"{place}/{name}", "none", MS_BIND)
    mount(place, "/dev", "none", MS_MOVE)
    os.rmdir(place)


def read_only(place):
    if os.path.exists(place):
        mount(place, place, "none", MS_BIND | MS_REC)
        mount("none", place, "none", MS_BIND | MS_REMOUNT | MS_RDONLY)


def enter_namespaces(service):
    must(LIBC.unshare(CLONE_NEWNS | (CLONE_NEWUTS if is_on(service, "ProtectHostname") else 0)))
    mount("none", "/", "none", MS_REC | MS_SLAVE)
    if is_on(service, "PrivateDevices"):
        private_devices()
    if service.get("ProtectProc") == ["invisible"]:
        mount("proc", "/proc", "proc", 0, "hidepid=invisible")
    if is_on(service, "ProtectKernelTunables"):
        for place in ("/proc/sys", "/proc/irq", "/proc/bus", "/sys"):
            read_only(place)
    if is_on(service, "ProtectControlGroups"):
        read_only("/sys/fs/cgroup")


def set_limits(service):
    for key, which in (("LimitNOFILE", resource.RLIMIT_NOFILE),
                       ("LimitMEMLOCK", resource.RLIMIT_MEMLOCK)):
        if key in service:
            number = re.fullmatch(r"(\d+)(M?)", service[key][-1])
            value = int(number[1]) << (20 if number[2] else 0)
            hard = resource.getrlimit(which)[1]  # may not be raised where root has few rights
            value = value if hard == resource.RLIM_INFINITY else min(value, hard)
            resource.setrlimit(which, (value, value))
    os.nice(int(service.get("Nice", ["0"])[-1]))
    os.umask(int(service.get("UMask", ["0022"])[-1], 8))
    with contextlib.suppress(PermissionError):  # where root has few rights, it may only be raised
        pathlib.Path("/proc/self/oom_score_adj").write_text(
            service.get("OOMScoreAdjust", ["0"])[-1])


@functools.lru_cache(None)
def calls_of(group):
    """The system calls of one of systemd's groups."""
    said = subprocess.run(["systemd-analyze", "syscall-filter", "--no-pager", group], check=True,
                          capture_output=True, text=True).stdout
    calls = set()
    for word in re.findall(r"^ +([@a-z0-9_-]+)$", said, re.MULTILINE):
        calls |= calls_of(word) if word.startswith("@") else {word}
    return frozenset(calls)


def allowed_calls(service):
    calls = set(calls_of("@default"))
    for line in service["SystemCallFilter"]:
        named = set()
        for word in line.removeprefix("~").split():
            named |= calls_of(word) if word.startswith("@") else {word}
        calls = calls - named if line.startswith("~") else calls | named
    return calls


def rules(service):
    """For system calls that are allowed with some arguments only: lists of conditions."""
    from seccomp import EQ, MASKED_EQ, Arg
    found = {}
    if "RestrictAddressFamilies" in service:
        found["socket"] = [[Arg(0, EQ, FAMILIES[name])]
                           for name in service["RestrictAddressFamilies"][-1].split()]
    if is_on(service, "RestrictNamespaces"):
        found |= {"clone": [[Arg(0, MASKED_EQ, NEW_NAMESPACES, 0)]], "unshare": [], "setns": []}
    if is_on(service, "MemoryDenyWriteExecute"):
        both = PROT_WRITE | PROT_EXEC
        found["mmap"] = [[Arg(2, MASKED_EQ, both, bits)] for bits in (0, PROT_WRITE, PROT_EXEC)]
        for name in ("mprotect", "pkey_mprotect"):
            found[name] = [[Arg(2, MASKED_EQ, PROT_EXEC, 0)]]
    if is_on(service, "RestrictRealtime"):
        found["sched_setscheduler"] = [[Arg(1, EQ, policy)] for policy in (0, 3, 5)]
    if is_on(service, "LockPersonality"):
        found["personality"] = [[Arg(0, EQ, 0xFFFFFFFF)], [Arg(0, EQ, 0)]]
    return found


def filter_calls(service):
    import errno

    from seccomp import ALLOW, ERRNO, SyscallFilter
    table = SyscallFilter(defaction=ERRNO(errno.EPERM))
    special = rules(service)
    for name in sorted(allowed_calls(service)):
        if name == "clone3" and is_on(service, "RestrictNamespaces"):
            table.add_rule(ERRNO(errno.ENOSYS), name)  # its flags cannot be seen: others use clone
            continue
        try:
            for conditions in special.get(name, [[]]):
                table.add_rule(ALLOW, name, *conditions)
        except (ValueError, RuntimeError):
            continue  # not of this architecture, or newer than the library
    table.load()


def main():
    if sys.argv[1] == "--filter":
        filter_calls(settings(sys.argv[2]))
        os.execvp(sys.argv[3], sys.argv[3:])
    service = settings(sys.argv[1])
    allowed_calls(service)  # systemd-analyze may need what is taken away
    enter_namespaces(service)
    set_limits(service)
    kept = ",".join("+" + name.removeprefix("CAP_").lower()
                    for name in service["CapabilityBoundingSet"][-1].split())
    privileges = ["--no-new-privs"] if is_on(service, "NoNewPrivileges") else []
    os.execvp("setpriv", ["setpriv", f"--bounding-set=-all,{kept}", "--inh-caps=-all", *privileges,
                          sys.executable, __file__, "--filter", *sys.argv[1:]])


main()
