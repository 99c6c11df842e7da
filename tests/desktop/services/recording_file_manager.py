#!/usr/bin/python3
"""A file manager that records what it is asked to show: it owns org.freedesktop.FileManager1.

Calls(), interface com.korvale.Test on the same object, gives all ShowItems calls as JSON.
"""
import json

import dbus
import dbus.service
from dbus.mainloop.glib import DBusGMainLoop
from gi.repository import GLib

NAME = "org.freedesktop.FileManager1"


class Manager(dbus.service.Object):
    def __init__(self, bus):
        super().__init__(bus, "/org/freedesktop/FileManager1")
        self.calls = []

    @dbus.service.method(NAME, in_signature="ass")
    def ShowItems(self, addresses, startup_id):
        self.calls.append([[str(address) for address in addresses], str(startup_id)])

    @dbus.service.method("com.korvale.Test", out_signature="s")
    def Calls(self):
        return json.dumps(self.calls)


def main():
    DBusGMainLoop(set_as_default=True)
    bus = dbus.SessionBus()
    manager = Manager(bus)
    owned = dbus.service.BusName(NAME, bus, do_not_queue=True)
    print("ready", flush=True)
    GLib.MainLoop().run()
    del manager, owned


main()
