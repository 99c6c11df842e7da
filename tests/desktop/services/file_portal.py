#!/usr/bin/python3
"""The FileChooser part of a desktop portal, with a person who has decided already.

Control, interface com.korvale.Test: SetPlace(s) names the address that is chosen from now on, empty for none;
Asked() tells as JSON what SaveFile was asked for, oldest first.
"""
import json

import dbus
import dbus.service
from dbus.mainloop.glib import DBusGMainLoop
from gi.repository import GLib

CHOOSER = "org.freedesktop.portal.FileChooser"
PATH = "/org/freedesktop/portal/desktop"


class Request(dbus.service.Object):
    @dbus.service.signal("org.freedesktop.portal.Request", signature="ua{sv}")
    def Response(self, response, results):
        pass


class Portal(dbus.service.Object):
    def __init__(self, bus):
        super().__init__(bus, PATH)
        self.bus = bus
        self.place = ""
        self.asked = []

    @dbus.service.method(CHOOSER, in_signature="ssa{sv}", out_signature="o", sender_keyword="sender")
    def SaveFile(self, parent, title, options, sender):
        self.asked.append([parent, title, options["current_name"]])
        path = f"{PATH}/request/{sender[1:].replace('.', '_')}/{options['handle_token']}"
        GLib.idle_add(self.respond, Request(self.bus, path))  # the reply goes first
        return dbus.ObjectPath(path)

    def respond(self, request):
        if self.place:
            request.Response(dbus.UInt32(0), {"uris": dbus.Array([self.place], signature="s")})
        else:
            request.Response(dbus.UInt32(1), dbus.Dictionary({}, signature="sv"))
        request.remove_from_connection()
        return False

    @dbus.service.method("com.korvale.Test", in_signature="s")
    def SetPlace(self, place):
        self.place = str(place)

    @dbus.service.method("com.korvale.Test", out_signature="s")
    def Asked(self):
        return json.dumps(self.asked)


def main():
    DBusGMainLoop(set_as_default=True)
    bus = dbus.SessionBus()
    portal = Portal(bus)
    owned = dbus.service.BusName("org.freedesktop.portal.Desktop", bus, do_not_queue=True)
    print("ready", flush=True)
    GLib.MainLoop().run()
    del portal, owned


main()
