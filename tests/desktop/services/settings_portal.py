#!/usr/bin/python3
"""The Settings part of a desktop portal. Argument: the colour scheme at first (0, 1 or 2).

Control, interface com.korvale.Test: SetColorScheme(u) stores the value and emits SettingChanged.
"""
import sys

import dbus
import dbus.service
from dbus.mainloop.glib import DBusGMainLoop
from gi.repository import GLib

SETTINGS = "org.freedesktop.portal.Settings"
APPEARANCE = "org.freedesktop.appearance"


class Portal(dbus.service.Object):
    def __init__(self, bus, scheme):
        super().__init__(bus, "/org/freedesktop/portal/desktop")
        self.scheme = scheme

    def value(self, namespace, key, level):
        if (namespace, key) != (APPEARANCE, "color-scheme"):
            raise dbus.DBusException("Requested setting not found",
                                     name="org.freedesktop.portal.Error.NotFound")
        return dbus.UInt32(self.scheme, variant_level=level)

    @dbus.service.method(SETTINGS, in_signature="ss", out_signature="v")
    def Read(self, namespace, key):
        return self.value(namespace, key, 1)  # Read wraps its value in a second variant

    @dbus.service.method(SETTINGS, in_signature="ss", out_signature="v")
    def ReadOne(self, namespace, key):
        return self.value(namespace, key, 0)

    @dbus.service.signal(SETTINGS, signature="ssv")
    def SettingChanged(self, namespace, key, value):
        pass

    @dbus.service.method("com.korvale.Test", in_signature="u")
    def SetColorScheme(self, scheme):
        self.scheme = int(scheme)
        self.SettingChanged(APPEARANCE, "color-scheme", dbus.UInt32(self.scheme))


def main():
    DBusGMainLoop(set_as_default=True)
    bus = dbus.SessionBus()
    portal = Portal(bus, int(sys.argv[1]) if len(sys.argv) > 1 else 0)
    owned = dbus.service.BusName("org.freedesktop.portal.Desktop", bus, do_not_queue=True)
    print("ready", flush=True)
    GLib.MainLoop().run()
    del portal, owned


main()
