"""Reads the status item and its menu over D-Bus, as a panel does."""
import colorsys
import contextlib
import subprocess

import dbus

from desktop_session import wait_until
from drivers import LineReader

WATCHER = "org.kde.StatusNotifierWatcher"
ITEM = "org.kde.StatusNotifierItem"
MENU = "com.canonical.dbusmenu"
PROPERTIES = "org.freedesktop.DBus.Properties"


def hue_name(red, green, blue):
    """"red", "yellow" or "green" for a pixel of that hue, None for others and for greys; 0 to 255 each."""
    hue, _, saturation = colorsys.rgb_to_hls(red / 255, green / 255, blue / 255)
    degrees = hue * 360
    if saturation < 0.3:
        return None
    if degrees < 20 or degrees > 340:
        return "red"
    if 28 < degrees < 65:
        return "yellow"
    return "green" if 80 < degrees < 175 else None


class MenuEntry:
    """One line of the menu as the panel would draw it."""

    def __init__(self, number, properties, children):
        self.number = int(number)
        self.separator = properties.get("type", "") == "separator"
        # "_" marks a mnemonic in this protocol and "__" stands for itself
        label = str(properties.get("label", ""))
        self.label = label.replace("__", "\0").replace("_", "").replace("\0", "_")
        self.checkable = bool(properties.get("toggle-type", ""))
        self.checked = properties.get("toggle-state", 0) == 1
        self.enabled = bool(properties.get("enabled", True))
        self.children = children

    def __repr__(self):
        return "---" if self.separator else self.label


class TrayItem:
    """The program's item, found through the watcher that panels use."""

    def __init__(self, session, program):
        self.session = session
        self.bus = session.session_bus()
        self.service, self.path = wait_until(lambda: self._find(program.pid), "the tray item")

    def close(self):
        self.bus.close()

    def _find(self, pid):
        with contextlib.suppress(dbus.DBusException):
            watcher = self.bus.get_object(WATCHER, "/StatusNotifierWatcher", introspect=False)
            items = watcher.Get(WATCHER, "RegisteredStatusNotifierItems",
                                dbus_interface=PROPERTIES)
            for item in items:
                service, _, path = str(item).partition("/")
                daemon = self.bus.get_object("org.freedesktop.DBus", "/org/freedesktop/DBus")
                owner_pid = daemon.GetConnectionUnixProcessID(
                    service, dbus_interface="org.freedesktop.DBus")
                if int(owner_pid) == pid:
                    return service, "/" + path if path else "/StatusNotifierItem"
        return None

    def _object(self, path):
        return self.bus.get_object(self.service, path, introspect=False)

    def property(self, name):
        return self._object(self.path).Get(ITEM, name, dbus_interface=PROPERTIES)

    def properties(self):
        return self._object(self.path).GetAll(ITEM, dbus_interface=PROPERTIES)

    @contextlib.contextmanager
    def heard(self):
        """The lines of dbus-monitor for what the item sends meanwhile."""
        watch = f"type='signal',sender='{self.service}',interface='{ITEM}'"
        command = ["dbus-monitor", "--address", self.session.env["DBUS_SESSION_BUS_ADDRESS"], watch]
        with subprocess.Popen(["stdbuf", "-oL", *command], env=self.session.env, text=True,
                              stdout=subprocess.PIPE) as monitor:
            lines = LineReader(monitor.stdout)
            try:
                lines.wait_for("NameAcquired")
                yield lines
            finally:
                monitor.terminate()

    def tooltip(self):
        return str(self.property("ToolTip")[2])

    def pixmap(self):
        """The largest picture: (width, height, ARGB bytes in network order)."""
        width, height, data = max(self.property("IconPixmap"), key=lambda entry: entry[0])
        return int(width), int(height), bytes(data)

    def colour(self):
        """"red", "yellow" or "green": the hue most of the picture's coloured pixels have."""
        _, _, data = self.pixmap()
        votes = {"red": 0, "yellow": 0, "green": 0}
        for offset in range(0, len(data), 4):
            alpha, red, green, blue = data[offset:offset + 4]
            name = hue_name(red, green, blue)
            if alpha >= 128 and name:
                votes[name] += 1
        return max(votes, key=votes.get)

    def wait_colour(self, colour, timeout=20.0):
        wait_until(lambda: self.colour() == colour, f"the item to turn {colour}", timeout)

    def provide_token(self, token):
        """What some panels do before whatever the user did with the item."""
        self._object(self.path).ProvideXdgActivationToken(token, dbus_interface=ITEM)

    def activate(self):
        self._object(self.path).Activate(0, 0, dbus_interface=ITEM)

    def open_context_menu(self):
        self._object(self.path).ContextMenu(100, 100, dbus_interface=ITEM)

    # The menu

    def _menu(self):
        return self._object(str(self.property("Menu")))

    def menu(self):
        _, root = self._menu().GetLayout(0, -1, dbus.Array([], signature="s"),
                                         dbus_interface=MENU)
        return self._entry(root).children

    def _entry(self, node):
        number, properties, children = node
        return MenuEntry(number, properties, [self._entry(child) for child in children])

    def entry(self, label, entries=None):
        for item in self.menu() if entries is None else entries:
            if item.label == label:
                return item
            with contextlib.suppress(KeyError):
                return self.entry(label, item.children)
        raise KeyError(label)

    def open(self, entry):
        self._menu().AboutToShow(entry.number, dbus_interface=MENU)

    def open_menu(self):
        self._menu().AboutToShow(0, dbus_interface=MENU)

    def close_menu(self):
        self._menu().Event(0, "closed", dbus.Int32(0, variant_level=1), dbus.UInt32(0),
                           dbus_interface=MENU)

    def click(self, entry):
        self._menu().Event(entry.number, "clicked", dbus.Int32(0, variant_level=1), dbus.UInt32(0),
                           dbus_interface=MENU)
