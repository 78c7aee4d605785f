#!/usr/bin/python3
"""The screen stream against a plain server in Python (naive), and against the least that pushing frames can cost (floor).

    bench/stream_bench.py [--build FOLDER] [OPTION VALUE]... [SECTION]...

Sections; without one all but soak are run, in about fifteen minutes:

    captures  never two of one display at once, at most ten a second    slow     how old a slow viewer's picture is
    viewers   frames a second at 500 viewers                            stalled  viewers that stop reading
    cpu       processor time for a delivered frame                      torn     a capture command that writes in place
    memory    at 1 and 500 viewers                                      start    from launch to complete port file
    gap       the longest wait for a frame at 50 viewers                chain    a moving X screen and the real command
    soak      memory, threads and descriptors over a long time          pulse    the same on a busy machine

Needs root or user namespaces (tests/support/private-machine). Everything runs on the loopback of a machine of its own, with
a stand-in for the capture command except in chain and pulse. Servers take turns; figures are medians of the rounds.
viewers, cpu, slow, start, chain and pulse mean something only while nothing else runs.
"""
import argparse
import os
import statistics
import sys
import time
from pathlib import Path

import stream_rig as rigging
from stream_rig import MissingProgram, busy_loops, captures_logged, holdings

CROWD = 500
SERVERS = "orvalen", "naive", "floor"
PEER_OF_CROWD = "ustreamer"  # where it is installed


def median(figures, key):
    return statistics.median(each[key] for each in figures)


class Table:
    """Figures against goals, printed as they come."""

    def __init__(self):
        self.missed = []

    def section(self, title):
        print(f"\n{title}   (load average {os.getloadavg()[0]:.1f})")
        print(f"  {'':46}{'orvalen':>10}{'peer':>10}{'ratio':>8}   goal", flush=True)

    def row(self, what, figure, peer=None, at_most=None, at_least=None, note="", of_peer=False, form=".2f"):
        """`of_peer`: the goal is for the ratio, else for the figure."""
        ratio = figure / peer if peer else None
        judged = ratio if of_peer else figure
        goal, met = note, True
        if at_most is not None:
            goal, met = f"at most {at_most:g}{' of ' + note if note else ''}", judged is not None and judged <= at_most
        elif at_least is not None:
            goal, met = f"at least {at_least:g}{' of ' + note if note else ''}", judged is not None and judged >= at_least
        if not met:
            self.missed.append(what)
        print(f"  {what:46}{figure:10{form}}" + (f"{peer:10{form}}" if peer is not None else f"{'':10}") +
              (f"{ratio:8.3f}" if ratio is not None else f"{'':8}") + f"   {goal}{'' if met else ': MISSED'}", flush=True)

    def end(self):
        print("\n" + (f"{len(self.missed)} missed: " + "; ".join(self.missed) if self.missed else "all goals met"))


