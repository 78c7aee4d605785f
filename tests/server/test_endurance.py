"""Many, silent, slow and rude clients."""
import socket
import struct
import time

from streamserver import eventually


def test_two_thousand_connections_are_held(running):
    held = [running.connect() for _ in range(1000)]
    held += [running.stream() for _ in range(1000)]
    for viewer in held[1000:]:
        viewer.frame()
    assert running.threads() >= 2002
    for connection in held[:1000]:
        connection.sendall(b'GET /favicon.ico HTTP/1.0\r\n\r\n')
    for connection in held[:1000]:
        assert connection.recv(100).startswith(b'HTTP/1.0 204 No Content\r\n')
    for connection in held:
        connection.close()
    assert eventually(lambda: running.threads() == 2, 30)


def test_those_beyond_all_bounds_are_closed(running):
    held = [running.connect() for _ in range(4096)]
    assert eventually(lambda: running.threads() == 4098)
    with running.connect() as late:
        assert late.recv(1) == b''
    held.pop().close()
    assert eventually(lambda: running.threads() == 4097)
    assert running.get('/favicon.ico').startswith(b'HTTP/1.0 204 No Content\r\n')
    for connection in held:
        connection.close()


def test_resets_do_no_harm(running):
    for _ in range(200):
        connection = running.connect()
        connection.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, struct.pack('ii', 1, 0))
        connection.sendall(b'GET /stream.mjpg HTTP/1.0\r\n\r\n')
        connection.close()
    assert eventually(lambda: running.threads() == 2)


def test_who_does_nothing_is_let_go_and_costs_nobody_anything(server, tmp_path):
    (tmp_path / 'picture').write_bytes(b'p' * 331_000)
    server.command('cp %s "$file"' % (tmp_path / 'picture'))
    server.start()
    with server.stream() as viewer:
        for _ in range(10):
            viewer.frame()
        memory = server.memory()

        silent = [server.connect() for _ in range(20)]
        stalled = []
        for _ in range(10):
            connection = socket.socket()
            connection.setsockopt(socket.SOL_SOCKET, socket.SO_RCVBUF, 65536)
            connection.connect(('127.0.0.1', server.port()))
            connection.sendall(b'GET /stream.mjpg HTTP/1.0\r\n\r\n')
            stalled.append(connection)
        dripping = [server.connect() for _ in range(20)]
        for connection in dripping:
            connection.sendall(b'GET / HTTP/1.1\r\nCookie: ')
        began = time.monotonic()
        frames = 0
        gone = set()
        most = 0
        while len(gone) < 3 and time.monotonic() - began < 45:
            viewer.frame()
            frames += 1
            most = max(most, server.memory())
            for connection in dripping:
                try:
                    connection.send(b'c')
                except OSError:
                    pass
            threads = server.threads() - 3  # of the viewer, of the listener, of the capture command
            for name, left in (('dripping', 30), ('silent', 10), ('stalled', 0)):
                if threads <= left and name not in gone:
                    gone.add(name)
        assert gone == {'dripping', 'silent', 'stalled'}
        assert frames > 8 * (time.monotonic() - began)
        assert most - memory < 2_000_000  # stacks, and no frames
        assert server.threads() == 3
        for connection in silent + stalled + dripping:
            connection.close()


def test_a_capture_command_that_hangs_is_ended(server):
    server.command('sleep 1000')
    server.start()
    with server.stream(timeout=60) as stream:
        assert eventually(lambda: len(server.log()) == 1)
        server.command('printf "late, but there" >"$file"')
        assert stream.frame() == b'late, but there'
        assert len(server.log()) == 2
