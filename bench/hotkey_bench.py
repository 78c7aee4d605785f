#!/usr/bin/python3
"""How long it takes from the press of a hot key to what it is for: to the first heat, and to the running stream.

    bench/hotkey_bench.py [--presses N] [BUILD_FOLDER]

Each press goes to a fresh orvalen, cold and idle, on an X server of its own, in a machine of its own (needs root or user
namespaces). Means something only while nothing else runs.

First heat: a spinner of the pulse has used a millisecond of processor time. A thread alone warms nothing, and one that was
made may still wait for a processor; as the kernel books running threads at its ticks only, the figure is up to a tick late,
never early. Running stream: the server answers "/api/status".

Floors of the same run: how long a bare program takes to learn of a key that it has grabbed; and how long the server takes
from its launch to its first answer, to which the rules add a pause of 150 ms for the one before it to go.
"""
import argparse
import os
import shutil
import signal
import statistics
import subprocess
import sys
import tempfile
import time
import urllib.error
import urllib.request
from pathlib import Path

from program_bench import Desktop, SENSORS
from stream_rig import move_into_private_machine

ROOT = Path(__file__).resolve().parent.parent
STATUS = "http://127.0.0.1:8999/api/status"
SERVER_MARK = "orvalen_web_stream.py"
PATIENCE = 20  # seconds


class Bench:
    def __init__(self, build, place):
        self.build = build
        self.desktop = Desktop(place)
        for i in range(1, SENSORS + 1):
            (place / f"sys/class/hwmon/hwmon0/temp{i}_input").write_text("20000\n")
        settings = place / "home/.config/Quenmark"
        settings.mkdir(parents=True)
        (settings / "Orvalen.ini").write_text("[General]\nsmartModeEnabled=false\n")  # warms for nobody but the key
        commands = place / "commands"
        commands.mkdir()
        (commands / "spd-say").write_text("#!/bin/sh\n")
        (commands / "spd-say").chmod(0o755)
        self.desktop.environment["PATH"] = f"{commands}:{os.environ['PATH']}"

    def key_press(self, *arguments):
        output = subprocess.run([self.build / "bench/key_press", *arguments], env=self.desktop.environment, check=True,
                                capture_output=True, text=True, timeout=60).stdout
        return [float(word) for word in output.split()]

    def with_program(self, measure):
        """What `measure` says of the process id of a fresh program that has its keys and nothing more to do."""
        program = self.desktop.start(self.desktop.in_warm_machine([self.build / "bin/orvalen"]), stdout=subprocess.PIPE)
        try:
            if b"Hotkeys registered" not in program.stdout.readline():
                sys.exit("orvalen has no hot keys")
            time.sleep(1.5)  # its window is up, what it loads is loaded
            return measure(program.pid)
        finally:
            program.kill()
            program.wait()
            self.desktop.processes.remove(program)

    def heat(self):
        """Milliseconds from the press to the first thread of the pulse, and to the first heat."""
        return self.with_program(lambda pid: self.key_press("heat", str(pid)))

    def stream(self):
        """Milliseconds from the press to the first answer of the server."""
        def measure(_):
            pressed, = self.key_press("press", "m")
            return first_answer(pressed)

        try:
            return self.with_program(measure)
        finally:
            end_servers()

    def server_alone(self):
        began = time.monotonic()
        server = self.desktop.start([self.build / "libexec/orvalen/orvalen-stream-server", "/tmp/" + SERVER_MARK])
        self.desktop.processes.remove(server)
        try:
            return first_answer(began)
        finally:
            server.kill()
            server.wait()
            end_servers()


def first_answer(since):
    """Milliseconds from that moment until the stream server has said that it is online."""
    while time.monotonic() < since + PATIENCE:
        try:
            with urllib.request.urlopen(STATUS, timeout=5) as answer:
                if b'"online"' in answer.read():
                    return (time.monotonic() - since) * 1e3
        except (urllib.error.URLError, ConnectionError):
            pass
        time.sleep(0.001)
    sys.exit("no stream within %d s" % PATIENCE)


def end_servers():
    """Every stream server of this machine of ours, and what is left of its port."""
    for folder in Path("/proc").iterdir():
        try:
            if folder.name.isdigit() and SERVER_MARK.encode() in (folder / "cmdline").read_bytes():
                os.kill(int(folder.name), signal.SIGKILL)
        except (OSError, ProcessLookupError):
            pass
    deadline = time.monotonic() + PATIENCE
    while time.monotonic() < deadline:
        try:
            urllib.request.urlopen(STATUS, timeout=1).close()
        except (urllib.error.URLError, ConnectionError):
            return
        time.sleep(0.01)
    sys.exit("a stream server does not end")


def main():
    arguments = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    arguments.add_argument("--presses", type=int, default=20)
    arguments.add_argument("folder", nargs="?", type=Path, default=ROOT / "build/release")
    options = arguments.parse_args()
    move_into_private_machine()

    place = Path(tempfile.mkdtemp(prefix="orvalen-bench-"))
    bench = Bench(options.folder.resolve(), place)
    told, begun, heated, streams, alone = [], [], [], [], []
    try:
        bench.heat(), bench.stream()  # into the page cache
        for _ in range(options.presses):
            told += bench.key_press("floor")
            thread, heat = bench.heat()
            begun.append(thread)
            heated.append(heat)
            alone.append(bench.server_alone())
            streams.append(bench.stream())
    finally:
        bench.desktop.end()
        shutil.rmtree(place)

    def row(what, figures, note="", at_most=None):
        median = statistics.median(figures)
        goal = "" if at_most is None else f"median under {at_most}" + ("" if median < at_most else ": MISSED")
        print(f"{what:48}{median:10.1f}{max(figures):10.1f}   {goal or note}")

    print(f"{options.presses} presses, load average {os.getloadavg()[0]:.1f}; milliseconds\n")
    print(f"{'from the press of the key':48}{'median':>10}{'worst':>10}   goal")
    row("to a bare program that has grabbed it", told, "(floor)")
    row("to the first thread of the pulse", begun)
    row("to the first heat", heated, at_most=50)
    row("to the running stream", streams)
    row("server alone, from its launch to its answer", alone, "(floor; the rules add 150)")


if __name__ == "__main__":
    main()
