#!/usr/bin/python3
"""A notification server that records what it is told and acts on command.

Owns org.freedesktop.Notifications. Arguments: the capabilities to claim, separated by commas.
Control, interface com.korvale.Test on the same object: Calls() gives all Notify calls as JSON,
Invoke(id, key) and Close(id, reason) emit the signals a real server would.
"""
import json
import sys

import dbus
import dbus.service
from dbus.mainloop.glib import DBusGMainLoop
from gi.repository import GLib

NAME = "org.freedesktop.Notifications"
CONTROL = "com.korvale.Test"


def plain(value):
    """A D-Bus value as JSON can hold it; byte arrays as their length."""
    if isinstance(value, dbus.Boolean):
        return bool(value)
    if isinstance(value, int):
        return int(value)
    if isinstance(value, float):
        return float(value)
    if isinstance(value, str):
        return str(value)
    if isinstance(value, dbus.Array) and value.signature == "y":
        return {"bytes": len(value)}
    if isinstance(value, (list, tuple)):
        return [plain(item) for item in value]
    if isinstance(value, dict):
        return {str(key): plain(item) for key, item in value.items()}
    return repr(value)


class Server(dbus.service.Object):
    def __init__(self, bus, capabilities):
        super().__init__(bus, "/org/freedesktop/Notifications")
        self.capabilities = capabilities
        self.calls = []

    @dbus.service.method(NAME, in_signature="susssasa{sv}i", out_signature="u")
    def Notify(self, app_name, replaces_id, app_icon, summary, body, actions, hints, timeout):
        number = len(self.calls) + 1
        self.calls.append({
            "id": number, "app_name": plain(app_name), "replaces_id": plain(replaces_id),
            "app_icon": plain(app_icon), "summary": plain(summary), "body": plain(body),
            "actions": plain(actions), "hints": plain(hints), "timeout": plain(timeout)})
        return dbus.UInt32(number)

    @dbus.service.method(NAME, out_signature="as")
    def GetCapabilities(self):
        return dbus.Array(self.capabilities, signature="s")

    @dbus.service.method(NAME, out_signature="ssss")
    def GetServerInformation(self):
        return ("recording", "tests", "1", "1.2")

    @dbus.service.method(NAME, in_signature="u")
    def CloseNotification(self, number):
        self.NotificationClosed(number, 3)

    @dbus.service.signal(NAME, signature="us")
    def ActionInvoked(self, number, key):
        pass

    @dbus.service.signal(NAME, signature="uu")
    def NotificationClosed(self, number, reason):
        pass

    @dbus.service.method(CONTROL, out_signature="s")
    def Calls(self):
        return json.dumps(self.calls)

    @dbus.service.method(CONTROL, in_signature="us")
    def Invoke(self, number, key):
        self.ActionInvoked(number, key)

    @dbus.service.method(CONTROL, in_signature="uu")
    def Close(self, number, reason):
        self.NotificationClosed(number, reason)


def main():
    DBusGMainLoop(set_as_default=True)
    capabilities = [c for c in (sys.argv[1] if len(sys.argv) > 1 else "body").split(",") if c]
    bus = dbus.SessionBus()
    server = Server(bus, capabilities)
    owned = dbus.service.BusName(NAME, bus, do_not_queue=True)
    print("ready", flush=True)
    GLib.MainLoop().run()
    del server, owned


main()
