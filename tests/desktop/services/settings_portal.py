#!/usr/bin/python3
"""The Settings part of a desktop portal. Arguments: the colour scheme at first (0, 1 or 2), the contrast (0 or 1), and
the factor of texts; what is not given it does not know.

Control, interface com.korvale.Test: SetColorScheme(u) stores the value and emits SettingChanged.
"""
import sys

import dbus
import dbus.service
from dbus.mainloop.glib import DBusGMainLoop
from gi.repository import GLib

SETTINGS = "org.freedesktop.portal.Settings"
SCHEME = ("org.freedesktop.appearance", "color-scheme")
CONTRAST = ("org.freedesktop.appearance", "contrast")
TEXT_SCALE = ("org.gnome.desktop.interface", "text-scaling-factor")
TYPES = {SCHEME: dbus.UInt32, CONTRAST: dbus.UInt32, TEXT_SCALE: dbus.Double}


class Portal(dbus.service.Object):
    def __init__(self, bus, values):
        super().__init__(bus, "/org/freedesktop/portal/desktop")
        self.values = values

    def value(self, namespace, key, level):
        if (namespace, key) not in self.values:
            raise dbus.DBusException("Requested setting not found",
                                     name="org.freedesktop.portal.Error.NotFound")
        return TYPES[namespace, key](self.values[namespace, key], variant_level=level)

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
        self.values[SCHEME] = int(scheme)
        self.SettingChanged(*SCHEME, dbus.UInt32(scheme))


def main():
    DBusGMainLoop(set_as_default=True)
    bus = dbus.SessionBus()
    portal = Portal(bus, {SCHEME: 0} | {key: float(value) for key, value in zip(TYPES, sys.argv[1:])})
    owned = dbus.service.BusName("org.freedesktop.portal.Desktop", bus, do_not_queue=True)
    print("ready", flush=True)
    GLib.MainLoop().run()
    del portal, owned


main()
