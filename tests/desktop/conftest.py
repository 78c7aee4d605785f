import subprocess
import sys
from pathlib import Path

import pytest

from privatedesktop import Desktop

TESTS = Path(__file__).resolve().parents[1]
sys.path += [str(TESTS / 'support'), str(TESTS / 'platform')]

import private_machine  # noqa: E402


@pytest.hookimpl(tryfirst=True)
def pytest_configure(config):
    private_machine.enter(config)


@pytest.fixture(scope='session')
def network():
    """The address that this private machine gets in a network that nobody else is in; None where it can have none."""
    def ip(command):
        return subprocess.run(['ip', *command.split()], capture_output=True, text=True, timeout=10).returncode == 0

    if ip('link show en0'):
        return '192.168.1.20'
    made = ip('link add en0 type veth peer name far-end') and ip('address add 192.168.1.20/24 dev en0') and \
        ip('link set far-end up') and ip('link set en0 up')
    return '192.168.1.20' if made else None


@pytest.fixture
def desktop():
    with Desktop() as desktop:
        yield desktop
