"""Signatures for Debian's clamd, made on the spot: it is up in a moment, and needs little memory."""
from booted.machine_case import BAD, EICAR

FOLDER = "/var/lib/clamav"


def line(name, content):
    return f"{name}:0:*:{content.encode('ascii').hex()}\n"


def install_signatures(machine):
    """The official ones are large and cannot be made. What stands in for them are the folders of that name that
    the units' conditions know from earlier days."""
    for name in ("main.inc", "daily.inc"):
        machine.path(f"{FOLDER}/{name}").mkdir()
    machine.path(f"{FOLDER}/tests.ndb").write_text(line("Korvale.Test.Eicar", EICAR) + line("Korvale.Test.Bad", BAD),
                                                     encoding="ascii")
