"""A person who wants to see the desktop on a phone."""
import os
import re
import socket
import subprocess
import time
import urllib.error
import urllib.request
from pathlib import Path

import pytest

import private_machine
import sounds_canberra_test as sounds
from privatedesktop import GREETING, ROOT, comm, state, wait_for

pytestmark = private_machine.needed

PROGRAM = 'orvalen-simulated'
SERVER = 'orvalen-stream-server'
START, STOP = '⚡ Start Offline Stream', 'Stop Offline Stream'
TAB = 'Screen Clone'
ADDRESS = 'Open in Phone / Tablet Browser:'
BONJOUR = 'Universal Bonjour (mDNS):'
PORT_FILE = Path('/tmp/orvalen_port.txt')
LIT_DOT = '#7CFFB0'


def start(desktop):
    """The program with its window on the screen, warming nothing."""
    desktop.choose(PROGRAM, smartModeEnabled='false')
    program = desktop.start(PROGRAM)
    desktop.controls.wait(START)
    return program


def stream(desktop):
    """Presses the button in the side column; the addresses are on the tab then."""
    desktop.controls.press(START)
    desktop.controls.wait(STOP)
    desktop.controls.press(TAB)
    wait_for(lambda: desktop.controls.text(ADDRESS), what='an address')


def port_shown(desktop):
    return int(desktop.controls.text(ADDRESS).rpartition(':')[2])


def servers(desktop):
    return desktop.living(SERVER)


def get(port, path='/', host='127.0.0.1'):
    with urllib.request.urlopen('http://%s:%d%s' % (host, port, path), timeout=10) as answer:
        return answer.read().decode()


def answers(port):
    try:
        return '"online"' in get(port, '/api/status')
    except urllib.error.URLError:
        return False


class Viewer:
    """A phone that watches."""

    def __init__(self, port, host='127.0.0.1'):
        self.address = host, port
        self.connect()

    def connect(self):
        self.connection = socket.create_connection(self.address, 10)
        self.connection.sendall(b'GET /stream.mjpg?d=1 HTTP/1.0\r\n\r\n')
        self.file = self.connection.makefile('rb')
        self.headers()

    def headers(self):
        lines = list(iter(lambda: self.file.readline().strip(), b''))
        return dict(line.decode().split(': ', 1) for line in lines if b': ' in line)

    def frame(self, file):
        """The next picture, put into that file."""
        while not self.file.readline().startswith(b'--'):
            pass
        file.write_bytes(self.file.read(int(self.headers()['Content-Length'])))
        damage = subprocess.run(['convert', '-regard-warnings', file, 'null:'], capture_output=True, text=True, timeout=30)
        assert damage.returncode == 0, damage.stderr
        return file

    def newest_frame(self, file):
        """One that was taken after this call, put into that file."""
        self.close()  # with all the pictures that are on their way
        self.connect()
        for _ in range(3):  # the first may be one that was being taken
            self.frame(file)
        return file

    def has_ended(self):
        """Whether the connection comes to its end, whatever is still on its way."""
        self.connection.settimeout(10)
        try:
            while self.file.read(65536):
                pass
        except ConnectionResetError:
            pass
        return True

    def close(self):
        self.file.close()
        self.connection.close()


def identify(picture, what):
    return subprocess.run(['identify', '-format', what, picture], capture_output=True, text=True, check=True,
                          timeout=30).stdout


def difference(one, other):
    """How far apart two pictures are, their details left aside: 0 the same, 1 black and white."""
    def small(picture):
        return subprocess.run(['convert', picture, '-resize', '64x40!', '-depth', '8', 'rgb:-'], capture_output=True,
                              check=True, timeout=30).stdout

    pairs = list(zip(small(one), small(other), strict=True))
    return sum(abs(a - b) for a, b in pairs) / len(pairs) / 255


