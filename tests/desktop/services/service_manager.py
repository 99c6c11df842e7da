#!/usr/bin/python3
"""In the place of systemd on the system bus: units that do not run, and can be run once with success."""
import dbus
import dbus.service
from dbus.mainloop.glib import DBusGMainLoop
from gi.repository import GLib

NAME = "org.freedesktop.systemd1"
UNIT_PATH = "/org/freedesktop/systemd1/unit/any"
PROPERTIES = "org.freedesktop.DBus.Properties"


class Unit(dbus.service.Object):
    @dbus.service.method(PROPERTIES, in_signature="s", out_signature="a{sv}")
    def GetAll(self, interface):
        if interface.endswith(".Unit"):
            return {"LoadState": "loaded", "ActiveState": "inactive"}
        return {"Result": "success", "ExecMainStatus": dbus.Int32(0)}


class Manager(dbus.service.Object):
    jobs = 0

    @dbus.service.method(f"{NAME}.Manager")
    def Subscribe(self):
        pass

    @dbus.service.method(f"{NAME}.Manager", in_signature="s", out_signature="o")
    def LoadUnit(self, _unit):
        return UNIT_PATH

    @dbus.service.method(f"{NAME}.Manager", in_signature="ss", out_signature="o")
    def StartUnit(self, unit, _mode):
        Manager.jobs += 1
        job = f"/org/freedesktop/systemd1/job/{Manager.jobs}"
        GLib.idle_add(self.JobRemoved, Manager.jobs, job, unit, "done")
        return job

    @dbus.service.signal(f"{NAME}.Manager", signature="uoss")
    def JobRemoved(self, number, job, unit, result):
        pass


DBusGMainLoop(set_as_default=True)
bus = dbus.SystemBus()
name = dbus.service.BusName(NAME, bus, do_not_queue=True)
manager = Manager(bus, "/org/freedesktop/systemd1")
unit = Unit(bus, UNIT_PATH)
print("ready", flush=True)
GLib.MainLoop().run()
