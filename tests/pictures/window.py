"""The real program on a laptop of its own, brought into a state as a person would, and photographed."""
import subprocess
import sys
import tempfile
import time
from pathlib import Path

import numpy

HERE = Path(__file__).resolve().parent
ROOT = HERE.parents[1]
sys.path += [str(ROOT / 'tests' / name) for name in ('support', 'desktop', 'report')]

import png  # noqa: E402
from laptop import Laptop, write  # noqa: E402
from privatedesktop import Child, Desktop, end  # noqa: E402
from states import WARM  # noqa: E402
from waiting import wait_for  # noqa: E402

PROGRAM = ROOT / 'build/release/bin/orvalen'
HOST_NAME = 'workshop-laptop'
WARMUP = 'Trigger Prime Warmup Now'
SHIELD = 'Autonomous Thermal Shield'
START, STOP = '⚡ Start Offline Stream', 'Stop Offline Stream'
REPORT = 'Generate Technician Diagnostic Report'
REFRESH = 'Refresh USB Status'
SOC = 46.2  # °C
PULSE = (34.4, 34.8, 37.6)  # °C: where a pulse starts, where it has begun, where it is photographed
BRIDGE_CARD = 'Gate Driver T-CON'
A_BEGINNING = 'Optimizing Gate Drivers (7%)...'
HALF_A_PULSE = 'Optimizing Gate Drivers (57%)...'
PLACE = (40, 40)
REFERENCES = HERE / 'references'
SCREEN = (1700, 1200)
CALM = 4  # equal screenshots in a row, after which nothing more is expected to move


class Interface:
    """A network interface with a cable to nobody in particular, on this private machine."""

    def __init__(self, name, address):
        self.name = name
        peer = 'to-' + name
        self._ip('link', 'add', name, 'type', 'veth', 'peer', 'name', peer)
        self._ip('address', 'add', address, 'dev', name)
        self._ip('link', 'set', peer, 'up')
        self._ip('link', 'set', name, 'up')
        wait_for(lambda: 'LOWER_UP' in self._ip('link', 'show', name), what='the carrier of ' + name)

    def remove(self):
        self._ip('link', 'delete', self.name)

    @staticmethod
    def is_there(name):
        return subprocess.run(['ip', 'link', 'show', name], capture_output=True, timeout=20).returncode == 0

    @staticmethod
    def _ip(*command):
        return subprocess.run(['ip', *command], check=True, capture_output=True, text=True, timeout=20).stdout


