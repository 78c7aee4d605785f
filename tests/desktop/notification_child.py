"""Owns org.freedesktop.Notifications and prints each notification as a line of JSON."""
import json

from gi.repository import Gio, GLib

INTERFACE = '''<node><interface name="org.freedesktop.Notifications">
  <method name="Notify">
    <arg type="s" direction="in"/><arg type="u" direction="in"/><arg type="s" direction="in"/><arg type="s" direction="in"/>
    <arg type="s" direction="in"/><arg type="as" direction="in"/><arg type="a{sv}" direction="in"/>
    <arg type="i" direction="in"/><arg type="u" direction="out"/>
  </method>
  <method name="GetCapabilities"><arg type="as" direction="out"/></method>
  <method name="GetServerInformation">
    <arg type="s" direction="out"/><arg type="s" direction="out"/><arg type="s" direction="out"/><arg type="s" direction="out"/>
  </method>
  <method name="CloseNotification"><arg type="u" direction="in"/></method>
</interface></node>'''

count = 0


def called(_connection, _sender, _path, _interface, method, parameters, invocation):
    global count
    if method == 'Notify':
        count += 1
        app_name, replaces, icon, summary, body, actions, hints, _ = parameters.unpack()
        print(json.dumps({'app_name': app_name, 'replaces': replaces, 'icon': icon, 'summary': summary, 'body': body,
                          'actions': actions, 'hints': hints}), flush=True)
        invocation.return_value(GLib.Variant('(u)', (count,)))
    elif method == 'GetCapabilities':
        invocation.return_value(GLib.Variant('(as)', (['body', 'actions'],)))
    elif method == 'GetServerInformation':
        invocation.return_value(GLib.Variant('(ssss)', ('recorder', 'Orvalen', '1', '1.2')))
    else:
        invocation.return_value(None)


def connected(connection, _name):
    connection.register_object('/org/freedesktop/Notifications', Gio.DBusNodeInfo.new_for_xml(INTERFACE).interfaces[0],
                               called, None, None)


Gio.bus_own_name(Gio.BusType.SESSION, 'org.freedesktop.Notifications', Gio.BusNameOwnerFlags.NONE, connected,
                 lambda *_: print('"ready"', flush=True), lambda *_: exit(1))
GLib.MainLoop().run()
