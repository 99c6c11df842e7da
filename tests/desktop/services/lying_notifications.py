#!/usr/bin/python3
"""Owns org.freedesktop.Notifications and answers each call with something else than it should,
then again, and with signals nobody asked for."""
import sys

import dbus
import dbus.bus
import dbus.lowlevel
from dbus.mainloop.glib import DBusGMainLoop
from gi.repository import GLib

NAME, PATH = "org.freedesktop.Notifications", "/org/freedesktop/Notifications"
DBusGMainLoop(set_as_default=True)
bus = dbus.bus.BusConnection(dbus.bus.BUS_SESSION)


def signal(member, signature, *values):
    message = dbus.lowlevel.SignalMessage(PATH, NAME, member)
    message.append(*values, signature=signature)
    bus.send_message(message)


def answer(_bus, message):
    if message.get_interface() != NAME:
        return dbus.lowlevel.HANDLER_RESULT_NOT_YET_HANDLED
    print(message.get_member(), file=sys.stderr, flush=True)
    for _ in range(2):  # the second one is nobody's
        reply = dbus.lowlevel.MethodReturnMessage(message)
        if message.get_member() == "GetCapabilities":
            reply.append(dbus.UInt64(2 ** 64 - 1), signature="t")
        else:
            reply.append("a number", {"x": -1}, signature="sa{si}")
        bus.send_message(reply)
    signal("ActionInvoked", "us", 0, "default")
    signal("ActionInvoked", "s", "default")
    signal("NotificationClosed", "ss", "a", "b")
    return dbus.lowlevel.HANDLER_RESULT_HANDLED


bus.add_message_filter(answer)
bus.request_name(NAME)
print("ready", flush=True)
GLib.MainLoop().run()
