"""What the tests of the started machine share: the machine, and what they ask it."""
import json
import time
import unittest

# In pieces, or every scanner would find it here.
EICAR = r"X5O!P%@AP[4\PZX54(P^)7CC)7}$EICAR-STANDARD-" + "ANTIVIRUS-TEST-FILE!$H+H*"
# What the signatures made for these tests know besides.
BAD = "a bad text of korvale's " + "tests"
PATIENCE = 60  # seconds that nothing takes, however busy this machine is
AGENT = "korvale-agent"


class MachineCase(unittest.TestCase):
    """Each of these needs what those before it did: the packages' life on one machine."""

    machine = None  # whoever runs them sets these
    packages = ()
    ada = None

    def eventually(self, what, probe, patience=PATIENCE):
        """Waits until probe() is something, and returns that."""
        limit = time.monotonic() + patience
        while not (value := probe()):
            if time.monotonic() > limit:
                self.fail(f"waited too long for {what}\n{self.journal()[-3000:]}")
            time.sleep(0.05)
        return value

    def journal(self, unit=AGENT):
        return self.machine.says("journalctl", "--no-pager", "--quiet", f"--unit={unit}")

    def entries(self, *further):
        """The agent's own lines in the journal, with their fields."""
        said = self.machine.says("journalctl", "--output=json", "--quiet", "_SYSTEMD_UNIT=korvale-agent.service",
                                 *further)
        return [json.loads(line) for line in said.splitlines()]

    def shown(self, name, unit=AGENT):
        return self.machine.says("systemctl", "show", "--property", name, "--value", unit)

    def main_process(self, unit=AGENT):
        return int(self.shown("MainPID", unit))

    def guard(self):
        """The agent's child; 0: none."""
        agent = self.main_process()
        children = self.machine.path(f"/proc/{agent}/task/{agent}/children")
        return int((children.read_text("ascii").split() or ["0"])[0]) if agent and children.exists() else 0

    def control(self, *command):
        done = self.machine.inside("korvale-agentctl", *command, "--json", check=False)
        return json.loads(done.stdout) if done.stdout.startswith("{") else {}

    def threats(self):
        return self.control("threats").get("threats", [])

    def threat_at(self, path):
        return next((threat for threat in self.threats() if threat["path"] == path), None)

    def modes(self):
        return {system["path"]: system["mode"] for system in self.control("status").get("watch", [])}

    def is_protected(self, mode="notify"):
        """The engine answers, everything is watched, and nothing is wrong."""
        status = self.control("status")
        modes = [system["mode"] for system in status.get("watch", [])]
        return (status.get("engine", {}).get("reachable") and modes and set(modes) == {mode} and
                not status["problems"])
