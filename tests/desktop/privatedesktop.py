"""A desktop of its own for one test: X server, window manager, session bus, accessibility, notifications.

Nothing in it is shared with the machine's own desktop or with another test: home, run-time folder, display and bus are
private. What it starts it ends by process id, the last first.
"""
import contextlib
import json
import os
import select
import shutil
import signal
import subprocess
import sys
import tempfile
import time
from pathlib import Path

sys.path.append(str(Path(__file__).resolve().parents[1] / 'support'))

from waiting import wait_for  # noqa: E402

HERE = Path(__file__).resolve().parent
ROOT = HERE.parents[1]
PYTHON = '/usr/bin/python3'  # the one that Debian's modules belong to
GREETING = '🛡️ Orvalen: Blind Hotkeys registered (Cmd+Option+W = Warmup, Cmd+Option+M = Blind Cast)\n'  # of every start
MARK = 'ORVALEN_TEST_DESKTOP'  # in the environment of everything that lives in a desktop

BUS = '''<busconfig>
  <type>session</type>
  <listen>unix:dir=%s</listen>
  <servicedir>%s</servicedir>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
'''


def end(process, seconds=5):
    """Politely, then firmly. The exit status."""
    if process.poll() is None:
        process.terminate()
        try:
            process.wait(seconds)
        except subprocess.TimeoutExpired:
            process.kill()
    return process.wait()


def processes_with(mark):
    """Ids of the running processes that carry `mark` (bytes, "NAME=value") in their environment."""
    found = []
    for folder in Path('/proc').iterdir():
        if folder.name.isdigit() and int(folder.name) != os.getpid():
            try:
                if mark in (folder / 'environ').read_bytes().split(b'\0') and 'Z' not in state(int(folder.name)):
                    found.append(int(folder.name))
            except OSError:
                pass  # ended, or not ours to look at
    return found


def comm(pid):
    try:
        return Path('/proc/%d/comm' % pid).read_text().strip()
    except OSError:
        return None


def state(pid):
    """The letter of /proc: R, S, Z, ... 'Z' also for a process that is gone."""
    try:
        return Path('/proc/%d/stat' % pid).read_text().rpartition(')')[2].split()[0]
    except OSError:
        return 'Z'


