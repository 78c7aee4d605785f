"""Starting, ports, files and ending."""
import os
import pwd
import shutil
import signal
import socket
import subprocess

import pytest

from streamserver import PORT_FILE, PORTS, PROGRAM, SCRIPT, capture_file, eventually


def occupy(port):
    other = socket.socket()
    other.setsockopt(socket.SOL_SOCKET, socket.SO_REUSEADDR, 1)
    other.bind(('0.0.0.0', port))
    other.listen()
    return other


def test_the_first_port_is_taken_and_written_down(running):
    assert PORT_FILE.read_bytes() == b'8999'
    assert running.get('/api/status').startswith(b'HTTP/1.0 200 OK\r\n')


@pytest.mark.parametrize('taken', [1, 2, 3])
def test_a_taken_port_is_passed_over(server, taken):
    others = [occupy(port) for port in PORTS[:taken]]
    server.start()
    assert PORT_FILE.read_bytes() == b'%d' % PORTS[taken]
    assert server.get('/api/status').startswith(b'HTTP/1.0 200 OK\r\n')
    for other in others:
        other.close()


def test_it_ends_without_a_port_file_if_all_ports_are_taken(server):
    others = [occupy(port) for port in PORTS]
    server.start()
    assert server.process.wait(10) is not None
    assert not PORT_FILE.exists()
    for other in others:
        other.close()


def test_all_interfaces_are_served(running):
    # Any address of the loopback network is an interface that the server was not told of.
    with socket.create_connection(('127.8.9.99', running.port()), 10) as connection:
        connection.sendall(b'GET /favicon.ico HTTP/1.0\r\n\r\n')
        assert connection.recv(100).startswith(b'HTTP/1.0 204 No Content\r\n')


def test_the_port_file_is_cut_to_the_number(server):
    PORT_FILE.write_text('90001234 and much more from before')
    server.start()  # waits for a number and nothing else
    assert PORT_FILE.read_bytes() == b'8999'


def test_files_are_private(running):
    with running.stream() as stream:
        stream.frame()
    assert PORT_FILE.stat().st_mode & 0o777 == 0o600
    assert capture_file(1).stat().st_mode & 0o777 == 0o600


def in_the_way(kind, path, tmp_path):
    """Puts something at the path that is not ours; what must stay as it is."""
    target = tmp_path / 'target'
    target.write_text('untouched')
    if kind == 'link':
        path.symlink_to(target)
    elif kind == 'dangling link':
        path.symlink_to(tmp_path / 'nowhere')
    elif kind == 'second name':
        try:
            os.link(target, path)
        except OSError:
            target = path.with_suffix('.other')
            target.write_text('untouched')
            os.link(target, path)
    elif kind == 'folder':
        path.mkdir()
    elif kind == 'pipe':
        os.mkfifo(path)
    elif kind == 'foreign file':
        path.write_text('untouched')
        try:
            os.chown(path, pwd.getpwnam('nobody').pw_uid, -1)
        except OSError:
            pytest.skip('there is but one user in this namespace')
        target = path
    return target


KINDS = ['link', 'dangling link', 'second name', 'folder', 'pipe', 'foreign file']


@pytest.mark.parametrize('kind', KINDS)
def test_a_port_file_that_is_not_ours_is_left_alone_and_no_port_kept(server, tmp_path, kind):
    target = in_the_way(kind, PORT_FILE, tmp_path)
    try:
        assert subprocess.run([PROGRAM, SCRIPT], timeout=20, stdin=subprocess.DEVNULL, capture_output=True).stdout == b''
        assert target.read_text() == 'untouched'
        assert not (tmp_path / 'nowhere').exists()
    finally:
        target.with_suffix('.other').unlink(missing_ok=True)


@pytest.mark.parametrize('kind', KINDS)
def test_no_picture_is_taken_into_a_file_that_is_not_ours(running, tmp_path, kind):
    target = in_the_way(kind, capture_file(2), tmp_path)
    try:
        with running.stream() as main:
            main.frame()
        with running.stream('/stream.mjpg?d=2') as stream:
            assert stream.frame() == b'picture 1'  # the failed display shows the main one
        assert not [line for line in running.log() if '-D 2' in line]
        assert target.read_text() == 'untouched'
    finally:
        target.with_suffix('.other').unlink(missing_ok=True)


