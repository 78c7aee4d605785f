"""Every suite of tests is part of the whole run."""
from pathlib import Path

import pytest

ROOT = Path(__file__).resolve().parents[2]


def suites_in(script):
    """The folders below tests/ whose suites that script runs."""
    found = set()
    for line in script.splitlines():
        words = line.partition('#')[0].rstrip('& ').split()
        if words[:1] == ['lane']:
            found.update(words[2:])
        elif 'pythonTests' in words and words[0] == 'step':
            found.add(words[words.index('pythonTests') + 1])
    return found


@pytest.mark.parametrize('suite', sorted(path.parent.name for path in ROOT.glob('tests/*/pytest.ini')))
def test_the_whole_run_has_every_suite(suite):
    assert suite in suites_in((ROOT / 'test').read_text())


def test_a_suite_that_is_only_talked_about_is_not_run():
    script = '''
# lane NUMBER SUITE...   desktop
    step checks 120 pythonTests checks other
    lane 1 server browser & # not streaming
  lane 2 desktop
    echo lane 3 report
    cat "$results"/lane-*.log
lane() {
'''
    assert suites_in(script) == {'checks', 'server', 'browser', 'desktop'}
