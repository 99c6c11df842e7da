"""Other processes on the buses say what is the agent's to say, flood, lie and call: what is shown
stays as it is, the menu answers, and memory comes back."""
import contextlib
import os
import re
import signal
import statistics
import subprocess
import time

import dbus
import dbus.lowlevel

from desktop_case import DesktopCase, wait_until
from desktop_session import HERE
from texts import text
from tray import ITEM, MENU

AGENT = "com.korvale.agent_server"
AGENT_PATH = "/com/korvale/agent_server"
TABLE = HERE.parent.parent / "src" / "agent_link" / "AgentNotificationTable.h"
RATE = 10_000  # signals a second


def notification_names():
    return re.findall(r'ROW\(\w+, \d+, "([\w.]+)"\)', TABLE.read_text())


def pid_on(bus, name):
    daemon = bus.get_object("org.freedesktop.DBus", "/org/freedesktop/DBus")
    with contextlib.suppress(dbus.DBusException):
        return int(daemon.GetConnectionUnixProcessID(
            name, dbus_interface="org.freedesktop.DBus"))
    return 0


def own_memory(pid):
    """Memory that the process alone has written to, in KiB."""
    with open(f"/proc/{pid}/smaps_rollup", encoding="ascii") as rollup:
        return sum(int(line.split()[1]) for line in rollup if line.startswith("Private_Dirty"))


