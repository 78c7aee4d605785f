#!/usr/bin/python3
"""The capture command against the customary ones: time, processor time with the X server's, and memory of one picture.

    bench/capture_bench.py [--rounds N] [--quality Q] [BUILD_FOLDER]

For each size an X server of its own shows a drawn desktop. In each round every command takes the same picture once, in
turns: a changed one, and ours also an unchanged one, one in which a clock has ticked, and one without an earlier file.
Figures are medians. The server's processor time is read a moment after the command's end, when it has tidied up.
"""
import argparse
import os
import shutil
import statistics
import subprocess
import sys
import tempfile
import time
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
SIZES = ["1440x900", "2560x1600"]
WARM_UP = 2  # rounds that do not count

# What is divided by what, and the goals for each size: wall time, processor time with the server's.
GOALS = [
    ("changed", "scrot", {"1440x900": (0.55, 0.55), "2560x1600": (0.45, 0.50)}),
    ("changed", "maim", {size: (0.33, 0.33) for size in SIZES}),
    ("changed", "import", {size: (0.20, 0.20) for size in SIZES}),
    ("unchanged", "changed", {size: (0.45, 0.45) for size in SIZES}),
]
MEMORY_GOAL = 16384  # kB
FAILURE_GOAL = 50  # ms


class Server:
    """An X server with something on it."""

    def __init__(self, size, painter):
        read_end, write_end = os.pipe()
        self.process = subprocess.Popen(["Xvfb", "-displayfd", str(write_end), "-screen", "0", size + "x24", "-nolisten",
                                         "tcp", "-noreset"], pass_fds=[write_end], stderr=subprocess.DEVNULL)
        os.close(write_end)
        with os.fdopen(read_end) as lines:  # its number comes in pieces
            number = lines.readline().strip()
        self.environment = {"PATH": os.environ["PATH"], "HOME": os.environ.get("HOME", "/"), "DISPLAY": ":" + number}
        self.painter = subprocess.Popen([painter], env=self.environment, stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                        text=True)

    def draw(self, what):
        print(what, file=self.painter.stdin, flush=True)
        if self.painter.stdout.readline() != "drawn\n":
            sys.exit("drawn_desktop has failed.")

    def cpu(self):
        """In ms, since its start."""
        return int(Path(f"/proc/{self.process.pid}/schedstat").read_text().split()[0]) / 1e6

    def end(self):
        self.painter.stdin.close()
        self.painter.wait()
        self.process.terminate()
        self.process.wait()


class Measurement:
    def __init__(self, server, measured, command):
        before = server.cpu()
        line = subprocess.run([measured, *command], env=server.environment, capture_output=True, text=True).stdout
        status, wall, cpu, memory = line.split()
        self.status, self.wall, self.cpu, self.memory = int(status), float(wall), float(cpu), int(memory)
        time.sleep(0.01)
        self.server_cpu = server.cpu() - before
        self.all_cpu = self.cpu + self.server_cpu


