#!/usr/bin/python3
"""Sends the agent's signals as fast as it may: ADDRESS DESTINATION RATE, DESTINATION "-" for all
who listen, RATE in signals a second. Says "ready" once a second's worth is sent and goes on until it
is ended."""
import sys
import time

import dbus
import dbus.bus
import dbus.lowlevel

SIGNALS = (("com.korvale.halyx", "connected"), ("com.korvale.halyx", "notconnected"),
           ("com.korvale.timer", "aggregated_messages"), ("com.korvale", "consumer_notification"),
           ("com.korvale.agent", "running"), ("com.korvale.agent_server", "Message"))

address, destination, rate = sys.argv[1], sys.argv[2], int(sys.argv[3])
bus = dbus.bus.BusConnection(address)
messages = []
for interface, member in SIGNALS:
    message = dbus.lowlevel.SignalMessage("/com/korvale/agent_server", interface, member)
    if destination != "-":
        message.set_destination(destination)
    messages.append(message)
begin, sent = time.monotonic(), 0
while True:
    for message in messages:
        bus.send_message(message)
    sent += len(messages)
    if sent % (100 * len(messages)) == 0:
        bus.flush()
        time.sleep(max(0.0, begin + sent / rate - time.monotonic()))
    if rate <= sent < rate + len(messages):
        print("ready", flush=True)
