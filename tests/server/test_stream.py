"""Which frame a viewer gets, and what is run for it."""
import itertools
import os
import statistics
import threading
import time

import pytest

from streamserver import capture_file, eventually


@pytest.mark.parametrize('query, display', [
    ('', 1), ('?', 1), ('?d=', 1), ('?d', 1), ('?d=abc', 1), ('?d=1_0', 1), ('?d=2.0', 1), ('?d=9223372036854775808', 1),
    ('?t=5', 1), ('?d=&d=2', 1), ('?D=2', 1), ('?d=%D9%A2', 1),
    ('?d=2', 2), ('?d=2&t=1763733600123', 2), ('?t=1&d=2', 2), ('?d=+2+', 2), ('?d=%202', 2), ('?d=%2B2', 2),
    ('?d=2&d=3', 2), ('?%64=%32', 2), ('?d=0', 0), ('?d=-7', -7), ('?d=9223372036854775807', 9223372036854775807),
])
def test_the_query_names_the_display(running, query, display):
    with running.stream('/stream.mjpg' + query) as stream:
        stream.frame()
    name = '-D %d ' % display if display > 1 else ''
    assert running.log()[0] == '-x -t jpg %s%s' % (name, capture_file(display))


def test_main_displays_under_other_numbers_have_files_and_frames_of_their_own(server):
    server.command('printf "%s" "${file##*_}" >"$file"')
    server.start()
    for display in (1, 0, -1):
        with server.stream('/stream.mjpg?d=%d' % display) as stream:
            assert stream.frame() == b'%d.jpg' % display
    assert not [line for line in server.log() if '-D' in line]


def test_frames_are_the_files_to_the_byte(server, tmp_path):
    picture = os.urandom(3_000_000) + b'--FRAME\r\n\r\n'
    (tmp_path / 'picture').write_bytes(picture)
    server.command('cp %s "$file"' % (tmp_path / 'picture'))
    server.start()
    with server.stream() as stream:
        for _ in range(3):
            assert stream.frame() == picture


def test_a_file_that_is_written_in_pieces_is_never_seen_in_pieces(server):
    server.command('for i in 1 2 3 4 5 6 7 8 9 10; do printf "%s" "$i" >>"$file.$$"; cat "$file.$$" >"$file"; done; '
                   'rm "$file.$$"')
    server.start()
    streams = [server.stream() for _ in range(10)]
    for _ in range(10):
        for stream in streams:
            assert stream.frame() == b'12345678910'
    for stream in streams:
        stream.close()


def test_captures_of_a_display_never_overlap(server, tmp_path):
    marks = tmp_path / 'marks'
    server.command('echo begin $display >>%s; sleep 0.02; echo picture >"$file"; echo end $display >>%s' % (marks, marks))
    server.start()
    streams = [server.stream('/stream.mjpg?d=%d' % (1 + i % 2)) for i in range(20)]
    for _ in range(10):
        for stream in streams:
            stream.frame()
    lines = marks.read_text().split('\n')[:-1]
    for display in '12':
        own = [line.split()[0] for line in lines if line.endswith(display)]
        assert len(own) > 10
        assert all(line == expected for line, expected in zip(own, itertools.cycle(['begin', 'end'])))
    for stream in streams:
        stream.close()


def test_viewers_share_captures_and_there_are_at_most_ten_a_second(running):
    streams = [running.stream() for _ in range(30)]
    for stream in streams:
        stream.frame()
    began, before = time.monotonic(), len(running.log())
    while time.monotonic() - began < 3:
        for stream in streams:
            stream.frame()
    assert len(running.log()) - before <= 10 * (time.monotonic() - began) + 1
    for stream in streams:
        stream.close()


def test_a_lone_viewer_sees_no_picture_twice(server):
    server.command('sleep 0.005; echo $$ >"$file"')
    server.start()
    with server.stream() as stream:
        frames = [stream.frame() for _ in range(30)][2:]  # it takes a capture to know how long they take
    assert len(set(frames)) == len(frames)


def test_a_failing_display_shows_the_main_one_after_a_rest(server):
    server.command('[ $display = 1 ] || exit 1; printf main >"$file"')
    server.start()
    with server.stream('/stream.mjpg?d=2') as second:
        second.socket.settimeout(1.9)
        with pytest.raises(TimeoutError):
            second.frame()  # nothing to show yet
        second.socket.settimeout(20)
        with server.stream() as main:
            main.frame()
        assert second.frame() == b'main'
        began = time.monotonic()
        assert second.frame() == b'main'
        assert time.monotonic() - began > 1.5


