import sys
from pathlib import Path

import pytest

TESTS = Path(__file__).resolve().parents[1]
sys.path += [str(TESTS / 'support')]

import private_machine  # noqa: E402


@pytest.hookimpl(tryfirst=True)
def pytest_configure(config):
    private_machine.enter(config)


@pytest.fixture(scope='session')
def window():
    from window import Window
    with Window() as window:
        yield window
