import pytest

from privatedesktop import Desktop


@pytest.fixture
def desktop():
    with Desktop() as desktop:
        yield desktop
