import pytest

from machine import Machine


@pytest.fixture
def machine():
    with Machine() as machine:
        yield machine
