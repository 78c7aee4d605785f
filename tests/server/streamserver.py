"""The real stream server, a capture command of the test's making, and what one needs to talk to it."""
import glob
import os
import re
import signal
import socket
import subprocess
import time
from pathlib import Path

PROGRAM = Path(__file__).resolve().parents[2] / 'build/release/libexec/orvalen/orvalen-stream-server'
PORT_FILE = Path('/tmp/orvalen_port.txt')
SCRIPT = '/tmp/orvalen_web_stream.py'
PORTS = [8999, 9000, 9001, 8088]
STREAM_HEAD = (b'HTTP/1.0 200 OK\r\nServer: Orvalen\r\nDate: DATE\r\nAge: 0\r\n'
               b'Cache-Control: no-cache, private, no-store, must-revalidate\r\nPragma: no-cache\r\n'
               b'Content-Type: multipart/x-mixed-replace; boundary=FRAME\r\n\r\n')


def eventually(condition, seconds=10):
    """Whether the condition comes true; patience is generous, machines can be slow."""
    end = time.monotonic() + seconds
    while not condition():
        if time.monotonic() > end:
            return False
        time.sleep(0.01)
    return True


def capture_file(display):
    return Path('/tmp/ov_disp_%d.jpg' % display)


def without_date(answer):
    """The answer with its date, which must be a proper one, replaced by "DATE"."""
    date = re.search(rb'\r\nDate: ([A-Z][a-z]{2}, \d\d [A-Z][a-z]{2} \d{4} \d\d:\d\d:\d\d GMT)\r\n', answer)
    assert date, answer
    then = time.mktime(time.strptime(date[1].decode(), '%a, %d %b %Y %H:%M:%S GMT')) - time.timezone
    assert abs(then - time.time()) < 5
    return answer.replace(date[1], b'DATE')


class Stream:
    """A viewer: reads part by part and is strict about each byte."""

    def __init__(self, server, target='/stream.mjpg', timeout=20):
        self.socket = server.connect(timeout)
        self.socket.sendall(b'GET %s HTTP/1.1\r\nHost: test\r\n\r\n' % target.encode())
        self.buffer = b''
        head = self.until(b'\r\n\r\n')
        assert without_date(head) == STREAM_HEAD

    def more(self):
        got = self.socket.recv(65536)
        if not got:
            raise EOFError
        self.buffer += got

    def until(self, end):
        while end not in self.buffer:
            self.more()
        taken, _, self.buffer = self.buffer.partition(end)
        return taken + end

    def exactly(self, count):
        while len(self.buffer) < count:
            self.more()
        taken, self.buffer = self.buffer[:count], self.buffer[count:]
        return taken

    def frame(self):
        head = self.until(b'\r\n\r\n')
        length = re.fullmatch(rb'--FRAME\r\nContent-Type: image/jpeg\r\nContent-Length: ([1-9]\d*)\r\n\r\n', head)
        assert length, head
        frame = self.exactly(int(length[1]))
        assert self.exactly(2) == b'\r\n'
        return frame

    def close(self):
        self.socket.close()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()


class StreamServer:
    """Starts the program with a stand-in for the capture command first on the search path, and takes both away again."""

    def __init__(self, folder):
        self.bin = folder / 'bin'
        self.bin.mkdir()
        self.log_file = folder / 'log'
        self.output = folder / 'output'
        self.process = None
        self.command('printf "picture %s" "$display" >"$file"')

    def command(self, script):
        """The capture command: $file and $display are set; its arguments are in the log."""
        program = self.bin / 'new'
        program.write_text('#!/bin/sh\necho "$*" >>%s\ndisplay=1\n'
                           'for word; do [ "$last" = -D ] && display=$word; last=$word; done\nfile=$last\n%s\n'
                           % (self.log_file, script))
        program.chmod(0o755)
        program.replace(self.bin / 'screencapture')

    def no_command(self):
        (self.bin / 'screencapture').unlink()

    def log(self):
        return self.log_file.read_text().splitlines() if self.log_file.exists() else []

    def start(self, program=PROGRAM, **options):
        environment = dict(os.environ, PATH='%s:/usr/bin:/bin' % self.bin)
        with open(self.output, 'ab') as output:
            self.process = subprocess.Popen([program, SCRIPT], **{
                'env': environment, 'stdin': subprocess.DEVNULL, 'stdout': output, 'stderr': output, **options})
        assert eventually(lambda: self.port() or self.process.poll() is not None)
        return self

    def port(self):
        try:
            text = PORT_FILE.read_text()
        except FileNotFoundError:
            return None
        return int(text) if text.isdecimal() else None

    def connect(self, timeout=20):
        return socket.create_connection(('127.0.0.1', self.port()), timeout)

    def say(self, data, half_close=False):
        """Sends the bytes and returns everything that comes back."""
        with self.connect() as connection:
            connection.sendall(data)
            if half_close:
                connection.shutdown(socket.SHUT_WR)
            answer = b''
            while got := connection.recv(65536):
                answer += got
            return answer

    def get(self, target, method='GET'):
        return self.say(b'%s %s HTTP/1.1\r\nHost: test\r\n\r\n' % (method.encode(), target.encode()))

    def stream(self, target='/stream.mjpg', **options):
        return Stream(self, target, **options)

    def threads(self):
        return len(os.listdir('/proc/%d/task' % self.process.pid))

    def descriptors(self):
        return len(os.listdir('/proc/%d/fd' % self.process.pid))

    def memory(self):
        """Resident bytes."""
        status = Path('/proc/%d/status' % self.process.pid).read_text()
        return int(re.search(r'VmRSS:\s+(\d+) kB', status)[1]) * 1024

    def stop(self):
        if self.process and self.process.poll() is None:
            self.process.send_signal(signal.SIGKILL)
        if self.process:
            self.process.wait()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.stop()
        for name in [str(PORT_FILE), *glob.glob('/tmp/ov_disp_*')]:
            if os.path.isdir(name) and not os.path.islink(name):
                os.rmdir(name)
            elif os.path.lexists(name):
                os.unlink(name)
        if self.output.exists():
            assert self.output.read_bytes() == self.expected_output, 'the server itself says nothing'

    expected_output = b''