class Bench:
    def __init__(self, rig, options):
        self.rig, self.options, self.table = rig, options, Table()
        self.known = {}

    def watched(self, viewers):
        """What each server does for so many viewers: the figures of every round."""
        if viewers not in self.known:
            servers = [*SERVERS, PEER_OF_CROWD] if viewers == CROWD and self.rig.has_ustreamer() else SERVERS
            self.known[viewers] = {name: [] for name in servers}
            for _ in range(self.options.rounds):
                for name in servers:
                    with self.rig.server(name, self.rig.stand_in_environment()) as server:
                        figures = server.load(viewers=viewers, seconds=self.options.seconds, ramp=0.002 * viewers, warm=1.5)
                        figures["cpu_us"] = server.microseconds_per_frame()
                        figures["overlaps"], figures["captures"] = captures_logged()
                    self.complain(name, figures)
                    self.known[viewers][name].append(figures)
        return self.known[viewers]

    @staticmethod
    def complain(name, figures):
        if figures["complaints"]:
            print(f"  ({name}: {figures['complaints']})")

    def captures(self):
        self.table.section("Captures of one display, viewers of it")
        for viewers in (1, 10, 50, 200, CROWD):
            ours, peer = (self.watched(viewers)[name] for name in ("orvalen", "naive"))
            self.table.row(f"{viewers} viewers: captures a second", max(each["captures"] for each in ours),
                           median(peer, "captures"), at_most=10.0, form=".1f")
            self.table.row(f"{viewers} viewers: begun before another had ended", sum(each["overlaps"] for each in ours),
                           sum(each["overlaps"] for each in peer), at_most=0, form=".0f")

    def viewers(self):
        self.table.section(f"{CROWD} viewers, frames of 331 kB")
        ours, peer = (self.watched(CROWD)[name] for name in ("orvalen", "naive"))
        self.table.row("slowest viewer, frames/s", median(ours, "rate_min"), median(peer, "rate_min"), at_least=11.5)
        self.table.row("median viewer, frames/s", median(ours, "rate_median"), median(peer, "rate_median"), at_least=12.0)
        if peer := self.watched(CROWD).get(PEER_OF_CROWD):
            self.table.row(f"slowest viewer, against {PEER_OF_CROWD}", median(ours, "rate_min"), median(peer, "rate_min"))

    def cpu(self):
        self.table.section("Processor time for a delivered frame, children included, us")
        for viewers, limit in ((1, 0.65), (10, 0.25), (50, 0.15), (CROWD, 0.05)):
            ours, peer = (median(self.watched(viewers)[name], "cpu_us") for name in ("orvalen", "naive"))
            self.table.row(f"{viewers} viewers, against naive", ours, peer, at_most=limit, of_peer=True, note="naive", form=".1f")
        alone = {name: statistics.median(each["cpu_us"] * each["rate_median"] / each["fresh_median"] for each in rounds)
                 for name, rounds in self.watched(1).items()}
        self.table.row("1 viewer, for a fresh frame", alone["orvalen"], alone["naive"], form=".1f")
        ours, peer = (median(self.watched(CROWD)[name], "cpu_us") for name in ("orvalen", "floor"))
        self.table.row(f"{CROWD} viewers, against the floor", ours, peer, at_most=1.25, of_peer=True, note="the floor", form=".1f")
        if peer := self.watched(CROWD).get(PEER_OF_CROWD):
            self.table.row(f"{CROWD} viewers, against {PEER_OF_CROWD}", ours, median(peer, "cpu_us"), at_most=0.35, of_peer=True, note=PEER_OF_CROWD,
                           form=".1f")

    def memory(self):
        self.table.section("Resident memory under load, MB")
        for viewers, limit in ((1, 6), (CROWD, 16)):
            ours, peer = (median(self.watched(viewers)[name], "resident_kb") / 1e3 for name in ("orvalen", "naive"))
            self.table.row(f"{viewers} viewers", ours, peer, at_most=limit, form=".1f")

    def gap(self):
        self.table.section("Longest wait of any viewer for its next frame, ms")
        ours, peer = (median(self.watched(50)[name], "gap_longest") for name in ("orvalen", "naive"))
        self.table.row("50 viewers", ours, peer, at_most=120, form=".1f")

    def slow(self):
        self.table.section("Viewers that read slowly: the picture's age when its last byte is there, ms")
        speeds = "500000", "1500000"
        seen = {"orvalen": [], "naive": []}
        for _ in range(self.options.rounds):
            for name, rounds in seen.items():
                with self.rig.server(name, self.rig.stand_in_environment()) as server:
                    # What lies in the kernel's queues is to be on its way before anything counts.
                    figures = server.load(viewers=0, warm=14, seconds=12, **{"slow_" + speed: 2 for speed in speeds})
                    self.complain(name, figures)
                    rounds.append(figures["slow"])
        for speed in speeds:
            ours, peer = ([each[speed] for each in seen[name]] for name in ("orvalen", "naive"))
            what = f"{int(speed) / 1e6} MB/s: "
            self.table.row(what + "median age", median(ours, "age_median"), median(peer, "age_median"), at_most=0.15,
                           of_peer=True, note="naive", form=".0f")
            self.table.row(what + "frames/s", median(ours, "rate_median"), median(peer, "rate_median"), at_least=0.98,
                           of_peer=True, note="naive")

    def stalled(self):
        self.table.section("10 of 20 viewers stop reading, for 60 s")
        with self.rig.server("orvalen", self.rig.stand_in_environment()) as server:
            before = server.load(viewers=20, warm=2, seconds=15)
        with self.rig.server("orvalen", self.rig.stand_in_environment()) as server:
            load = server.begin_load(viewers=20, stall=10, stall_after=5, warm=5, seconds=60)
            time.sleep(4.5)
            begin = time.monotonic()
            resident, threads, _ = holdings(server.pid)
            highest, gone_after = resident, None
            while load.poll() is None:
                now_resident, now_threads, _ = holdings(server.pid)
                highest = max(highest, now_resident)
                if gone_after is None and now_threads <= threads - 10:
                    gone_after = time.monotonic() - begin - 0.5
                time.sleep(0.1)
            after = server.end_load(load)
        self.complain("orvalen", after)
        self.table.row("the others' frames/s, of 20 that all read", after["rate_median"], before["rate_median"], at_least=0.98,
                       of_peer=True, note="before")
        self.table.row("the slowest other's frames/s", after["rate_min"], before["rate_min"], at_least=0.98, of_peer=True,
                       note="before")
        self.table.row("memory, highest over what it was, MB", (highest - resident) / 1e3, at_most=1)
        self.table.row("stalled ones' threads gone after, s", gone_after or float("inf"), at_most=45, form=".1f")

    def torn(self):
        seconds = self.options.torn_seconds
        self.table.section(f"Frames not whole, 50 viewers for {seconds:g} s, written in place in 20 pieces")
        seen = {}
        for name, length in (("orvalen", seconds), ("naive", min(seconds, 20))):
            with self.rig.server(name, self.rig.stand_in_environment(pieces=20)) as server:
                seen[name] = server.load(viewers=50, ramp=0.1, warm=2, seconds=length)
            if name == "orvalen":
                self.complain(name, seen[name])
        share = {name: 100 * each["torn"] / max(each["frames"], 1) for name, each in seen.items()}
        self.table.row("frames looked at", seen["orvalen"]["frames"], seen["naive"]["frames"], form=".0f")
        self.table.row("torn, %", share["orvalen"], share["naive"], at_most=0)
        empty = {name: each["empty"] + sum(each["complaints"].values()) for name, each in seen.items()}
        self.table.row("empty or broken off", empty["orvalen"], empty["naive"], at_most=0, form=".0f")
        self.table.row("longest wait, ms (an empty frame costs 1 000)", seen["orvalen"]["gap_longest"],
                       seen["naive"]["gap_longest"], at_most=1000, form=".0f")

    def start(self):
        self.table.section("From launch to complete port file, ms")
        environment = self.rig.stand_in_environment()
        with rigging.first_in_line():
            idle = {"orvalen": [], "naive": []}
            for _ in range(20):
                for name, times in idle.items():
                    times.append(rigging.launch_to_port_file(self.rig, name, environment))
            ours, peer = (statistics.median(idle[name]) for name in ("orvalen", "naive"))
            self.table.row("idle, median of 20", ours, peer, at_most=0.15, of_peer=True, note="naive")
            with busy_loops(2 * os.cpu_count()):
                loaded = sorted(rigging.launch_to_port_file(self.rig, "orvalen", environment)
                                for _ in range(self.options.starts))
                peer = [rigging.launch_to_port_file(self.rig, "naive", environment) for _ in range(20)]
        self.table.row(f"two busy loops per core, longest of {len(loaded)}", loaded[-1], max(peer), at_most=150, form=".1f",
                       note="")
        self.table.row("two busy loops per core, median", statistics.median(loaded), statistics.median(peer), form=".1f")

    def chained(self, name, folder, width, height, **load):
        """A server with a capture command from a folder, on a moving screen of its own."""
        with self.rig.screen(width, height) as (environment, x_server):
            environment = dict(environment, PATH=f"{folder}:{environment['PATH']}")
            with self.rig.server(name, environment) as server:
                used = rigging.thread_seconds(x_server)
                figures = server.load(freshness="clock", **load)
                figures["x_us"] = 1e6 * (rigging.thread_seconds(x_server) - used) / max(figures["frames_ever"], 1)
                figures["cpu_us"] = server.microseconds_per_frame()
        self.complain(name, figures)
        if figures["unread"]:
            print(f"  ({name}: {figures['unread']} of {figures['frames']} frames showed no time)")
        return figures

    def chain(self):
        self.rig.program("libexec/orvalen/screencapture")
        command, scrot = self.rig.captures, self.rig.scrot_as_capture_command()
        small = {"viewers": 1, "warm": 1.5, "seconds": 8}
        large = {"viewers": 10, "warm": 1.5, "seconds": 8}
        kinds = {
            "ours": ("orvalen", command, 1440, 900, small),
            "naive": ("naive", command, 1440, 900, small),
            "large": ("orvalen", command, 2560, 1600, large),
            "large naive": ("naive", scrot, 2560, 1600, large),
        }
        seen = {kind: [] for kind in kinds}
        for _ in range(self.options.rounds):
            for kind, (name, folder, width, height, load) in kinds.items():
                seen[kind].append(self.chained(name, folder, width, height, **load))
        self.table.section("The whole chain: a moving X screen, the real capture command")
        what = "1 viewer, stand-in of 8 ms: "
        ours, peer = (self.watched(1)[name] for name in ("orvalen", "naive"))
        self.table.row(what + "fresh frames/s", median(ours, "fresh_median"), median(peer, "fresh_median"))
        self.table.row(what + "median age, ms", median(ours, "age_median"), median(peer, "age_median"), form=".1f")
        what = "1 viewer, 1440 x 900: "
        self.table.row(what + "fresh frames/s", median(seen["ours"], "fresh_median"), median(seen["naive"], "fresh_median"),
                       at_least=9.5)
        self.table.row(what + "median age, ms", median(seen["ours"], "age_median"), median(seen["naive"], "age_median"),
                       at_most=30, form=".1f")
        self.table.row(what + "frames/s", median(seen["ours"], "rate_median"), median(seen["naive"], "rate_median"))
        what = "10 viewers, 2560 x 1600: "
        self.table.row(what + "the slowest's frames/s", median(seen["large"], "rate_min"),
                       median(seen["large naive"], "rate_min"), at_least=11)
        self.table.row(what + "fresh frames/s", median(seen["large"], "fresh_median"),
                       median(seen["large naive"], "fresh_median"))
        self.table.row(what + "CPU per frame, us", median(seen["large"], "cpu_us"), median(seen["large naive"], "cpu_us"),
                       at_most=0.10, of_peer=True, note="naive with scrot", form=".0f")
        self.table.row(what + "the X server's, us", median(seen["large"], "x_us"), median(seen["large naive"], "x_us"),
                       form=".0f")

    def pulse(self):
        self.rig.program("libexec/orvalen/screencapture")
        figures = {2: [], 4: []}
        for _ in range(self.options.rounds):
            for spinners, rounds in figures.items():
                with busy_loops(spinners):
                    rounds.append(self.chained("orvalen", self.rig.captures, 1440, 900, viewers=1, warm=1.5, seconds=8))
        self.table.section("The whole chain under a heating pulse, 1 viewer, 1440 x 900")
        for spinners, rounds in figures.items():
            self.table.row(f"{spinners} spinners: fresh frames/s", median(rounds, "fresh_median"), at_least=6)
            self.table.row(f"{spinners} spinners: median age, ms", median(rounds, "age_median"), form=".1f")

    def soak(self):
        seconds, drops = self.options.soak_seconds, self.options.soak_drops
        self.table.section(f"{seconds:g} s, 50 viewers of 2 displays, {drops} connections dropped at their first frame")
        with self.rig.server("orvalen", self.rig.stand_in_environment()) as server:
            server.load(viewers=50, displays=2, ramp=0.1, seconds=10)  # what is kept for good is there then
            time.sleep(3)
            before = holdings(server.pid)
            load = server.begin_load(viewers=50, displays=2, ramp=0.1, warm=2, seconds=seconds, drops=drops,
                                     drop_rate=1.2 * drops / seconds)
            time.sleep(min(30, seconds / 4))
            early = holdings(server.pid)
            figures = server.end_load(load)
            late = figures["resident_kb"]
            time.sleep(5)
            after = holdings(server.pid)
        self.complain("orvalen", figures)
        self.table.row("connections dropped", figures["dropped"], at_least=drops, form=".0f")
        self.table.row("of them refused or cut off", figures["drop_complaints"], at_most=0, form=".0f")
        self.table.row("of them without a frame for a second", figures["dropped_unseen"], form=".0f")
        self.table.row("torn or empty frames", figures["torn"] + figures["empty"], at_most=0, form=".0f")
        self.table.row("slowest viewer, frames/s", figures["rate_min"])
        self.table.row("memory at work: end over beginning, MB", (late - early[0]) / 1e3, at_most=1)
        self.table.row("memory at rest: after over before, MB", (after[0] - before[0]) / 1e3, at_most=1)
        self.table.row("threads: after over before", after[1] - before[1], at_most=0, form=".0f")
        self.table.row("descriptors: after over before", after[2] - before[2], at_most=0, form=".0f")


