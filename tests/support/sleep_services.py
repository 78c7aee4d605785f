"""Stand-ins for the services of a desktop that keep a machine awake, on the session bus of the environment.

sleep_services.py SERVICE [MANNER [NAME...]]

SERVICE: "power", "session" or "portal", as Xfce, GNOME and the desktop portal have them. MANNER:
    grant   grants (the default)
    refuse  answers by an error; the portal by the response 2
    mute    takes the call and never answers; the portal never responds
    late    the portal: responds 0 when the request was closed
    early   the portal: responds 0 before it answers the call
    slow    the portal: takes three seconds until it answers the call, and responds 0 then
NAME: the names to own, where they are others.

Prints lines of JSON: ["ready", ADDRESS] with its own name on the bus; ["asked", METHOD, ARGUMENTS] for every call;
["ended", WHY] when something granted is over, by "release" or, as with the real services, since its owner's connection
"vanished"; "marked" when the test calls com.quenmark.StandIn.Mark on /mark: all that it was asked before stands before.
"""
import json
import sys

from gi.repository import Gio, GLib

SERVICES = {
    'power': (['org.freedesktop.PowerManagement'], '/org/freedesktop/PowerManagement/Inhibit', '''
<node><interface name="org.freedesktop.PowerManagement.Inhibit">
  <method name="Inhibit">
    <arg type="s" direction="in"/><arg type="s" direction="in"/><arg type="u" direction="out"/>
  </method>
  <method name="UnInhibit"><arg type="u" direction="in"/></method>
</interface></node>'''),
    'session': (['org.gnome.SessionManager'], '/org/gnome/SessionManager', '''
<node><interface name="org.gnome.SessionManager">
  <method name="Inhibit">
    <arg type="s" direction="in"/><arg type="u" direction="in"/><arg type="s" direction="in"/>
    <arg type="u" direction="in"/><arg type="u" direction="out"/>
  </method>
  <method name="Uninhibit"><arg type="u" direction="in"/></method>
</interface></node>'''),
    'portal': (['org.freedesktop.portal.Desktop'], '/org/freedesktop/portal/desktop', '''
<node><interface name="org.freedesktop.portal.Inhibit">
  <method name="Inhibit">
    <arg type="s" direction="in"/><arg type="u" direction="in"/><arg type="a{sv}" direction="in"/>
    <arg type="o" direction="out"/>
  </method>
</interface></node>'''),
}
REQUEST = Gio.DBusNodeInfo.new_for_xml('''
<node><interface name="org.freedesktop.portal.Request">
  <method name="Close"/>
  <signal name="Response"><arg type="u"/><arg type="a{sv}"/></signal>
</interface></node>''').interfaces[0]

MARK = Gio.DBusNodeInfo.new_for_xml('''
<node><interface name="com.quenmark.StandIn"><method name="Mark"/></interface></node>''').interfaces[0]

service, manner = sys.argv[1], (sys.argv[2:3] or ['grant'])[0]
names, path, xml = SERVICES[service]
names = sys.argv[3:] or names
bus = Gio.bus_get_sync(Gio.BusType.SESSION)
held = {}  # cookie or request: its owner's name on the bus
registered = {}  # request: registration


def tell(*what):
    print(json.dumps(what[0] if len(what) == 1 else what), flush=True)


def grant(key, sender):
    held[key] = sender
    Gio.bus_watch_name_on_connection(bus, sender, Gio.BusNameWatcherFlags.NONE, None,
                                     lambda *_: end(key, 'vanished'))


def end(key, why):
    if held.pop(key, None):
        tell('ended', why)


def respond(request, code):
    bus.emit_signal(None, request, REQUEST.name, 'Response', GLib.Variant('(ua{sv})', (code, {})))


def asked(_bus, sender, _path, _interface, method, parameters, invocation):
    tell('asked', method, parameters.unpack())
    if service == 'portal':
        ask_portal(sender, invocation)
    elif manner == 'mute':
        pass
    elif manner == 'refuse':
        invocation.return_dbus_error('org.freedesktop.DBus.Error.AccessDenied', 'not today')
    elif method == 'Inhibit':
        key = 4711 + len(held)
        grant(key, sender)
        invocation.return_value(GLib.Variant('(u)', (key,)))
    elif held.get(parameters.unpack()[0]) == sender:
        end(parameters.unpack()[0], 'release')
        invocation.return_value(None)
    else:
        invocation.return_dbus_error('org.freedesktop.DBus.Error.InvalidArgs', 'not yours')


def ask_portal(sender, invocation):
    request = '/org/freedesktop/portal/desktop/request/%s/t%d' % (sender[1:].replace('.', '_'), len(registered))
    registered[request] = bus.register_object(request, REQUEST, closed, None, None)
    grant(request, sender)
    if manner == 'early':
        respond(request, 0)
    if manner == 'slow':
        GLib.timeout_add_seconds(3, answer_and_respond, invocation, request)
    else:
        answer_and_respond(invocation, request)


def answer_and_respond(invocation, request):
    invocation.return_value(GLib.Variant('(o)', (request,)))
    if manner in ('grant', 'refuse', 'slow'):
        respond(request, 2 if manner == 'refuse' else 0)


def closed(_bus, _sender, request, _interface, method, _parameters, invocation):
    tell('asked', method, [])
    end(request, 'release')
    invocation.return_value(None)
    if manner == 'late':
        respond(request, 0)
    bus.unregister_object(registered[request])


def marked(*call):
    tell('marked')
    call[-1].return_value(None)


bus.register_object('/mark', MARK, marked, None, None)
bus.register_object(path, Gio.DBusNodeInfo.new_for_xml(xml).interfaces[0], asked, None, None)
for name in names:
    answer = bus.call_sync('org.freedesktop.DBus', '/org/freedesktop/DBus', 'org.freedesktop.DBus', 'RequestName',
                           GLib.Variant('(su)', (name, 4)), None, Gio.DBusCallFlags.NONE, -1, None)
    assert answer.unpack() == (1,), name
tell('ready', bus.get_unique_name())
GLib.MainLoop().run()