class Window:
    """with Window() as window: window.show(picture); window.shot()   On a private machine only."""

    def __init__(self, fonts=HERE / 'fonts.conf'):
        self.fonts = fonts
        self.desktop = Desktop(*SCREEN)
        self.folder = tempfile.TemporaryDirectory(prefix='orvalen-pictures.')
        self.process = None
        self.interfaces = {}

    def __enter__(self):
        self.desktop.__enter__()
        try:
            self._furnish()
        except BaseException:
            self.__exit__()
            raise
        return self

    def __exit__(self, *_):
        self._stop()
        for interface in self.interfaces.values():
            interface.remove()
        self.desktop.__exit__()
        self.folder.cleanup()

    def _furnish(self):
        self.desktop.environment.update({'FONTCONFIG_FILE': str(self.fonts), 'LANG': 'C.UTF-8', 'TZ': 'UTC'})
        self.desktop.environment.pop('LC_ALL', None)
        (self.desktop.folder / 'home/Desktop').mkdir()  # for the report
        self.desktop.replace_command('xdg-open', 'exit 0\n')
        self.portal = Child(self.desktop, HERE / 'portal_child.py', stdin=subprocess.PIPE)
        assert self.portal.read(20) == 'ready', self.portal.errors.read_text()
        self._move_pointer()
        self.laptop = Laptop(Path(self.folder.name), {'PMU tdie1': 40.4, 'SOC MTR Temp': SOC}, percent=64)
        self.laptop.preparation = 'hostname ' + HOST_NAME
        if not Interface.is_there('en0'):
            self.interfaces['en0'] = Interface('en0', '192.168.1.20/24')

    def _move_pointer(self):
        """Somebody is there, and the pointer where it changes nothing."""
        for step in (2, 1):
            self.desktop.output(['xdotool', 'mousemove', *(str(side - step) for side in SCREEN)])

    # ---- the laptop ----

    def _heat(self, celsius):
        write(self.laptop.sys / 'class/hwmon/hwmon0/temp1_input', '%d' % round(celsius * 1000))

    def _plug_charger(self, is_plugged):
        write(self.laptop.sys / 'class/power_supply/AC/online', '%d' % is_plugged)
        write(self.laptop.sys / 'class/power_supply/BAT0/status', 'Charging' if is_plugged else 'Discharging')

    # ---- the program ----

    def _start(self, state):
        self._stop()
        self._heat(state.bridge)
        self._plug_charger(state.charger)
        self.desktop.choose('orvalen', smartModeEnabled=str(state.shield).lower())
        self.standing = None  # what has been brought about so far, so that it need not be asked for
        self.streaming = self.reported = False
        self.may_capture = state.may_capture
        # Nobody may take pictures of a Wayland session's screen.
        session = 'x11' if state.may_capture else 'wayland'
        command = self.laptop.inside('env', 'XDG_SESSION_TYPE=' + session, PROGRAM)
        self.process = self.desktop.start_service('orvalen', command)
        self.desktop.controls.wait('Dashboard', 60)
        self.desktop.activate('Orvalen')
        self.id = self.desktop.windows('Orvalen')[-1]
        self.desktop.output(['xdotool', 'windowmove', self.id, *map(str, PLACE)])

    def _stop(self):
        if self.process:
            if self.streaming:
                self._press(STOP, START)
            end(self.process, 20)
            self.process = None

    def _press(self, name, until):
        """Presses the control of that name and waits for what that brings."""
        self.desktop.controls.press(name)
        self.desktop.controls.wait(until, 30)

    def _open(self, tab):
        self.desktop.controls.press(tab)

    def show(self, picture):
        """Brings the window into the state of that picture."""
        state = picture.state
        self._move_pointer()
        if not self.process or self.may_capture != state.may_capture or self.reported and not state.reported:
            self._start(state)
        self._choose_theme(picture.is_dark)
        self.desktop.output(['xdotool', 'windowsize', self.id, *map(str, state.size)])
        if state.warming:
            self._stream(state)
            self._warm_up()  # which does not wait
            return
        self._stand(state)
        self._stream(state)
        self._open(state.tab)
        if state.reported and not self.reported:
            self._press(REPORT, state.texts[0])
            self.reported = True
        for text in state.texts:
            self.desktop.controls.wait(text, 30)

    def _choose_theme(self, is_dark):
        self.portal.process.stdin.write(b'1\n' if is_dark else b'2\n')
        self.portal.process.stdin.flush()
        assert self.portal.read(20) is not None, self.portal.errors.read_text()

    def _stand(self, state):
        """Readings and shield as that state has them, and no warm-up."""
        wanted = state.bridge, state.charger, state.shield
        if self.standing == wanted:
            return
        self._open('Dashboard')
        if state.bridge < 40.0:
            self._set_shield(state.shield)
        self._heat(state.bridge)
        self.desktop.controls.wait('%.1f°C' % state.bridge, 30)
        self._plug_charger(state.charger)
        self.desktop.controls.wait('AC Adapter' if state.charger else '64% Battery', 30)
        self.desktop.controls.wait(WARMUP, 30)
        self._set_shield(state.shield)
        self.standing = wanted

    def _warm_up(self):
        """A warm-up that stands still at 57 % until its time limit, which is 15 s away.

        It loads every processor, so all that can be done before is done before: the shield starts it by itself.
        """
        self.standing = None
        self._open('Dashboard')
        self._plug_charger(False)
        self._heat(WARM)  # ends one that is under way
        for text in ('%.1f°C' % WARM, '64% Battery', WARMUP):
            self.desktop.controls.wait(text, 60)
        self._set_shield(True)
        for _ in range(5):
            self._heat(WARM)
            wait_for(lambda: self._shows(WARMUP, 'PROTECTED'), 60, 'rest before a warm-up')
            self._heat(PULSE[0])
            wait_for(lambda: self._shows('WARMING UP'), 60, 'a warm-up')
            self._heat(PULSE[1])
            wait_for(lambda: self._shows_any(A_BEGINNING, WARMUP), 60, 'a beginning')
            self._heat(PULSE[2])
            if wait_for(self._how_it_ends, 60, 'half a warm-up') == HALF_A_PULSE:
                return
        raise AssertionError('no warm-up to be photographed')

    def _set_shield(self, is_on):
        if self.desktop.controls.is_checked(SHIELD) != is_on:
            self.desktop.controls.press(SHIELD)
            wait_for(lambda: self.desktop.controls.is_checked(SHIELD) == is_on, what='the switch')

    def _stream(self, state):
        if not state.may_capture:
            return
        if self.streaming != state.streaming:
            self._press(*((START, STOP) if state.streaming else (STOP, START)))
            self.streaming = state.streaming
        if ('en5' in self.interfaces) != state.phone:
            if state.phone:
                self.interfaces['en5'] = Interface('en5', '172.20.10.2/28')
            else:
                self.interfaces.pop('en5').remove()
            self._open('Screen Clone')
            self._press(REFRESH, 'CONNECTED' if state.phone else '100% OFFLINE')

    def _shown(self):
        return {text for _, name, text in self.desktop.controls.names() for text in (name, text)}

    def _shows(self, *texts):
        return self._shown().issuperset(texts)

    def _shows_any(self, *texts):
        return not self._shown().isdisjoint(texts)

    def _how_it_ends(self):
        """What the button says once a warm-up is half done or over; None before that."""
        # The card follows the readings, every three seconds; the rest follows the pulse.
        names = [name for _, name, _ in self.desktop.controls.names() if name]
        if WARMUP in names:
            return WARMUP
        is_half = HALF_A_PULSE in names and (BRIDGE_CARD, '%.1f°C' % PULSE[2]) in zip(names, names[1:])
        return HALF_A_PULSE if is_half else None

    def is_at(self, picture):
        """Whether it still shows what `show` brought about: a warm-up ends by itself."""
        return self._how_it_ends() == HALF_A_PULSE if picture.state.warming else self._shows(*picture.state.texts)

    # ---- the camera ----

    def shot(self):
        """What it looks like now."""
        ppm = subprocess.run(['import', '-silent', '-window', self.id, '-depth', '8', 'ppm:-'], check=True,
                             env=self.desktop.environment, stdout=subprocess.PIPE, timeout=30).stdout
        return png.from_ppm(ppm)

    def shots(self, picture):
        """What it looks like at rest, in the colours and the size of that picture; several, if it only seemed to rest."""
        last = None
        calm = 1
        end_of_patience = time.monotonic() + 60
        while time.monotonic() < end_of_patience:
            shot = self.shot()
            if shot.shape[1::-1] != picture.state.size or (numpy.median(shot) < 128) != picture.is_dark:
                continue
            calm = calm + 1 if last is not None and numpy.array_equal(shot, last) else 1
            last = shot
            if calm == 2:
                yield shot
            elif calm == CALM:
                return
        raise AssertionError('%s does not come to rest' % picture.name)
