"""Every row of the table of answers, to the byte."""
import json
import re
import socket
import time
from pathlib import Path

import pytest

from streamserver import STREAM_HEAD, without_date

PAGE = (Path(__file__).resolve().parents[2] / 'streaming/server/viewer.html').read_bytes()
HTML = b'Content-Type: text/html; charset=utf-8\r\n'
BEGIN = b'HTTP/1.0 200 OK\r\nServer: Orvalen\r\nDate: DATE\r\n'


@pytest.mark.parametrize('target', ['/', '/?', '/?d=2', '/?a/b?c', 'http://127.0.0.1:8999/', 'http://anything?x'])
def test_the_viewer_page(running, target):
    assert without_date(running.get(target)) == BEGIN + HTML + b'Content-Length: %d\r\n\r\n' % len(PAGE) + PAGE


def test_the_status(running):
    answers = [running.get(target) for target in ('/api/status', '/api/status?x=1')]
    times = []
    for answer in answers:
        head, _, body = answer.partition(b'\r\n\r\n')
        assert without_date(head + b'\r\n\r\n') == BEGIN + b'Content-Type: application/json\r\nContent-Length: 47\r\n\r\n'
        assert re.fullmatch(rb'\{"status": "online", "time": \d{10}\.\d{6}\}', body)
        assert list(json.loads(body)) == ['status', 'time']
        times.append(json.loads(body)['time'])
    assert abs(times[0] - time.time()) < 5
    assert times[0] < times[1]


def test_no_icon(running):
    assert without_date(running.get('/favicon.ico')) == b'HTTP/1.0 204 No Content\r\nServer: Orvalen\r\nDate: DATE\r\n\r\n'


@pytest.mark.parametrize('target', ['/', '/stream.mjpg', '/api/status', '/favicon.ico', '/nothing', '*'])
def test_the_head_of_anything(running, target):
    assert without_date(running.get(target, 'HEAD')) == BEGIN + HTML + b'\r\n'


def is_error(answer, status):
    head, _, body = answer.partition(b'\r\n\r\n')
    assert without_date(head + b'\r\n\r\n') == (b'HTTP/1.0 %s\r\nServer: Orvalen\r\nDate: DATE\r\nConnection: close\r\n%s'
                                               b'Content-Length: %d\r\n\r\n' % (status, HTML, len(body)))
    assert body.startswith(b'<!DOCTYPE html>') and b'<h1>' + status + b'</h1>' in body
    return True


@pytest.mark.parametrize('target', ['/index.html', '/stream.mjpg/', '/STREAM.MJPG', '/stream', '//', '/%2f', '/..', '*',
                                    'stream.mjpg', '/api/status/', '/api', '/favicon.ico/', '/stream%2Emjpg', '/#'])
def test_other_paths_are_not_found(running, target):
    assert is_error(running.get(target), b'404 Not Found')


@pytest.mark.parametrize('method', ['POST', 'PUT', 'DELETE', 'OPTIONS', 'TRACE', 'PATCH', 'CONNECT', 'BREW', 'get', 'head'])
def test_other_methods_are_not_implemented(running, method):
    for target in ('/', '/nothing'):
        assert is_error(running.get(target, method), b'501 Not Implemented')


@pytest.mark.parametrize('request_head', [
    b'GET / HTTP/1.0\r\n\r\n',
    b'GET / HTTP/1.1\r\n\r\n',
    b'GET / HTTP/1.1\r\nConnection: keep-alive\r\n\r\nGET /api/status HTTP/1.1\r\n\r\n',
    b'GET / HTTP/1.1\r\nContent-Length: 5\r\n\r\nhello',
    b'GET / HTTP/1.1\r\nExpect: 100-continue\r\nTransfer-Encoding: chunked\r\n\r\n',
])
def test_one_request_per_connection_in_the_old_version(running, request_head):
    assert running.say(request_head).count(b'HTTP/1.') == 1


