#!/usr/bin/env python3
"""Plays the chimes to a real sound server without a sound card and listens which of them is heard.

sounds_canberra_test.py PLAY_SOUND THEME_FOLDER    The built player and the folder of the theme "orvalen".
Ends with status 77 (skipped) where the sound server's programs are missing.
"""
import array
import math
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import threading
import unittest

sys.path.append(str(pathlib.Path(__file__).resolve().parents[1] / "support"))
from waiting import wait_for  # noqa: E402

NEEDED = ("dbus-daemon", "pipewire", "wireplumber", "pipewire-pulse", "pw-cli", "pactl", "parec", "sox")
FREEDESKTOP = pathlib.Path("/usr/share/sounds/freedesktop/stereo")
PATIENCE = 20  # seconds; only a failing test waits them out
RATE = 48000
SILENCE = 40  # of 32767


def end(process):
    process.terminate()
    try:
        process.wait(5)
    except subprocess.TimeoutExpired:
        process.kill()
        process.wait()


def contour(samples):
    """Loudness in steps of 10 ms."""
    step = RATE // 100
    return [math.sqrt(sum(x * x for x in samples[i:i + step]) / step) for i in range(0, len(samples) - step, step)]


def decoded(file):
    raw = subprocess.run(["sox", file, "-t", "raw", "-r", str(RATE), "-c", "1", "-b", "16", "-e", "signed", "-"],
                         check=True, capture_output=True).stdout
    return array.array("h", raw)


def likeness(heard, file):
    """How much of `heard` is `file`: 1 is all of it, at whatever moment it came."""
    one, other = contour(heard), contour(decoded(file))
    energy = math.sqrt(sum(x * x for x in one) * sum(x * x for x in other))
    if energy == 0:
        return 0.0
    return max(sum(one[i + shift] * other[i] for i in range(max(0, -shift), min(len(other), len(one) - shift)))
               for shift in range(-len(other), len(one))) / energy


class Server:
    """A sound server of our own with one sink that only the recorder hears."""

    def __init__(self, environment, folder):
        self.environment = environment
        self.processes = []
        self.log = open(folder / "server.log", "ab")
        try:
            self.start("dbus-daemon", "--session", "--nofork", "--nopidfile",  # The session manager will not do without.
                       "--address=" + environment["DBUS_SESSION_BUS_ADDRESS"])
            wait_for((folder / "bus").exists, what="a session bus")
            self.start("pipewire")
            self.wait_for_success("pw-cli", "info", "0")
            self.start("wireplumber")
            self.start("pipewire-pulse")
            self.wait_for_success("pactl", "info")
            self.wait_for_success("pw-cli", "create-node", "adapter",
                          "{ factory.name=support.null-audio-sink node.name=test media.class=Audio/Sink"
                          " object.linger=true audio.position=[FL FR] }")
            wait_for(lambda: "Default Sink: test\n" in self.ask("pactl", "info").stdout, what="the sink is the default one")
        except BaseException:
            self.stop()
            raise

    def start(self, *command):
        self.processes.append(subprocess.Popen(command, env=self.environment, stdin=subprocess.DEVNULL,
                                               stdout=self.log, stderr=self.log))

    def ask(self, *command):
        return subprocess.run(command, env=self.environment, capture_output=True, text=True, check=False)

    def wait_for_success(self, *command):
        wait_for(lambda: self.ask(*command).returncode == 0, what=" ".join(command))

    def stop(self):
        while self.processes:
            end(self.processes.pop())
        self.log.close()


