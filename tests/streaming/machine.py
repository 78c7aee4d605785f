"""A small machine of its own for one test, and a controller of the stream server on it.

Network, processes and /tmp are the machine's alone. It ends, with everything on it, when the test is over.
"""
import json
import os
import select
import subprocess
import sys
from pathlib import Path

import pytest

sys.path.append(str(Path(__file__).resolve().parents[1] / 'support'))

from waiting import wait_for  # noqa: E402

ROOT = Path(__file__).resolve().parents[2]
PRIVATE_MACHINE = ROOT / 'tests/support/private-machine'
BUILD = ROOT / 'build/release'
SERVER = BUILD / 'libexec/orvalen/orvalen-stream-server'
CONTROL = BUILD / 'tests/stream_control'
THEME = BUILD / 'share/sounds/orvalen'
PATIENCE = 20  # seconds; only a failing test waits them out

SCRIPT = '/tmp/orvalen_web_stream.py'
PORT_FILE = '/tmp/orvalen_port.txt'


class Machine:
    def __enter__(self):
        environment = {name: value for name, value in os.environ.items() if name != 'ORVALEN_PRIVATE_MACHINE'}
        self.keeper = subprocess.Popen([PRIVATE_MACHINE, 'sh', '-c', 'echo ready; exec sleep infinity'],
                                       env=environment, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, text=True)
        self.controllers = []
        if self.keeper.stdout.readline() != 'ready\n':
            self.__exit__()
            pytest.skip('no namespaces to be had here')
        children = subprocess.run(['pgrep', '-P', str(self.keeper.pid)], stdout=subprocess.PIPE, text=True, check=True)
        self.first_process = children.stdout.split()[0]
        self.environment = {'PATH': os.environ['PATH'], 'HOME': '/tmp/home', 'XDG_RUNTIME_DIR': '/tmp/run',
                            'LANG': 'C.UTF-8', 'DBUS_SYSTEM_BUS_ADDRESS': 'unix:path=/tmp/no-bus',
                            'DBUS_SESSION_BUS_ADDRESS': 'unix:path=/tmp/no-bus'}
        self.run('mkdir', '-m', '700', '/tmp/home', '/tmp/run')
        self.peers = 0
        return self

    def __exit__(self, *_):
        self.keeper.kill()  # and its first process with it, and all others with that one
        self.keeper.wait()
        self.keeper.stdout.close()
        for controller in self.controllers:
            controller.end()

    def _inside(self, command):
        rooms = ['--mount', '--net', '--pid', '--ipc']
        if os.geteuid() != 0:
            rooms += ['--user', '--preserve-credentials']
        return ['nsenter', '--target', self.first_process, *rooms, '--', *map(str, command)]

    def run(self, *command, check=True, **options):
        """Runs it to its end; what it wrote to standard output."""
        return subprocess.run(self._inside(command), env=self.environment, stdout=subprocess.PIPE, text=True,
                              timeout=PATIENCE, check=check, **options).stdout

    def status(self, *command):
        return subprocess.run(self._inside(command), env=self.environment, stdout=subprocess.DEVNULL,
                              stderr=subprocess.DEVNULL, timeout=PATIENCE, check=False).returncode

    def start(self, *command, **options):
        """Starts it, to run for as long as it likes."""
        options = {'stdin': subprocess.DEVNULL, 'stdout': subprocess.DEVNULL, 'stderr': subprocess.DEVNULL, **options}
        return subprocess.Popen(self._inside(command), env=self.environment, **options)

    def path(self, name):
        """A file of the machine, as seen from outside."""
        return Path('/proc/%s/root' % self.first_process + name)

    def processes(self, pattern):
        """Numbers of the running ones whose command line has it."""
        found = self.run('pgrep', '--full', '--runstates', 'RSDT', '--', pattern, check=False)
        return [int(number) for number in found.split()]

    def has_zombies(self):
        return 'Z' in self.run('ps', '-e', '-o', 'state=').split()

    def add_interface(self, name, *addresses, up=True, carrier=True):
        """A network interface with a cable to nobody in particular. Listed in the order in which they are added."""
        peer = 'peer%d' % self.peers
        self.peers += 1
        self.run('ip', 'link', 'add', name, 'type', 'veth', 'peer', 'name', peer)
        for address in addresses:
            self.run('ip', 'address', 'add', address, 'dev', name)
        if up:
            self.run('ip', 'link', 'set', name, 'up')
        if up and carrier:
            self.run('ip', 'link', 'set', peer, 'up')
            wait_for(lambda: 'NO-CARRIER' not in self.run('ip', 'link', 'show', name), what='the carrier of ' + name)

    def take_port(self, port):
        """Another program listens there."""
        program = ('import socket, time; s = socket.socket(); s.bind(("0.0.0.0", %d)); s.listen(); '
                   'print("ready", flush=True); time.sleep(3600)') % port
        process = self.start('/usr/bin/python3', '-c', program, stdout=subprocess.PIPE, text=True)
        assert process.stdout.readline() == 'ready\n'
        process.stdout.close()

    def control(self, server=SERVER, search_path=None):
        controller = Controller(self, server, search_path or self.environment['PATH'])
        self.controllers.append(controller)
        return controller


class Controller:
    """stream_control on that machine. `state` is what it last said."""

    def __init__(self, machine, server, search_path):
        self.machine = machine
        self.process = machine.start('env', 'PATH=' + search_path, CONTROL, server, THEME, stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                     stderr=subprocess.STDOUT)
        self.buffer = b''
        self.said = []  # lines on the console, errors included, that are no answers
        self.state = self._answer()

    def ask(self, order):
        self.process.stdin.write(order.encode() + b'\n')
        self.process.stdin.flush()
        self.state = self._answer()
        return self.state

    def wait(self, **values):
        """Until it publishes these values."""
        return wait_for(lambda: {**self.ask('state'), **values} == self.state and self.state, what=values)

    def code(self):
        """What a reader sees in the QR code."""
        self.ask('qr /tmp/code.pgm')
        return self.machine.run('zbarimg', '--nodbus', '--quiet', '--raw', '--oneshot', '/tmp/code.pgm').rstrip('\n')

    def quit(self):
        """Ends the controller as the program ends, and waits for that."""
        self.process.stdin.close()
        assert self.process.wait(PATIENCE) == 0

    def end(self):
        self.process.stdin.close()
        self.process.stdout.close()
        self.process.kill()
        self.process.wait()

    def _answer(self):
        while not (line := self._line()).startswith('{'):
            self.said.append(line)
        return json.loads(line)

    def _line(self):
        while b'\n' not in self.buffer:
            ready, _, _ = select.select([self.process.stdout], [], [], PATIENCE)
            data = os.read(self.process.stdout.fileno(), 65536) if ready else b''
            assert data, 'no answer'
            self.buffer += data
        line, self.buffer = self.buffer.split(b'\n', 1)
        return line.decode()
