"""For tests that use the program's fixed ports, its fixed file names and its kills by pattern: a machine of their own."""
import os
import subprocess
import sys
from pathlib import Path

import pytest

SCRIPT = Path(__file__).resolve().with_name('private-machine')


def is_private():
    """Whether this process lives in a private machine, where it can disturb nobody."""
    return os.environ.get('ORVALEN_PRIVATE_MACHINE') == 'yes'


needed = pytest.mark.skipif(not is_private(), reason='this system lets us have no private machine')


def enter(config):
    """Starts this run of pytest anew in a private machine. Comes back where there is one already, or none to be had."""
    if is_private() or subprocess.run([SCRIPT, 'true'], capture_output=True).returncode != 0:
        return
    capture = config.pluginmanager.getplugin('capturemanager')
    if capture:
        capture.stop_global_capturing()
    os.execv(SCRIPT, [str(SCRIPT), sys.executable, '-m', 'pytest', *map(str, config.invocation_params.args)])
