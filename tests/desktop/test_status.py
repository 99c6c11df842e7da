"""What scripts and bars are told, over a real session bus."""
import contextlib
import json
import re
import signal
import time
import xml.etree.ElementTree

import dbus

from desktop_session import PROJECT
from window_case import WindowCase, text, wait_until

NAME, PATH, INTERFACE = "com.korvale.ui", "/com/korvale/ui", "com.korvale.ui.Status1"


def described(xml_text):
    root = xml.etree.ElementTree.fromstring(xml_text)
    interface = next(node for node in root.iter("interface") if node.get("name") == INTERFACE)
    return {(node.get("name"), node.get("type"), node.get("access"))
            for node in interface.iter("property")}


class Status(WindowCase):
    def ask(self, *options):
        """(exit status, what was printed)"""
        asking = self.program("--status", *options)
        status = asking.wait_exit()
        asking.output.join()
        return status, "".join(line + "\n" for line in asking.output.lines)

    def report_nothing(self):
        self.reported_agent.tell_all(
            'raw-file header.log {"MessageMask":17}', "raw-file file_states.log {}",
            "raw-file process_states.log {}", "post timer.aggregated_messages")

    def wait_state(self, state):
        wait_until(lambda: json.loads(self.ask("--json")[1])["state"] == state, state)

    def test_the_line_and_its_status_follow_the_machine(self):
        self.report_nothing()
        self.wait_state("good")
        self.assertEqual(self.ask(), (0, text("HPS_WhyGood") + "\n"))
        self.publish("threat /tmp/a-file-name.exe 1 id-a")
        self.wait_state("new-threats")
        self.assertEqual(self.ask(), (2, text("HPS_WhyThreat") + "\n"))
        status, line = self.ask("--json")
        told = json.loads(line)
        self.assertEqual((status, told["version"], told["color"], told["counts"]["newThreats"]),
                         (2, 1, "red", 1))
        self.assertNotIn("a-file-name", line)
        self.reported_agent.kill()
        self.wait_state("agent-away")
        self.assertEqual(self.ask(), (1, text("HPS_WhyAgentAway") + "\n"))

    def test_bars_get_their_own_json_and_never_a_failure(self):
        self.publish("threat /tmp/a.exe 1 id-a")
        self.wait_state("new-threats")
        for bar, member, value in (("waybar", "class", "danger"),
                                   ("i3status-rs", "state", "Critical")):
            status, line = self.ask("--bar", bar)
            self.assertEqual((status, json.loads(line)[member]), (0, value))
        self.details.__exit__(None, None, None)
        self.assertEqual(self.ask(), (3, text("HPS_StatusNotRunning") + "\n"))
        for bar in ("waybar", "i3status-rs"):
            status, line = self.ask("--bar", bar)
            self.assertEqual((status, json.loads(line)["text"]), (0, text("HPS_StatusNotRunning")))

    def test_watching_prints_each_change_and_outlives_the_program(self):
        self.report_nothing()
        self.wait_state("good")
        watching = self.program("--status", "--watch")
        at, _ = watching.output.wait_for(text("HPS_WhyGood"))
        self.publish("threat /tmp/a.exe 1 id-a")
        at, _ = watching.output.wait_for(text("HPS_WhyThreat"), at + 1)
        self.details.__exit__(None, None, None)
        at, _ = watching.output.wait_for(text("HPS_StatusNotRunning"), at + 1)
        self.details = self.program()
        watching.output.wait_for(text("HPS_WhyThreatOffline"), at + 1)  # it has not said more yet
        self.assertTrue(watching.running())
        self.assertEqual(len(watching.output.lines), len(set(zip(
            watching.output.lines, [""] + watching.output.lines))), "no line twice in a row")

    def test_a_program_that_hangs_is_given_five_seconds(self):
        self.details.process.send_signal(signal.SIGSTOP)
        self.cleanup.callback(self.details.process.send_signal, signal.SIGCONT)
        began = time.monotonic()
        self.assertEqual(self.ask(), (4, text("HPS_StatusNoAnswer") + "\n"))
        self.assertGreaterEqual(time.monotonic() - began, 4.5)
        self.assertEqual(self.ask("--bar", "waybar")[0], 0)

    def test_wrong_use_is_one_sentence(self):
        asking = self.program("--status", "--bar", "nobar")
        self.assertEqual(asking.wait_exit(), 64)
        asking.wait_log(re.escape(text("HPS_StatusUsage")))
        self.assertEqual(asking.output.lines, [])

    def test_the_interface_is_what_its_installed_description_says_and_read_only(self):
        with contextlib.closing(self.desktop.session_bus()) as bus:
            program = bus.get_object(NAME, PATH, introspect=False)
            offered = program.Introspect(dbus_interface=dbus.INTROSPECTABLE_IFACE)
            installed = PROJECT / "packaging" / "dbus-interfaces" / f"{INTERFACE}.xml"
            self.assertEqual(described(offered), described(installed.read_text()))
            told = program.GetAll(INTERFACE, dbus_interface=dbus.PROPERTIES_IFACE)
            self.assertEqual({str(name) for name in told},
                             {name for name, _, _ in described(offered)})
            with self.assertRaises(dbus.DBusException):
                program.Set(INTERFACE, "NewThreats", dbus.Int64(9),
                            dbus_interface=dbus.PROPERTIES_IFACE)
