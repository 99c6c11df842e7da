"""How a machine with the packages ends, and how they are removed from it."""
from booted.canary import Canary
from booted.machine_case import AGENT, MachineCase

POWER_OFF = 60  # seconds
OWN_SETTINGS = "home/ada/"


class AtTheEnd(MachineCase):
    def test_turning_off_ends_in_time_while_programs_start(self):
        with Canary(self) as canary:
            canary.sings()
            self.machine.power_off(POWER_OFF)
        self.machine.boot()
        before = self.machine.says("journalctl", "--no-pager", "--boot=-1", f"--unit={AGENT}")
        self.assertRegex(before.splitlines()[-2:][0], "Deactivated successfully|Stopped")
        self.assertNotIn("State 'stop-sigterm' timed out", before)

    def test_purging_the_packages_leaves_only_what_is_the_persons(self):
        self.machine.inside("apt-get", "-y", "-q", "purge", "korvale-ui", "korvale-agent", timeout=300)
        self.assertEqual(self.machine.says("systemctl", "list-units", "--all", "--no-legend", "*korvale*"), "")
        self.assertEqual(self.machine.says("pgrep", "--list-full", "korvale", check=False), "")
        self.machine.power_off(POWER_OFF)
        left = {path for path in self.machine.holding("korvale") if not path.startswith("opt/")}
        self.assertEqual({path for path in left if not path.startswith(OWN_SETTINGS)}, set())
        self.assertTrue(left, "the person's own settings stay")