@pytest.mark.parametrize('nonsense', [
    b'\r\n\r\n',
    b'\n\n',
    b'GET /\r\n\r\n',
    b'GET / HTTP/1.0\n\n',
    b'GET / HTTP/2.0\r\n\r\n',
    b'GET / HTTP/1.1 \r\n\r\n',
    b'GET  / HTTP/1.1\r\n\r\n',
    b' GET / HTTP/1.1\r\n\r\n',
    b'GET /\0 HTTP/1.1\r\n\r\n',
    b'GET / HTTP/1.1\r\nnonsense\r\n\r\n',
    b'GET / HTTP/1.1\r\nContent-Length: x\r\n\r\n',
    b'\x16\x03\x01\x02\x00\x01\x00\x01\xfc\x03\x03',
    b'PRI * HTTP/2.0\r\n\r\nSM\r\n\r\n',
    bytes(range(256)),
])
def test_nonsense_is_a_bad_request(running, nonsense):
    assert is_error(running.say(nonsense), b'400 Bad Request')


@pytest.mark.parametrize('half', [b'G', b'GET / HTTP/1.1', b'GET / HTTP/1.1\r\nHost: test\r\n'])
def test_half_a_request_is_a_bad_request(running, half):
    assert is_error(running.say(half, half_close=True), b'400 Bad Request')


def test_silence_is_answered_with_silence(running):
    assert running.say(b'', half_close=True) == b''


def test_large_requests_are_refused(running):
    for request in (b'GET /' + b'a' * 9000 + b' HTTP/1.1\r\n\r\n',
                    b'GET / HTTP/1.1\r\nCookie: ' + b'c' * 1_000_000 + b'\r\n\r\n',
                    b'GET / HTTP/1.1\r\n' + b'a: b\r\n' * 65 + b'\r\n'):
        assert is_error(running.say(request), b'431 Request Header Fields Too Large')
    almost = b'GET /favicon.ico HTTP/1.1\r\n' + b'a: b\r\n' * 63 + b'c: ' + b'd' * (8192 - 412) + b'\r\n\r\n'
    assert len(almost) == 8192
    assert running.say(almost).startswith(b'HTTP/1.0 204 No Content\r\n')


def test_a_request_may_come_byte_by_byte(running):
    with running.connect() as connection:
        connection.setsockopt(socket.IPPROTO_TCP, socket.TCP_NODELAY, 1)
        for byte in b'GET /favicon.ico HTTP/1.1\r\nHost: test\r\n\r\n':
            connection.sendall(bytes([byte]))
            time.sleep(0.001)
        assert connection.recv(100).startswith(b'HTTP/1.0 204 No Content\r\n')


def test_a_body_does_not_cost_its_sender_the_answer(running):
    answer = running.say(b'POST /upload HTTP/1.1\r\nContent-Length: 200000\r\n\r\n' + b'b' * 200_000)
    assert is_error(answer, b'501 Not Implemented')


def test_a_stream_begins_before_there_is_a_picture(server):
    server.command('sleep 1000')
    server.start()
    with server.stream() as stream:
        assert stream.buffer == b''
        stream.socket.settimeout(0.3)
        with pytest.raises(socket.timeout):
            stream.more()


def test_a_whole_address_streams_too(running):
    with running.stream('http://127.0.0.1:8999/stream.mjpg?d=2') as stream:
        assert stream.frame() == b'picture 2'


def test_parts_follow_one_another_to_the_byte(running):
    part = b'--FRAME\r\nContent-Type: image/jpeg\r\nContent-Length: 9\r\n\r\npicture 1\r\n'
    with running.connect() as connection:
        connection.sendall(b'GET /stream.mjpg HTTP/1.0\r\n\r\n')
        heard = b''
        while len(heard) < 1000:
            heard += connection.recv(65536)
    head, _, parts = heard.partition(b'\r\n\r\n')
    assert without_date(head + b'\r\n\r\n') == STREAM_HEAD
    assert (part * 20).startswith(parts)
