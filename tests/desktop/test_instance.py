"""Somebody starts the program again, or lets the desktop do it."""
import configparser
import os
import shlex
import signal
import socket
import subprocess
from pathlib import Path

import pytest

import private_machine
from privatedesktop import PYTHON, ROOT, Later, wait_for

ID = 'com.quenmark.Orvalen'
SIMULATED = ID + '.Simulated'
PROGRAM = 'orvalen-simulated'
WINDOW = 'Orvalen'
TRIGGER = 'Trigger Prime Warmup Now'
ENTRY = ROOT / 'build/release/share/applications' / (ID + '.desktop')


@pytest.fixture
def running(desktop):
    desktop.choose(PROGRAM, smartModeEnabled='false')
    program = desktop.start(PROGRAM)
    desktop.controls.wait(TRIGGER)
    return program


def is_in_front(desktop):
    """Whether our window has the keyboard and nothing lies over its middle."""
    if desktop.active() != WINDOW:
        return False
    window = desktop.windows(WINDOW)[-1]
    stack = desktop.output(['xprop', '-root', '_NET_CLIENT_LIST_STACKING']).replace(',', ' ').split()
    return int(stack[-1], 16) == int(window)


def in_front(desktop):
    wait_for(lambda: is_in_front(desktop), what=Later(lambda: 'our window in front, but: %s %s' % (
        desktop.active(), desktop.output(['xprop', '-root', '_NET_CLIENT_LIST_STACKING']))))


def call(desktop, name, method, *arguments):
    """As a desktop calls a program: the answer, or the error."""
    return desktop.output(['gdbus', 'call', '--session', '--dest', name, '--object-path', '/' + name.replace('.', '/'),
                           '--method', 'org.freedesktop.Application.' + method, *arguments])


def act(desktop, name, action):
    assert call(desktop, name, 'ActivateAction', action, '[]', '{}').strip() == '()'


def owns(desktop, name):
    return 'true' in desktop.output(['gdbus', 'call', '--session', '--dest', 'org.freedesktop.DBus', '--object-path', '/',
                                     '--method', 'org.freedesktop.DBus.NameHasOwner', name])


def complaints(desktop):
    """What the program has written to standard error."""
    return (desktop.folder / 'stderr').read_text()


def minimise(desktop):
    desktop.output(['xdotool', 'windowminimize', '--sync', desktop.windows(WINDOW)[-1]])
    wait_for(lambda: not desktop.windows(WINDOW), what='the window to be minimised')


def test_a_second_start_brings_the_running_program_to_the_front(desktop, running):
    desktop.another_program()
    for hide in (lambda: None, lambda: desktop.close(WINDOW), lambda: minimise(desktop)):
        hide()
        desktop.activate('Other')
        wait_for(lambda: desktop.active() == 'Other', what='the other window to be active')
        second = desktop.start(PROGRAM)
        assert second.wait(20) == 0
        in_front(desktop)
        assert len(desktop.windows(WINDOW)) == 1
        assert running.poll() is None
        assert desktop.written() == ''
    desktop.controls.press(TRIGGER)  # and it is alive
    desktop.controls.wait('WARMING UP')


def test_a_second_start_touches_neither_display_nor_settings(desktop, running):
    home = desktop.folder / 'other-home'
    home.mkdir()
    second = desktop.start(PROGRAM, {'DISPLAY': ':nowhere', 'HOME': str(home), 'XDG_RUNTIME_DIR': '/nowhere'})
    assert second.wait(20) == 0
    assert list(home.iterdir()) == []
    assert desktop.written() == ''


def test_of_many_starts_at_once_one_shows_its_window(desktop):
    desktop.choose(PROGRAM, smartModeEnabled='false')
    programs = [desktop.start(PROGRAM) for _ in range(6)]
    wait_for(lambda: [program.poll() for program in programs].count(0) == 5, 60, 'all but one to end')
    desktop.controls.wait(TRIGGER, 30)
    assert len(desktop.windows(WINDOW)) == 1
    assert [program.poll() for program in programs].count(None) == 1


