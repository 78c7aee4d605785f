"""The count at the end of a test run says what happened."""
import subprocess
import sys

import count


def run(tmp_path, steps):
    for name, (status, report) in steps.items():
        if report is not None:
            (tmp_path / (name + '.xml')).write_text(report)
        (tmp_path / (name + '.status')).write_text(str(status))
    result = subprocess.run([sys.executable, count.__file__, str(tmp_path)], capture_output=True, text=True)
    return result.returncode, result.stdout.splitlines()


CTEST = '''<testsuite name="x"><testcase name="A.one" classname="A.one" status="run"/>
<testcase name="A.two" classname="A.two" status="fail"><failure message="f"/></testcase>
<testcase name="A.three" classname="A.three" status="notrun"><skipped message="s"/></testcase></testsuite>'''
PYTEST = '''<testsuites><testsuite name="pytest"><testcase classname="test_a" name="one"/>
<testcase classname="test_a" name="two"><error message="e"/></testcase></testsuite></testsuites>'''
GOOD = '<testsuite><testcase name="A.one" classname="A.one" status="run"/></testsuite>'


def test_cases_of_all_reports_are_summed(tmp_path):
    status, lines = run(tmp_path, {'units': (8, CTEST), 'desktop': (1, PYTEST)})
    assert lines[-1] == '2 passed, 2 failed'
    assert lines[-2] == 'Skipped 1: units: A.three'
    assert set(lines[:-2]) == {'Failed: units: A.two', 'Failed: desktop: test_a.two'}
    assert status == 1


def test_all_well_is_status_zero(tmp_path):
    assert run(tmp_path, {'units': (0, GOOD), 'build': (0, None)}) == (0, ['2 passed, 0 failed'])


def test_a_build_that_fails_is_a_failure(tmp_path):
    assert run(tmp_path, {'build': (1, None), 'units': (0, GOOD)}) == (1, ['Failed: build (status 1)', '1 passed, 1 failed'])


def test_a_suite_that_breaks_without_a_failed_case_is_a_failure(tmp_path):
    status, lines = run(tmp_path, {'units': (124, GOOD)})
    assert lines == ['Failed: units (status 124)', '1 passed, 1 failed'] and status == 1


def test_a_suite_without_a_test_is_a_failure(tmp_path):
    status, lines = run(tmp_path, {'units': (0, '<testsuite/>'), 'build': (0, None)})
    assert lines == ['Failed: units: ran no test', '1 passed, 1 failed'] and status == 1


def test_a_torn_report_is_a_failure(tmp_path):
    assert run(tmp_path, {'units': (0, '<testsuite><testca')})[0] == 1


def test_nothing_at_all_is_no_success(tmp_path):
    assert run(tmp_path, {}) == (1, ['0 passed, 0 failed'])


def test_a_step_that_the_machine_cannot_have_is_skipped_by_name(tmp_path):
    assert run(tmp_path, {'units': (0, GOOD), 'server': (77, None)}) == (0, ['Skipped 1: server', '1 passed, 0 failed'])


def test_a_suite_with_a_report_is_not_skipped_by_its_status(tmp_path):
    assert run(tmp_path, {'units': (77, GOOD)})[0] == 1
