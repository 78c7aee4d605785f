"""A laptop with given readings, and the program's own report operation on it."""
import os
import select
import subprocess
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
CONTROL = ROOT / 'build/release/tests/report_control'
NAME = 'Quenmark_Display_Diagnostic_Report.html'
PATIENCE = 60  # seconds; only a failing test waits them out

WARM = {'PMU tdie1': 38.4, 'PMU tdev1': 35.8, 'SOC MTR Temp': 37.57, 'pACC MTR Temp': 44.95, 'gas gauge battery': 30.04}
COLD = {'PMU tdie1': 21.04, 'PMU tdev1': 18.96, 'SOC MTR Temp': 22.5, 'pACC MTR Temp': 22.5, 'gas gauge battery': 19.96}


def write(file, text):
    file.parent.mkdir(parents=True, exist_ok=True)
    file.write_text(text + '\n')


class Laptop:
    """with Laptop(folder) as laptop: laptop.report()

    `folder` holds its home; `desktop` is the desktop that the program runs in, if one is to be seen or to open files.
    """

    def __init__(self, folder, temperatures=WARM, ac=True, percent=100, desktop=None, home='home', **environment):
        self.folder = folder
        self.sys = folder / 'sys'
        chip = self.sys / 'class/hwmon/hwmon0'
        write(chip / 'name', 'coretemp')
        for number, (label, celsius) in enumerate(temperatures.items(), 1):
            write(chip / ('temp%d_label' % number), label)
            write(chip / ('temp%d_input' % number), '%d' % round(celsius * 1000))
        write(self.sys / 'class/power_supply/AC/type', 'Mains')
        write(self.sys / 'class/power_supply/AC/online', '%d' % ac)
        write(self.sys / 'class/power_supply/BAT0/type', 'Battery')
        write(self.sys / 'class/power_supply/BAT0/status', 'Charging' if ac else 'Discharging')
        write(self.sys / 'class/power_supply/BAT0/capacity', '%d' % percent)
        self.home = folder / home
        self.desktop_folder = self.home / 'Desktop'
        self.desktop_folder.mkdir(parents=True)
        (folder / 'runtime').mkdir(mode=0o700)
        self.environment = {'PATH': os.environ['PATH'], 'LANG': 'en_GB.UTF-8', 'TZ': 'UTC', 'QT_QPA_PLATFORM': 'offscreen',
                            'XDG_RUNTIME_DIR': str(folder / 'runtime'),
                            'DBUS_SESSION_BUS_ADDRESS': 'unix:path=/nowhere', 'DBUS_SYSTEM_BUS_ADDRESS': 'unix:path=/nowhere',
                            **(desktop.environment if desktop else {}),
                            'HOME': str(self.home), 'XDG_DATA_HOME': str(folder / 'data'), **environment}
        self.preparation = ''  # shell commands for the program's own view of the machine
        self.command_prefix = []
        self.process = None

    def __enter__(self):
        return self

    def __exit__(self, *_):
        if self.process:
            self.process.stdin.close()
            self.process.kill()
            self.process.wait()
            self.process.stdout.close()

    def inside(self, *command):
        """That command, to run on this laptop."""
        return ['unshare', '--mount', '--uts', 'sh', '-e', '-c',
                'mount --bind "$1" /sys\n%s\nshift; exec "$@"' % self.preparation, 'sh', self.sys, *self.command_prefix, *command]

    def output(self, *command):
        return subprocess.run(self.inside(*command), env=self.environment, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                              text=True, timeout=PATIENCE, check=True).stdout

    def report(self):
        """Makes a report: the path that the operation returns, or None. It says nothing else."""
        if not self.process:
            errors = open(self.folder / 'errors', 'wb')
            self.process = subprocess.Popen(self.inside(CONTROL), env=self.environment, stdin=subprocess.PIPE,
                                            stdout=subprocess.PIPE, stderr=errors, cwd='/', bufsize=0)
            errors.close()
        self.process.stdin.write(b'report\n')
        path = self._line()
        float(self._line())
        assert self.errors() == '', self.errors()
        return None if path == 'nothing' else Path(path)

    def errors(self):
        """What it has written to standard error."""
        return (self.folder / 'errors').read_text()

    def other_output(self):
        """What stands on its standard output beside its answers, so far."""
        text = b''
        while select.select([self.process.stdout], [], [], 0)[0] and (more := os.read(self.process.stdout.fileno(), 4096)):
            text += more
        return text.decode()

    def leave(self):
        """Lets it end; returns when nobody can write to its standard output any more."""
        self.process.stdin.close()
        ready, _, _ = select.select([self.process.stdout], [], [], PATIENCE)
        assert ready, 'somebody keeps it open'
        assert self.process.stdout.read() == b''
        self.process.wait(PATIENCE)

    def on_desktop(self):
        """The names of all files there, hidden ones included."""
        return sorted(os.listdir(self.desktop_folder))

    def _line(self):
        ready, _, _ = select.select([self.process.stdout], [], [], PATIENCE)
        line = self.process.stdout.readline() if ready else b''
        assert line.endswith(b'\n'), self.errors()
        return line.decode().rstrip('\n')


BROWSER = '''#!/bin/sh
echo chatter
echo chatter >&2
printf '%%s\\n' "$*" >>'%s'
%s
'''
ENTRY = '''[Desktop Entry]
Type=Application
Name=Browser
Exec=%s %%u
MimeType=text/html;
'''


def choose_browser(laptop, then='exit 0'):
    """From now on that laptop's owner opens HTML with a talkative program that notes what it is to show; then `then`."""
    program = laptop.folder / 'browser'
    program.write_text(BROWSER % (laptop.folder / 'opened', then))
    program.chmod(0o755)
    write(laptop.folder / 'data/applications/b.desktop', ENTRY % program)
    write(laptop.folder / 'data/applications/mimeapps.list', '[Default Applications]\ntext/html=b.desktop')


def opened(laptop):
    """What the browser was asked to show so far."""
    file = laptop.folder / 'opened'
    return file.read_text().splitlines() if file.exists() else []