class Desktop:
    """with Desktop() as desktop: desktop.start('orvalen-simulated') ..."""

    def __init__(self, width=1280, height=800):
        self.size = '%dx%dx24' % (width, height)
        self.processes = []

    def __enter__(self):
        self.folder = Path(tempfile.mkdtemp(prefix='orvalen-test.', dir='/tmp'))
        try:
            self._build()
        except BaseException:
            self.__exit__()
            raise
        return self

    def __exit__(self, *_):
        for process in reversed(self.processes):
            end(process)
        mark = ('%s=%s' % (MARK, self.folder)).encode()
        for number in (signal.SIGTERM, signal.SIGKILL):  # children of services, such as the accessibility bus
            for pid in processes_with(mark):
                with contextlib.suppress(ProcessLookupError):  # has just ended
                    os.kill(pid, number)
            deadline = time.monotonic() + 3
            while processes_with(mark) and time.monotonic() < deadline:
                time.sleep(0.05)
        shutil.rmtree(self.folder, ignore_errors=True)

    def _build(self):
        (self.folder / 'commands').mkdir()
        keep = ('PATH', 'LANG', 'LC_ALL', 'USER', 'LOGNAME', 'TZ')
        self.environment = {name: os.environ[name] for name in keep if name in os.environ}
        self.environment.update({
            MARK: str(self.folder),
            'PATH': '%s:%s' % (self.folder / 'commands', os.environ['PATH']),
            'HOME': str(self.folder / 'home'),
            'XDG_RUNTIME_DIR': str(self.folder / 'runtime'),
            'DBUS_SYSTEM_BUS_ADDRESS': 'unix:path=%s' % (self.folder / 'no-system-bus'),
            'XDG_SESSION_TYPE': 'x11',
            'QT_QPA_PLATFORM': 'xcb',
            'QT_LINUX_ACCESSIBILITY_ALWAYS_ON': '1',
            'GIO_USE_VFS': 'local',
        })
        self.environment.setdefault('LANG', 'C.UTF-8')
        (self.folder / 'home').mkdir()
        (self.folder / 'runtime').mkdir(mode=0o700)
        self.environment['DISPLAY'] = ':' + self._start_and_read(
            'xvfb', lambda fd: ['Xvfb', '-displayfd', str(fd), '-screen', '0', self.size, '-nolisten', 'tcp', '-noreset'])
        config = self.folder / 'bus.conf'
        services = self.folder / 'share/dbus-1/services'  # empty: a test may put some there
        services.mkdir(parents=True)
        config.write_text(BUS % (self.folder, services))
        self.environment['DBUS_SESSION_BUS_ADDRESS'] = self._start_and_read(
            'bus', lambda fd: ['dbus-daemon', '--config-file', str(config), '--nofork', '--nopidfile',
                               '--print-address=%d' % fd])
        self.start_service('openbox', ['openbox'])
        wait_for(lambda: 'window id #' in self.output(['xprop', '-root', '_NET_SUPPORTING_WM_CHECK']), what='openbox')
        self.start_service('accessibility', ['/usr/libexec/at-spi-bus-launcher', '--launch-immediately'])
        asked = ['busctl', '--user', 'call', 'org.freedesktop.DBus', '/', 'org.freedesktop.DBus', 'NameHasOwner', 's',
                 'org.a11y.Bus']
        wait_for(lambda: 'true' in self.output(asked), what='the accessibility bus')
        self.controls = Controls(self)
        self.notifications = Notifications(self)

    def start_service(self, name, command, **options):
        """A process of the desktop; its output goes to NAME.log in the desktop's folder unless `options` say otherwise."""
        log = open(self.folder / (name + '.log'), 'wb')
        options = {'stdin': subprocess.DEVNULL, 'stdout': log, 'stderr': subprocess.STDOUT, **options}
        process = subprocess.Popen(command, env=self.environment, cwd=self.folder, start_new_session=True, **options)
        log.close()
        self.processes.append(process)
        return process

    def _start_and_read(self, name, command):
        """Starts a service that writes one line to a descriptor once it is ready; the line."""
        reading, writing = os.pipe()
        self.start_service(name, command(writing), pass_fds=[writing])
        os.close(writing)
        ready, _, _ = select.select([reading], [], [], 20)
        with os.fdopen(reading) as file:
            line = file.readline().strip() if ready else ''
        assert line, '%s did not start: %s' % (name, (self.folder / (name + '.log')).read_text())
        return line

    def start(self, program, environment=None):
        """One of the built programs; what it writes can be had with `written`."""
        path = ROOT / 'build/release/bin' / program
        stdout, stderr = (open(self.folder / name, 'wb') for name in ('stdout', 'stderr'))
        process = subprocess.Popen([path], env={**self.environment, **(environment or {})}, cwd=self.folder,
                                   start_new_session=True, stdin=subprocess.DEVNULL, stdout=stdout, stderr=stderr)
        self.processes.append(process)
        return process

    def settings_file(self, program):
        """Where that program keeps the user's settings."""
        name = {'orvalen': 'Orvalen', 'orvalen-simulated': 'Orvalen Simulated'}[program]
        return self.folder / 'home/.config/Quenmark' / (name + '.ini')

    def choose(self, program, **settings):
        """Settings that the user has made before the start."""
        file = self.settings_file(program)
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_text('[General]\n' + ''.join('%s=%s\n' % item for item in settings.items()))

    def written(self):
        """All that the program has written to standard output and standard error."""
        return (self.folder / 'stdout').read_text() + (self.folder / 'stderr').read_text()

    def replace_command(self, name, script):
        """From now on `name` is that shell script for whatever starts in this desktop."""
        file = self.folder / 'commands' / name
        file.write_text('#!/bin/sh\n' + script)
        file.chmod(0o755)

    def screenshot(self, name):
        """A picture of the whole screen: its path."""
        file = self.folder / name
        self.output(['import', '-silent', '-window', 'root', str(file)])
        return file

    def living(self, name):
        """Ids of the running processes of that name in this desktop; the system keeps the first 15 letters of one."""
        mark = ('%s=%s' % (MARK, self.folder)).encode()
        return [pid for pid in processes_with(mark) if comm(pid) == name[:15]]

    def output(self, command):
        return subprocess.run(command, env=self.environment, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                              text=True, timeout=20).stdout

    def windows(self, title):
        """Ids of the visible windows with exactly that title."""
        return self.output(['xdotool', 'search', '--onlyvisible', '--name', '^%s$' % title]).split()

    def active(self):
        """The title of the window that has the keyboard."""
        return self.output(['xdotool', 'getactivewindow', 'getwindowname']).strip()

    def activate(self, title):
        """Gives the window of that title the keyboard."""
        tree = Later(lambda: self.output(['xwininfo', '-root', '-tree']))
        window = wait_for(lambda: self.windows(title), 30, Later(lambda: 'a window "%s" in %s' % (title, tree)))[-1]
        self.output(['xdotool', 'windowactivate', '--sync', window])

    def another_program(self):
        """The user turns to another program: its window, of the title 'Other', covers ours and has the keyboard."""
        self.start_service('xev', ['xev', '-name', 'Other', '-geometry', '1200x700+10+10', '-event', 'keyboard'])
        self.activate('Other')
        wait_for(lambda: self.active() == 'Other', what='the other window to be active')

    def close(self, title):
        """Closes the window of that title as a person does, more than once if the window manager was not listening yet."""
        def gone():
            if self.windows(title):
                self.activate(title)
                self.keys('alt+F4')
                deadline = time.monotonic() + 2
                while self.windows(title) and time.monotonic() < deadline:
                    time.sleep(0.05)
            return not self.windows(title)

        wait_for(gone, what='the window "%s" to go' % title)

    def keys(self, *keys):
        self.output(['xdotool', 'key', *keys])


