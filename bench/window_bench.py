#!/usr/bin/python3
"""How long the window keeps the main thread busy: switching tabs, dragging sliders and edges, ticks, themes.

    bench/window_bench.py [--rounds N] [--platforms xcb,offscreen] [--scales 1,2] [BUILD_FOLDER]

Runs window_bench at every scale on a virtual display of its own, and without a display; it says what its figures mean.
The settings that it writes lie in the build folder, so their disk is that one's.
"""
import argparse
import shutil
import subprocess
import tempfile
from pathlib import Path

from program_bench import ROOT, Desktop

SCREEN = "6600x1400x24"  # two of the widest windows side by side, at twice the scale


def main():
    arguments = argparse.ArgumentParser(description=__doc__)
    arguments.add_argument("--rounds", type=int, default=3)
    arguments.add_argument("--platforms", default="xcb,offscreen")
    arguments.add_argument("--scales", default="1,2")
    arguments.add_argument("folder", nargs="?", type=Path, default=ROOT / "build/release")
    options = arguments.parse_args()
    folder = options.folder.resolve()

    place = Path(tempfile.mkdtemp(prefix="orvalen-bench-"))
    desktop = Desktop(place, SCREEN)
    try:
        for platform in options.platforms.split(","):
            for scale in options.scales.split(","):
                environment = {**desktop.environment, "QT_QPA_PLATFORM": platform, "QT_SCALE_FACTOR": scale}
                subprocess.run([folder / "bench/window_bench", folder, str(options.rounds)], env=environment,
                               check=True)
    finally:
        desktop.end()
        shutil.rmtree(place)


if __name__ == "__main__":
    main()
