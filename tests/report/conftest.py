import sys
from pathlib import Path

import pytest

TESTS = Path(__file__).resolve().parents[1]
sys.path += [str(TESTS / name) for name in ('support', 'browser', 'desktop')]

import private_machine  # noqa: E402


@pytest.hookimpl(tryfirst=True)
def pytest_configure(config):
    private_machine.enter(config)


@pytest.fixture(scope='session')
def browser(tmp_path_factory):
    from viewer import Browser
    with Browser(tmp_path_factory.mktemp('browser')) as browser:
        yield browser


@pytest.fixture
def laptop(tmp_path):
    from laptop import Laptop
    with Laptop(tmp_path) as laptop:
        yield laptop


@pytest.fixture(scope='session')
def warm_report(tmp_path_factory):
    """The file that a warm laptop on its charger has made."""
    from laptop import Laptop
    with Laptop(tmp_path_factory.mktemp('warm laptop')) as laptop:
        yield laptop.report()


@pytest.fixture(scope='session')
def cold_report(tmp_path_factory):
    """The same of a cold one on its battery."""
    from laptop import COLD, Laptop
    with Laptop(tmp_path_factory.mktemp('cold laptop'), COLD, ac=False, percent=7) as laptop:
        yield laptop.report()


@pytest.fixture(scope='session')
def screen():
    """A desktop to open files on. What is opened there and by whom is each laptop's own affair."""
    from privatedesktop import Desktop
    with Desktop() as desktop:
        yield desktop


@pytest.fixture
def owner(tmp_path, screen):
    """A laptop on that desktop whose owner has chosen a browser; it notes what it is asked to show."""
    from laptop import Laptop, choose_browser
    with Laptop(tmp_path / 'laptop', desktop=screen) as laptop:
        choose_browser(laptop)
        yield laptop
