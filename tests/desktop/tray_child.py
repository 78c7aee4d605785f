"""Asks a desktop's status items over the session bus, one line of JSON each."""
import json
import sys

from gi.repository import Gio, GLib

WATCHER = ('org.kde.StatusNotifierWatcher', '/StatusNotifierWatcher', 'org.kde.StatusNotifierWatcher')
ITEM = 'org.kde.StatusNotifierItem'

bus = Gio.bus_get_sync(Gio.BusType.SESSION)


def call(name, path, interface, method, parameters):
    return bus.call_sync(name, path, interface, method, parameters, None, Gio.DBusCallFlags.NO_AUTO_START, 20000, None).unpack()


def read(name, path, interface, property):
    return call(name, path, 'org.freedesktop.DBus.Properties', 'Get', GLib.Variant('(ss)', (interface, property)))[0]


def items():
    """As [bus name, object path]."""
    return [entry.partition('/')[::2] for entry in read(*WATCHER, 'RegisteredStatusNotifierItems')]


def has_host():
    return read(*WATCHER, 'IsStatusNotifierHostRegistered')


def property_of_item(name):
    owner, path = items()[0]
    return read(owner, '/' + path, ITEM, name)


def pictures():
    """{side: rows of ARGB}, as the item offers its icon."""
    return {width: [[list(data[4 * (y * width + x):][:4]) for x in range(width)] for y in range(height)]
            for width, height, data in property_of_item('IconPixmap')}


def activate():
    owner, path = items()[0]
    call(owner, '/' + path, ITEM, 'Activate', GLib.Variant('(ii)', (0, 0)))
    return True


QUESTIONS = {'has_host': has_host, 'items': items, 'tooltip': lambda: property_of_item('ToolTip')[2],
             'pictures': pictures, 'activate': activate, 'status': lambda: property_of_item('Status')}

for line in sys.stdin:
    try:
        answer = QUESTIONS[json.loads(line)]()
    except (GLib.Error, IndexError):  # nobody there to be asked
        answer = None
    print(json.dumps(answer), flush=True)
