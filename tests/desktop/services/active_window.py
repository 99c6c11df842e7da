#!/usr/bin/python3
"""Remembers which window a compositor's script last told to have the focus.

Interface com.korvale.Test on com.korvale.Test.Windows: Activated(pid, title) by the script, Active() → (pid, title)."""
import dbus
import dbus.service
from dbus.mainloop.glib import DBusGMainLoop
from gi.repository import GLib


class Windows(dbus.service.Object):
    def __init__(self, bus):
        super().__init__(bus, "/")
        self.active = (0, "")

    @dbus.service.method("com.korvale.Test", in_signature="is")
    def Activated(self, pid, title):
        self.active = (pid, title)

    @dbus.service.method("com.korvale.Test", out_signature="is")
    def Active(self):
        return self.active


def main():
    DBusGMainLoop(set_as_default=True)
    bus = dbus.SessionBus()
    windows = Windows(bus)
    owned = dbus.service.BusName("com.korvale.Test.Windows", bus, do_not_queue=True)
    print("ready", flush=True)
    GLib.MainLoop().run()
    del windows, owned


main()
