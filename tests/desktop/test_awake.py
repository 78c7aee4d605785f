"""The cup in the header: the machine does not go to sleep by itself while it is on."""
import json
import signal
import subprocess
import time

import pytest

import logind as logind_commands
from privatedesktop import GREETING, Child, end, wait_for

PROGRAM = 'orvalen'
CUP = 'Prevent sleep'
REASON = 'Orvalen: Prevent System Sleep'

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
        self.desktop = desktop
        word, self.address = self.next()
        assert word == 'ready', self.errors.read_text()

    def next(self):
        line = self.read(20)
        assert line is not None, 'it heard nothing more: ' + self.errors.read_text()
        return line

    def heard(self):
        """What it was asked so far and has not been read yet."""
        subprocess.run(['busctl', '--user', 'call', self.address, '/mark', 'com.quenmark.StandIn', 'Mark'],
                       env=self.desktop.environment, capture_output=True, timeout=30, check=True)
        return list(iter(self.next, 'marked'))


def start(desktop):
    """The program, with its heaters at rest."""
    desktop.choose(PROGRAM, smartModeEnabled='false')
    program = desktop.start(PROGRAM)
    desktop.controls.wait(CUP, 30)
    assert desktop.controls.is_checked(CUP) is False
    return program


def wait_until_off(desktop):
    wait_for(lambda: desktop.controls.is_checked(CUP) is False, 20, 'the cup to be off')


def switch_on(desktop, heard=None):
    """Presses the cup, and once more where it stayed off: on a busy machine an answer may come too late for it.
    `heard` is called after each press.
    """
    deadline = time.monotonic() + 60
    while True:
        desktop.controls.press(CUP)
        if heard:
            heard()
        if desktop.controls.is_checked(CUP):
            return
        assert time.monotonic() < deadline, 'the cup stays off'


def switch_on_by(desktop, service, asked):
    """Switches the cup on where that service grants it, which must be asked with each press that it hears of."""
    def heard():
        lines = service.heard()
        assert all(line == ['asked', *asked] for line in lines if line[:2] == ['asked', 'Inhibit']), lines
        granted[0] += sum(line[1] == 'Inhibit' for line in lines) - sum(line[0] == 'ended' for line in lines)
        if not desktop.controls.is_checked(CUP):
            while granted[0] > 0:  # it was let go again
                granted[0] -= service.next()[0] == 'ended'

    granted = [0]
    switch_on(desktop, heard)
    assert granted[0] == 1


@pytest.mark.parametrize('name', SERVICES)
def test_a_press_keeps_the_machine_awake_and_the_next_one_lets_it_go(desktop, name):
    service = SleepService(desktop, name)
    program = start(desktop)
    assert service.heard() == [], 'asked before anybody wanted it'
    asked, given_back = SERVICES[name]

    switch_on_by(desktop, service, asked)
    desktop.controls.press(CUP)
    assert service.next()[:2] == ['asked', given_back]
    assert service.next() == ['ended', 'release']
    wait_until_off(desktop)

    switch_on_by(desktop, service, asked)
    program.kill()
    assert service.next() == ['ended', 'vanished']
    assert desktop.written() == GREETING


def test_leaving_lets_the_machine_go(desktop):
    service = SleepService(desktop, 'power')
    program = start(desktop)
    switch_on_by(desktop, service, SERVICES['power'][0])
    assert end(program) == 0
    assert service.next() == ['ended', 'vanished']


@pytest.mark.parametrize('name', SERVICES)
def test_the_cup_stays_off_where_the_desktop_refuses(desktop, name):
    service = SleepService(desktop, name, 'refuse')
    program = start(desktop)
    refused = [['asked', *SERVICES[name][0]]]
    if name == 'portal':
        refused += [['asked', 'Close', []], ['ended', 'release']]

    def heard():
        desktop.controls.press(CUP)
        assert desktop.controls.is_checked(CUP) is False
        return service.heard()

    for _ in range(2):  # it is tried again; more than once where the refusal came too late to be one
        wait_for(lambda: heard() == refused, 60, 'the whole of a refusal')
    assert program.poll() is None
    assert desktop.written() == GREETING


def test_services_that_hang_do_not_hang_the_program(desktop):
    services = [SleepService(desktop, name) for name in SERVICES]
    program = start(desktop)

    def asked():
        for service in services:  # not before: the desktop's accessibility asks the session manager, too
            service.process.send_signal(signal.SIGSTOP)
        desktop.controls.press(CUP)
        desktop.controls.press('Settings')  # the window still answers
        assert desktop.controls.is_checked(CUP) is False
        for service in services:
            service.process.send_signal(signal.SIGCONT)
        return [[line for line in service.heard() if line[0] == 'asked'] for service in services]

    every = [[['asked', *question]] for question, _ in SERVICES.values()]
    wait_for(lambda: asked() == every, 60, 'each of them to be asked')  # each in its time, where the bus has any
    assert program.poll() is None
    assert desktop.written() == GREETING


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
    if reason := logind_commands.why_no_real_one():
        pytest.skip(reason)
    logind = Logind(desktop, logind_commands.REAL)
    wait_for(lambda: logind.is_there() or logind.process.poll() is not None, 20, 'systemd-logind')
    if logind.process.poll() is not None:
        pytest.skip('systemd-logind does not run here')
    return logind


def mocked_logind(desktop):
    pytest.importorskip('dbusmock')
    logind = Logind(desktop, logind_commands.MOCK)
    wait_for(logind.is_there, 20, 'a mock of logind')
    return logind


@pytest.mark.parametrize('start_logind', [real_logind, mocked_logind])
def test_without_a_desktop_logind_locks(desktop, start_logind):
    logind = start_logind(desktop)
    program = start(desktop)
    assert logind.locks() == []
    locked = [['idle', 'Orvalen', REASON, 'block']]

    switch_on(desktop)
    wait_for(lambda: logind.locks() == locked, what='one lock')  # without those that were granted too late
    desktop.controls.press(CUP)
    wait_until_off(desktop)
    wait_for(lambda: logind.locks() == [], what='the end of the lock')

    switch_on(desktop)
    wait_for(lambda: logind.locks() == locked, what='one lock')
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
