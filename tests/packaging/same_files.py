#!/usr/bin/python3
"""Compares a package with what `cmake --install` gives whoever builds from source: the same files, and with the same
rights. same_files.py BUILD PACKAGE.deb [COMPONENT]; status 1 when they differ."""
import os
import pathlib
import stat
import subprocess
import sys
import tarfile
import tempfile


def installed(build, component):
    """Path → whether it can be executed."""
    with tempfile.TemporaryDirectory(prefix="korvale-install-") as folder:
        command = ["cmake", "--install", build, "--prefix", "/usr", *(["--component", component] if component else [])]
        subprocess.run(command, check=True, env={**os.environ, "DESTDIR": folder}, stdout=subprocess.DEVNULL)
        root = pathlib.Path(folder)
        return {str(path.relative_to(root)): bool(path.stat().st_mode & stat.S_IXUSR)
                for path in root.rglob("*") if path.is_file()}


def packaged(package, sources):
    """The same of the package, without what only packages have; those compressed by Debian's rules as they were."""
    name = pathlib.Path(package).name.split("_")[0]
    own = {f"usr/share/doc/{name}/copyright", f"usr/share/doc/{name}/changelog.gz"}
    with subprocess.Popen(["dpkg-deb", "--fsys-tarfile", package], stdout=subprocess.PIPE) as unpacked, \
            tarfile.open(fileobj=unpacked.stdout, mode="r|") as files:
        found = {entry.name.removeprefix("./"): bool(entry.mode & stat.S_IXUSR) for entry in files
                 if not entry.isdir()}
    return {path.removesuffix(".gz") if path.removesuffix(".gz") in sources else path: runs
            for path, runs in found.items() if path not in own}


def main():
    build, package, *component = sys.argv[1:]
    from_source = installed(build, component[0] if component else "")
    from_package = packaged(package, from_source)
    differing = set(from_source.items()) ^ set(from_package.items())
    for path, _ in sorted(differing):
        print(f"{path}: {'from source' if path in from_source else ''} {'in the package' if path in from_package else ''}")
    if not from_source or differing:
        sys.exit(f"{package} is not what cmake --install gives")


main()
