import sys
from pathlib import Path

import pytest

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / 'support'))

import private_machine  # noqa: E402


@pytest.hookimpl(tryfirst=True)
def pytest_configure(config):
    private_machine.enter(config)


@pytest.fixture(scope='session')
def browser(tmp_path_factory):
    """One browser for all tests; each opens the page anew."""
    from viewer import Browser
    with Browser(tmp_path_factory.mktemp('browser')) as browser:
        yield browser


@pytest.fixture(scope='session')
def camera(tmp_path_factory):
    """A capture command that makes pictures which a test knows again."""
    from viewer import Camera
    return Camera(tmp_path_factory.mktemp('camera'))


@pytest.fixture
def server(camera, tmp_path):
    """The stream server, with that capture command first on its search path."""
    from viewer import Server
    camera.reset()
    with Server(tmp_path, {'PATH': '%s:/usr/bin:/bin' % camera.folder}) as server:
        yield server
