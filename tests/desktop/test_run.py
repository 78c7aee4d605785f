"""./run on a machine without a display."""
import os
import re
import select
import signal
import socket
import subprocess
from pathlib import Path

import pytest

import private_machine
from privatedesktop import MARK, ROOT, Later, comm, processes_with, wait_for
from test_stream import Viewer, answers, difference, identify

PICTURE = re.compile(r'Picture of the screen, .*: (/.*\.png)$', re.MULTILINE)
ADDRESS = re.compile(r'^The screen, live: open http://(\S+):(\d+) (on a phone in the same network|in a browser on this machine)\.$',
                     re.MULTILINE)


class Run:
    """./run as a person without a display starts it, from some other folder."""

    def __init__(self, folder, mark):
        keep = ('PATH', 'HOME', 'LANG', 'USER', 'LOGNAME')
        environment = {name: os.environ[name] for name in keep if name in os.environ}
        environment.update({MARK: mark, 'XDG_CONFIG_HOME': str(folder / 'config')})
        self.mark = ('%s=%s' % (MARK, mark)).encode()
        self.text = ''
        self.process = subprocess.Popen([ROOT / 'run'], cwd=folder, env=environment, stdin=subprocess.DEVNULL,
                                        stdout=subprocess.PIPE, stderr=subprocess.STDOUT, start_new_session=True)

    def read(self):
        """What it has written so far."""
        while select.select([self.process.stdout], [], [], 0)[0]:
            data = os.read(self.process.stdout.fileno(), 65536)
            if not data:
                break
            self.text += data.decode()
        return self.text

    def picture(self):
        """The path that it prints once the program is on the screen."""
        def printed():
            match = PICTURE.search(self.read())
            assert match or self.process.poll() is None, self.text
            return match

        return wait_for(printed, 300, 'the path of the picture').group(1)

    def address(self):
        """Host and port at which it says that the desktop is streamed."""
        self.picture()
        match = wait_for(lambda: ADDRESS.search(self.read()), 5, Later(lambda: 'an address in: ' + self.text))
        return match.group(1), int(match.group(2))

    def living(self):
        return processes_with(self.mark)

    def expect_nothing_left(self):
        """A process that was killed may need a moment to be gone, on a busy machine."""
        wait_for(lambda: not self.living(), what=Later(lambda: 'the end of %s' % [comm(pid) for pid in self.living()]))


@pytest.fixture
def run(tmp_path):
    run = Run(tmp_path, str(tmp_path))
    yield run
    if run.process.poll() is None:
        run.process.terminate()
        try:
            run.process.wait(30)
        except subprocess.TimeoutExpired:
            run.process.kill()
    for pid in run.living():
        os.kill(pid, signal.SIGKILL)


def colours(picture):
    """How many different colours the picture has; 0 for one that cannot be read."""
    seen = subprocess.run(['identify', '-format', '%k', picture], capture_output=True, text=True).stdout
    return int(seen or 0)


def test_the_picture_shows_something_and_is_renewed(run):
    picture = run.picture()
    assert colours(picture) > 10
    first = os.stat(picture).st_mtime_ns
    wait_for(lambda: os.stat(picture).st_mtime_ns != first, 20, 'a newer picture')
    assert colours(picture) > 10
    assert re.search(r'^Starting orvalen(-simulated)?: this machine has ', run.text, re.MULTILINE)


@pytest.mark.parametrize('number, status', [(signal.SIGTERM, 143), (signal.SIGINT, 130)])
def test_a_signal_ends_all_that_it_started(run, number, status):
    run.picture()
    assert {'Xvfb', 'openbox', 'dbus-daemon', 'dunst', 'orvalen-stream-'} <= {comm(pid) for pid in run.living()}
    run.process.send_signal(number)
    assert run.process.wait(30) == status
    run.expect_nothing_left()


@private_machine.needed
def test_a_stream_that_the_program_started_there_ends_with_it(run):
    run.picture()
    program = next(pid for pid in run.living() if comm(pid) in ('orvalen', 'orvalen-simulat'))
    environment = dict(entry.split('=', 1) for entry in Path('/proc/%d/environ' % program).read_text().split('\0') if entry)
    server = ROOT / 'build/release/libexec/orvalen/orvalen-stream-server'
    subprocess.run(['sh', '-c', 'setsid "$@" &', 'sh', server, '/tmp/orvalen_web_stream.py'], env=environment, check=True)
    wait_for(lambda: [comm(pid) for pid in run.living()].count('orvalen-stream-') == 2, what='a second server')
    run.process.terminate()
    assert run.process.wait(30) == 143
    run.expect_nothing_left()


def test_control_c_in_a_terminal_ends_all_that_it_started(run):
    run.picture()
    os.killpg(run.process.pid, signal.SIGINT)  # what a terminal does: the whole foreground group
    assert run.process.wait(30) == 130
    run.expect_nothing_left()


def test_the_end_of_the_program_ends_the_rest(run):
    run.picture()
    programs = [pid for pid in run.living() if comm(pid) in ('orvalen', 'orvalen-simulat')]
    assert len(programs) == 1
    os.kill(programs[0], signal.SIGTERM)
    assert run.process.wait(30) == 0
    run.expect_nothing_left()


def test_nothing_outlives_a_killed_script(run):
    run.picture()
    run.process.kill()
    run.process.wait()
    wait_for(lambda: not run.living(), 20, 'the desktop to end')


def test_a_second_start_at_the_same_time_gets_a_desktop_of_its_own(run, tmp_path):
    other = Run(tmp_path, str(tmp_path) + '/other')
    try:
        assert run.picture() != other.picture()
    finally:
        other.process.terminate()
        assert other.process.wait(30) == 143
    assert other.living() == []
    assert run.process.poll() is None


@private_machine.needed
def test_the_desktop_is_streamed_at_the_address_that_it_prints(run, network, tmp_path):
    host, port = run.address()
    assert (host, port) == (network or 'localhost', 8999)
    viewer = Viewer(port, host)
    frame = viewer.newest_frame(tmp_path / 'frame.jpg')
    assert identify(frame, '%m %w %h') == 'JPEG 1280 800'
    wait_for(lambda: difference(viewer.newest_frame(frame), run.picture()) < 0.02, 10, 'the desktop in the stream')
    viewer.close()
    run.process.terminate()
    run.process.wait(30)
    assert not answers(port)
    assert not list(Path('/tmp').glob('orvalen-desktop.*'))


@private_machine.needed
def test_a_stream_of_the_users_own_is_left_alone(run, tmp_path):
    """Its port, its files and its picture."""
    port_file, picture = Path('/tmp/orvalen_port.txt'), Path('/tmp/ov_disp_1.jpg')
    with socket.socket() as other:
        other.setsockopt(socket.SOL_SOCKET, socket.SO_REUSEADDR, 1)
        other.bind(('0.0.0.0', 8999))
        other.listen()
        port_file.write_text('8999')
        picture.write_bytes(b'of another screen')
        try:
            host, port = run.address()
            assert port == 9000
            viewer = Viewer(port)
            assert identify(viewer.frame(tmp_path / 'frame.jpg'), '%m %w %h') == 'JPEG 1280 800'
            viewer.close()
            assert port_file.read_text() == '8999'
            assert picture.read_bytes() == b'of another screen'
        finally:
            picture.unlink()
            port_file.unlink()
