"""The two packages on a Debian 12 that is really started, with its own systemd, bus, login service, polkit and clamd.

Arguments: the two packages and a folder to keep the made root in. Needs root, systemd-nspawn and the network."""
import pathlib
import sys
import unittest

from booted.machine import Machine, why_not
from booted.machine_case import MachineCase
from booted.person import Person
from booted.test_end import AtTheEnd
from booted.test_neighbours import AmongNeighbours
from booted.test_person import AskedForConsent, SeenByAPerson
from booted.test_service import Service

PACKAGES, CACHE = [pathlib.Path(sys.argv.pop(1)).resolve() for _ in range(2)], sys.argv.pop(1)
LIFE = (Service, SeenByAPerson, AskedForConsent, AmongNeighbours, AtTheEnd)


def main():
    reason = why_not()
    if reason:
        print(f"not tried on a started machine: {reason}", file=sys.stderr)
        return
    with Machine(CACHE) as machine:
        MachineCase.machine = machine
        MachineCase.ada = Person(machine, "ada")
        MachineCase.packages = machine.put(*PACKAGES, folder="opt")
        machine.fetch(*MachineCase.packages)
        # In the order in which they are written: it is one life, and each step needs the one before.
        life = unittest.TestSuite(case(name) for case in LIFE for name in vars(case) if name.startswith("test_"))
        result = unittest.TextTestRunner(verbosity=2, failfast=True).run(life)
    sys.exit(not result.wasSuccessful())


if __name__ == "__main__":
    main()