def test_it_can_be_started_again_at_once(server):
    for _ in range(5):
        server.start()
        assert PORT_FILE.read_bytes() == b'8999'
        with server.stream() as stream:
            stream.frame()
            server.stop()
        PORT_FILE.unlink()


def test_the_terminate_signal_ends_it(running):
    with running.stream() as stream:
        stream.frame()
        running.process.terminate()
        assert running.process.wait(10) == -signal.SIGTERM
    assert PORT_FILE.exists()  # whoever started it takes it away


def test_it_is_found_by_the_script_on_its_command_line(running):
    with running.stream() as stream:
        stream.frame()
        subprocess.run(['/usr/bin/pkill', '-f', 'orvalen_web_stream.py'], check=True)
        assert running.process.wait(10) == -signal.SIGTERM


def test_it_can_be_the_interpreter_of_a_script(server, tmp_path):
    script = tmp_path / 'orvalen_web_stream.py'
    script.write_text('#!%s\nThis is no program.\n' % PROGRAM)
    script.chmod(0o755)
    server.process = subprocess.Popen([script], env={'PATH': '%s:/bin' % server.bin})
    assert eventually(server.port)
    with server.stream() as stream:
        assert stream.frame() == b'picture 1'
    subprocess.run(['/usr/bin/pkill', '-f', 'orvalen_web_stream.py'], check=True)
    assert server.process.wait(10) == -signal.SIGTERM


def test_signals_of_whoever_started_it_do_not_matter(server):
    def meddle():
        signal.pthread_sigmask(signal.SIG_BLOCK, {signal.SIGTERM})
        signal.signal(signal.SIGCHLD, signal.SIG_IGN)
        signal.signal(signal.SIGTERM, signal.SIG_IGN)

    server.start(preexec_fn=meddle)
    with server.stream() as stream:
        assert stream.frame() == b'picture 1'
    server.process.terminate()
    assert server.process.wait(10) == -signal.SIGTERM


def test_closed_standard_streams_do_not_matter(server):
    server.command('echo noise; echo noise >&2; printf picture >"$file"')

    def close_all():
        for stream in range(3):
            os.close(stream)

    server.start(preexec_fn=close_all)
    with server.stream() as stream:
        assert stream.frame() == b'picture'


def test_the_environment_does_not_matter(server):
    server.start(env={})
    assert server.get('/api/status').startswith(b'HTTP/1.0 200 OK\r\n')


def test_the_capture_commands_output_is_not_redirected(server):
    server.command('echo said; echo complained >&2; printf picture >"$file"; sleep 0.3')
    server.expected_output = b'said\ncomplained\n'
    server.start()
    with server.stream() as stream:
        stream.frame()
        server.stop()
    server.expected_output = server.output.read_bytes()
    assert server.expected_output.startswith(b'said\ncomplained\n')


def test_the_capture_command_inherits_no_descriptor(server):
    server.command('ls -l /proc/$$/fd >"$file"')
    server.start()
    held = [server.connect() for _ in range(20)]
    with server.stream() as stream, server.stream() as other:
        for _ in range(5):
            listing = stream.frame()
            assert b'/screencapture' in listing  # the shell has its script open
            assert b'socket:' not in listing and b'orvalen_port' not in listing
            other.frame()
    for connection in held:
        connection.close()


def test_the_command_beside_the_program_is_the_last_resort(server, tmp_path):
    folder = tmp_path / 'libexec'
    folder.mkdir()
    program = shutil.copy(PROGRAM, folder)
    shutil.move(server.bin / 'screencapture', folder)
    server.start(program=program)
    with server.stream() as stream:
        assert stream.frame() == b'picture 1'
        server.command('printf "found on the path" >"$file"')
        assert eventually(lambda: stream.frame() == b'found on the path')


def test_a_missing_command_is_a_failed_capture(server, tmp_path):
    program = shutil.copy(PROGRAM, tmp_path)
    server.no_command()
    server.start(program=program, env={'PATH': str(server.bin)})
    with server.stream(timeout=1) as stream:
        with pytest.raises(TimeoutError):
            stream.frame()
        stream.socket.settimeout(20)
        server.command('printf "there now" >"$file"')
        assert stream.frame() == b'there now'
