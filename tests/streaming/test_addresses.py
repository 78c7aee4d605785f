"""Which addresses are found on real network interfaces."""
import socket

import pytest

from machine import wait_for

NONE = {'isDetected': False, 'ipAddress': '', 'interfaceName': '', 'deviceLabel': 'No USB Tethering Active',
        'connectionURL': ''}


def link(name, address, label):
    return {'isDetected': True, 'ipAddress': address, 'interfaceName': name, 'deviceLabel': label,
            'connectionURL': 'http://%s:8999' % address}


IPHONE, ANDROID, BRIDGE = 'Apple iPhone USB Link', 'Android USB Tether Link', 'USB Network Bridge'
ALONE = '127.0.0.1'

CASES = {
    'nothing but the machine itself': ([], ALONE, NONE),
    'the built-in Wi-Fi alone': ([('en0', '192.168.1.20/24')], '192.168.1.20', NONE),
    'an adapter listed before the Wi-Fi': (
        [('en7', '10.0.0.5/24'), ('en0', '192.168.1.20/24')], '192.168.1.20', link('en7', '10.0.0.5', BRIDGE)),
    'an adapter listed after the Wi-Fi': (
        [('en0', '192.168.1.20/24'), ('en7', '10.0.0.5/24')], '192.168.1.20', link('en7', '10.0.0.5', BRIDGE)),
    'an adapter alone': ([('en7', '10.0.0.5/24')], '10.0.0.5', link('en7', '10.0.0.5', BRIDGE)),
    'both built-in ports': (
        [('en0', '192.168.1.20/24'), ('en1', '192.168.2.21/24')], '192.168.2.21', link('en1', '192.168.2.21', BRIDGE)),
    'both built-in ports the other way round': (
        [('en1', '192.168.2.21/24'), ('en0', '192.168.1.20/24')], '192.168.1.20', link('en1', '192.168.2.21', BRIDGE)),
    'the Wi-Fi with two addresses': ([('en0', '192.168.1.20/24', '10.9.8.7/8')], '10.9.8.7', NONE),
    'a link-local address alone': ([('en0', '169.254.11.12/16')], ALONE, NONE),
    'a link-local address on the cable': (
        [('en0', '192.168.1.20/24'), ('en5', '169.254.11.12/16')], '192.168.1.20', NONE),
    'an iPhone beside the Wi-Fi': (
        [('en0', '192.168.1.20/24'), ('en5', '172.20.10.2/28')], '192.168.1.20', link('en5', '172.20.10.2', IPHONE)),
    'an Android phone': ([('en6', '192.168.42.129/24')], '192.168.42.129', link('en6', '192.168.42.129', ANDROID)),
    'a bridge': ([('bridge100', '192.168.64.1/24')], '192.168.64.1', link('bridge100', '192.168.64.1', BRIDGE)),
    'a tunnel alone': ([('utun2', '10.8.0.3/24')], '10.8.0.3', NONE),
    'a tunnel in the range of the iPhone': (
        [('utun2', '172.16.0.9/24')], '172.16.0.9', link('utun2', '172.16.0.9', IPHONE)),
    'the Wi-Fi of a phone': ([('en0', '172.20.10.5/28')], '172.20.10.5', NONE),
    'two cables': (
        [('en7', '10.0.0.5/24'), ('en5', '172.20.10.2/28')], '10.0.0.5', link('en7', '10.0.0.5', BRIDGE)),
    'two cables the other way round': (
        [('en5', '172.20.10.2/28'), ('en7', '10.0.0.5/24')], '172.20.10.2', link('en5', '172.20.10.2', IPHONE)),
    'an interface without an IPv4 address': ([('en0',), ('en5', 'fd00::5/64')], ALONE, NONE),
}


@pytest.mark.parametrize('interfaces, wifi, bridge', CASES.values(), ids=CASES.keys())
def test_what_is_found_on(machine, interfaces, wifi, bridge):
    for name, *addresses in interfaces:
        machine.add_interface(name, *addresses)
    state = machine.control().state
    assert (state['wifiIP'], state['usbBridge'], state['usbIP']) == (wifi, bridge, bridge['ipAddress'])
    assert state['bonjourURL'] == 'http://%s:8999' % state['localHostName']
    assert state['primaryURL'] == (state['bonjourURL'] if wifi == ALONE else 'http://%s:8999' % wifi)


def test_a_cable_without_a_phone_at_its_end_is_a_bridge_and_no_address_for_phones(machine):
    machine.add_interface('en5', '172.20.10.2/28', carrier=False)
    state = machine.control().state
    assert state['wifiIP'] == ALONE
    assert state['usbBridge'] == link('en5', '172.20.10.2', IPHONE)


def test_an_interface_that_is_switched_off_is_neither(machine):
    machine.add_interface('en5', '172.20.10.2/28', up=False)
    state = machine.control().state
    assert (state['wifiIP'], state['usbBridge']) == (ALONE, NONE)


def test_the_machines_own_address_is_found_nowhere_even_under_another_name(machine):
    machine.add_interface('en5', '127.9.9.9/32')
    state = machine.control().state
    assert (state['wifiIP'], state['usbBridge']) == (ALONE, NONE)


def test_a_cable_that_is_plugged_in_is_seen_at_the_next_look(machine):
    control = machine.control()
    machine.add_interface('en5', '172.20.10.2/28')
    assert control.ask('state')['usbBridge'] == NONE
    assert control.ask('refresh')['usbBridge'] == link('en5', '172.20.10.2', IPHONE)
    machine.run('ip', 'link', 'delete', 'en5')
    assert control.ask('refresh')['usbBridge'] == NONE


def test_the_code_is_that_of_the_first_address(machine):
    machine.add_interface('en0', '192.168.1.20/24')
    assert machine.control().code() == 'http://192.168.1.20:8999'


def fallback():
    return socket.gethostname().lower().lstrip('.').split('.')[0] + '.local'


def test_without_a_responder_the_name_is_that_of_the_machine(machine):
    assert machine.control().state['localHostName'] == fallback()


BUS = '''<busconfig>
  <type>session</type>
  <listen>unix:path=/tmp/bus</listen>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
'''


def test_the_name_that_avahi_announces(machine):
    """With the real daemon."""
    machine.add_interface('en0', '192.168.1.20/24')
    machine.path('/tmp/bus.conf').write_text(BUS)
    machine.path('/tmp/avahi.conf').write_text('[server]\nhost-name=MacBook-Air\nuse-ipv4=yes\nuse-ipv6=no\n')
    machine.run('mount', '-t', 'tmpfs', 'tmpfs', '/run')
    machine.run('mkdir', '/run/avahi-daemon')
    machine.environment['DBUS_SYSTEM_BUS_ADDRESS'] = 'unix:path=/tmp/bus'
    machine.start('dbus-daemon', '--config-file=/tmp/bus.conf', '--nofork', '--nopidfile')

    control = machine.control()
    assert control.state['localHostName'] == fallback()
    daemon = machine.start('avahi-daemon', '--file=/tmp/avahi.conf', '--no-drop-root', '--no-chroot', '--no-rlimits')
    wait_for(lambda: control.ask('refresh')['localHostName'] == 'macbook-air.local' or daemon.poll() is not None,
             what='the announced name')
    if daemon.poll() is not None:
        pytest.skip('the daemon does not run here, perhaps for want of root')
    assert control.state['bonjourURL'] == 'http://macbook-air.local:8999'

    machine.run('pkill', '-x', 'avahi-daemon')
    wait_for(lambda: control.ask('refresh')['localHostName'] == fallback(), what='the name of the machine')
