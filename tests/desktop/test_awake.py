"""The cup in the header: the machine does not go to sleep by itself while it is on."""
import json
import os
import signal
import subprocess

import pytest

from privatedesktop import GREETING, PYTHON, Child, end, wait_for

PROGRAM = 'orvalen'
CUP = 'Prevent sleep'
REASON = 'Orvalen: Prevent System Sleep'
LOGIND = '/lib/systemd/systemd-logind'

# What each service of a desktop is asked, and how what it granted is given back.
SERVICES = {
    'power': (['Inhibit', ['Orvalen', REASON]], 'UnInhibit'),
    'session': (['Inhibit', ['com.quenmark.Orvalen', 0, REASON, 4]], 'Uninhibit'),
    'portal': (['Inhibit', ['', 4, {'reason': REASON}]], 'Close'),
}


class SleepService(Child):
    """A stand-in for one of them."""

    def __init__(self, desktop, *arguments):
        super().__init__(desktop, '../support/sleep_services.py', arguments)
        assert self.read(20) == 'ready', self.errors.read_text()

    def next(self):
        return self.read(20)


def start(desktop):
    """The program, with its heaters at rest."""
    desktop.choose(PROGRAM, smartModeEnabled='false')
    program = desktop.start(PROGRAM)
    desktop.controls.wait(CUP, 30)
    assert desktop.controls.is_checked(CUP) is False
    return program


def wait_until_checked(desktop, checked):
    wait_for(lambda: desktop.controls.is_checked(CUP) is checked, 20, 'the cup to be %s' % ('on' if checked else 'off'))


@pytest.mark.parametrize('name', SERVICES)
def test_a_press_keeps_the_machine_awake_and_the_next_one_lets_it_go(desktop, name):
    service = SleepService(desktop, name)
    program = start(desktop)
    assert service.read(0.5) is None, 'asked before anybody wanted it'
    asked, given_back = SERVICES[name]

    desktop.controls.press(CUP)
    assert service.next() == ['asked', *asked]
    wait_until_checked(desktop, True)

    desktop.controls.press(CUP)
    assert service.next()[:2] == ['asked', given_back]
    assert service.next() == ['ended', 'release']
    wait_until_checked(desktop, False)

    desktop.controls.press(CUP)
    assert service.next() == ['asked', *asked]
    wait_until_checked(desktop, True)
    program.kill()
    assert service.next() == ['ended', 'vanished']
    assert desktop.written() == GREETING


def test_leaving_lets_the_machine_go(desktop):
    service = SleepService(desktop, 'power')
    program = start(desktop)
    desktop.controls.press(CUP)
    assert service.next()[1] == 'Inhibit'
    wait_until_checked(desktop, True)
    assert end(program) == 0
    assert service.next() == ['ended', 'vanished']


@pytest.mark.parametrize('name', SERVICES)
def test_the_cup_stays_off_where_the_desktop_refuses(desktop, name):
    service = SleepService(desktop, name, 'refuse')
    program = start(desktop)
    desktop.controls.press(CUP)
    assert service.next()[1] == 'Inhibit'
    while service.read(0.5):  # the portal's request is closed
        pass
    assert desktop.controls.is_checked(CUP) is False
    desktop.controls.press(CUP)
    assert service.next()[1] == 'Inhibit'  # it is tried again
    assert desktop.controls.is_checked(CUP) is False
    assert program.poll() is None
    assert desktop.written() == GREETING


def test_services_that_hang_do_not_hang_the_program(desktop):
    services = [SleepService(desktop, name).process for name in SERVICES]
    program = start(desktop)
    for service in services:  # not before: the desktop's accessibility asks the session manager, too
        service.send_signal(signal.SIGSTOP)
    desktop.controls.press(CUP)
    desktop.controls.press('Settings')  # the window still answers
    assert desktop.controls.is_checked(CUP) is False
    assert program.poll() is None
    assert desktop.written() == GREETING
    for service in services:
        service.kill()


class Logind:
    """A system bus of the desktop's own with a logind on it, the real one or a mock."""

    def __init__(self, desktop, command):
        self.desktop = desktop
        config = desktop.folder / 'bus.conf'
        desktop.environment['DBUS_SYSTEM_BUS_ADDRESS'] = desktop._start_and_read(
            'system-bus', lambda fd: ['dbus-daemon', '--config-file', str(config), '--nofork', '--nopidfile',
                                      '--print-address=%d' % fd])
        self.process = desktop.start_service('logind', command)

    def locks(self):
        """[[what, who, why, mode]], as everybody can ask for them; None without logind."""
        asked = subprocess.run(['busctl', '--system', '--json=short', 'call', 'org.freedesktop.login1',
                                '/org/freedesktop/login1', 'org.freedesktop.login1.Manager', 'ListInhibitors'],
                               env=self.desktop.environment, capture_output=True, text=True, timeout=20)
        return [lock[:4] for lock in json.loads(asked.stdout)['data'][0]] if asked.returncode == 0 else None

    def is_there(self):
        return self.locks() is not None


def real_logind(desktop):
    if os.geteuid() != 0 or not os.access(LOGIND, os.X_OK):
        pytest.skip('only root can run systemd-logind, where it is installed')
    logind = Logind(desktop, ['unshare', '--mount', '--propagation', 'private', 'sh', '-c',
                              'mkdir -p /run/systemd; mount -t tmpfs none /run/systemd || exit 77; cd /run/systemd;'
                              ' mkdir seats users sessions inhibit shutdown machines; exec ' + LOGIND])
    wait_for(lambda: logind.is_there() or logind.process.poll() is not None, 20, 'systemd-logind')
    if logind.process.poll() is not None:
        pytest.skip('systemd-logind does not run here')
    return logind


def mocked_logind(desktop):
    pytest.importorskip('dbusmock')
    logind = Logind(desktop, [PYTHON, '-m', 'dbusmock', '--system', '--template', 'logind'])
    wait_for(logind.is_there, 20, 'a mock of logind')
    return logind


@pytest.mark.parametrize('start_logind', [real_logind, mocked_logind])
def test_without_a_desktop_logind_locks(desktop, start_logind):
    logind = start_logind(desktop)
    program = start(desktop)
    assert logind.locks() == []

    desktop.controls.press(CUP)
    wait_until_checked(desktop, True)
    assert logind.locks() == [['idle', 'Orvalen', REASON, 'block']]
    desktop.controls.press(CUP)
    wait_until_checked(desktop, False)
    wait_for(lambda: logind.locks() == [], what='the end of the lock')

    desktop.controls.press(CUP)
    wait_until_checked(desktop, True)
    assert len(logind.locks()) == 1
    program.kill()
    wait_for(lambda: logind.locks() == [], what='the end of the lock with the program')
    assert desktop.written() == GREETING


def test_without_anybody_to_ask_the_cup_stays_off(desktop):
    program = start(desktop)
    desktop.controls.press(CUP)
    desktop.controls.press('Settings')
    assert desktop.controls.is_checked(CUP) is False
    assert program.poll() is None
    assert desktop.written() == GREETING
