"""What the stream's benchmarks stand on: servers to compare, a load on them, screens, and a busy machine."""
import ctypes
import json
import math
import os
import re
import resource
import shutil
import signal
import socket
import subprocess
import sys
import time
from contextlib import contextmanager
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
PORT_FILE = Path("/tmp/orvalen_port.txt")
PORTS = {b"8999", b"9000", b"9001", b"8088"}
FRAME = Path("/tmp/frame.jpg")
CAPTURE_LOG = Path("/tmp/captures.log")
FIXED_PORTS = {"floor": 9101, "ustreamer": 9105}
CAMERA = Path("/tmp/camera")


class MissingProgram(Exception):
    """Something to be measured is not built or not installed."""


def move_into_private_machine():
    """Ports, file names and kills are of this run alone from here on."""
    if os.environ.get("ORVALEN_PRIVATE_MACHINE") != "yes":
        machine = ROOT / "tests/support/private-machine"
        os.execv(machine, [machine, sys.executable, *sys.argv])


class Rig:
    """The programs, and how each server is started."""

    def __init__(self, build):
        self.build = build
        self.stand_in = build / "bench/stand_in"
        self.captures = build / "libexec/orvalen"
        for name in ("stream_load", "stream_floor", "stream_frame", "stand_in/screencapture"):
            self.program("bench/" + name)
        _, hard = resource.getrlimit(resource.RLIMIT_NOFILE)
        resource.setrlimit(resource.RLIMIT_NOFILE, (hard, hard))

    def program(self, name):
        if not (self.build / name).exists():
            raise MissingProgram(f"{self.build / name} is not built")
        return self.build / name

    def make_frame(self, size):
        subprocess.run([self.program("bench/stream_frame"), str(size), FRAME], check=True)

    def command(self, name):
        if name == "orvalen":
            return [self.program("libexec/orvalen/orvalen-stream-server"), "/tmp/orvalen_web_stream.py"]
        if name == "naive":
            return ["/usr/bin/python3", ROOT / "bench/naive_stream_server.py"]
        port = str(FIXED_PORTS[name])
        if name == "floor":
            return [self.program("bench/stream_floor"), port, FRAME]
        return ["ustreamer", "--device", CAMERA, "--format", "MJPEG", "--encoder", "HW", "--resolution", "1440x900",
                "--desired-fps", "12", "--host", "127.0.0.1", "--port", port, "--tcp-nodelay"]

    def has_ustreamer(self):
        return bool(shutil.which("ustreamer")) and (self.build / "bench/stream_camera.so").exists()

    def stand_in_environment(self, milliseconds=8, picture=0, pieces=0):
        return {"PATH": f"{self.stand_in}:{os.environ['PATH']}", "ORVALEN_STAND_IN_FRAME": str(FRAME),
                "ORVALEN_STAND_IN_MS": str(milliseconds), "ORVALEN_STAND_IN_PICTURE_MS": str(picture),
                "ORVALEN_STAND_IN_PIECES": str(pieces), "ORVALEN_STAND_IN_LOG": str(CAPTURE_LOG),
                "ORVALEN_CAMERA": str(CAMERA)}

    @contextmanager
    def server(self, name, environment):
        server = Server(self, name, environment)
        try:
            yield server
        finally:
            server.end()

    @contextmanager
    def screen(self, width, height):
        """The environment of an X server whose screen moves and shows the time; and the server's process id."""
        read_end, write_end = os.pipe()
        x_server = subprocess.Popen(["Xvfb", "-displayfd", str(write_end), "-screen", "0", f"{width}x{height}x24",
                                     "-nolisten", "tcp", "-noreset"], pass_fds=[write_end], stderr=subprocess.DEVNULL)
        os.close(write_end)
        with os.fdopen(read_end) as answer:
            display = ":" + answer.readline().strip()
        environment = {"PATH": os.environ["PATH"], "DISPLAY": display, "XDG_SESSION_TYPE": "x11", "HOME": "/tmp"}
        painter = subprocess.Popen([self.program("bench/stream_painter")], env=environment)
        time.sleep(0.5)
        try:
            yield environment, x_server.pid
        finally:
            for process in (painter, x_server):
                process.kill()
                process.wait()

    def scrot_as_capture_command(self):
        """A folder in which scrot goes by the capture command's name."""
        if not shutil.which("scrot"):
            raise MissingProgram("scrot is not installed")
        folder = Path("/tmp/scrot")
        folder.mkdir(exist_ok=True)
        command = folder / "screencapture"
        command.write_text('#!/bin/sh\nfor file; do :; done\nexec scrot --silent --pointer --overwrite "$file"\n')
        command.chmod(0o755)
        return folder


@contextmanager
def busy_loops(count):
    loops = [subprocess.Popen(["sh", "-c", "while :; do :; done"]) for _ in range(count)]
    try:
        yield
    finally:
        for loop in loops:
            loop.kill()
            loop.wait()


def thread_seconds(pid):
    """Processor time of a process's living threads."""
    seconds = 0
    for task in Path(f"/proc/{pid}/task").iterdir():
        try:
            seconds += int((task / "schedstat").read_text().split()[0]) / 1e9
        except (FileNotFoundError, ProcessLookupError):  # it has just ended
            pass
    return seconds


def holdings(pid):
    """Resident kilobytes, threads and descriptors."""
    status = Path(f"/proc/{pid}/status").read_text()
    figure = lambda key: int(re.search(rf"^{key}:\s+(\d+)", status, re.MULTILINE)[1])
    return figure("VmRSS"), figure("Threads"), len(os.listdir(f"/proc/{pid}/fd"))


