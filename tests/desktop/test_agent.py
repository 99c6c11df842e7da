"""What the agent says and how it lives, seen at the item, the notifications and the log."""
import contextlib
import os
import signal
import unittest

import dbus.lowlevel

from desktop_case import DesktopCase, wait_until
from texts import text


class AgentReports(DesktopCase):
    def setUp(self):
        super().setUp()
        self.empty_folders()

    def connected(self, *arguments):
        """A program whose item is green, and its agent."""
        agent = self.agent()
        agent.tell("policy notifications on")
        program = self.program(*arguments)
        item = self.item(program)
        wait_until(lambda: {"CMD_": "POLY"} in agent.requests(), "the first poll")
        agent.tell_all("start", "halyx on", "quillmar on")
        item.wait_colour("green")
        wait_until(lambda: item.entry(text("CM_ShowNotifications")).checked, "the policy's mark")
        return program, agent, item

    def test_green_while_connected_and_yellow_after(self):
        _, agent, item = self.connected()
        self.assertIn(text("Safe"), item.tooltip())
        agent.tell("stop")
        item.wait_colour("yellow")
        self.assertIn(text("OfflineMode"), item.tooltip())

    def test_a_threat_turns_it_red_and_is_notified(self):
        _, agent, item = self.connected()
        agent.tell("threat /home/me/Downloads/Evil.BIN 1 aa11")
        item.wait_colour("red")
        self.assertIn(text("Unsafe"), item.tooltip())
        call = self.wait_notification(lambda call: "evil.bin" in call["body"])
        self.assertEqual(call["summary"], text("ProductEP"))
        self.assertEqual(call["hints"]["desktop-entry"], "com.korvale.ui")
        self.assertEqual(call["replaces_id"], 0)
        self.assertEqual(call["actions"], [])
        self.assertIn("image-data", call["hints"])
        self.assertEqual(call["app_name"], "KorvaleUI")
        self.assertEqual(call["body"], self.body("UnsafeDetected", "evil.bin"))

    def test_an_exploit_is_notified_with_process_and_type(self):
        _, agent, _ = self.connected()
        before = len(self.notifications())
        agent.tell("exploit 4711 /usr/bin/player alert 3 1")
        call = self.wait_notification(lambda call: True, before)
        self.assertEqual(call["summary"], text("ProductEP"))
        self.assertTrue(call["body"].startswith(
            f"<b>{text('NotificationSubtitleExploitAttemptDetected')}</b>\n"), call["body"])
        self.assertIn("player", call["body"])
        self.assertIn("4711", call["body"])

    def body(self, key, name):
        """A notification about one file, as a server that reads markup gets it."""
        return (f"<b>{text(f'NotificationSubtitle{key}')}</b>\n"
                f"{text(f'NotificationMessage{key}').replace('%@', name)}")

    def test_a_lost_driver_is_red_until_it_is_back(self):
        _, agent, item = self.connected()
        agent.tell("driver lost")
        item.wait_colour("red")
        agent.tell("driver connected")
        # red also stands for "no colour yet", which a connection leaves alone: a batch ends it
        agent.tell("publish 0")
        item.wait_colour("green")

    def test_blocked_programs_are_notified_by_name(self):
        _, agent, _ = self.connected()
        for command, key in (("exe-blocked", "NotificationSubtitleExecutionBlock"),
                             ("process-terminated", "NotificationSubtitleProcessTerminated"),
                             ("process-blocked", "NotificationSubtitleProcessActionBlocked")):
            before = len(self.notifications())
            agent.tell(f"{command} /opt/games/<b>bad&ugly")
            call = self.wait_notification(lambda call: True, before)
            self.assertEqual(call["body"], f"<b>{text(key)}</b>\n&lt;b&gt;bad&amp;ugly")

    def test_policy_problems_are_notified(self):
        _, agent, _ = self.connected()
        for problem, name in (("expired", "PolicyExpired"),
                              ("invalid-company", "PolicyInvalidCompanyId"),
                              ("invalid-signature", "PolicyInvalidSignature")):
            before = len(self.notifications())
            agent.tell(f"policy {problem}")
            call = self.wait_notification(lambda call: True, before)
            self.assertEqual(call["body"], f"<b>{text(f'NotificationSubtitle{name}')}</b>\n"
                                           f"{text(f'NotificationMessage{name}')}")
            self.assertEqual(call["summary"], text("ProductEP"))

    def test_the_companion_product_speaks_under_its_own_name(self):
        _, agent, _ = self.connected()
        before = len(self.notifications())
        agent.tell("sondar Look here: 50%@ off")
        call = self.wait_notification(lambda call: True, before)
        self.assertEqual((call["summary"], call["body"]),
                         (text("KorvaleSONDAR"), "Look here: 50%@ off"))

    def test_the_persons_choice_outranks_the_policy(self):
        _, agent, item = self.connected()
        item.click(item.entry(text("CM_ShowNotifications")))
        wait_until(lambda: not item.entry(text("CM_ShowNotifications")).checked, "no mark")
        before = len(self.notifications())
        agent.tell("exe-blocked /opt/silent")
        agent.tell("driver lost")
        item.wait_colour("red")  # the program has read both: only then may the choice change
        item.click(item.entry(text("CM_ShowNotifications")))
        wait_until(lambda: item.entry(text("CM_ShowNotifications")).checked, "the mark")
        agent.tell("exe-blocked /opt/loud")
        call = self.wait_notification(lambda call: True, before)
        self.assertIn("loud", call["body"])

    def test_bad_files_count_as_absent(self):
        program, agent, item = self.connected()
        for name in ("file_states.log", "process_states.log", "file_process_events.log",
                     "external_device_control_events.log", "header.log"):
            for kind in ("truncated", "not-json", "wrong-types", "huge-number", "duplicate",
                         "invalid-utf8", "list", "deep", "empty", "fifo", "folder", "too-large"):
                agent.tell_all(f"malformed-file {name} {kind}",
                               "post com.korvale.timer.aggregated_messages")
                if kind in ("fifo", "folder", "too-large"):
                    self.assertTrue(item.menu())  # nothing waits for a FIFO or reads 256 MiB
            agent.tell(f"malformed-file {name} absent")
        agent.tell("threat /tmp/after-all.exe 1 bb22")
        item.wait_colour("red")
        self.assertTrue(program.running())

    def test_bad_replies_are_failed_ones(self):
        program, agent, item = self.connected()
        for kind in ("not-dictionary", "wrong-signature", "no-arguments", "bad-json", "bad-utf8",
                     "list", "wrong-types", "empty-data", "no-data", "text-data", "error"):
            agent.tell(f"malformed-reply {kind}")
            before = len(agent.requests())
            item.click(item.entry(text("CheckForUpdates")))
            wait_until(lambda: len(agent.requests()) > before, "the request")
        program.wait_log(r'^ERROR "Service returned bad status for checkUpdates\."$')
        self.assertTrue(program.running())


