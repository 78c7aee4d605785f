#!/usr/bin/python3
"""Form and lint: clang-format and clang-tidy over our sources, and house rules that a machine can see.

The linter, which brings its compiler's warnings, looks at the program. Tests and benchmarks would take it three times as
long; --tests asks the compiler alone what it thinks of them.

lint.py [--only format|tidy|house]... [--tests] [BUILD_FOLDER]

BUILD_FOLDER holds compile_commands.json (build/clang or build/release). What clang-tidy has found clean is remembered there
and looked at again only after a change of the file, of a header it includes, or of the rules. Status 1 for any finding.
"""
import argparse
import concurrent.futures
import hashlib
import json
import os
import re
import shlex
import subprocess
import sys
from pathlib import Path

from sources import SUFFIXES, source_files

ROOT = Path(__file__).resolve().parents[2]


def parallel(function, items):
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        return list(pool.map(function, items))


def check_format():
    """One line per file: the rest says `clang-format -i`."""
    def places(name):
        run = subprocess.run(['clang-format', '--dry-run', '-Werror', name], cwd=ROOT, text=True, stdout=subprocess.PIPE,
                             stderr=subprocess.STDOUT)
        lines = re.findall(r'^\S+?:(\d+):\d+: ', run.stdout, re.MULTILINE)
        if run.returncode:
            return '%s:%s: not as clang-format -i would leave it' % (name, lines[0] if lines else '1')
        return None

    return [finding for finding in parallel(places, source_files(ROOT)) if finding]


def fingerprint(entry):
    """Changes with anything that could change clang-tidy's opinion: the rules, the command, every file of ours it reads."""
    command = entry['command'].split()
    # Only what lies in the tree; system headers change with the machine, and then so does the build folder.
    listing = [word for word in command if word.startswith(('-I', '-D', '-std'))]
    includes = subprocess.run(['clang++', *listing, *system_includes(command), '-MM', '-MG', entry['file']],
                              cwd=entry['directory'], text=True, capture_output=True)
    if includes.returncode:
        return None
    digest = hashlib.sha256(entry['command'].encode())
    for name in sorted(set(includes.stdout.replace('\\\n', ' ').split()[1:]) | {str(ROOT / '.clang-tidy')}):
        path = Path(entry['directory'], name)
        digest.update(path.read_bytes() if path.exists() else name.encode())
    return digest.hexdigest()


def system_includes(command):
    return [word for i, word in enumerate(command[1:]) for word in (command[i], word) if command[i] == '-isystem']


def is_test(name):
    return name.startswith(('tests/', 'bench/'))


def opinion(name, entry, build):
    """The command that looks at a file."""
    if is_test(name):
        return [*shlex.split(entry['command']), '-fsyntax-only', '-Werror']
    return ['clang-tidy', '--quiet', '-p', str(build), '--extra-arg=-Wno-unknown-warning-option', entry['file']]


def check_tidy(build, tests):
    database = json.loads((build / 'compile_commands.json').read_text())
    ours = set(source_files(ROOT))
    entries = {}
    for entry in database:  # a file that two targets compile is looked at once
        name = os.path.relpath(entry['file'], ROOT).replace(os.sep, '/')
        if name in ours and (tests or not is_test(name)):
            entries.setdefault(name, entry)
    remembered = build / 'tidy'
    remembered.mkdir(exist_ok=True)

    def tidy(item):
        name, entry = item
        mark = remembered / (name.replace('/', '_') + '.clean')
        state = fingerprint(entry)
        if state and mark.exists() and mark.read_text() == state:
            return None
        run = subprocess.run(opinion(name, entry, build), cwd=entry['directory'], text=True, stdout=subprocess.PIPE,
                             stderr=subprocess.PIPE)
        if run.returncode:
            return (run.stdout + run.stderr).strip()
        if state:
            mark.write_text(state)
        return None

    return [finding for finding in parallel(tidy, sorted(entries.items())) if finding]


HOME = re.compile(r'(?<![\w.$}/])(/home/\w|/Users/\w|/root/\w)')
TEXT = SUFFIXES + ('.py', '.sh', '.md', '.txt', '.cmake', '.json', '.ini', '.xml', '.desktop', '.conf', '.yml', '.html', '.svg')


def house_findings(name, text):
    """What a machine can see in one text file."""
    if '\r' in text:
        yield '%s: line ends of another system' % name
    if text and not text.endswith('\n'):
        yield '%s: the last line does not end' % name
    if text.endswith('\n\n'):
        yield '%s: empty lines at the end' % name
    for number, line in enumerate(text.splitlines(), 1):
        if line != line.rstrip():
            yield '%s:%d: space at the end of the line' % (name, number)
        if re.match(r'(<{7}|>{7}|={7})( |$)', line):
            yield '%s:%d: a merge that was not finished' % (name, number)
        if HOME.search(line):
            yield "%s:%d: a path in somebody's home: %s" % (name, number, line.strip())


def repository_files():
    listing = subprocess.run(['git', 'ls-files', '--cached', '--others', '--exclude-standard', '-z'], cwd=ROOT,
                             text=True, stdout=subprocess.PIPE, check=True).stdout
    return [name for name in listing.split('\0') if name and (ROOT / name).is_file()]


def check_house():
    findings = []
    for name in repository_files():
        data = (ROOT / name).read_bytes()
        if name.startswith(('assets/', 'tests/fuzz/corpus/')) or b'\0' in data:
            continue
        if not name.endswith(TEXT) and '.' in os.path.basename(name)[1:]:
            continue
        findings += house_findings(name, data.decode())
    return findings


def main():
    arguments = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    arguments.add_argument('--only', action='append', choices=['format', 'tidy', 'house'])
    arguments.add_argument('--tests', action='store_true')
    arguments.add_argument('build', nargs='?', type=Path, default=ROOT / 'build/release')
    options = arguments.parse_args()
    checks = {'house': check_house, 'format': check_format, 'tidy': lambda: check_tidy(options.build.resolve(), options.tests)}
    failed = False
    for name, check in checks.items():
        if options.only and name not in options.only:
            continue
        findings = check()
        print('%s: %s' % (name, 'clean' if not findings else '\n' + '\n'.join(findings)), flush=True)
        failed = failed or bool(findings)
    return 1 if failed else 0


if __name__ == '__main__':
    sys.exit(main())