class Server:
    def __init__(self, rig, name, environment):
        self.rig, self.name = rig, name
        PORT_FILE.unlink(missing_ok=True)
        CAPTURE_LOG.unlink(missing_ok=True)
        if name == "ustreamer":
            CAMERA.touch()
            environment = dict(environment, LD_PRELOAD=str(rig.program("bench/stream_camera.so")))
        self.process = subprocess.Popen(rig.command(name), env=environment, stdout=subprocess.DEVNULL,
                                        stderr=subprocess.DEVNULL, cwd="/")
        self.pid = self.process.pid
        self.port = self.wait_for_port()
        self.seconds_to_start = thread_seconds(self.pid)
        self.frames = 0
        self.seconds = None

    def wait_for_port(self):
        deadline = time.monotonic() + 10
        while time.monotonic() < deadline and self.process.poll() is None:
            if port := FIXED_PORTS.get(self.name):
                with socket.socket() as probe:
                    if probe.connect_ex(("127.0.0.1", port)) == 0:
                        return port
            elif PORT_FILE.exists() and PORT_FILE.read_bytes() in PORTS:
                return int(PORT_FILE.read_text())
            time.sleep(0.005)
        raise MissingProgram(f"{self.name} does not come up")

    def begin_load(self, **options):
        words = [str(self.rig.program("bench/stream_load")), "--port", str(self.port), "--pid", str(self.pid),
                 "--dialect", "any" if self.name in FIXED_PORTS else "ours"]
        if self.name == "ustreamer":
            words += ["--path", "/stream"]
        for option, value in options.items():
            words += ["--" + option.replace("_", "-"), str(value)]
        return subprocess.Popen(words, stdout=subprocess.PIPE, text=True)

    def end_load(self, load):
        output, _ = load.communicate()
        figures = json.loads(output)
        for group in (figures, *figures["slow"].values()):
            if group["age_median"] < 0:  # nothing told its age
                group["age_median"] = group["age_p95"] = math.inf
        self.frames += figures["frames_ever"]
        return figures

    def load(self, **options):
        return self.end_load(self.begin_load(**options))

    def end(self):
        """Ends the server and learns what it and its children have used: the kernel tells that to the microsecond then."""
        if self.seconds is None:
            self.process.send_signal(signal.SIGKILL)
            _, status, used = os.wait4(self.pid, 0)
            self.process.returncode = -status
            self.seconds = used.ru_utime + used.ru_stime - self.seconds_to_start

    def microseconds_per_frame(self):
        self.end()
        return self.seconds / max(self.frames, 1) * 1e6


def captures_logged():
    """How many overlapped one of the same display, and the captures per second of the busiest display."""
    by_display = {}
    for line in CAPTURE_LOG.read_text().splitlines() if CAPTURE_LOG.exists() else []:
        display, start, end = line.split()
        by_display.setdefault(display, []).append((int(start), int(end)))
    overlaps, rates = 0, [0.0]
    for captures in by_display.values():
        captures.sort()
        latest_end = 0
        for start, end in captures:
            overlaps += start < latest_end
            latest_end = max(latest_end, end)
        if len(captures) > 1:
            rates.append((len(captures) - 1) / (captures[-1][0] - captures[0][0]) * 1e9)
    return overlaps, max(rates)


class PortFileWatch:
    """Tells when the port file is complete, without making the machine busy by asking."""

    MODIFY, CLOSE_WRITE, MOVED_TO = 0x2, 0x8, 0x80

    def __init__(self):
        library = ctypes.CDLL(None, use_errno=True)
        self.descriptor = library.inotify_init1(os.O_CLOEXEC)
        library.inotify_add_watch(self.descriptor, os.fsencode(PORT_FILE.parent),
                                  self.MODIFY | self.CLOSE_WRITE | self.MOVED_TO)

    def wait(self):
        while True:
            os.read(self.descriptor, 4096)
            try:
                if PORT_FILE.read_bytes() in PORTS:
                    return time.monotonic()
            except FileNotFoundError:
                pass

    def close(self):
        os.close(self.descriptor)


def does_not_come_up(*_):
    raise MissingProgram("a server does not come up")


def launch_to_port_file(rig, name, environment):
    """Milliseconds; the server is ended afterwards. Does not wait for a processor itself, if it may so decide."""
    PORT_FILE.unlink(missing_ok=True)
    watch = PortFileWatch()
    begin = time.monotonic()
    process = subprocess.Popen(rig.command(name), env=environment, stdout=subprocess.DEVNULL,
                               stderr=subprocess.DEVNULL, cwd="/")
    alarm = signal.signal(signal.SIGALRM, does_not_come_up)
    signal.alarm(10)
    try:
        return 1e3 * (watch.wait() - begin)
    finally:
        signal.alarm(0)
        signal.signal(signal.SIGALRM, alarm)
        process.kill()
        process.wait()
        watch.close()


@contextmanager
def first_in_line():
    """This process, not those that it starts, gets a processor whenever it wants one."""
    try:
        os.sched_setscheduler(0, os.SCHED_FIFO | os.SCHED_RESET_ON_FORK, os.sched_param(1))
    except PermissionError:
        print("(no right to go first: what the harness waits for counts, too)")
    try:
        yield
    finally:
        os.sched_setscheduler(0, os.SCHED_OTHER, os.sched_param(0))
