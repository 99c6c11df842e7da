#!/usr/bin/python3
"""Fails when a document names a test that is not there. Arguments: the project, its documents."""
import pathlib
import re
import sys

CPP_TEST = re.compile(r"^TEST(?:_F|_P)?\(\s*(\w+),\s*(\w+)\)", re.MULTILINE)
PYTHON_TEST = re.compile(r"^    def (test_\w+)\(", re.MULTILINE)
# A test, a fuzz target, a function of a file in Python; or a whole suite or desktop file.
NAMED = re.compile(r"`(?:\w+\.[A-Z]\w+|Fuzz\.\w+|test_\w+\.py:test_\w+|\w+Test|desktop\.\w+)`")


def existing(tests):
    for path in tests.rglob("*.cpp"):
        for suite, name in CPP_TEST.findall(path.read_text(encoding="utf-8")):
            yield f"{suite}.{name}"
            yield suite
    for path in tests.rglob("test_*.py"):
        yield path.stem.replace("test_", "desktop.", 1)
        for name in PYTHON_TEST.findall(path.read_text(encoding="utf-8")):
            yield f"{path.name}:{name}"
    for target in (tests.parent / "fuzz" / "corpus").iterdir():
        yield f"Fuzz.{target.name}"


def main():
    project = pathlib.Path(sys.argv[1])
    known = set(existing(project / "tests"))
    missing, count = [], 0
    for document in sys.argv[2:]:
        for named in NAMED.findall((project / document).read_text("utf-8")):
            count += 1
            test = named.strip("`")
            if test not in known:
                missing.append(f"{document} promises by {test}, which is not there")
    if count == 0:
        sys.exit("no document names a test")
    print("\n".join(missing) if missing else f"{count} tests are named and there")
    sys.exit(1 if missing else 0)


main()
