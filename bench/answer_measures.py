"""How soon the program answers: a menu click during a large batch, an icon after a signal."""
import json
import os
import shutil
import statistics
import subprocess
import threading
import time

import dbus
import dbus.lowlevel

import process_measures as measure
from desktop_measures import BATCH, ms
from desktop_session import HERE, SessionError
from drivers import host_cache
from report import Figure
from tray import ITEM, PROPERTIES, TrayItem

GROUP = "Answers"
AGENT = "com.korvale.agent_server"


def write_lists(bench):
    """Two lists of 100,000 records with different bytes, beside the host cache."""
    paths = []
    for count in (100_000, 99_990):
        path = str(bench.folder / f"{count}.log")
        subprocess.run([str(bench.binaries / "korvale-bench-batch"), "--mode=generate",
                        f"--repeat={count}", path], check=True)
        paths.append(path)
    return paths


def place(bench, path):
    folder = host_cache(bench.session)
    shutil.copy(path, folder / ".coming")
    os.replace(folder / ".coming", folder / "file_states.log")
    (folder / "header.log").write_text(json.dumps({"MessageMask": 1}))


def clicks_during_batches(bench, agent, item, pid):
    entry = next(one for one in item.menu() if one.checkable)
    taken = []
    for path in write_lists(bench) * (2 if bench.quick else 4):
        place(bench, path)
        before, begin = measure.own_seconds(pid), time.monotonic()
        agent.tell(f"post {BATCH}")
        item.click(entry)
        answered = time.monotonic() - begin
        time.sleep(1)
        taken.append((answered, measure.own_seconds(pid) - before))
    answered, own = (statistics.median(values) for values in zip(*taken))
    bench.clear_host_cache()
    return [Figure(GROUP, "menu click during a changed batch of 100,000 records", ms(answered),
                   f"{ms(own)}, the batch's own time", answered / own, "≤ 2 batches", 2.0)]


class IconWatch:
    """An agent of its own and a second tray host: from sending a signal to having the picture."""

    def __init__(self, bench, item):
        self.spans = []
        self._sent = 0.0
        self._changed = threading.Event()
        self._system = bench.session.system_bus()
        self._system.request_name(AGENT)
        self._session = bench.session.session_bus()
        self._object = self._session.get_object(item.service, item.path, introspect=False)
        self._session.add_signal_receiver(self._new_icon, "NewIcon", ITEM, item.service)

    def _new_icon(self, *_arguments):
        self.picture()
        self.spans.append(time.monotonic() - self._sent)
        self._changed.set()

    def picture(self):
        return self._object.Get(ITEM, "IconPixmap", dbus_interface=PROPERTIES,
                                byte_arrays=True)

    def ping(self):
        self._object.Ping(dbus_interface="org.freedesktop.DBus.Peer")

    def after(self, interface, member):
        message = dbus.lowlevel.SignalMessage("/com/korvale/agent_server", interface, member)
        self._changed.clear()
        self._sent = time.monotonic()
        self._system.send_message(message)
        self._system.flush()
        if not self._changed.wait(10):
            raise SessionError(f"the icon did not change after {interface}.{member}")

    def close(self):
        self._system.close()
        self._session.close()


def answer_under_flood(bench, item):
    """The menu asked for again and again, without and with 10,000 signals a second of another process."""
    turns = 50 if bench.quick else 300

    def answered():
        return statistics.median(seconds_of(item.open_menu) for _ in range(turns))
    answered()  # what the first opening needs is there from now on
    calm = answered()
    with subprocess.Popen(["/usr/bin/python3", str(HERE / "services" / "flooding_neighbour.py"),
                           bench.session.env["DBUS_SYSTEM_BUS_ADDRESS"], "-", "10000"],
                          stdout=subprocess.PIPE, text=True) as flood:
        flood.stdout.readline()  # a second's worth is sent
        flooded = answered()
        flood.kill()
    item.close_menu()
    return [Figure(GROUP, "the menu, asked for while another process sends 10,000 signals a second",
                   f"{flooded * 1e3:.2f} ms", f"{calm * 1e3:.2f} ms without", flooded / calm,
                   "≤ 2 undisturbed", 2.0)]


def seconds_of(act):
    begin = time.monotonic()
    act()
    return time.monotonic() - begin


def icon_after_signal(bench, item):
    watch = IconWatch(bench, item)
    trips, transfers = [], []
    for turn in range(10 if bench.quick else 60):
        watch.after("com.korvale.halyx", "connected" if turn % 2 == 0 else "notconnected")
        time.sleep(0.03)
        trips.append(seconds_of(watch.ping))
        time.sleep(0.03)
        transfers.append(seconds_of(watch.picture))
    seen, trip, transfer = (statistics.median(one) for one in (watch.spans, trips, transfers))
    watch.close()
    return [Figure(GROUP, "signal on the bus to the new icon at a tray host", f"{seen * 1e3:.2f} ms",
                   f"2 x {trip * 1e3:.2f} + {transfer * 1e3:.2f} ms", seen / (2 * trip + transfer),
                   "≤ 2 round trips + transfer", 1.0)]


def answers(bench):
    program = bench.started(bench.program)
    item = TrayItem(bench.session, program.process)
    time.sleep(2)
    figures = icon_after_signal(bench, item)
    with bench.agent() as agent:
        figures += clicks_during_batches(bench, agent, item, program.pid)
        figures += answer_under_flood(bench, item)
    item.close()
    program.end()
    return figures, {}
