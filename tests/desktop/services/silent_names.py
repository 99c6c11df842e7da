#!/usr/bin/python3
"""Owns the names given as arguments on the session bus and never answers anything."""
import signal
import sys

import dbus
import dbus.bus

bus = dbus.bus.BusConnection(dbus.bus.BUS_SESSION)
for name in sys.argv[1:]:
    if bus.request_name(name) != dbus.bus.REQUEST_NAME_REPLY_PRIMARY_OWNER:
        sys.exit(f"{name} has an owner already")
print("ready", flush=True)
signal.pause()