class HostileNeighbours(DesktopCase):
    def setUp(self):
        super().setUp()
        self.empty_folders()
        self.real_agent = self.agent()
        self.real_agent.tell("policy notifications on")
        self.victim = self.started(self.real_agent)
        self.victims_item = self.item(self.victim)
        self.real_agent.tell_all("start", "halyx on")
        self.victims_item.wait_colour("green")
        wait_until(lambda: self.victims_item.entry(text("CM_ShowNotifications")).checked,
                   "the policy")
        self.system = self.desktop.system_bus()
        self.addCleanup(self.system.close)

    def victims_name(self):
        """What the system bus calls the program."""
        def found():
            daemon = self.system.get_object("org.freedesktop.DBus", "/org/freedesktop/DBus")
            names = daemon.ListNames(dbus_interface="org.freedesktop.DBus")
            return [str(name) for name in names
                    if name.startswith(":") and pid_on(self.system, name) == self.victim.pid]
        return wait_until(found, "the program on the bus")[0]

    def shown(self):
        item = self.victims_item
        return (item.colour(), item.tooltip(),
                [(repr(entry), entry.checked, entry.enabled) for entry in item.menu()],
                len(self.notifications()))

    def settle(self):
        """What was sent before has been handled: the agent's own word comes after it."""
        self.system.name_has_owner(AGENT)  # the bus has passed everything on
        self.real_agent.tell_all("requests clear", "start")
        wait_until(lambda: {"CMD_": "GDRV"} in self.real_agent.requests(), "the agent's word")

    def send(self, name, destination=None, *arguments, **options):
        interface, _, member = name.rpartition(".")
        message = dbus.lowlevel.SignalMessage(AGENT_PATH, interface, member)
        if destination:
            message.set_destination(destination)
        if arguments:
            message.append(*arguments, **options)
        self.system.send_message(message)

    def test_no_signal_and_no_message_of_another_process_changes_anything(self):
        names = notification_names()
        self.assertEqual(len(names), 20)
        self.settle()
        before, lines = self.shown(), len(self.victim.log.lines)
        envelope = {"<DATA>": dbus.ByteArray(b'{"SondarNotificationMessage":"forged"}')}
        for destination in (None, self.victims_name()):
            for name in names:
                self.send(name, destination)
            self.send(f"{AGENT}.Message", destination, dbus.Dictionary(envelope, signature="sv"),
                      signature="a{sv}")
        self.settle()
        self.assertEqual(self.shown(), before)
        self.assertEqual(self.victim.log.lines[lines:], [])

    def test_a_former_agent_that_answers_late_and_twice_changes_nothing(self):
        self.real_agent.tell("release-name")
        self.desktop.start_service("former agent", "muddled_agent.py",
                                   self.desktop.env["DBUS_SYSTEM_BUS_ADDRESS"])
        self.addCleanup(self.desktop.stop_part, "former agent")
        log = self.desktop.folder / "log" / "former agent"
        wait_until(lambda: "GDRV" in log.read_text(), "the question for the driver")
        self.victims_item.click(self.victims_item.entry(text("CheckForUpdates")))
        wait_until(lambda: "CHKU" in log.read_text(), "the search for updates")
        self.desktop.parts["former agent"].send_signal(signal.SIGUSR1)  # gives the name away
        self.real_agent.tell_all("take-name", "start", "halyx on")
        self.victims_item.wait_colour("green")
        self.settle()
        before, lines = self.shown(), len(self.victim.log.lines)
        self.desktop.parts["former agent"].send_signal(signal.SIGUSR2)
        wait_until(lambda: "answered" in log.read_text(), "the answers")
        self.settle()
        self.assertEqual(self.shown(), before)
        self.assertEqual(self.victim.log.lines[lines:], [])
        self.victims_item.click(self.victims_item.entry(text("CheckForUpdates")))
        self.victim.wait_log(r"^INFO .Service returned 'OK' for checkUpdates\..$", lines)

    def test_names_beside_the_agents_can_be_had_by_nobody(self):
        for name in (f"{AGENT}2", f"{AGENT}.x", "com.korvale.agent", "com.korvale.halyx",
                     "com.korvale.timer", "com.korvale"):
            with self.assertRaises(dbus.DBusException) as refused:
                self.system.request_name(name)
            self.assertIn("AccessDenied", refused.exception.get_dbus_name())

    # Floods

    @contextlib.contextmanager
    def flood(self, *arguments):
        process = subprocess.Popen(
            ["/usr/bin/python3", str(HERE / "services" / "flooding_neighbour.py"),
             self.desktop.env["DBUS_SYSTEM_BUS_ADDRESS"], *arguments],
            stdout=subprocess.PIPE, text=True)
        try:
            self.assertEqual(process.stdout.readline(), "ready\n")
            yield process
            self.assertIsNone(process.poll(), "the flood ended by itself")
        finally:
            process.send_signal(signal.SIGKILL)
            process.wait()
            process.stdout.close()

    def answer_time(self):
        """From a click in the menu until the menu shows what it did: the median of many."""
        choice, spans = self.victims_item.entry(text("CM_ShowNotifications")), []
        checked = choice.checked
        for _ in range(24):  # an even number: it ends as it was
            checked, begin = not checked, time.monotonic()
            self.victims_item.click(choice)
            while self.victims_item.entry(choice.label).checked != checked:
                self.assertLess(time.monotonic(), begin + 20, "the click was not answered")
            spans.append(time.monotonic() - begin)
        return statistics.median(spans)

    def outlive(self, *flood):
        self.answer_time()  # what the first opening of the menu needs is there from now on
        calm, memory = self.answer_time(), own_memory(self.victim.pid)
        with self.flood(*flood):
            under_flood = self.answer_time()
        # A busy machine answers late whoever asks: what counts is that nothing piles up. How late
        # on a quiet one, ./dev bench tells.
        self.assertLess(under_flood, 2 * calm + 1, f"{calm:.4f} s without the flood")
        if "KORVALE_SANITIZE" not in os.environ:  # a sanitizer's allocator keeps what was freed
            wait_until(lambda: own_memory(self.victim.pid) < memory * 1.05 + 2048,
                       f"memory to come back to {memory} KiB", 60)
        self.assertTrue(self.victim.running())

    def test_a_flood_of_signals_to_all_changes_nothing(self):
        before = self.shown()
        self.outlive("-", str(RATE))
        self.settle()
        self.assertEqual(self.shown(), before)

    def test_a_flood_of_signals_to_the_program_alone_changes_nothing(self):
        before = self.shown()
        self.outlive(self.victims_name(), str(RATE))
        self.settle()
        self.assertEqual(self.shown(), before)

    # The session bus

    def call_anything(self, service, path, interface, member, signature="", *arguments):
        with contextlib.closing(self.desktop.session_bus()) as bus, \
                contextlib.suppress(dbus.DBusException, TypeError, OverflowError):
            bus.call_blocking(service, path, interface, member, signature, arguments, timeout=20)

    def test_callers_with_anything_leave_the_program_as_it_is(self):
        before, own = self.shown(), "com.korvale.ui"
        item, menu = self.victims_item, str(self.victims_item.property("Menu"))
        application = "org.freedesktop.Application"
        deep = dbus.Array([dbus.Dictionary({"x": "y"}, signature="sv")] * 1000, signature="v")
        for service, path, interface, member, signature, *arguments in (
                (own, "/com/korvale/ui", application, "Activate", "s", "x"),
                (own, "/com/korvale/ui", application, "Activate", "a{ss}", {"a": "b"}),
                (own, "/com/korvale/ui", application, "Open", "asas", ["file:///"], ["x"]),
                (own, "/com/korvale/ui", application, "ActivateAction", "sav", "quit", deep),
                (own, "/com/korvale/ui", "org.freedesktop.DBus.Properties", "Set", "ssv",
                 application, "x", 1),
                (own, "/" + "x" * 100_000, application, "Quit", ""),
                (item.service, item.path, ITEM, "Activate", "ss", "x", "y"),
                (item.service, item.path, ITEM, "Scroll", "is", 2 ** 31 - 1, "x" * 100_000),
                (item.service, item.path, ITEM, "Scroll", "is", -2 ** 31, "horizontal"),
                (item.service, menu, MENU, "Event", "isvu", -1, "clicked", 0, 0),
                (item.service, menu, MENU, "Event", "isvu", 2 ** 31 - 1, "clicked", deep, 0),
                (item.service, menu, MENU, "Event", "isvu", 0, "x" * 100_000, "", 2 ** 32 - 1),
                (item.service, menu, MENU, "EventGroup", "a(isvu)",
                 [(number, "clicked", 0, 0) for number in range(10_000, 20_000)]),
                (item.service, menu, MENU, "AboutToShow", "i", -2 ** 31),
                (item.service, menu, MENU, "AboutToShowGroup", "ai", list(range(-5000, 0))),
                (item.service, menu, MENU, "GetLayout", "iias", -7, -9, ["x"] * 1000),
                (item.service, menu, MENU, "GetGroupProperties", "aias",
                 list(range(20_000, 120_000)), ["label"])):
            self.call_anything(service, path, interface, member, signature, *arguments)
            self.assertTrue(self.victim.running(), (member, signature))
        self.assertEqual(self.shown()[:3], before[:3])

    def test_hosts_and_portals_that_are_none_are_not_believed(self):
        before = self.shown()
        with contextlib.closing(self.desktop.session_bus()) as bus:
            for path, interface, member, signature, *arguments in (
                    ("/StatusNotifierWatcher", "org.kde.StatusNotifierWatcher",
                     "StatusNotifierHostUnregistered", ""),
                    ("/StatusNotifierWatcher", "org.kde.StatusNotifierWatcher",
                     "StatusNotifierItemUnregistered", "s", "com.korvale.ui"),
                    ("/org/freedesktop/portal/desktop", "org.freedesktop.portal.Settings",
                     "SettingChanged", "ssv", "org.freedesktop.appearance", "color-scheme",
                     dbus.UInt32(1, variant_level=1)),
                    ("/org/freedesktop/DBus", "org.freedesktop.DBus", "NameOwnerChanged", "sss",
                     "org.kde.StatusNotifierWatcher", ":1.1", ""),
                    ("/org/freedesktop/DBus/Local", "org.freedesktop.DBus.Local", "Disconnected",
                     "")):
                message = dbus.lowlevel.SignalMessage(path, interface, member)
                if arguments:
                    message.append(*arguments, signature=signature)
                with contextlib.suppress(dbus.DBusException):
                    bus.send_message(message)
            bus.flush()
        self.settle()
        self.assertEqual(self.shown(), before)
        self.real_agent.tell("halyx off")
        self.victims_item.wait_colour("yellow")

    def test_a_notification_server_that_lies_changes_nothing_else(self):
        self.desktop.stop_part("notifications")
        self.addCleanup(self.desktop.start_notifications)
        self.desktop.start_service("liar", "lying_notifications.py")
        self.addCleanup(self.desktop.stop_part, "liar")
        said = self.desktop.folder / "log" / "liar"
        self.real_agent.tell("exe-blocked /opt/first")
        wait_until(lambda: "GetCapabilities" in said.read_text(), "the question")
        self.real_agent.tell_all("consumer-notification Look https://korvale.example/", "halyx off")
        self.victims_item.wait_colour("yellow")
        self.assertTrue(self.victims_item.menu())
        self.assertEqual(self.desktop.opened_links(), [])
