"""What somebody who sits before the machine sees and may do."""
import json
import time

from booted.machine_case import BAD, EICAR, MachineCase

DOWNLOADS = "/home/ada/Downloads"
WITHIN = 2.0  # seconds, as the documents say
REFUSED = 4  # exit status of korvale-agentctl
REQUEST = ("busctl", "--system", "call", "com.korvale.agent_server", "/com/korvale/agent_server",
           "com.korvale.agent_server", "Request", "a{sv}", "1", "<DATA>", "ay")
RULE = """polkit.addRule(function(action, subject) {
  if (action.id == "com.korvale.agent.manage-threats" && subject.user == "ada")
    return polkit.Result.YES;
});
"""


def answer_of(said):
    """What busctl prints of an envelope, as text."""
    return bytes(int(word) for word in said.split('"<DATA>" ay ')[1].split()[1:]).decode("utf-8")


class SeenByAPerson(MachineCase):
    def test_the_program_starts_with_the_session_and_says_that_all_is_well(self):
        self.ada.log_in()
        session = self.eventually("the session", self.session)
        for name, value in {"Active": "yes", "Remote": "no", "Type": "x11", "Seat": "seat0"}.items():
            self.assertEqual(self.machine.says("loginctl", "show-session", session, "--property", name, "--value"),
                             value, name)
        self.eventually("the green shield", lambda: self.state().get("color") == "green")
        self.assertEqual(self.ada.does("korvale-ui", "--status").returncode, 0)
        # Until the agent has said that the policy wants notifications, they are held back.
        self.eventually("the policy", lambda: self.state()["policy"]["name"] == "Local configuration", 90)

    def test_a_bad_file_in_downloads_is_told_and_taken_within_two_seconds(self):
        self.ada.listen_for_bubbles()
        self.eventually("the ear", lambda: "member=NameLost" in self.ada.bubbles())  # the last before it hears
        self.ada.does("mkdir", DOWNLOADS, check=True)
        self.ada.writes(f"{DOWNLOADS}/letter.txt", "harmless\n")
        self.ada.writes(f"{DOWNLOADS}/eicar.com", EICAR)
        began = time.time()
        self.eventually("the bubble", lambda: "eicar.com" in self.ada.bubbles())
        took = time.time() - began
        print(f"    the bubble came after {took:.2f} s", flush=True)
        self.assertLess(took, WITHIN)
        self.eventually("the quarantine", lambda: self.state_at("eicar.com") == "quarantined")
        self.assertEqual(self.ada.does("ls", DOWNLOADS).stdout.split(), ["letter.txt"])
        told = self.ada.does("korvale-ui", "--status")
        self.assertEqual(told.returncode, 2, told.stdout)
        self.assertEqual(self.state()["color"], "red")
        self.assertNotEqual(self.ada.does("ls", "/var/lib/korvale-agent").returncode, 0)

    def test_the_engine_of_the_distribution_judges_what_is_written(self):
        self.ada.writes(f"{DOWNLOADS}/bad.txt", f"some text, {BAD}, more text\n")
        threat = self.eventually("the finding", lambda: self.threat_at(f"{DOWNLOADS}/bad.txt"))
        self.assertIn("Korvale.Test.Bad", threat["name"])

    def test_a_scan_in_the_terminal_says_what_became_of_what_it_found(self):
        # A further name for an old file is the one way in that nothing tells of.
        aside = self.machine.path("/opt/aside.com")
        aside.write_text(EICAR, encoding="ascii")
        self.machine.inside("ln", "/opt/aside.com", f"{DOWNLOADS}/linked.com")
        aside.unlink()
        scan = self.ada.does("korvale-ui", "--scan", DOWNLOADS, "--wait")
        self.assertEqual(scan.returncode, 1, scan.stdout)
        self.assertIn(f"Quarantined {DOWNLOADS}/linked.com", scan.stdout)
        self.assertEqual(self.state_at("linked.com"), "quarantined")

    def session(self):
        lines = self.machine.says("loginctl", "list-sessions", "--no-legend").splitlines()
        return next((line.split()[0] for line in lines if " ada " in f"{line} " and "seat0" in line), None)

    def state(self):
        said = self.ada.does("korvale-ui", "--status", "--json").stdout
        return json.loads(said) if said.startswith("{") else {}

    def state_at(self, name):
        threat = self.threat_at(f"{DOWNLOADS}/{name}")
        return threat and threat["state"]


