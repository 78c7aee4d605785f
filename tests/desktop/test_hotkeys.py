"""A person at a black screen: keys that work whatever window is in front."""
import signal
import subprocess
import time
from pathlib import Path

import pytest

import private_machine
from privatedesktop import GREETING, Child, wait_for
from test_stream import answers, servers

pytestmark = private_machine.needed

PROGRAM = 'orvalen-simulated'
TRIGGER = 'Trigger Prime Warmup Now'
WARM_UP, CAST = 'super+alt+w', 'super+alt+m'
SUPER_ALT = 0x40 | 0x08
NUM_LOCK = 0x10
PULSE_LIMIT = 15  # seconds
OTHER_WINDOW = 'Event Tester'
PORT_FILE = Path('/tmp/orvalen_port.txt')


@pytest.fixture
def voice(desktop):
    """Notes what is said instead of saying it."""
    return Voice(desktop)


class Voice:
    def __init__(self, desktop):
        self.file = desktop.folder / 'said'
        desktop.replace_command('spd-say', 'for word; do :; done; printf "%%s\\n" "$word" >>%s\n' % self.file)

    def sentences(self):
        return self.file.read_text().splitlines() if self.file.exists() else []

    def wait_for_sentence(self, number):
        """The newest of exactly so many sentences."""
        wait_for(lambda: len(self.sentences()) >= number, 20, 'sentence %d' % number)
        assert len(self.sentences()) == number, self.sentences()
        return self.sentences()[-1]


def start(desktop):
    """The program, its keys ready, behind another window that has the keyboard. It warms nothing by itself, and little."""
    desktop.choose(PROGRAM, smartModeEnabled='false', targetTemp='25')
    program = desktop.start(PROGRAM)
    desktop.controls.wait(TRIGGER)
    wait_for(lambda: desktop.written(), what='a word of the program')
    assert desktop.written() == GREETING
    wait_for_keys(desktop)
    desktop.start_service('other', ['xev', '-event', 'keyboard'])
    desktop.activate(OTHER_WINDOW)
    desktop.keys('z')
    wait_for(lambda: typed(desktop, 'z'), what='the keyboard in the other window')
    return program


def wait_for_keys(desktop):
    """Until the program has its keys, of which M is the last: its words may come before."""
    watcher = Child(desktop, 'grabbing_child.py', arguments=['m', str(SUPER_ALT), '--watch'])
    assert watcher.read(30) == 'taken'


def typed(desktop, letter):
    """How often the other window has got that letter."""
    events = (desktop.folder / 'other.log').read_text().split('\n\n')
    return sum(event.lstrip().startswith('KeyPress') and ', %s)' % letter in event for event in events)


def wait_for_the_end_of_a_pulse(desktop):
    desktop.controls.wait(TRIGGER, PULSE_LIMIT + 10)


def make_scroll_lock_a_modifier(desktop):
    """Most keyboards have it do nothing; here it locks the modifier Mod3."""
    keyboard = desktop.output(['setxkbmap', '-print'])
    for section, rule in (('xkb_symbols', 'modifier_map Mod3 { Scroll_Lock };'),
                          ('xkb_compat', 'interpret Scroll_Lock+AnyOf(all) { action = LockMods(modifiers = modMapMods); };')):
        before, _, after = keyboard.partition(section)
        keyboard = before + section + after.replace('}', rule + ' }', 1)
    subprocess.run(['xkbcomp', '-w0', '-', desktop.environment['DISPLAY']], input=keyboard, text=True, check=True,
                   env=desktop.environment, timeout=20)


class Grabber(Child):
    """Another program that has a key of its own."""

    def __init__(self, desktop, key, modifiers):
        super().__init__(desktop, 'grabbing_child.py', arguments=[key, str(modifiers)])

    def is_granted(self):
        return self.read(20) == 'ready'

    def is_pressed(self):
        return self.read(10) == 'pressed'


def test_two_quick_presses_behind_another_window_are_one_warm_up(desktop):
    program = start(desktop)
    desktop.keys(WARM_UP, WARM_UP)
    desktop.controls.wait('WARMING UP')
    wait_for_the_end_of_a_pulse(desktop)
    assert desktop.notifications.next()['body'].startswith('Display Ready! Temperature: ')
    assert desktop.notifications.next(2) is None, 'a second warm-up'  # nothing has no condition to wait for
    assert not desktop.controls.shows('WARMING UP')
    assert typed(desktop, 'w') == 0, 'the letter is not for the window in front'
    assert program.poll() is None
    assert desktop.written() == GREETING


def test_the_cast_key_starts_the_stream_and_says_where(desktop, voice):
    start(desktop)
    assert not PORT_FILE.exists() and not servers(desktop)
    desktop.keys(CAST)
    assert voice.wait_for_sentence(1).startswith('Orvalen screen stream online. ')
    wait_for(PORT_FILE.exists, what='the port file')
    wait_for(lambda: answers(int(PORT_FILE.read_text())), what='an answer of the server')
    desktop.controls.wait('Stop Offline Stream')
    assert typed(desktop, 'm') == 0
    assert desktop.written() == GREETING


