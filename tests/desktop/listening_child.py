"""Says what is heard on the accessibility bus, one line of JSON each: [event, role, name, detail, value]."""
import json
import sys

import gi

gi.require_version('Atspi', '2.0')
from gi.repository import Atspi, GLib  # noqa: E402

EVENTS = sys.argv[1:]


def heard(event):
    source = event.source
    try:
        source.clear_cache()
        line = [event.type, source.get_role_name(), source.get_name(), event.detail1, str(event.any_data or '')]
    except (AttributeError, GLib.Error):  # it vanished while we looked
        line = [event.type, '', '', event.detail1, '']
    print(json.dumps(line), flush=True)


listener = Atspi.EventListener.new(heard)
for name in EVENTS:
    assert listener.register(name), name
GLib.timeout_add(0, lambda: print(json.dumps('ready'), flush=True))
Atspi.event_main()
