"""Whoever the agent talks to is stopped, and the agent itself: programs go on starting."""
from booted.canary import Canary
from booted.machine_case import AGENT, BAD, MachineCase

LIMIT = 8.0  # seconds: the agent's two, on a machine that has other things to do
WATCHDOG_LIMIT = 25.0  # the watchdog's ten, and as many for that machine
CONFIGURATION = "/etc/korvale-agent/agent.toml"


class AmongNeighbours(MachineCase):
    count = 0  # of bad contents

    def stop(self, *processes):
        self.signal("STOP", *processes)

    def signal(self, name, *processes):
        self.machine.inside("kill", f"-{name}", *processes)

    def fresh(self):
        """A bad content that nobody has waived."""
        AmongNeighbours.count += 1
        return f"{BAD}, number {self.count}"

    def is_refused(self):
        """A bad program that came to its place unseen, by a further name, is not run."""
        text, name = self.fresh(), f"program-{self.count}"
        self.machine.inside("/bin/sh", "-c", 'printf "#!/bin/true\\n# %s\\n" "$1" >"/opt/$2" && chmod 755 "/opt/$2" &&'
                            'ln "/opt/$2" "/home/$2"', "sh", text, name)
        return "not permitted" in self.machine.inside(f"/home/{name}", check=False).stdout

    def protects(self):
        """All that it did before, and another file is found."""
        self.eventually("the protection", lambda: self.is_protected("execute"))
        file = self.machine.path("/home/ada/again.txt")
        file.write_text(self.fresh(), encoding="ascii")
        self.eventually("the finding", lambda: not file.exists())
        self.assertTrue(self.is_refused())

    def test_programs_are_checked_once_the_configuration_says_so(self):
        file = self.machine.path(CONFIGURATION)
        file.write_text(file.read_text("utf-8").replace('#block = "nothing"', 'block = "execute"'), encoding="utf-8")
        self.machine.inside("systemctl", "reload", AGENT)
        self.protects()
        with Canary(self) as canary:
            canary.sings()
            canary.is_well(LIMIT)

    def test_a_stopped_agent_is_ended_by_the_watchdog_and_started_again(self):
        before = self.main_process()
        with Canary(self) as canary:
            self.stop(before)
            canary.sings()
            self.eventually("another agent", lambda: self.main_process() not in (0, before))
            canary.sings()
            canary.is_well(LIMIT)
        self.assertIn("Watchdog timeout", self.journal())
        self.assertIn("status=9/KILL", self.journal())
        self.assertGreaterEqual(int(self.shown("NRestarts")), 1)
        self.protects()

    def test_a_stopped_guard_is_ended_and_another_one_started(self):
        before = self.guard()
        agent = self.main_process()
        with Canary(self) as canary:
            self.stop(before)
            canary.sings()
            self.eventually("another guard", lambda: self.guard() not in (0, before))
            canary.is_well(LIMIT)
        self.assertEqual(self.main_process(), agent)
        self.protects()

    def test_of_agent_and_guard_stopped_at_once_the_watchdog_frees_the_machine(self):
        before = self.main_process()
        with Canary(self) as canary:
            self.stop(before, self.guard())
            self.eventually("another agent", lambda: self.main_process() not in (0, before))
            canary.sings()
            canary.is_well(WATCHDOG_LIMIT)
        self.protects()

    def test_a_stopped_engine_holds_up_nobody_and_is_missed(self):
        engine = self.main_process("clamav-daemon.service")
        with Canary(self) as canary:
            self.stop(engine)
            canary.sings()
            self.eventually("the agent to miss it", lambda: not self.is_protected("execute"))
            self.signal("CONT", engine)
            canary.sings()
            canary.is_well(LIMIT)
        self.protects()

    def test_an_engine_that_somebody_ended_is_started_again(self):
        before = self.main_process("clamav-daemon.service")
        self.ada.does("python3", "-c", "import socket; s = socket.socket(socket.AF_UNIX);"
                      "s.connect('/run/clamav/clamd.ctl'); s.send(b'zSHUTDOWN\\0'); s.recv(1)", check=True)
        self.eventually("another engine", lambda: self.main_process("clamav-daemon.service") not in (0, before))
        self.protects()

    def test_a_stopped_journal_holds_up_nobody(self):
        journal = self.main_process("systemd-journald.service")
        with Canary(self) as canary:
            self.stop(journal)
            for _ in range(50):
                self.assertTrue(self.is_refused())  # a line for the journal each time
            canary.sings()
            self.signal("CONT", journal)
            canary.is_well(LIMIT)
        self.protects()

    def test_a_stopped_bus_holds_up_nobody(self):
        bus = self.main_process("dbus.service")
        with Canary(self) as canary:
            self.stop(bus)
            canary.sings()
            self.signal("CONT", bus)
            canary.is_well(LIMIT)
        self.protects()

    def test_stopping_and_starting_the_service_holds_up_nobody(self):
        with Canary(self) as canary:
            self.machine.inside("systemctl", "restart", AGENT)
            canary.sings()
            self.machine.inside("systemctl", "stop", AGENT)
            self.assertEqual(self.shown("Result"), "success")
            self.assertEqual(self.main_process(), 0)
            canary.sings()
            self.machine.inside("systemctl", "start", AGENT)
            canary.sings()
            canary.is_well(LIMIT)
        self.protects()
