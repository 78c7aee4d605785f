#!/usr/bin/python3
"""Triggers a blind cast and listens to the loudspeaker. To be run on a private machine.

hear_blind_cast.py CONTROL SERVER THEME SENTENCE    The built stream_control, the stream server, the folder of the theme
"orvalen". Prints one line of JSON:

    chimes    how much the first sound begins like each chime of the theme, 1 being the same
    voice     for how many seconds a voice is heard after that, pauses left out (they vary)
    alone     the same when nothing but the speech service is asked to say SENTENCE
"""
import array
import json
import math
import os
import subprocess
import sys
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / 'platform'))
from sounds_canberra_test import RATE, SILENCE, Recorder, Server, contour, decoded, wait_for

CONTROL, SERVER, THEME, SENTENCE = sys.argv[1:]
OPENING = RATE // 4  # of a chime: long enough to know it, over before the voice begins


def cosine(one, other):
    energy = math.sqrt(sum(x * x for x in one) * sum(x * x for x in other))
    return sum(x * y for x, y in zip(one, other)) / energy if energy else 0.0


def trimmed(samples):
    loud = [i for i, x in enumerate(samples) if abs(x) > SILENCE]
    return samples[loud[0]:loud[-1] + 1] if loud else array.array('h')


def voice(samples):
    """Seconds that are not silent."""
    return sum(loudness > SILENCE for loudness in contour(samples)) / 100


def recorded(environment, action):
    """All that is heard from the first sound after the action to two seconds of silence, a few seconds at least."""
    recorder = Recorder(environment)
    action()

    def is_over():
        heard = recorder.samples
        return len(heard) > 6 * RATE and max(map(abs, heard)) > SILENCE and max(map(abs, heard[-2 * RATE:])) <= SILENCE

    wait_for(is_over, what='the voice comes to its end')
    recorder.close()
    return trimmed(recorder.samples)


class Control:
    def __init__(self, environment):
        self.process = subprocess.Popen([CONTROL, SERVER, THEME], env=environment, stdin=subprocess.PIPE,
                                        stdout=subprocess.PIPE, text=True, bufsize=1)
        self.process.stdout.readline()

    def ask(self, order):
        self.process.stdin.write(order + '\n')
        self.process.stdout.readline()

    def end(self):
        self.process.stdin.close()
        self.process.wait()


def main():
    folder = Path('/tmp/sound')
    (folder / 'run').mkdir(mode=0o700, parents=True)
    environment = {
        'PATH': os.environ['PATH'], 'HOME': str(folder), 'XDG_RUNTIME_DIR': str(folder / 'run'), 'LANG': 'C.UTF-8',
        'PULSE_COOKIE': str(folder / 'cookie'), 'XDG_DATA_DIRS': '/usr/share',
        'DBUS_SESSION_BUS_ADDRESS': 'unix:path=' + str(folder / 'bus'),
        'DBUS_SYSTEM_BUS_ADDRESS': 'unix:path=' + str(folder / 'no-bus'),
    }
    server = Server(environment, folder)
    control = Control(environment)
    heard = recorded(environment, lambda: control.ask('cast'))
    control.ask('stop')
    control.end()
    alone = recorded(environment, lambda: subprocess.run(['spd-say', '-w', '-l', 'en', '-m', 'none', '--', SENTENCE],
                                                         env=environment, check=True))
    server.stop()

    chimes = {}
    for file in Path(THEME).glob('stereo/*.oga'):
        chime = trimmed(decoded(file))
        chimes[file.stem] = max(cosine(heard[shift:shift + OPENING], chime[:OPENING]) for shift in range(0, 50))
    speech = heard[len(decoded(next(Path(THEME).glob('stereo/Glass.oga')))):]
    print(json.dumps({'chimes': chimes, 'voice': voice(speech), 'alone': voice(alone)}))


main()
