#!/usr/bin/python3
"""Owns the agent's name on the bus ADDRESS, says that it has started, and answers nothing, but notes
each request. SIGUSR1: gives the name away. SIGUSR2: answers all of it at last, twice, in the worst
way."""
import json
import signal
import sys

import dbus
import dbus.bus
import dbus.lowlevel
from dbus.mainloop.glib import DBusGMainLoop
from gi.repository import GLib

NAME, PATH = "com.korvale.agent_server", "/com/korvale/agent_server"
FORGED = {"RESP": "OK", "VALU": "0", "PNAME": "forged", "PMODE": "Local Policy", "PNOTF": "no"}
DBusGMainLoop(set_as_default=True)
bus = dbus.bus.BusConnection(sys.argv[1])
held = []


def note(_bus, message):
    if message.get_member() != "Request":
        return dbus.lowlevel.HANDLER_RESULT_NOT_YET_HANDLED
    held.append(message)
    data = bytes(message.get_args_list(byte_arrays=True)[0]["<DATA>"])
    print(json.loads(data)["CMD_"], file=sys.stderr, flush=True)
    return dbus.lowlevel.HANDLER_RESULT_HANDLED


def answer(request):
    reply = dbus.lowlevel.MethodReturnMessage(request)
    data = dbus.ByteArray(json.dumps(FORGED).encode())
    reply.append(dbus.Dictionary({"<DATA>": data}, signature="sv"), signature="a{sv}")
    bus.send_message(reply)


def answer_all():
    for request in held * 2:
        answer(request)
    bus.name_has_owner(NAME)  # the bus has dealt with all of it
    print("answered", file=sys.stderr, flush=True)
    return GLib.SOURCE_CONTINUE


def give_name_away():
    bus.release_name(NAME)
    return GLib.SOURCE_CONTINUE


bus.add_message_filter(note)
GLib.unix_signal_add(GLib.PRIORITY_DEFAULT, signal.SIGUSR1, give_name_away)
GLib.unix_signal_add(GLib.PRIORITY_DEFAULT, signal.SIGUSR2, answer_all)
bus.request_name(NAME)
bus.send_message(dbus.lowlevel.SignalMessage(PATH, "com.korvale.agent", "started"))
print("ready", flush=True)
GLib.MainLoop().run()
