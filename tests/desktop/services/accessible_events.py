#!/usr/bin/python3
"""Prints what the program of that pid tells screen readers, one JSON line each: the event's kind
(focus or name), role and name of the accessible. First a line "ready"."""
import json
import sys

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi  # noqa: E402

KINDS = {"object:state-changed:focused": "focus",
         "object:property-change:accessible-name": "name"}


def on_event(event):
    kind = KINDS.get(event.type)
    source = event.source
    if kind and source and source.get_process_id() == int(sys.argv[1]) and (
            kind == "name" or event.detail1):
        print(json.dumps([kind, source.get_role_name(), source.get_name()]), flush=True)


listener = Atspi.EventListener.new(on_event)
for known in KINDS:
    listener.register(known)
print("ready", flush=True)
Atspi.event_main()
