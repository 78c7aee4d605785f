#!/usr/bin/python3
"""What the icon in the tray costs, in a real panel (lxqt-panel) and a real X11 tray (trayer).

    bench/tray_bench.py [--starts N]

A day of the monitoring is 28 800 ticks. It is lived through as fast as the tray follows: with a temperature that stays as
it is, with one that is another whole degree every two minutes, and, for comparison, with an icon that is set at every tick
whether or not anything changed (a tenth of a day, times ten). CPU seconds are those of the program, and of the tray
beside it. Then the program is started some times, and the time until its icon is in the tray taken; figures are medians.

Wants lxqt-panel, trayer, Xvfb and openbox, and the release build.
"""
import argparse
import re
import statistics
import subprocess
import sys
import time
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
sys.path.insert(0, str(ROOT / 'tests/desktop'))

from privatedesktop import Desktop, end, wait_for  # noqa: E402
from trays import EmbeddingTray, Panel  # noqa: E402

BUILD = ROOT / 'build/release'
TICKS = 28800
TWO_MINUTES = 40  # ticks
LIMIT = 0.001 * 86400  # seconds: a thousandth of a core, all day


def cpu_seconds(process):
    fields = Path('/proc/%d/stat' % process.pid).read_text().rpartition(')')[2].split()
    return (int(fields[11]) + int(fields[12])) / 100


def day(desktop, tray, every, *options, share=1):
    """Paintings, and CPU seconds of the program and of the tray, of a day."""
    environment = {**desktop.environment, 'NO_AT_BRIDGE': '1'}
    environment.pop('QT_LINUX_ACCESSIBILITY_ALWAYS_ON')
    before = cpu_seconds(tray.process)
    output = subprocess.run([BUILD / 'bench/tray_ticks', str(TICKS // share), str(every), *options], env=environment,
                            check=True, capture_output=True, text=True).stdout
    painted, cpu = output.split()
    return int(painted) * share, float(cpu) * share, (cpu_seconds(tray.process) - before) * share


def present(tray):
    if isinstance(tray, Panel):
        return bool(tray.ask('items'))
    window = tray.window()
    return bool(window) and bool(re.search(r'[1-9]\d* child', tray.desktop.output(['xwininfo', '-tree', '-id', window])))


def start_to_icon(desktop, tray):
    """Milliseconds."""
    begin = time.monotonic()
    program = desktop.start('orvalen')
    while not present(tray):
        if time.monotonic() > begin + 20:
            sys.exit('no icon came')
    elapsed = 1000 * (time.monotonic() - begin)
    end(program)
    wait_for(lambda: not present(tray), what='the icon to go')
    return elapsed


def main():
    arguments = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    arguments.add_argument('--starts', type=int, default=9)
    options = arguments.parse_args()

    print('%-12s %-28s %9s %12s %10s %12s' % ('', 'per day', 'painted', 'CPU s', 'of 0.1 %', "tray's CPU s"))
    for name, kind in (('panel', Panel), ('X11 tray', EmbeddingTray)):
        with Desktop() as desktop:
            tray = kind(desktop)
            tray.start()
            for what, figures in (('the same all day', day(desktop, tray, 0)),
                                  ('a degree every 2 minutes', day(desktop, tray, TWO_MINUTES)),
                                  ('set anew at every tick', day(desktop, tray, TWO_MINUTES, 'each', share=10))):
                painted, cpu, beside = figures
                print('%-12s %-28s %9d %12.2f %9.2f%% %12.2f' % (name, what, painted, cpu, 100 * cpu / LIMIT, beside))
            starts = [start_to_icon(desktop, tray) for _ in range(options.starts)]
            print('%-12s start to icon: %.0f ms (%.0f to %.0f; goal: at most 1000)' %
                  (name, statistics.median(starts), min(starts), max(starts)))


if __name__ == '__main__':
    main()
