"""Says what is heard on the accessibility bus, one object of JSON a line."""
import json
import sys

import gi

gi.require_version('Atspi', '2.0')
from gi.repository import Atspi, GLib  # noqa: E402

EVENTS = sys.argv[1:]


def heard(event):
    role, name = '', ''
    try:
        event.source.clear_cache()
        role, name = event.source.get_role_name(), event.source.get_name()
    except GLib.Error:  # it vanished while we looked
        pass
    print(json.dumps({'event': event.type, 'role': role, 'name': name, 'detail': event.detail1}), flush=True)


listener = Atspi.EventListener.new(heard)
for name in EVENTS:
    assert listener.register(name), name
GLib.timeout_add(0, lambda: print(json.dumps('ready'), flush=True))
Atspi.event_main()