def test_the_keys_work_in_every_state_of_the_locks(desktop, voice):
    make_scroll_lock_a_modifier(desktop)
    start(desktop)
    locks = 'Caps_Lock', 'Num_Lock', 'Scroll_Lock'
    for state in range(8):
        chosen = [lock for i, lock in enumerate(locks) if state & 1 << i]
        desktop.keys(*chosen, 'F8')  # which the other window gets, with what is locked
        wait_for(lambda: typed(desktop, 'F8') == state + 1, what='a key in the other window')
        assert locked(desktop) == sum({'Caps_Lock': 2, 'Num_Lock': 0x10, 'Scroll_Lock': 0x20}[lock] for lock in chosen)
        desktop.keys(CAST)
        voice.wait_for_sentence(state + 1)
        if state == 7:
            desktop.keys(WARM_UP)
            desktop.controls.wait('WARMING UP')
        desktop.keys(*chosen)


def locked(desktop):
    """The modifiers with which F8 came last."""
    lines = (desktop.folder / 'other.log').read_text().splitlines()
    return next(int(line.split('state ')[1].split(',')[0], 16) for line in reversed(lines) if ', F8)' in line)


@pytest.mark.parametrize('modifier', ['shift', 'ctrl'])
def test_the_keys_do_nothing_with_another_modifier_held(desktop, voice, modifier):
    start(desktop)
    for key in WARM_UP, CAST:
        desktop.keys('%s+%s' % (modifier, key))
    letter = 'M' if modifier == 'shift' else 'm'
    wait_for(lambda: typed(desktop, letter), what='the key in the other window')  # whose it is then
    desktop.keys(CAST)
    voice.wait_for_sentence(1)
    assert not desktop.controls.shows('WARMING UP')
    assert desktop.notifications.next(1) is None


def test_a_key_that_is_held_down_counts_once(desktop, voice):
    start(desktop)
    recorder = Child(desktop, 'recording_child.py')
    assert recorder.read(20) == 'ready'
    desktop.output(['xdotool', 'keydown', 'super', 'keydown', 'alt', 'keydown', 'm'])
    voice.wait_for_sentence(1)
    told = [recorder.read(20) for _ in range(10)]
    assert len(set(told[2:])) == 1 and told[2] is not None, 'first the two others, then repetitions of M: %s' % told
    desktop.output(['xdotool', 'keyup', 'm', 'keyup', 'alt', 'keyup', 'super'])
    desktop.keys(CAST)
    voice.wait_for_sentence(2)


@pytest.mark.parametrize('modifiers', [SUPER_ALT, SUPER_ALT | NUM_LOCK], ids=['the key', 'the key with Num Lock'])
def test_a_key_that_another_program_has_is_left_to_it(desktop, voice, modifiers):
    other = Grabber(desktop, 'w', modifiers)
    assert other.is_granted()
    program = start(desktop)
    if modifiers & NUM_LOCK:
        desktop.keys('Num_Lock')
    desktop.keys(WARM_UP)
    assert other.is_pressed()
    desktop.keys(CAST)
    voice.wait_for_sentence(1)
    assert not desktop.controls.shows('WARMING UP')
    assert program.poll() is None
    assert desktop.written() == GREETING


def test_the_keys_follow_a_change_of_the_keyboard(desktop, voice):
    start(desktop)
    desktop.output(['setxkbmap', 'fr'])  # on which W and M are elsewhere

    def warms_up():
        desktop.keys(WARM_UP)
        return desktop.controls.shows('WARMING UP')

    wait_for(warms_up, what='a warm-up')
    desktop.keys(CAST)
    voice.wait_for_sentence(1)


def test_the_keys_end_with_the_program(desktop):
    program = start(desktop)
    assert not Grabber(desktop, 'w', SUPER_ALT).is_granted()
    program.terminate()
    assert program.wait(10) == 0
    wait_for(lambda: Grabber(desktop, 'w', SUPER_ALT).is_granted(), 30, 'the key to be free')


@pytest.mark.parametrize('number', [signal.SIGKILL, signal.SIGSTOP], ids=['dies', 'hangs'])
def test_an_x_server_that_fails_takes_along_no_program_that_shows_its_windows_elsewhere(desktop, voice, number):
    desktop.choose(PROGRAM, smartModeEnabled='false')
    program = desktop.start(PROGRAM, {'QT_QPA_PLATFORM': 'offscreen'})
    wait_for(lambda: desktop.written() == GREETING, what='a word of the program')
    wait_for_keys(desktop)
    desktop.keys(CAST)
    voice.wait_for_sentence(1)
    server = desktop.processes[0]
    server.send_signal(number)
    time.sleep(1)  # "goes on" has no condition to wait for
    assert program.poll() is None
    program.terminate()
    assert program.wait(10) == 0
    server.send_signal(signal.SIGCONT)
