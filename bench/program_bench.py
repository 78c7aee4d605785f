#!/usr/bin/python3
"""The whole program against an empty Qt window, and one with a few words: start, memory, and the cost of doing nothing.

    bench/program_bench.py [--starts N] [--seconds S] [BUILD_FOLDER]

Runs on a virtual display of its own, with 60 warm sensors mounted over /sys (needs root or user namespaces), a home of its
own and a session bus of its own. Starts alternate between the programs; figures are medians.
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
SENSORS = 60


def lay_out_sensors(tree):
    chip = tree / "class/hwmon/hwmon0"
    chip.mkdir(parents=True)
    (chip / "name").write_text("coretemp\n")
    for i in range(1, SENSORS + 1):
        (chip / f"temp{i}_input").write_text("42000\n")
        (chip / f"temp{i}_label").write_text(f"Core {i}\n")
    battery = tree / "class/power_supply/AC"
    battery.mkdir(parents=True)
    (battery / "type").write_text("Mains\n")
    (battery / "online").write_text("1\n")


class Desktop:
    """An X server without window manager and a session bus, in a folder of their own."""

    def __init__(self, folder, screen="1280x800x24"):
        self.folder = folder
        self.processes = []
        lay_out_sensors(folder / "sys")
        for name in ("home", "run"):
            (folder / name).mkdir(mode=0o700)
        self.environment = {
            "PATH": os.environ["PATH"], "LANG": "C.UTF-8", "HOME": str(folder / "home"),
            "XDG_RUNTIME_DIR": str(folder / "run"), "QT_QPA_PLATFORM": "xcb", "NO_AT_BRIDGE": "1",
            "XDG_SESSION_TYPE": "x11",
        }
        read_end, write_end = os.pipe()
        self.start(["Xvfb", "-displayfd", str(write_end), "-screen", "0", screen, "-nolisten", "tcp", "-noreset"],
                   pass_fds=[write_end])
        os.close(write_end)
        self.environment["DISPLAY"] = ":" + os.read(read_end, 16).decode().strip()
        bus = self.start(["dbus-daemon", "--session", "--nofork", "--nopidfile", "--print-address=1"],
                         stdout=subprocess.PIPE)
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = bus.stdout.readline().decode().strip()

    def start(self, command, **options):
        process = subprocess.Popen(command, env=self.environment, stderr=subprocess.DEVNULL,
                                   **{"stdout": subprocess.DEVNULL, **options})
        self.processes.append(process)
        return process

    def in_warm_machine(self, command):
        user = [] if os.geteuid() == 0 else ["--user", "--map-root-user"]
        return ["unshare", *user, "--mount", "sh", "-c", f'mount --bind {self.folder}/sys /sys && exec "$@"', "sh",
                *map(str, command)]

    def end(self):
        for process in reversed(self.processes):
            process.terminate()
            process.wait()


def start_to_paint(desktop, folder, program):
    output = subprocess.run(desktop.in_warm_machine([folder / "bench/first_paint", program]), env=desktop.environment,
                            capture_output=True, text=True, check=True).stdout
    return float(output.splitlines()[-1])  # before it stands what the program itself wrote


def by_thread(pid, read):
    figures = {}
    for task in Path(f"/proc/{pid}/task").iterdir():
        try:
            figures[task.name] = read(task)
        except (FileNotFoundError, ProcessLookupError):  # it has just ended
            pass
    return figures


def risen(before, after):
    """By how much all threads together have risen; one that has ended meanwhile takes nothing away."""
    return sum(figure - before.get(thread, 0) for thread, figure in after.items())


def cpu_seconds(task):
    return int((task / "schedstat").read_text().split()[0]) / 1e9


def wake_ups(task):
    lines = (task / "status").read_text().splitlines()
    return sum(int(line.split()[1]) for line in lines if line.startswith("voluntary_ctxt_switches"))


def proportional_memory(pid):
    lines = Path(f"/proc/{pid}/smaps_rollup").read_text().splitlines()
    return next(int(line.split()[1]) for line in lines if line.startswith("Pss:")) / 1024


def idle(desktop, program, seconds):
    """CPU share of a core, wake-ups per second and proportional memory in MiB, once the start is over."""
    process = desktop.start(desktop.in_warm_machine([program]))
    time.sleep(8)
    if process.poll() is not None:
        sys.exit(f"{program} ended by itself")
    pid = process.pid
    cpu, woken, begin = by_thread(pid, cpu_seconds), by_thread(pid, wake_ups), time.monotonic()
    time.sleep(seconds)
    elapsed = time.monotonic() - begin
    figures = (risen(cpu, by_thread(pid, cpu_seconds)) / elapsed, risen(woken, by_thread(pid, wake_ups)) / elapsed,
               proportional_memory(pid))
    process.terminate()
    process.wait()
    desktop.processes.remove(process)
    return figures


def main():
    arguments = argparse.ArgumentParser(description=__doc__)
    arguments.add_argument("--starts", type=int, default=15)
    arguments.add_argument("--seconds", type=float, default=60)
    arguments.add_argument("folder", nargs="?", type=Path, default=ROOT / "build/release")
    options = arguments.parse_args()
    folder = options.folder.resolve()
    programs = [folder / name for name in ("bin/orvalen", "bench/empty_window", "bench/text_window")]

    place = Path(tempfile.mkdtemp(prefix="orvalen-bench-"))
    desktop = Desktop(place)
    try:
        starts = {program: [] for program in programs}
        for program in programs:
            start_to_paint(desktop, folder, program)  # into the page cache
        for _ in range(options.starts):
            for program in programs:
                starts[program].append(start_to_paint(desktop, folder, program))
        start = [statistics.median(starts[program]) for program in programs]
        cpu, woken, memory = zip(*(idle(desktop, program, options.seconds) for program in programs))
    finally:
        desktop.end()
        shutil.rmtree(place)

    def row(what, figures, form, goal=None):
        ratio = f"{figures[0] / figures[1]:10.2f}" if goal and figures[1] else f"{'':10}"
        print(f"{what:28}" + "".join(f"{figure:10{form}}" for figure in figures) + ratio + (f"   {goal}" if goal else ""))

    print(f"{'':28}{'orvalen':>10}{'empty':>10}{'text':>10}{'to empty':>10}   goal")
    row("start to first paint, ms", start, ".1f", "at most 1.5 times")
    row("proportional memory, MiB", memory, ".1f", "at most 1.3 times")
    row("idle CPU, % of a core", [100 * share for share in cpu], ".3f", "at most 0.1 %")
    row("idle wake-ups per second", woken, ".2f")


if __name__ == "__main__":
    main()
