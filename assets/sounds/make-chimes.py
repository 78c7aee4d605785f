#!/usr/bin/env python3
"""Make the chimes: Blow (a breath of warm air: warming starts), Glass (a small bell: ready), Tink (a tick: done).

Each is synthesised here, brought to the same loudness and encoded with oggenc (package vorbis-tools) into
orvalen/stereo/. The results are part of the source tree; run this only to change a sound. The same script gives the
same samples every time.
"""
import array
import math
import pathlib
import random
import subprocess

RATE = 48000
LOUDNESS = -14.0  # LUFS, the loudest 400 ms
HIGHEST_PEAK = 10 ** (-1.5 / 20)  # Lossy coding adds a little: half a decibel is left for it below -1 dBFS.
FOLDER = pathlib.Path(__file__).parent / "orvalen" / "stereo"


def swell(t, start, end):
    """0 before `start`, 1 after `end`, in between a smooth way up without a corner at either side."""
    if t <= start:
        return 0.0
    if t >= end:
        return 1.0
    return 0.5 - 0.5 * math.cos(math.pi * (t - start) / (end - start))


def times(seconds):
    return [i / RATE for i in range(int(seconds * RATE))]


def bell(seconds, attack, release, partials):
    """Struck glass or metal. `partials`: (frequency in Hz, level, seconds until it has faded to 37 %)."""
    samples = []
    for t in times(seconds):
        shape = swell(t, 0, attack) * (1 - swell(t, seconds - release, seconds))
        samples.append(shape * sum(level * math.exp(-t / fade) * math.sin(2 * math.pi * frequency * t)
                                   for frequency, level, fade in partials))
    return samples


def breath(seconds, seed):
    """Noise through a band-pass that rises with the breath, over a soft rising tone."""
    noise = random.Random(seed)
    low = band = phase = 0.0
    samples = []
    for t in times(seconds):
        progress = t / seconds
        shape = swell(t, 0, 0.45 * seconds) * (1 - swell(t, 0.5 * seconds, seconds))
        f = 2 * math.sin(math.pi * (420 + 900 * progress ** 1.5) / RATE)
        low += f * band
        band += f * (noise.gauss(0, 1) - low - 0.45 * band)
        phase += 2 * math.pi * (262 + 131 * progress) / RATE  # C4 to G4
        samples.append(shape * (band + 0.16 * math.sin(phase) + 0.05 * math.sin(2 * phase)))
    return samples


def blow():
    return [breath(0.9, seed=1), breath(0.9, seed=2)]  # A different breath for each ear makes it wide.


def glass():
    struck = bell(0.95, 0.004, 0.25, [(1318.5, 1.0, 0.34), (1975.5, 0.5, 0.26), (1318.5 * 2.756, 0.32, 0.14),
                                      (1318.5 * 5.404, 0.10, 0.05)])
    return [struck, struck]


def tink():
    struck = bell(0.20, 0.002, 0.08, [(2637.0, 1.0, 0.038), (2637.0 * 2.02, 0.30, 0.016), (1318.5, 0.15, 0.030)])
    return [struck, struck]


def biquad(samples, b, a):
    x1 = x2 = y1 = y2 = 0.0
    result = []
    for x in samples:
        y = b[0] * x + b[1] * x1 + b[2] * x2 - a[0] * y1 - a[1] * y2
        x1, x2, y1, y2 = x, x1, y, y1
        result.append(y)
    return result


def loudness(channels):
    """Momentary loudness at its maximum in LUFS (ITU-R BS.1770: both filters at 48 kHz, a window of 400 ms)."""
    window = int(0.4 * RATE)
    sums = [0.0]
    weighted = [biquad(biquad(channel, (1.53512485958697, -2.69169618940638, 1.19839281085285),
                              (-1.69065929318241, 0.73248077421585)),
                       (1.0, -2.0, 1.0), (-1.99004745483398, 0.99007225036621)) for channel in channels]
    for left, right in zip(*weighted):
        sums.append(sums[-1] + left * left + right * right)
    loudest = max(sums[min(i + window, len(sums) - 1)] - sums[i] for i in range(0, len(sums), 480))
    return -0.691 + 10 * math.log10(loudest / window)


def main():
    FOLDER.mkdir(parents=True, exist_ok=True)
    for name, channels in (("Blow", blow()), ("Glass", glass()), ("Tink", tink())):
        gain = 10 ** ((LOUDNESS - loudness(channels)) / 20)
        peak = max(abs(sample) for channel in channels for sample in channel)
        gain = min(gain, HIGHEST_PEAK / peak)
        pcm = array.array("h", (round(32767 * gain * sample) for pair in zip(*channels) for sample in pair))
        subprocess.run(["oggenc", "--quiet", "--raw", "--raw-rate", str(RATE), "--raw-chan", "2", "--raw-bits", "16",
                        "--quality", "5", "--serial", "1", "--title", name, "--artist", "Orvalen",
                        "--output", str(FOLDER / (name + ".oga")), "-"], input=pcm.tobytes(), check=True)
        print(f"{name:6} {len(channels[0]) / RATE:.2f} s, peak {20 * math.log10(gain * peak):.1f} dBFS, "
              f"{loudness([[gain * sample for sample in channel] for channel in channels]):.1f} LUFS")


if __name__ == "__main__":
    main()