def measure(size, build, folder, rounds, quality):
    """Lists of measurements by name, and the files' sizes."""
    ours = str(build / "libexec/orvalen/screencapture")
    measured = str(build / "bench/measured")
    file = str(folder / f"{size}.jpg")
    others = {
        "scrot": ["scrot", "-q", str(quality), "-o", str(folder / "scrot.jpg")],
        "maim": ["maim", "-u", "-f", "jpg", "-m", str(quality // 10), str(folder / "maim.jpg")],
        "import": ["import", "-silent", "-window", "root", "-quality", str(quality), str(folder / "import.jpg")],
    }
    others = {name: command for name, command in others.items() if shutil.which(command[0])}
    found = {}
    server = Server(size, build / "bench/drawn_desktop")
    try:
        def run(name, command):
            measurement = Measurement(server, measured, command)
            if measurement.status != 0:
                sys.exit(f"{command} has failed.")
            if number >= WARM_UP:
                found.setdefault(name, []).append(measurement)

        mine = [ours, "-x", "-t", "jpg", file]
        server.draw(0)
        subprocess.run(mine, env=server.environment, check=True)
        for number in range(WARM_UP + rounds):
            run("start of a process", ["true"])
            server.draw(1 + number)
            commands = {"changed": mine, **others}
            turn = list(commands)
            shift = number % len(turn)
            for name in turn[shift:] + turn[:shift]:
                run(name, commands[name])
            run("unchanged", mine)
            server.draw("tick")
            run("a clock has ticked", mine)
            os.unlink(file)
            run("no earlier file", mine)
    finally:
        server.end()
    files = {"changed": os.path.getsize(file)}
    files.update({name: os.path.getsize(folder / f"{name}.jpg") for name in others})
    return found, files


def median(measurements, figure):
    return statistics.median(getattr(m, figure) for m in measurements)


def report(size, found, files):
    print(f"\n{size}: medians of {len(found['changed'])}")
    print(f"{'':24}{'wall ms':>9}{'CPU ms':>9}{'server':>9}{'CPU all':>9}{'peak kB':>9}{'bytes':>10}")
    for name, measurements in found.items():
        figures = [median(measurements, figure) for figure in ("wall", "cpu", "server_cpu", "all_cpu")]
        print(f"{name:24}" + "".join(f"{figure:9.2f}" for figure in figures) +
              f"{max(m.memory for m in measurements):9d}{files.get(name, ''):>10}")
    print(f"{'':34}{'wall':>8}{'goal':>7}{'':>4}{'CPU all':>8}{'goal':>7}")
    for ours, other, goals in GOALS:
        if other not in found:
            print(f"{ours} / {other}: not installed")
            continue
        cells = []
        for figure, goal in zip(("wall", "all_cpu"), goals[size]):
            ratio = median(found[ours], figure) / median(found[other], figure)
            cells.append(f"{ratio:8.2f}{goal:7.2f}{'' if ratio <= goal else ' !':4}")
        print(f"{ours + ' / ' + other:34}" + "".join(cells))
    peak = max(m.memory for name in ("changed", "unchanged", "no earlier file") for m in found[name])
    print(f"{'peak memory':34}{peak / 1024:7.1f} MB, goal {MEMORY_GOAL / 1024:.0f}{'' if peak <= MEMORY_GOAL else ' !'}")


def report_failures(build, rounds):
    """How long it takes to say no."""
    ours = str(build / "libexec/orvalen/screencapture")
    server = Server("640x480", build / "bench/drawn_desktop")
    try:
        print(f"\n{'failures':34}{'wall ms':>8}{'goal':>7}")
        reached = dict(server.environment)
        for name, variables, options in (("no display server", {"DISPLAY": ":54321"}, []),
                                         ("no such display", {}, ["-D", "9"]),
                                         ("a Wayland session", {"WAYLAND_DISPLAY": "wayland-0"}, [])):
            server.environment = {**reached, **variables}
            walls = []
            for _ in range(rounds):
                measurement = Measurement(server, str(build / "bench/measured"), [ours, *options, "/nowhere/picture.jpg"])
                assert measurement.status == 1
                walls.append(measurement.wall)
            print(f"{name:34}{max(walls):8.2f}{FAILURE_GOAL:7d}{'' if max(walls) <= FAILURE_GOAL else ' !'}   (the slowest)")
    finally:
        server.end()


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--rounds", type=int, default=25)
    parser.add_argument("--quality", type=int, default=80)
    parser.add_argument("build", nargs="?", type=Path, default=ROOT / "build/release")
    options = parser.parse_args()
    folder = Path(tempfile.mkdtemp(prefix="orvalen-capture-bench-"))
    print(f"{os.cpu_count()} processors, load {os.getloadavg()[0]:.2f}; JPEG quality {options.quality}; "
          "\"!\" marks a missed goal")
    try:
        for size in SIZES:
            found, files = measure(size, options.build, folder, options.rounds, options.quality)
            report(size, found, files)
        report_failures(options.build, options.rounds)
    finally:
        shutil.rmtree(folder)


if __name__ == "__main__":
    main()