def test_after_its_end_it_can_be_started_again(desktop, running):
    running.terminate()
    assert running.wait(10) == 0
    assert not owns(desktop, SIMULATED)
    desktop.start(PROGRAM)
    wait_for(lambda: desktop.windows(WINDOW), what='a window')


def test_a_crashed_program_is_not_in_the_way(desktop, running):
    running.kill()
    running.wait(10)
    desktop.start(PROGRAM)
    wait_for(lambda: desktop.windows(WINDOW), what='a window')


def test_a_program_that_hangs_stays_the_one(desktop, running):
    desktop.another_program()
    running.send_signal(signal.SIGSTOP)
    second = desktop.start(PROGRAM)
    assert second.wait(20) == 0
    running.send_signal(signal.SIGCONT)
    in_front(desktop)  # it was asked, and does so when it can


@pytest.fixture
def silent(tmp_path):
    """A socket, and its path, where somebody takes connections and says nothing."""
    with socket.socket(socket.AF_UNIX) as silent:
        silent.bind(str(tmp_path / 'silent'))
        silent.listen()
        silent.settimeout(30)
        yield silent


@pytest.mark.parametrize('address', [None, 'unix:path=/nowhere/bus', 'silent'])
def test_without_a_bus_each_start_is_a_program(desktop, address, silent):
    desktop.choose(PROGRAM, smartModeEnabled='false')
    if address is None:
        del desktop.environment['DBUS_SESSION_BUS_ADDRESS']
    else:
        desktop.environment['DBUS_SESSION_BUS_ADDRESS'] = address.replace('silent', 'unix:path=' + silent.getsockname())
    programs = [desktop.start(PROGRAM) for _ in range(2)]
    wait_for(lambda: len(desktop.windows(WINDOW)) == 2, 60, 'two windows')
    assert [program.poll() for program in programs] == [None, None]


def test_it_ends_when_asked_while_it_waits_for_a_bus(desktop, silent):
    desktop.choose(PROGRAM, smartModeEnabled='false')
    program = desktop.start(PROGRAM, {'DBUS_SESSION_BUS_ADDRESS': 'unix:path=' + silent.getsockname()})
    connection, _ = silent.accept()
    with connection:
        program.terminate()
        assert program.wait(60) == 0


def test_a_desktop_that_shows_no_x_windows_is_answered_while_an_x_server_hangs(desktop):
    number = desktop._start_and_read('other', lambda fd: ['Xvfb', '-displayfd', str(fd), '-nolisten', 'tcp', '-noreset'])
    server = desktop.processes[-1]
    desktop.choose(PROGRAM, smartModeEnabled='false')
    program = desktop.start(PROGRAM, {'DISPLAY': ':' + number, 'QT_QPA_PLATFORM': 'offscreen'})
    wait_for(lambda: owns(desktop, SIMULATED), 30, 'the program')
    assert call(desktop, SIMULATED, 'Activate', '{}').strip() == '()'
    server.send_signal(signal.SIGSTOP)
    try:
        for _ in range(2):
            assert call(desktop, SIMULATED, 'Activate', "{'desktop-startup-id': <'launcher_TIME1'>}").strip() == '()'
    finally:
        server.send_signal(signal.SIGCONT)
    assert program.poll() is None


def test_a_desktop_starts_the_warm_up(desktop, running):
    desktop.another_program()
    act(desktop, SIMULATED, 'warm-up')
    desktop.controls.wait('WARMING UP')


@private_machine.needed
def test_a_desktop_starts_the_blind_cast(desktop, running):
    said = desktop.folder / 'said'
    desktop.replace_command('spd-say', 'for word; do printf "%%s\\n" "$word" >>%s; done\n' % said)
    act(desktop, SIMULATED, 'blind-cast')
    wait_for(lambda: desktop.living('orvalen-stream-server'), what='the server')
    wait_for(lambda: said.exists() and 'Orvalen screen stream online.' in said.read_text(), what='the voice')


