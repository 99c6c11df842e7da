"""The agent's service as systemd has it once the packages are installed."""
import re

from booted.machine_case import AGENT, MachineCase
from booted.signatures import install_signatures

POWER_OFF = 45  # seconds


class Service(MachineCase):
    def test_installing_the_packages_is_all_that_it_takes(self):
        self.machine.boot()
        said = self.machine.says("apt-get", "-y", "-q", "-o", "APT::Install-Recommends=true", "install",
                                 *self.packages, timeout=900)
        self.assertNotIn("Warning: unit", said)
        self.assertEqual(self.shown("ActiveState"), "active")
        self.assertEqual(self.shown("UnitFileState"), "enabled")
        self.assertEqual(self.machine.says("dpkg", "--verify", AGENT, "korvale-ui"), "")
        self.assertEqual(self.machine.says("dpkg-query", "--show", "--showformat=${db:Status-Status}", "clamav-daemon"),
                         "installed", "apt takes the engine along")

    def test_without_signatures_it_protects_and_says_what_is_missing(self):
        """As on a fresh desktop: clamd's units do not start before the first signatures are there."""
        status = self.eventually("the watch", lambda: self.modes() and self.control("status"))
        self.assertFalse(status["engine"]["reachable"])
        self.assertIn("engine", " ".join(status["problems"]))
        self.assertEqual(set(self.modes().values()), {"notify"})
        self.assertIn("engine", self.shown("StatusText"))

    def test_the_machine_is_turned_off_in_time(self):
        self.machine.power_off(POWER_OFF)

    def test_after_a_start_it_protects_though_nobody_did_anything(self):
        install_signatures(self.machine)
        self.machine.boot()
        self.assertEqual(self.shown("ActiveState"), "active")
        self.eventually("the protection", self.is_protected)
        self.assertEqual(self.shown("StatusText"), "Protecting.")
        self.assertEqual(self.shown("NRestarts"), "0")
        self.assertEqual(self.shown("ActiveState", "clamav-daemon.service"), "active")

    def test_the_engines_own_files_are_no_threats(self):
        """At each start the agent gives clamd a known bad file, which clamd unpacks in a watched folder."""
        for _ in range(5):
            self.machine.inside("systemctl", "restart", AGENT)
            self.eventually("the protection", self.is_protected)
        self.assertEqual(self.control("threats", "--all").get("threats"), [])

    def test_only_this_machines_own_file_systems_are_watched(self):
        own = {line.split()[0]: line.split()[1]
               for line in self.machine.says("findmnt", "--noheadings", "--list", "--output=TARGET,FSTYPE").splitlines()}
        self.assertIn("/", self.modes())
        for path in self.modes():
            self.assertIn(own[path], ("ext4", "tmpfs"), path)
        self.assertEqual(own["/"], "ext4")

    def test_it_told_that_it_is_ready_and_is_watched_over(self):
        for name, value in {"Type": "notify", "NotifyAccess": "main", "WatchdogUSec": "10s", "WatchdogSignal": "9",
                            "Restart": "always", "TimeoutStopUSec": "15s", "Result": "success"}.items():
            self.assertEqual(self.shown(name), value, name)
        self.assertNotEqual(self.shown("WatchdogTimestampMonotonic"), "0")

    def test_its_hardening_is_in_force(self):
        said = self.machine.says("systemd-analyze", "security", "--no-pager", f"{AGENT}.service", check=False)
        exposure = float(re.search(r"Overall exposure level for \S+: ([0-9.]+)", said)[1])
        self.assertLessEqual(exposure, 4.0, said)
        wanted = self.shown("CapabilityBoundingSet").upper().split()
        for process in (self.main_process(), self.guard()):
            self.assertGreater(process, 0)
            status = dict(line.split(":\t", 1) for line in
                          self.machine.says("cat", f"/proc/{process}/status").splitlines() if ":\t" in line)
            self.assertEqual(status["Seccomp"].strip(), "2")
            self.assertEqual(status["NoNewPrivs"].strip(), "1")
            self.assertEqual(status["CapEff"], status["CapBnd"])
            self.assertEqual(int(status["CapBnd"], 16).bit_count(), len(wanted))

    def test_its_lines_in_the_journal_have_their_fields(self):
        entries = self.entries()
        self.assertTrue(entries)
        for entry in entries:
            self.assertEqual(entry["SYSLOG_IDENTIFIER"], AGENT)
            self.assertIn(entry["PRIORITY"], "3467")
            self.assertNotRegex(entry["MESSAGE"], r"^<\d>")
        self.assertIn("On the bus.", [entry["MESSAGE"] for entry in entries])

    def test_before_the_machine_sleeps_it_is_waited_for(self):
        """That the machine sleeps cannot be seen: a container cannot, and nobody else may say that it does."""
        said = self.machine.says("systemd-inhibit", "--list", "--no-pager", "--no-legend")
        self.assertRegex(said, rf"(?m)^{AGENT} +0 +root .* sleep .* delay *$")