class Recorder:
    """Hears everything that is played while it is open."""

    def __init__(self, environment):
        self.process = subprocess.Popen(["parec", "--device=test.monitor", "--latency-msec=20", "--rate=%d" % RATE,
                                         "--channels=1", "--format=s16le", "--raw"],
                                        env=environment, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
        self.samples = array.array("h")
        self.thread = threading.Thread(target=self.read, daemon=True)
        self.thread.start()
        wait_for(lambda: len(self.samples) > RATE // 10, what="the recording runs")

    def read(self):
        while block := self.process.stdout.read(960):
            if len(block) % 2 == 0:
                self.samples.frombytes(block)

    def sound(self):
        """The next sound, from its first sample to half a second of silence."""
        def is_over():
            heard = [i for i, x in enumerate(self.samples) if abs(x) > SILENCE]
            return heard and len(self.samples) - heard[-1] > RATE // 2
        wait_for(is_over, what="a sound is heard to its end")
        heard = [i for i, x in enumerate(self.samples) if abs(x) > SILENCE]
        sound = self.samples[heard[0]:heard[-1] + 1]
        del self.samples[:]
        return sound

    def loudest(self, seconds):
        """The highest sample of the next `seconds`."""
        del self.samples[:]
        wait_for(lambda: len(self.samples) >= seconds * RATE, what="the recording goes on")
        return max(abs(x) for x in self.samples)

    def close(self):
        end(self.process)
        self.thread.join()
        self.process.stdout.close()


class Player:
    def __init__(self, environment, folder):
        self.process = subprocess.Popen([PLAY_SOUND, str(folder)], env=environment, text=True, bufsize=1,
                                        stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.PIPE)

    def play(self, name):
        self.process.stdin.write(name + "\n")
        assert self.process.stdout.readline() == name + "\n"

    def close(self):
        """What it said on the console, and its status."""
        _, said = self.process.communicate(timeout=PATIENCE)
        return said, self.process.returncode

    def end(self):
        end(self.process)
        for stream in (self.process.stdin, self.process.stdout, self.process.stderr):
            stream.close()


class SoundsCanberra(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))
        runtime = self.folder / "run"
        runtime.mkdir(mode=0o700)
        self.environment = {
            "PATH": os.environ["PATH"], "HOME": str(self.folder), "XDG_RUNTIME_DIR": str(runtime),
            "PULSE_COOKIE": str(self.folder / "cookie"), "XDG_DATA_DIRS": "/usr/share",
            "DBUS_SESSION_BUS_ADDRESS": "unix:path=" + str(self.folder / "bus"),
            "DBUS_SYSTEM_BUS_ADDRESS": "unix:path=" + str(self.folder / "no-bus"),
        }

    def enterContext(self, manager):
        result = manager.__enter__()
        self.addCleanup(manager.__exit__, None, None, None)
        return result

    def serve(self):
        server = Server(self.environment, self.folder)
        self.addCleanup(server.stop)
        recorder = Recorder(self.environment)
        self.addCleanup(recorder.close)
        return server, recorder

    def player(self, folder):
        player = Player(self.environment, folder)
        self.addCleanup(player.end)
        return player

    def expect_alike(self, heard, files, wanted):
        ranking = sorted(((likeness(heard, file), file.stem) for file in files), reverse=True)
        self.assertEqual(ranking[0][1], wanted, ranking[:3])
        self.assertGreater(ranking[0][0], 0.98, ranking[:3])

    def test_each_chime_from_the_folder_of_the_build_tree(self):
        _, recorder = self.serve()
        player = self.player(THEME)
        for name in ("Blow", "Glass", "Tink"):
            player.play(name)
            self.expect_alike(recorder.sound(), THEME.glob("stereo/*.oga"), name)
        self.assertEqual(player.close(), ("", 0))

    def test_the_desktops_copy_of_the_theme_by_name(self):
        installed = self.folder / "share" / "sounds" / "orvalen"
        shutil.copytree(THEME, installed)
        self.environment["XDG_DATA_DIRS"] = str(installed.parents[1]) + ":/usr/share"
        _, recorder = self.serve()
        player = self.player("/nonexistent")
        player.play("Glass")
        self.expect_alike(recorder.sound(), THEME.glob("stereo/*.oga"), "Glass")
        self.assertEqual(player.close(), ("", 0))

    def test_without_the_theme_a_sound_that_every_desktop_has(self):
        if not (FREEDESKTOP / "complete.oga").exists():
            self.skipTest("install sound-theme-freedesktop")
        _, recorder = self.serve()
        player = self.player("/nonexistent")
        for name, relative in (("Blow", "device-added"), ("Glass", "complete"), ("Tink", "message")):
            player.play(name)
            self.assertGreater(likeness(recorder.sound(), FREEDESKTOP / (relative + ".oga")), 0.98, name)
        self.assertEqual(player.close(), ("", 0))

    def test_a_name_that_is_none_of_ours_is_silent(self):
        _, recorder = self.serve()
        player = self.player(THEME)
        for name in ("Basso", "../stereo/Glass", "complete", ""):
            player.play(name)
        self.assertLess(recorder.loudest(0.5), SILENCE)
        self.assertEqual(player.close(), ("", 0))

    def test_heard_again_after_the_server_came_back(self):
        server, recorder = self.serve()
        player = self.player(THEME)
        player.play("Tink")
        recorder.sound()
        recorder.close()
        server.stop()
        player.play("Glass")
        _, recorder = self.serve()
        wait_for(lambda: self.is_heard(player, recorder), what="a chime on the new server")
        self.assertEqual(player.close(), ("", 0))

    @staticmethod
    def is_heard(player, recorder):
        player.play("Tink")
        return recorder.loudest(0.5) > SILENCE

    def test_no_server_at_all_is_no_reason_to_complain(self):
        player = self.player(THEME)
        for name in ("Blow", "Glass", "Tink"):
            player.play(name)
        self.assertEqual(player.close(), ("", 0))


if __name__ == "__main__":
    PLAY_SOUND, THEME = sys.argv[1], pathlib.Path(sys.argv[2])
    missing = [program for program in NEEDED if not shutil.which(program)]
    if missing:
        print("skipped: not installed:", ", ".join(missing))
        sys.exit(77)
    unittest.main(argv=sys.argv[:1], verbosity=2)