class AgentLife(DesktopCase):
    def test_it_comes_late_restarts_and_is_killed(self):
        self.empty_folders()
        program = self.program()
        item = self.item(program)
        for _ in range(2):
            with_agent = self.agent()
            self.announce(with_agent, "halyx on")
            item.wait_colour("green")
            seen = len(program.log.lines)
            with_agent.kill()
            program.wait_log(r'^INFO "client received event: Connection interrupted"$', seen)
            wait_until(item.menu, "the menu")

    def test_a_driver_lost_before_the_start_is_red_at_once(self):
        agent = self.agent()
        agent.tell_all("driver value 0")
        item = self.item(self.program())
        item.wait_colour("red")
        self.assertIn(text("Unsafe"), item.tooltip())

    def test_an_agent_killed_in_the_middle_of_a_reply_is_a_failed_request(self):
        agent = self.agent()
        program = self.started(agent)
        item = self.item(program)
        agent.tell("reply-delay 60000")
        item.click(item.entry(text("CheckForUpdates")))
        wait_until(lambda: {"CMD_": "CHKU"} in agent.requests(), "the request")
        agent.kill()
        program.wait_log(r'^INFO "client received event: Connection interrupted"$')
        self.assertTrue(item.menu())
        second = self.agent()
        item.click(item.entry(text("CheckForUpdates")))
        wait_until(lambda: {"CMD_": "CHKU"} in second.requests(), "the request")
        program.wait_log(r"^INFO \"Service returned 'OK' for checkUpdates\.\"$")

    def test_a_hanging_agent_leaves_the_menu_alive(self):
        agent = self.agent()
        agent.tell("hang on")
        item = self.item(program := self.program())
        item.click(item.entry(text("CheckForUpdates")))
        self.assertTrue(item.menu())
        item.click(item.entry(text("Exit")))
        self.assertEqual(program.wait_exit(), 0)

    def test_the_bus_goes_and_comes_back(self):
        program = self.program()
        item = self.item(program)
        first = self.agent()
        self.announce(first, "halyx on")
        item.wait_colour("green")
        seen = len(program.log.lines)
        self.desktop.stop_part("system-bus", signal.SIGKILL)
        first.kill()
        program.wait_log(r'^INFO "client received event: Connection invalid"$', seen)
        self.assertTrue(item.menu())
        self.desktop.start_system_bus()
        second = self.agent()
        self.announce(second, "stop")
        item.wait_colour("yellow")

    def test_an_impostor_is_ignored(self):
        agent = self.agent()
        item = self.item(self.started(agent))
        agent.tell_all("start", "halyx on")
        item.wait_colour("green")
        # any process may emit signals on the bus; only the name's owner is heard
        with contextlib.closing(self.desktop.system_bus()) as bus:
            bus.send_message(dbus.lowlevel.SignalMessage(
                "/com/korvale/agent_server", "com.korvale.driver", "notconnected"))
            bus.name_has_owner("com.korvale.agent_server")  # the bus has passed the signal on
        agent.tell_all("requests clear", "start")  # which leaves a red item red
        wait_until(lambda: {"CMD_": "GDRV"} in agent.requests(), "what followed to be handled")
        self.assertEqual(item.colour(), "green")

    @unittest.skipUnless(os.geteuid() == 0, "only root can become another user")
    def test_another_user_is_refused_the_name(self):
        script = ("import dbus,dbus.bus,sys\n"
                  "bus=dbus.bus.BusConnection(sys.argv[1])\n"
                  "try: bus.request_name('com.korvale.agent_server')\n"
                  "except dbus.DBusException as e: print(e.get_dbus_name())\n")
        refused = self.desktop.run(["setpriv", "--reuid=65534", "--regid=65534", "--clear-groups",
                                    "/usr/bin/python3", "-c", script,
                                    self.desktop.env["DBUS_SYSTEM_BUS_ADDRESS"]])
        self.assertEqual(refused.strip(), "org.freedesktop.DBus.Error.AccessDenied")
