#!/usr/bin/python3
"""Sums up a test run.

count.py FOLDER    FOLDER holds, per step of the run, NAME.status (its exit status) and, if the step runs test cases, NAME.xml
(JUnit). A step with a report counts by its cases, one without as a single case; one that broke without a failed case counts
as one more failure. Status 77 without a report: the machine cannot have that step, skipped. Names what failed and what was
skipped; the last line is "N passed, M failed". Status 1 for a failure.
"""
import sys
import xml.etree.ElementTree
from pathlib import Path


def outcome(case):
    """'passed', 'failed' or 'skipped', in the dialects of ctest and pytest."""
    if case.find('failure') is not None or case.find('error') is not None:
        return 'failed'
    if case.find('skipped') is not None or case.get('status') in ('notrun', 'disabled'):
        return 'skipped'
    return 'failed' if case.get('status') == 'fail' else 'passed'


def cases(report):
    """(name, outcome) of each case; None for a report that cannot be read."""
    try:
        tree = xml.etree.ElementTree.parse(report)
    except (OSError, xml.etree.ElementTree.ParseError):
        return None
    return [('%s.%s' % (case.get('classname'), case.get('name')) if case.get('classname') not in (None, case.get('name'))
             else case.get('name'), outcome(case)) for case in tree.iter('testcase')]


def sum_up(folder):
    """Lists of names by outcome."""
    sums = {'passed': [], 'failed': [], 'skipped': []}
    for mark in sorted(Path(folder).glob('*.status'), key=lambda path: path.stat().st_mtime_ns):
        name, report = mark.stem, mark.with_suffix('.xml')
        status = mark.read_text().strip()
        if status == '77' and not mark.with_suffix('.xml').exists():
            sums['skipped'].append(name)
            continue
        broke = status != '0'
        found = (cases(report) or []) if report.exists() else []
        for case, result in found:
            sums[result].append('%s: %s' % (name, case))
        if broke and not any(result == 'failed' for _, result in found):
            sums['failed'].append('%s (status %s)' % (name, status))
        elif not found and not broke:
            if report.exists():
                sums['failed'].append('%s: ran no test' % name)
            else:
                sums['passed'].append(name)
    return sums


def main():
    sums = sum_up(sys.argv[1])
    for name in sums['failed']:
        print('Failed: ' + name)
    if sums['skipped']:
        print('Skipped %d: %s' % (len(sums['skipped']), ', '.join(sums['skipped'])))
    print('%d passed, %d failed' % (len(sums['passed']), len(sums['failed'])))
    return 1 if sums['failed'] or not sums['passed'] else 0


if __name__ == '__main__':
    sys.exit(main())