SECTIONS = "captures", "viewers", "cpu", "memory", "gap", "slow", "stalled", "torn", "start", "chain", "pulse", "soak"


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--build", type=Path, default=rigging.ROOT / "build/release")
    parser.add_argument("--rounds", type=int, default=3)
    parser.add_argument("--seconds", type=float, default=4, help="for which viewers are counted in a round (4)")
    parser.add_argument("--frame", type=int, default=331_000, help="bytes of the stand-in's picture (331000)")
    parser.add_argument("--torn-seconds", type=float, default=20, help="600 for the whole goal (20)")
    parser.add_argument("--starts", type=int, default=200, help="on the busy machine (200)")
    parser.add_argument("--soak-seconds", type=float, default=1800)
    parser.add_argument("--soak-drops", type=int, default=10_000)
    parser.add_argument("sections", nargs="*", metavar="SECTION")
    options = parser.parse_args()
    if unknown := set(options.sections) - set(SECTIONS):
        parser.error("no section " + ", ".join(sorted(unknown)))
    rigging.move_into_private_machine()

    try:
        rig = rigging.Rig(options.build.resolve())
        rig.make_frame(options.frame)
    except MissingProgram as missing:
        sys.exit(f"stream_bench: {missing}")
    bench = Bench(rig, options)
    for section in options.sections or [each for each in SECTIONS if each != "soak"]:
        try:
            getattr(bench, section)()
        except MissingProgram as missing:
            print(f"\n{section}: left out, {missing}")
            bench.table.missed.append(section)
    bench.table.end()


if __name__ == "__main__":
    main()