def pixels(picture, color):
    """How many pixels have exactly that colour."""
    histogram = subprocess.run(['convert', picture, '-depth', '8', '-fill', 'black', '+opaque', color, '-format', '%c',
                                'histogram:info:-'], capture_output=True, text=True, check=True, timeout=30).stdout
    match = re.search(r'(\d+): .*%s' % color, histogram)
    return int(match.group(1)) if match else 0


def test_the_desktop_is_seen_elsewhere_until_the_stream_is_stopped(desktop, network, tmp_path):
    start(desktop)
    assert desktop.controls.description(START) == 'The stream is off'
    assert pixels(desktop.screenshot('before.png'), LIT_DOT) == 0

    stream(desktop)
    assert desktop.controls.description(STOP) == 'The stream is on'
    assert pixels(desktop.screenshot('after.png'), LIT_DOT) > 10
    assert desktop.controls.shows('Stop Stream') and desktop.controls.shows('ONLINE')
    assert len(servers(desktop)) == 1

    port = port_shown(desktop)
    wait_for(PORT_FILE.exists, what='the port file')
    assert PORT_FILE.read_text() == str(port)
    host = network or '127.0.0.1'
    if network:
        assert desktop.controls.text(ADDRESS) == 'http://%s:%d' % (network, port)
    assert 'Orvalen Studio' in get(port, host=host)

    viewer = Viewer(port, host)
    picture = viewer.newest_frame(tmp_path / 'frame.jpg')
    assert identify(picture, '%m %w %h') == 'JPEG 1280 800'
    assert int(identify(picture, '%k')) > 10
    assert difference(picture, desktop.screenshot('now.png')) < 0.02
    desktop.controls.press('Dashboard')  # and what happens there is seen here
    desktop.controls.wait('DISPLAY BRIDGE TEMPERATURE')
    later = viewer.newest_frame(tmp_path / 'later.jpg')
    assert difference(later, picture) > 0.02
    assert difference(later, desktop.screenshot('later.png')) < 0.02

    desktop.controls.press(STOP)
    desktop.controls.wait(START)
    assert desktop.controls.description(START) == 'The stream is off'
    assert not PORT_FILE.exists()
    assert servers(desktop) == []
    assert viewer.has_ended()
    viewer.close()
    assert not answers(port)
    assert desktop.written() == GREETING


def test_the_code_on_the_screen_and_the_clipboard_give_the_address(desktop, network):
    start(desktop)
    stream(desktop)
    address = desktop.controls.text(ADDRESS)
    assert desktop.controls.description('QR code') == address

    def read():
        return desktop.output(['zbarimg', '--quiet', '--raw', '--nodbus', '-Sdisable', '-Sqrcode.enable',
                               str(desktop.screenshot('screen.png'))]).strip()

    wait_for(lambda: read() == address, what='the code to be read')

    def pasted():
        return desktop.output(['xclip', '-selection', 'clipboard', '-out'])

    desktop.controls.press('Copy', about=address)
    wait_for(lambda: pasted() == address, what='the address in the clipboard')
    bonjour = desktop.controls.text(BONJOUR)
    assert bonjour != address or not network
    desktop.controls.press('Copy', about=bonjour)
    wait_for(lambda: pasted() == bonjour, what='the other address in the clipboard')
    desktop.controls.press('Stop Stream')
    desktop.controls.wait(START)


def test_a_port_that_is_taken_is_left_alone(desktop):
    with socket.socket() as other:
        other.setsockopt(socket.SOL_SOCKET, socket.SO_REUSEADDR, 1)
        other.bind(('0.0.0.0', 8999))
        other.listen()
        start(desktop)
        stream(desktop)
        wait_for(lambda: port_shown(desktop) == 9000, what='the next port')
        assert answers(9000)


