"""What a person without a picture hears."""
import json
import shutil
import socket
import subprocess

import pytest

from machine import CONTROL, ROOT, SERVER, THEME, wait_for

# Writes down what it was told to say, whole files only.
SPY = '''#!/bin/sh
for text; do :; done
n=0
while [ -e /tmp/said.$n ]; do n=$((n + 1)); done
printf '%s' "$text" >/tmp/said.new && mv /tmp/said.new /tmp/said.$n
'''

HEARING = ('dbus-daemon', 'pipewire', 'wireplumber', 'pipewire-pulse', 'pw-cli', 'pactl', 'parec', 'sox', 'spd-say',
           'espeak-ng')


def name():
    return socket.gethostname().lower().lstrip('.').split('.')[0] + '.local'


def sentence(host, port):
    return ('Orvalen screen stream online. Open phone browser and type: %s colon %d. Or, %s colon %d.'
            % (host, port, name(), port))


class Spy:
    """The speech command of a machine, first on its search path."""

    def __init__(self, machine):
        self.machine = machine
        machine.run('mkdir', '/tmp/spies')
        spy = machine.path('/tmp/spies/spd-say')
        spy.write_text(SPY)
        spy.chmod(0o755)
        machine.environment['PATH'] = '/tmp/spies:' + machine.environment['PATH']

    def said(self, number):
        file = self.machine.path('/tmp/said.%d' % number)
        wait_for(file.exists, what='a sentence')
        return file.read_text()


@pytest.fixture
def spy(machine):
    return Spy(machine)


def test_the_address_is_spoken(machine, spy):
    machine.add_interface('en0', '192.168.1.20/24')
    control = machine.control()
    assert control.ask('cast')['isRunning'] is True
    assert spy.said(0) == sentence('192 dot 168 dot 1 dot 20', 8999)


def test_without_a_network_the_name_is_spoken_twice(machine, spy):
    machine.control().ask('cast')
    assert spy.said(0) == sentence(name(), 8999)


def test_the_port_is_the_one_that_was_known_before(machine, spy):
    machine.add_interface('en0', '192.168.1.20/24')
    machine.take_port(8999)
    control = machine.control()
    control.ask('cast')
    assert spy.said(0) == sentence('192 dot 168 dot 1 dot 20', 8999)
    control.wait(serverPort=9000)
    control.ask('cast')
    assert spy.said(1) == sentence('192 dot 168 dot 1 dot 20', 9000)


def test_it_is_spoken_when_the_server_cannot_be_started(machine, spy):
    control = machine.control(server='/nonexistent/server')
    assert control.ask('cast')['isRunning'] is False
    assert spy.said(0) == sentence(name(), 8999)
    assert control.said == ['Failed to run WebScreenServer process: /nonexistent/server: No such file or directory']


def test_a_machine_without_a_voice_serves_silently(machine):
    control = machine.control(search_path='/nonexistent')
    assert control.ask('cast')['isRunning'] is True
    assert control.said == []
    assert not machine.has_zombies()


def test_the_loudspeaker_gives_the_chime_and_then_the_whole_sentence(machine):
    """With a real sound server, the real speech service and a microphone at the loudspeaker."""
    missing = [program for program in HEARING if not shutil.which(program)]
    if missing:
        pytest.skip('not installed: ' + ', '.join(missing))
    process = machine.start('/usr/bin/python3', ROOT / 'tests/streaming/hear_blind_cast.py', CONTROL, SERVER, THEME,
                            sentence(name(), 8999), stdout=subprocess.PIPE, stderr=None, text=True)
    output, _ = process.communicate(timeout=120)
    heard = json.loads(output)
    assert max(heard['chimes'], key=heard['chimes'].get) == 'Glass', heard
    assert heard['chimes']['Glass'] > 0.9, heard
    assert heard['voice'] == pytest.approx(heard['alone'], rel=0.15) and heard['voice'] > 5, heard
