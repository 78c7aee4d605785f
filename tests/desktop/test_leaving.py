"""The program is asked to go, or its desktop goes."""
import os
import re
import signal
import subprocess
from pathlib import Path

import pytest

import private_machine
from privatedesktop import MARK, ROOT, comm, processes_with, wait_for
from test_instance import SIMULATED, call, complaints, owns
from test_stream import PORT_FILE, TAB, answers, start, stream
from test_warmup import PULSE_LIMIT, TRIGGER

PROGRAM = 'orvalen-simulated'
SIGNALS = [signal.SIGTERM, signal.SIGINT, signal.SIGHUP]
SERVICES = ['at-spi2-registr', 'dbus-daemon']  # that the desktop starts when it needs them


def all_processes(desktop):
    return set(processes_with(('%s=%s' % (MARK, desktop.folder)).encode()))


def left(desktop, before):
    """The names of what has been started since then and still runs."""
    return sorted(name for name in map(comm, all_processes(desktop) - before) if name and name not in SERVICES)


def heat(desktop):
    desktop.controls.press(TRIGGER)
    desktop.controls.wait('WARMING UP')


def leaves(program, before, desktop, besides=()):
    """That it ends with 0, long before a pulse would, says nothing, and leaves nothing but `besides` behind."""
    assert program.wait(PULSE_LIMIT / 2) == 0
    assert complaints(desktop) == ''
    assert left(desktop, before) == list(besides)
    assert not owns(desktop, SIMULATED)


@pytest.fixture
def before(desktop):
    return all_processes(desktop)


def test_each_signal_ends_it_while_nothing_happens(desktop, before):
    for number in SIGNALS:
        program = start(desktop)
        program.send_signal(number)
        leaves(program, before, desktop)


def test_each_signal_ends_it_in_mid_pulse(desktop, before):
    for number in SIGNALS:
        program = start(desktop)
        heat(desktop)
        program.send_signal(number)
        leaves(program, before, desktop)


def test_signals_one_upon_the_other(desktop, before):
    program = start(desktop)
    heat(desktop)
    program.send_signal(signal.SIGSTOP)  # so that they all are there before it can look
    for number in SIGNALS + SIGNALS:
        program.send_signal(number)
    program.send_signal(signal.SIGCONT)
    leaves(program, before, desktop)


def catches(program, number):
    """Whether the process has got as far as to handle that signal itself."""
    status = Path('/proc/%d/status' % program.pid).read_text()
    caught = int(re.search(r'^SigCgt:\s*([0-9a-f]+)$', status, re.MULTILINE).group(1), 16)
    return caught >> (number - 1) & 1


def test_each_signal_ends_it_before_it_has_started(desktop, before):
    desktop.choose(PROGRAM, smartModeEnabled='false')
    for number in SIGNALS:
        program = desktop.start(PROGRAM)
        while not catches(program, number):  # it has no event loop for some time to come
            assert program.poll() is None
        program.send_signal(number)
        leaves(program, before, desktop)


def display_server(desktop):
    return next(process for process in desktop.processes if process.args[0] == 'Xvfb')


def test_each_signal_ends_it_while_it_waits_for_a_display_that_does_not_answer(desktop, before):
    display_server(desktop).send_signal(signal.SIGSTOP)
    try:
        for number in SIGNALS:
            program = desktop.start(PROGRAM)
            wait_for(lambda: owns(desktop, SIMULATED), 20, 'the name, which it takes before it asks the display')
            program.send_signal(number)
            leaves(program, before, desktop)
    finally:
        display_server(desktop).send_signal(signal.SIGCONT)


def test_it_stays_when_the_reader_of_what_it_prints_has_gone(desktop):
    desktop.choose(PROGRAM, smartModeEnabled='false')
    reading, writing = os.pipe()
    os.close(reading)
    program = desktop.start_service(PROGRAM, [ROOT / 'build/release/bin' / PROGRAM], stdout=writing,
                                    stderr=subprocess.DEVNULL)
    os.close(writing)
    # It answers once it has said its line.
    wait_for(lambda: call(desktop, SIMULATED, 'Activate', '{}').strip() == '()', 20, 'an answer')
    assert program.poll() is None
    program.terminate()
    assert program.wait(PULSE_LIMIT / 2) == 0


@private_machine.needed
@pytest.mark.parametrize('state', ['idle', 'mid-pulse'])
def test_a_signal_while_a_stream_runs_leaves_the_stream_alone(desktop, before, state):
    program = start(desktop)
    stream(desktop)
    wait_for(PORT_FILE.exists, what='the port file')
    if state == 'mid-pulse':
        desktop.controls.press('Dashboard')
        heat(desktop)
    program.terminate()
    leaves(program, before, desktop, ['orvalen-stream-'])
    assert answers(int(PORT_FILE.read_text()))


@private_machine.needed
def test_a_signal_does_not_wait_for_the_voice(desktop, before):
    desktop.replace_command('spd-say', 'echo $$ >%s/voice; exec sleep 1000\n' % desktop.folder)
    program = start(desktop)
    desktop.controls.press(TAB)
    desktop.controls.press('Test Hotkey Voice')
    voice = desktop.folder / 'voice'
    wait_for(lambda: voice.exists() and voice.read_text(), what='the voice')
    program.terminate()
    assert program.wait(10) == 0
    assert left(desktop, before) == ['orvalen-stream-', 'sleep']  # the sentence is said to its end
    os.kill(int(voice.read_text()), signal.SIGTERM)


class SessionManager:
    """X's own session manager, of which the program is a client from its start on."""

    def __init__(self, desktop):
        self.desktop = desktop
        address = desktop.folder / 'session-address'
        desktop.replace_command('tell-address', 'echo $SESSION_MANAGER >%s.new; mv %s.new %s; exec sleep 1000\n' % (
            (address,) * 3))
        (desktop.folder / 'home/.xsmstartup').write_text('tell-address\n')
        self.process = desktop.start_service('xsm', ['xsm', '-verbose', '-session', 'test'])
        wait_for(address.exists, 20, 'the session manager')
        desktop.environment['SESSION_MANAGER'] = address.read_text().strip()

    def ends(self, number):
        self.process.send_signal(number)
        self.process.wait(20)
        return (self.desktop.folder / 'xsm.log').read_text()


@pytest.mark.parametrize('state', ['mid-pulse', 'closed'])
def test_the_end_of_the_session_is_not_refused(desktop, state):
    session = SessionManager(desktop)
    program = start(desktop)
    if state == 'mid-pulse':
        heat(desktop)
    else:
        desktop.close('Orvalen')
    log = session.ends(signal.SIGTERM)
    assert program.wait(PULSE_LIMIT / 2) == 0
    assert 'received SAVE YOURSELF DONE [Success = True]' in log
    assert 'received INTERACT REQUEST' not in log and 'Success = False' not in log
    assert complaints(desktop) == ''


@pytest.mark.parametrize('state', ['idle', 'mid-pulse'])
def test_the_end_of_the_display_ends_the_program(desktop, state):
    program = start(desktop)
    if state == 'mid-pulse':
        heat(desktop)
    display_server(desktop).kill()
    assert program.wait(PULSE_LIMIT / 2) == 1  # the toolkit's way to say that it has lost its display
    assert complaints(desktop) == ''
