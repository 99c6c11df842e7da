"""Desktop notifications: their form for different servers, and what a click does."""
import contextlib

import dbus
import dbus.lowlevel

from desktop_case import DesktopCase, wait_until
from texts import text
from window_case import WindowCase

SERVER = "org.freedesktop.Notifications"
SERVER_PATH = "/org/freedesktop/Notifications"


class NotifyingCase(DesktopCase):
    """A program that may notify and hears its agent."""
    LINK = "https://korvale.example/why?a=1&b=2"
    arguments = ()

    def setUp(self):
        super().setUp()
        self.empty_folders()
        self.reporting = self.agent()
        self.reporting.tell("policy notifications on")
        self.notifier = self.started(self.reporting, *self.arguments)
        self.status_item = self.item(self.notifier)
        wait_until(lambda: self.status_item.entry(text("CM_ShowNotifications")).checked,
                   "the policy's mark")

    def notified_by(self, command):
        """The notification that the agent's command makes the program send."""
        before = len(self.notifications())
        self.reporting.tell(command)
        return self.wait_notification(lambda call: True, before)

    def control(self, method, *arguments):
        with contextlib.closing(self.desktop.session_bus()) as bus:
            server = bus.get_object(SERVER, SERVER_PATH)
            getattr(server, method)(*arguments, dbus_interface="com.korvale.Test")

    def click(self, number, key="default"):
        """As a server does it: the action first, then the end of the notification."""
        self.control("Invoke", dbus.UInt32(number), key)
        self.control("Close", dbus.UInt32(number), dbus.UInt32(2))


class Clicks(NotifyingCase):
    def settle(self):
        """Returns when the program has handled all it was sent before."""
        self.assertTrue(self.status_item.menu())

    def test_a_click_opens_the_link_once(self):
        already = len(self.desktop.opened_links())
        call = self.notified_by(f'consumer-notification "Please restart" {self.LINK}')
        self.assertEqual(call["summary"], text("ProductEP"))
        self.assertEqual(call["body"], "Please restart")
        self.assertEqual(call["actions"][0], "default")
        self.assertTrue(call["actions"][1])
        self.click(call["id"])
        wait_until(lambda: self.desktop.opened_links()[already:] == [self.LINK], "the link")
        self.click(call["id"])  # a notification that is closed has no more clicks
        last = self.notified_by("consumer-notification Again https://korvale.example/last")
        self.click(last["id"])
        wait_until(lambda: "https://korvale.example/last" in self.desktop.opened_links(),
                   "the last link")
        self.assertEqual(self.desktop.opened_links()[already:],
                         [self.LINK, "https://korvale.example/last"])

    def test_only_web_links_are_opened(self):
        already = len(self.desktop.opened_links())
        for link in ("file:///etc/passwd", "javascript:alert(1)", "korvale.example", "-help",
                     "ftp://korvale.example/", "https://"):
            call = self.notified_by(f"consumer-notification Look {link}")
            self.click(call["id"])
            self.settle()
        good = self.notified_by("consumer-notification Look http://korvale.example/good")
        self.click(good["id"])
        wait_until(lambda: len(self.desktop.opened_links()) > already, "the good link")
        self.assertEqual(self.desktop.opened_links()[already:], ["http://korvale.example/good"])

    def test_foreign_notifications_and_other_actions_open_nothing(self):
        already = len(self.desktop.opened_links())
        call = self.notified_by(f"consumer-notification Restart {self.LINK}")
        self.control("Invoke", dbus.UInt32(call["id"] + 1000), "default")
        self.control("Invoke", dbus.UInt32(call["id"]), "other")
        with contextlib.closing(self.desktop.session_bus()) as bus:  # not the server, same signal
            signal = dbus.lowlevel.SignalMessage(SERVER_PATH, SERVER, "ActionInvoked")
            signal.append(dbus.UInt32(call["id"]), "default", signature="us")
            bus.send_message(signal)
            bus.flush()
        self.settle()
        self.assertEqual(self.desktop.opened_links()[already:], [])
        self.click(call["id"])
        wait_until(lambda: self.desktop.opened_links()[already:] == [self.LINK], "the link")

    def test_without_a_link_there_is_no_action(self):
        call = self.notified_by('consumer-notification "No link here"')
        self.assertEqual(call["actions"], [])


class WithoutNeedOfADisplay(NotifyingCase):
    """A start that changes its own environment, so that the toolkit can do without a display."""
    arguments = ("-folder-scan", "/etc/hostname")  # no folder, so that it stays

    def test_the_browser_gets_the_environment_that_the_program_got(self):
        call = self.notified_by(f"consumer-notification Look {self.LINK}")
        self.click(call["id"])
        wait_until(lambda: self.desktop.opened_links() == [self.LINK], "the link")
        self.assertEqual(self.desktop.openers_environment(), self.desktop.env)