class AskedForConsent(MachineCase):
    """By the real polkit; nobody there asks for a password."""

    def number(self):
        return str(self.threat_at(f"{DOWNLOADS}/eicar.com")["number"])

    def refusals(self):
        return [entry for entry in self.entries() if entry["MESSAGE"].startswith("Refused")]

    def test_a_person_may_see_threats_and_not_change_them(self):
        self.assertIn("eicar.com", self.ada.does("korvale-agentctl", "threats", check=True).stdout)
        for command in (("restore",), ("delete", "--yes"), ("waive",)):
            before = len(self.refusals())
            done = self.ada.does("korvale-agentctl", *command, self.number())
            self.assertEqual(done.returncode, REFUSED, done.stdout)
            lines = self.eventually("the line in the journal", lambda count=before: self.refusals()[count:])
            self.assertEqual(len(lines), 1)
            self.assertIn(f"for user {self.ada.number} ", lines[0]["MESSAGE"])
            self.assertEqual(lines[0]["PRIORITY"], "4")
        self.assertEqual(self.threat_at(f"{DOWNLOADS}/eicar.com")["state"], "quarantined")

    def test_a_request_that_is_refused_has_another_reply_than_ok(self):
        data = json.dumps({"CMD_": "SLOG", "VALU": "3"}).encode("ascii")
        said = self.ada.does(*REQUEST, str(len(data)), *map(str, data), check=True).stdout
        self.assertEqual(json.loads(answer_of(said)), {"RESP": "Not allowed."})

    def test_whoever_has_no_session_may_neither_see_nor_scan(self):
        self.machine.inside("useradd", "--create-home", "bob")
        as_bob = ("systemd-run", "--quiet", "--pipe", "--wait", "--collect", "--uid=bob")
        self.assertEqual(self.machine.inside(*as_bob, "korvale-agentctl", "threats", check=False).returncode, REFUSED)
        scan = self.machine.inside(*as_bob, "korvale-ui", "--scan", "/home/bob", check=False)
        self.assertEqual(scan.returncode, 2, scan.stdout)

    def test_nobody_else_may_take_the_agents_name(self):
        done = self.ada.does("dbus-send", "--system", "--print-reply", "--dest=org.freedesktop.DBus",
                             "/org/freedesktop/DBus", "org.freedesktop.DBus.RequestName",
                             "string:com.korvale.agent_server", "uint32:0")
        self.assertIn("AccessDenied", done.stdout)

    def test_root_may_restore(self):
        self.assertTrue(self.control("restore", self.number())["ok"])
        self.assertEqual(self.machine.says("stat", "--format=%U", f"{DOWNLOADS}/eicar.com"), "ada")
        self.assertEqual(self.machine.path(f"{DOWNLOADS}/eicar.com").read_text("ascii"), EICAR)
        self.assertEqual(self.threat_at(f"{DOWNLOADS}/eicar.com")["state"], "waived")
        self.assertTrue(self.control("quarantine", self.number())["ok"])

    def test_a_person_may_whom_a_rule_allows_it(self):
        rule = self.machine.path("/etc/polkit-1/rules.d/50-test.rules")
        rule.write_text(RULE, encoding="ascii")
        self.eventually("the rule", lambda: self.ada.does("korvale-agentctl", "restore", self.number()).returncode == 0)
        self.assertTrue(self.machine.path(f"{DOWNLOADS}/eicar.com").exists())
        done = self.ada.does("korvale-agentctl", "delete", "--yes", self.number())
        self.assertEqual(done.returncode, 0, done.stdout)
        self.assertFalse(self.machine.path(f"{DOWNLOADS}/eicar.com").exists())
        rule.unlink()