def test_the_stream_outlives_the_program_and_gives_way_to_the_next(desktop):
    program = start(desktop)
    stream(desktop)
    port = port_shown(desktop)
    first, = servers(desktop)
    assert b'orvalen_web_stream.py' in Path('/proc/%d/cmdline' % first).read_bytes()
    desktop.close('Orvalen')
    assert answers(port)
    program.terminate()
    assert program.wait(10) == 0
    assert answers(port)
    assert servers(desktop) == [first]

    desktop.start(PROGRAM)
    desktop.controls.wait(START)  # it knows of no stream of its own
    stream(desktop)
    wait_for(lambda: state(first) == 'Z', what='the first server to go')
    second, = servers(desktop)
    assert second != first
    wait_for(lambda: answers(port_shown(desktop)), what='the second server')
    assert port_shown(desktop) == port


@pytest.fixture
def loudspeaker(tmp_path):
    """A sound server with a recorder at its only loudspeaker, and how programs find it."""
    for program in sounds.NEEDED:
        assert sounds.shutil.which(program), program
    runtime = tmp_path / 'sound'
    runtime.mkdir(mode=0o700)
    environment = {
        'PATH': os.environ['PATH'], 'HOME': str(tmp_path), 'XDG_RUNTIME_DIR': str(runtime),
        'PULSE_COOKIE': str(tmp_path / 'cookie'), 'DBUS_SESSION_BUS_ADDRESS': 'unix:path=%s' % (tmp_path / 'bus'),
        'DBUS_SYSTEM_BUS_ADDRESS': 'unix:path=%s' % (tmp_path / 'no-bus'),
    }
    server = sounds.Server(environment, tmp_path)
    recorder = sounds.Recorder(environment)
    recorder.environment = {'PULSE_SERVER': 'unix:%s' % (runtime / 'pulse/native'),
                            'PULSE_COOKIE': environment['PULSE_COOKIE']}
    yield recorder
    recorder.close()
    server.stop()


def spoken(address, bonjour):
    """The sentence for addresses as they are shown."""
    host, port = re.fullmatch(r'http://(.+):(\d+)', address).groups()
    name = re.fullmatch(r'http://(.+):(\d+)', bonjour).group(1)
    if host != name:
        host = host.replace('.', ' dot ')
    return ('Orvalen screen stream online. Open phone browser and type: %s colon %s. Or, %s colon %s.'
            % (host, port, name, port))


def test_the_voice_says_the_address_after_a_chime(desktop, loudspeaker, network):
    said = desktop.folder / 'said'
    desktop.replace_command('spd-say', 'for word; do printf "%%s\\n" "$word" >>%s; done\n' % said)
    desktop.environment.update(loudspeaker.environment)
    start(desktop)
    desktop.controls.press(TAB)
    desktop.controls.press('Test Hotkey Voice')
    desktop.controls.wait(STOP)
    chime = loudspeaker.sound()
    ranking = sorted((sounds.likeness(chime, file), file.stem) for file in (ROOT / 'assets/sounds').rglob('*.oga'))
    assert ranking[-1][1] == 'Glass' and ranking[-1][0] > 0.98, ranking

    sentence = spoken(desktop.controls.text(ADDRESS), desktop.controls.text(BONJOUR))
    wait_for(said.exists, what='the voice')
    wait_for(lambda: said.read_text().splitlines()[-1:] == [sentence], what=sentence)
    if network:
        assert 'type: 192 dot 168 dot 1 dot 20 colon 8999. Or, ' in sentence
    assert said.read_text().count(sentence) == 1
    assert answers(port_shown(desktop))


def test_the_voice_is_heard(desktop, loudspeaker):
    desktop.environment.update(loudspeaker.environment)
    start(desktop)
    desktop.controls.press(TAB)
    desktop.controls.press('Test Hotkey Voice')
    heard = loudspeaker.sound()  # chime and speech overlap: one sound to the first pause
    chime = sounds.decoded(ROOT / 'assets/sounds/orvalen/stereo/Glass.oga')
    assert len(heard) > 0
    length = len(heard)
    deadline = time.monotonic() + 20
    while length < len(chime) + 3 * sounds.RATE and time.monotonic() < deadline:
        length += len(loudspeaker.sound())
    assert length > len(chime) + 3 * sounds.RATE, 'a chime and a sentence last longer than %g s' % (length / sounds.RATE)