class PlainServer(NotifyingCase):
    parts = {"capabilities": "body,actions"}

    def test_without_markup_nothing_is_escaped(self):
        call = self.notified_by("exe-blocked /opt/<b>bad&ugly")
        self.assertEqual(call["body"],
                         f"{text('NotificationSubtitleExecutionBlock')}\n<b>bad&ugly")
        call = self.notified_by('consumer-notification "a < b & c"')
        self.assertEqual(call["body"], "a < b & c")


class NoServer(DesktopCase):
    parts = {"notifications": None}

    def test_no_server_is_no_failure_and_a_late_one_is_used(self):
        self.empty_folders()
        agent = self.agent()
        agent.tell("policy notifications on")
        program = self.started(agent)
        item = self.item(program)
        wait_until(lambda: item.entry(text("CM_ShowNotifications")).checked, "the mark")
        agent.tell("exe-blocked /opt/unheard")
        self.assertTrue(item.menu())
        self.assertEqual(program.count("^(WARN|ERROR) .*otif"), 0)
        self.desktop.start_notifications()
        agent.tell("exe-blocked /opt/heard")
        call = self.wait_notification(lambda call: "heard" in call["body"])
        self.assertNotIn("unheard", call["body"])
        self.assertTrue(program.running())


class WhatTheySaid(WindowCase):
    LINK = "https://korvale.example/why"

    def setUp(self):
        super().setUp()
        self.file = (self.desktop.folder / "home" / ".local" / "state" / "Korvale" /
                     "KorvaleUI-notifications.json")

    def wait_kept(self, what):
        wait_until(lambda: self.file.exists() and what in self.file.read_text(), f"{what} in the file")

    def names(self):
        return [name for _, name, _ in self.tree()]

    def one_shown_and_one_held_back(self):
        self.reported_agent.tell("exe-blocked /opt/early")  # the policy allows none yet
        self.wait_kept("early")
        self.reported_agent.tell("policy notifications on")
        wait_until(lambda: self.status_item.entry(text("CM_ShowNotifications")).checked, "the mark")
        self.reported_agent.tell(f'consumer-notification "Please <b>restart" {self.LINK}')
        self.wait_kept("restart")

    def test_they_are_read_again_with_links_and_with_those_that_were_held_back(self):
        already = len(self.desktop.opened_links())
        self.one_shown_and_one_held_back()
        self.assertEqual([call["body"] for call in self.notifications()][-1:], ["Please &lt;b&gt;restart"])
        self.open_window()
        self.press("ctrl+n")
        self.wait_text("Please <b>restart")
        self.wait_text(f"{text('NotificationSubtitleExecutionBlock')}\nearly")
        marked = {name.rpartition("\n")[2]: text("HPS_NotificationHeldBack") in described
                  for _, name, described in self.tree() if name.endswith(("early", "restart"))}
        self.assertEqual(marked, {"early": True, "Please <b>restart": False})
        link = [described for _, name, described in self.tree()
                if name == text("NotificationActionOpenLink")]
        self.assertEqual(link, [self.LINK])
        x, y = self.place(text("NotificationActionOpenLink"))
        self.desktop.run(["xdotool", "mousemove", str(x), str(y), "click", "1"])
        wait_until(lambda: self.desktop.opened_links()[already:] == [self.LINK], "the link")

    def test_another_run_shows_them_until_they_are_cleared(self):
        self.one_shown_and_one_held_back()
        self.assertEqual(self.file.stat().st_mode & 0o7777, 0o600)
        self.details.process.terminate()
        self.assertEqual(self.details.wait_exit(), 0)
        self.details = self.started(self.reported_agent)
        self.status_item = self.item(self.details)
        self.open_window()
        self.assertNotIn("Please <b>restart", self.names())
        x, y = self.place(text("HPS_Notifications"))
        self.desktop.run(["xdotool", "mousemove", str(x), str(y), "click", "1"])
        self.wait_text("Please <b>restart")
        self.wait_text(text("HPS_ClearNotifications"))
        x, y = self.place(text("HPS_ClearNotifications"))
        self.desktop.run(["xdotool", "mousemove", str(x), str(y), "click", "1"])
        self.wait_text(text("HPS_NoNotifications"))
        wait_until(lambda: "restart" not in self.file.read_text(), "an empty file")
        self.press("Escape")
        wait_until(lambda: text("HPS_NoNotifications") not in self.names(), "the window to go")
        self.assertIsNotNone(self.window())

    def test_a_file_that_is_none_of_the_programs_is_as_good_as_none(self):
        self.file.parent.mkdir(parents=True, exist_ok=True)
        self.file.write_text('[{"when": 1, "title": "A", "message": "Forged"}, {"when": "now"}]')
        self.open_window()
        self.press("ctrl+n")
        self.wait_text(text("HPS_NoNotifications"))
        self.reported_agent.tell("exe-blocked /opt/real")
        self.wait_kept("real")
        self.assertNotIn("Forged", self.file.read_text())