class Child:
    """A small Python program inside the desktop that talks JSON, one object a line."""

    def __init__(self, desktop, script, arguments=(), **options):
        name = Path(script).name
        self.errors = desktop.folder / (name + '.err')
        self.process = desktop.start_service(name, [PYTHON, str(HERE / script), *arguments], stdout=subprocess.PIPE,
                                             stderr=open(self.errors, 'wb'), **options)
        self.buffer = b''

    def read(self, seconds):
        """The next object, or None if there is none within that time."""
        deadline = time.monotonic() + seconds
        while b'\n' not in self.buffer:
            ready, _, _ = select.select([self.process.stdout], [], [], max(0, deadline - time.monotonic()))
            data = os.read(self.process.stdout.fileno(), 65536) if ready else None
            if data is None:
                return None
            assert data, 'ended: ' + self.errors.read_text()
            self.buffer += data
        line, self.buffer = self.buffer.split(b'\n', 1)
        return json.loads(line)


class Controls(Child):
    """The controls that a person can see, by the name that a screen reader would say."""

    def __init__(self, desktop):
        super().__init__(desktop, 'accessible_child.py', stdin=subprocess.PIPE)

    def ask(self, **question):
        self.process.stdin.write(json.dumps(question).encode() + b'\n')
        self.process.stdin.flush()
        answer = self.read(60)
        assert answer is not None, 'no answer about the controls'
        assert 'error' not in answer, answer['error']
        return answer['answer']

    def names(self):
        """The names of everything that shows, as [role, name, text] (text: what it reads, where it differs)."""
        return self.ask(verb='names')

    def shows(self, name):
        """Whether something that shows has exactly that name or text."""
        return any(name in (shown, text) for _, shown, text in self.names())

    def wait(self, name, seconds=10):
        wait_for(lambda: self.shows(name), seconds, Later(lambda: '"%s" on the screen, but: %s' % (name, self.names())))

    def press(self, name, about=None):
        """Presses the button, switch or tab of that name; of several the one with that description."""
        wait_for(lambda: self.ask(verb='press', name=name, about=about), what='a control "%s" to press' % name)

    def description(self, name):
        """What a screen reader says of that control after its name; None if there is no such control."""
        return self.ask(verb='description', name=name)

    def place(self, role, name):
        """Where on the screen the control of that role and name is, as [x, y, width, height]; None if there is none."""
        return self.ask(verb='place', role=role, name=name)

    def text(self, name):
        """What the field of that name holds; None if there is none."""
        return next((text for _, shown, text in self.names() if shown == name and text), None)

    def described(self):
        """Everything that shows, with all that a screen reader can know of it."""
        return self.ask(verb='described')

    def set(self, name, value):
        """Gives the slider of that name a value."""
        wait_for(lambda: self.ask(verb='set', name=name, value=value), what='a slider "%s" to set' % name)

    def is_checked(self, name):
        """Whether the switch of that name is on; None if there is no such switch."""
        return self.ask(verb='checked', name=name)


class Later:
    """Computed when it is printed."""

    def __init__(self, function):
        self.function = function

    def __str__(self):
        return str(self.function())


class Notifications(Child):
    """A notification service that shows nothing and remembers all."""

    def __init__(self, desktop):
        super().__init__(desktop, 'notification_child.py')
        assert self.read(20) == 'ready', self.errors.read_text()

    def next(self, seconds=10):
        """The next notification: app_name, summary, body, icon, actions, hints, replaces. None if none comes."""
        return self.read(seconds)
