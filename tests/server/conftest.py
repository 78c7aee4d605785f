import os
import resource

import pytest

from streamserver import StreamServer


def pytest_configure(config):
    # Fixed ports, fixed names and a kill by pattern: nobody else may be near.
    if os.environ.get('ORVALEN_PRIVATE_MACHINE') != 'yes':
        pytest.exit('run this by way of tests/support/private-machine', returncode=1)
    _, hard = resource.getrlimit(resource.RLIMIT_NOFILE)
    resource.setrlimit(resource.RLIMIT_NOFILE, (hard, hard))


@pytest.fixture
def server(tmp_path):
    """A server that is not started yet."""
    with StreamServer(tmp_path) as server:
        yield server


@pytest.fixture
def running(server):
    return server.start()
