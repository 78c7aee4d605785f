"""Commands that stand in for real ones: they note how they were called."""
import os
import shlex
import stat
import subprocess
from pathlib import Path

NOTE = '''#!/bin/bash
{ printf '%s' "${0##*/}"; [ $# = 0 ] || printf '\\037%s' "$@"; printf '\\036'; } >>"$COMMANDS_CALLED"
'''


class Commands:
    """A folder of them, first on the search path of what is run with it."""

    def __init__(self, folder):
        self.folder = Path(folder)
        self.folder.mkdir(parents=True)
        self.log = self.folder / 'called'
        self.environment = {**os.environ, 'PATH': '%s:%s' % (self.folder, os.environ['PATH']),
                            'COMMANDS_CALLED': str(self.log)}

    def add(self, name, does=''):
        """A command that, its call noted, does what the lines of shell say."""
        self.write(name, NOTE + does + '\n')

    def write(self, name, text):
        path = self.folder / name
        path.write_text(text)
        path.chmod(path.stat().st_mode | stat.S_IXUSR)

    def run(self, *command, **options):
        return subprocess.run([str(word) for word in command], env=self.environment, stdout=subprocess.PIPE,
                              stderr=subprocess.PIPE, universal_newlines=True, **options)

    def called(self):
        """Every call as a list of words, in order."""
        if not self.log.exists():
            return []
        return [call.split('\037') for call in self.log.read_text().split('\036')[:-1]]

    def lines(self):
        return [shlex.join(call) for call in self.called()]