def test_what_a_desktop_may_not_ask_is_an_error_and_nothing_else(desktop, running):
    assert call(desktop, SIMULATED, 'ActivateAction', 'defrost', '[]', '{}').strip() == '()'  # nobody knows of it
    for method, *arguments in (['Activate', 'true'], ['ActivateAction', 'warm-up'], ['Open', '7', '{}'], ['Quit']):
        command = ['busctl', '--user', 'call', SIMULATED, '/' + SIMULATED.replace('.', '/'), 'org.freedesktop.Application',
                   method, *(['s', arguments[0]] if arguments else [])]
        assert subprocess.run(command, env=desktop.environment, capture_output=True, timeout=20).returncode != 0
    assert running.poll() is None
    assert not desktop.controls.shows('WARMING UP')
    assert complaints(desktop) == ''


def test_open_shows_the_window(desktop, running):
    desktop.close(WINDOW)
    call(desktop, SIMULATED, 'Open', "['file:///tmp/a']", '{}')
    in_front(desktop)


@pytest.fixture
def installed(desktop):
    """The program where a bus and a desktop look for it, and they started nothing yet."""
    prefix = desktop.folder / "somebody's own programs"
    subprocess.run(['cmake', '-DCMAKE_INSTALL_PREFIX=%s' % prefix, '-P',
                    ROOT / 'build/release/packaging/cmake_install.cmake'], check=True, capture_output=True, timeout=60)
    service = Path('share/dbus-1/services', ID + '.service')
    os.symlink(prefix / service, desktop.folder / service)
    (prefix / 'bin').mkdir()
    os.symlink(ROOT / 'build/release/bin/orvalen', prefix / 'bin/orvalen')
    desktop.environment['PATH'] = '%s:%s' % (prefix / 'bin', desktop.environment['PATH'])
    desktop.output(['gdbus', 'call', '--session', '--dest', 'org.freedesktop.DBus', '--object-path', '/', '--method',
                    'org.freedesktop.DBus.ReloadConfig'])
    desktop.choose('orvalen', smartModeEnabled='false')
    return prefix / 'share/applications' / ENTRY.name


def launch(desktop, entry, action=None):
    """As a desktop made with GLib does it when its user chooses the entry or one of its actions. It stays on the
    bus, which forgets what somebody asked who is gone before the program has started."""
    how = 'launch_action(%r, None)' % action if action else 'launch([], None)'
    script = ('from gi.repository import Gio, GLib\nbus = Gio.bus_get_sync(Gio.BusType.SESSION)\n'
              'entry = Gio.DesktopAppInfo.new_from_filename(%r)\nentry.%s\nGLib.MainLoop().run()' % (str(entry), how))
    desktop.start_service('launcher', [PYTHON, '-c', script])


def test_the_bus_starts_the_program_when_a_desktop_activates_it(desktop, installed):
    launch(desktop, installed)
    desktop.controls.wait(TRIGGER, 20)
    program, = desktop.living('orvalen')
    desktop.another_program()
    launch(desktop, installed)
    in_front(desktop)
    assert desktop.living('orvalen') == [program]


def test_the_bus_starts_the_program_for_an_action_too(desktop, installed):
    launch(desktop, installed, 'warm-up')
    desktop.controls.wait('WARMING UP', 20)
    assert len(desktop.windows(WINDOW)) == 1  # somebody who asks for warmth wants to see it rise


def test_an_action_can_be_had_without_a_desktop_that_knows_the_bus(desktop, installed):
    entry = configparser.ConfigParser(interpolation=None)
    entry.read(installed)
    command = shlex.split(entry['Desktop Action warm-up']['Exec'])
    subprocess.run(command, env=desktop.environment, check=True, timeout=30)
    desktop.controls.wait('WARMING UP', 20)


def test_the_entry_is_valid_and_tells_the_truth(desktop):
    assert desktop.output(['desktop-file-validate', str(ENTRY)]) == ''
    entry = configparser.ConfigParser(interpolation=None)
    entry.read(ENTRY)
    assert [name for name in entry['Desktop Entry']['Actions'].split(';') if name] == ['warm-up', 'blind-cast']
    desktop.choose('orvalen', smartModeEnabled='false')
    desktop.start('orvalen')
    window = wait_for(lambda: desktop.windows(WINDOW), what='a window')[-1]
    assert desktop.output(['xprop', '-id', window, 'WM_CLASS']).split('"')[-2] == entry['Desktop Entry']['StartupWMClass']
    assert owns(desktop, ID)
