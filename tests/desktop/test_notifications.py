"""Desktop notifications: their form for different servers, and what a click does."""
import contextlib

import dbus
import dbus.lowlevel

from desktop_case import DesktopCase, wait_until
from texts import text

SERVER = "org.freedesktop.Notifications"
SERVER_PATH = "/org/freedesktop/Notifications"


class NotifyingCase(DesktopCase):
    """A program that may notify and hears its agent."""

    def setUp(self):
        super().setUp()
        self.empty_folders()
        self.reporting = self.agent()
        self.reporting.tell("policy notifications on")
        self.notifier = self.started(self.reporting)
        self.status_item = self.item(self.notifier)
        wait_until(lambda: self.status_item.entry(text("CM_ShowNotifications")).checked,
                   "the policy's mark")

    def notified_by(self, command):
        """The notification that the agent's command makes the program send."""
        before = len(self.notifications())
        self.reporting.tell(command)
        return self.wait_notification(lambda call: True, before)


class Clicks(NotifyingCase):
    LINK = "https://korvale.example/why?a=1&b=2"

    def control(self, method, *arguments):
        with contextlib.closing(self.desktop.session_bus()) as bus:
            server = bus.get_object(SERVER, SERVER_PATH)
            getattr(server, method)(*arguments, dbus_interface="com.korvale.Test")

    def click(self, number, key="default"):
        """As a server does it: the action first, then the end of the notification."""
        self.control("Invoke", dbus.UInt32(number), key)
        self.control("Close", dbus.UInt32(number), dbus.UInt32(2))

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