def test_without_permission_there_are_no_parts_and_few_attempts(server):
    server.command('exit 1')
    server.start()
    streams = [server.stream() for _ in range(10)]
    time.sleep(4)
    for stream in streams:
        stream.socket.setblocking(False)
        with pytest.raises(BlockingIOError):
            stream.socket.recv(1)
    assert len(server.log()) <= 3  # 1.5 s each, however many ask
    server.command('printf allowed >"$file"')
    for stream in streams:
        stream.socket.settimeout(20)
        assert stream.frame() == b'allowed'
        stream.close()


def test_a_failure_after_pictures_repeats_the_last_one(server):
    server.command('printf good >"$file"')
    server.start()
    with server.stream() as stream:
        assert stream.frame() == b'good'
        server.command('printf bad >"$file"; exit 1')
        attempts = len(server.log())
        assert eventually(lambda: stream.frame() == b'good' and len(server.log()) > attempts + 1)


def test_success_without_a_file_shows_the_main_display(server):
    server.command('[ $display = 1 ] && printf main >"$file"; exit 0')
    server.start()
    with server.stream() as main:
        main.frame()
        with server.stream('/stream.mjpg?d=2') as second:
            assert second.frame() == b'main'
            assert second.frame() == b'main'
    assert not capture_file(2).exists()


def test_an_empty_file_is_as_none(server):
    server.command('[ $display = 1 ] && printf main >"$file" || : >"$file"')
    server.start()
    with server.stream() as main:
        main.frame()
        with server.stream('/stream.mjpg?d=2') as second:
            assert second.frame() == b'main'


def test_an_earlier_file_is_shown_as_if_new(server):
    capture_file(3).write_text('from before')
    server.command('exit 0')
    server.start()
    with server.stream('/stream.mjpg?d=3') as stream:
        assert stream.frame() == b'from before'


def test_counting_on_shows_the_main_display(running):
    for display in range(2, 257):
        with running.stream('/stream.mjpg?d=%d' % display) as stream:
            assert stream.frame() == b'picture %d' % display
    with running.stream('/stream.mjpg?d=257') as stream:
        assert stream.frame() == b'picture 1'
    with running.stream('/stream.mjpg?d=256') as stream:
        assert stream.frame() == b'picture 256'
    assert not capture_file(257).exists()


def test_a_slow_display_does_not_slow_another(server):
    server.command('[ $display = 1 ] || sleep 1000; printf quick >"$file"')
    server.start()
    with server.stream('/stream.mjpg?d=2'), server.stream() as main:
        began = time.monotonic()
        for _ in range(20):
            assert main.frame() == b'quick'
        assert time.monotonic() - began < 10


def test_a_slow_viewer_gets_fresh_frames(server, tmp_path):
    padding = tmp_path / 'padding'
    padding.write_bytes(b'p' * 300_000)
    server.command('date +%%s.%%N >"$file"; cat %s >>"$file"' % padding)
    server.start()
    with server.stream() as stream:
        ages = []
        for _ in range(16):
            frame = bytearray()
            head = stream.until(b'\r\n\r\n')
            length = int(head.split(b'Content-Length: ')[1])
            while len(frame) < length:  # some 600 kB a second
                frame += stream.exactly(min(30_000, length - len(frame)))
                time.sleep(0.05)
            stream.exactly(2)
            ages.append(time.time() - float(frame[:20]))
    # The time to read one frame and what both kernels hold of the one before: no queue of frames, which would grow.
    assert statistics.median(ages[-4:]) < statistics.median(ages[1:5]) + 0.3, ages


def test_a_stream_breaks_and_does_not_end_when_the_server_is_killed(running):
    # A browser keeps the last picture of a stream that ended, and its page would never connect again.
    with running.stream() as stream:
        stream.frame()
        running.stop()
        with pytest.raises(ConnectionResetError):
            while True:
                stream.more()


def test_viewers_come_and_go_without_a_trace(running):
    with running.stream() as stream:
        stream.frame()
    assert eventually(lambda: running.threads() == 2)
    threads, descriptors = running.threads(), running.descriptors()

    def come_and_go(count):
        for i in range(count):
            viewer = running.stream('/stream.mjpg?d=%d' % (1 + i % 2))
            if i % 3:
                viewer.frame()
            viewer.close()

    comers = [threading.Thread(target=come_and_go, args=(150,)) for _ in range(8)]
    for comer in comers:
        comer.start()
    for comer in comers:
        comer.join()
    assert eventually(lambda: running.threads() == threads and running.descriptors() == descriptors)
