#!/usr/bin/python3
"""What the agent's package brings, held against the agent's code and Debian's own tools."""
import pathlib
import re
import subprocess
import unittest
import xml.etree.ElementTree

PROJECT = pathlib.Path(__file__).resolve().parent.parent.parent
PACKAGING = PROJECT / "packaging" / "agent"


class AgentFiles(unittest.TestCase):
    def actions(self):
        policy = xml.etree.ElementTree.parse(PACKAGING / "com.korvale.agent.policy")
        return {action.get("id"): {default.tag: default.text
                                   for default in action.find("defaults")}
                for action in policy.getroot().findall("action")}

    def test_every_action_that_is_asked_for_is_in_the_policy(self):
        code = (PROJECT / "agent" / "app" / "Gatekeeper.cpp").read_text()
        asked = set(re.findall(r'"(com\.korvale\.agent\.[a-z-]+)"', code))
        self.assertEqual(asked, set(self.actions()))

    def test_who_sits_at_the_machine_may_scan_and_nobody_else(self):
        self.assertEqual(self.actions()["com.korvale.agent.scan"],
                         {"allow_any": "no", "allow_inactive": "no", "allow_active": "yes"})

    def test_what_changes_others_things_needs_an_administrator(self):
        actions = self.actions()
        for name in ("stop-scans", "set-log-level", "manage-threats"):
            for kind, value in actions[f"com.korvale.agent.{name}"].items():
                self.assertIn(value, ("no", "auth_admin", "auth_admin_keep"), f"{name}: {kind}")

    def test_the_agent_alone_has_the_same_bus_policy(self):
        def rules(path):
            root = xml.etree.ElementTree.parse(path).getroot()
            return [xml.etree.ElementTree.tostring(policy).split() for policy in root]
        self.assertEqual(rules(PACKAGING / "com.korvale.agent.conf"),
                         rules(PROJECT / "packaging" / "com.korvale.agent_server.conf"))

    def test_the_unit_is_hardened(self):
        judged = subprocess.run(
            ["systemd-analyze", "security", "--offline=yes", "--threshold=40", "--no-pager",
             str(PACKAGING / "korvale-agent.service")], capture_output=True, text=True, check=False)
        self.assertIn("Overall exposure level", judged.stdout + judged.stderr)
        self.assertEqual(judged.returncode, 0, judged.stdout[-200:])

    def test_manual_pages_have_no_mistakes(self):
        for page in sorted(PACKAGING.glob("*.[158]")):
            said = subprocess.run(["groff", "-man", "-Tutf8", "-ww", "-z", str(page)],
                                  capture_output=True, text=True, check=False)
            self.assertEqual(said.stderr, "", page.name)


unittest.main()
