"""./run and ./test on a Mac, played on whatever machine this is; and the hosted build, which calls them."""
import re
import shutil
import sys
from pathlib import Path

import pytest

from commands import Commands

ROOT = Path(__file__).resolve().parents[2]

# What a Mac has not, or what would change another system's packages.
OTHER_SYSTEMS = ('apt-get', 'dpkg-query', 'flock', 'nproc', 'renice', 'setarch', 'setpriv', 'sudo', 'timeout', 'Xvfb')

INSTALLED = '''
case $1 in
    list) case " $MISSING " in *" ${!#} "*) exit 1 ;; esac ;;
    --prefix) echo "/brewed${2:+/opt/$2}" ;;
    install) exit "$INSTALL_STATUS" ;;
esac
'''

# A Python that makes environments, and in one of them runs tests; what counts those is the real one.
PYTHON = '''
if [ "$1 $2" = "-m venv" ]; then
    mkdir -p "$4/bin" && cp "$0" "$4/bin/python"
elif [ "$1" = -c ]; then
    exit "$MODULES_STATUS"
elif [ "$1 $2" = "-m pytest" ]; then
    while [ "$1" != --junitxml ]; do shift; done
    echo '<testsuites><testsuite><testcase classname="checks" name="one"/></testsuite></testsuites>' >"$2"
elif [ "$1" = tests/checks/count.py ]; then
    exec REAL_PYTHON "$@"
fi
'''

CTEST = '''
while [ "$1" != --output-junit ]; do shift; done
printf '%s' '<testsuite><testcase classname="a" name="b" status="run"/><testcase classname="c" name="d" status="run">' \\
    "$FAILURE" '</testcase></testsuite>' >"$2"
[ -z "$FAILURE" ]
'''

BUILD_PACKAGES = ['cmake', 'ninja', 'pkgconf', 'qtbase', 'qtsvg', 'boost', 'icu4c', 'qrencode', 'nlohmann-json']
TEST_PACKAGES = ['googletest', 'python']


class Mac:
    def __init__(self, folder):
        self.root = folder / 'a tree'
        for name in ('run', 'test', 'packaging/build.sh', 'packaging/steps.sh', 'packaging/macos.sh', 'tests/checks/count.py'):
            (self.root / name).parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(ROOT / name, self.root / name)
        self.commands = Commands(folder / 'commands')
        self.commands.write('uname', '#!/bin/sh\necho Darwin\n')
        for name in OTHER_SYSTEMS:
            self.commands.add(name, 'exit 97')
        for name in ('cmake', 'ninja', 'open'):
            self.commands.add(name)
        self.commands.add('brew', INSTALLED)
        self.commands.add('sysctl', '[ "$*" = "-n hw.ncpu" ] && echo 8')
        self.commands.add('python3', PYTHON.replace('REAL_PYTHON', sys.executable))
        self.commands.add('ctest', CTEST)
        self.commands.environment.update(MISSING='', INSTALL_STATUS='0', MODULES_STATUS='0', FAILURE='')

    def start(self, name, **environment):
        self.commands.environment.update(environment)
        return self.commands.run(self.root / name, cwd='/')

    def calls(self, *left_out):
        """All calls but those, the tree's own path made short."""
        return [[word.replace(str(self.root), 'ROOT') for word in call] for call in self.commands.called()
                if call[0] not in left_out]


@pytest.fixture
def mac(tmp_path):
    mac = Mac(tmp_path)
    yield mac
    assert not [call for call in mac.calls() if call[0] in OTHER_SYSTEMS]


def installed(mac):
    return [call[2:] for call in mac.calls() if call[:2] == ['brew', 'install']]


# ---- ./run

def test_run_builds_the_program_and_opens_its_bundle(mac):
    run = mac.start('run')
    assert (run.returncode, run.stderr) == (0, '')
    assert mac.calls('brew') == [
        ['cmake', '--preset', 'release', '-DORVALEN_BENCH=OFF', '-DORVALEN_TESTS=OFF',
         '-DCMAKE_COMPILE_WARNING_AS_ERROR=OFF'],
        ['ninja', '-C', 'ROOT/build/release', 'orvalen', 'orvalen-stream-server'],
        ['open', 'ROOT/build/release/bin/Orvalen.app'],
    ]
    assert installed(mac) == []


def test_run_installs_what_is_missing_and_nothing_else(mac):
    assert mac.start('run', MISSING='ninja qtsvg').returncode == 0
    assert installed(mac) == [['--formula', 'ninja', 'qtsvg']]
    asked = [call[-1] for call in mac.calls() if call[:2] == ['brew', 'list']]
    assert asked == BUILD_PACKAGES


def test_the_build_finds_homebrew_and_its_icu(mac):
    mac.commands.add('cmake', 'echo "$CMAKE_PREFIX_PATH $PKG_CONFIG_PATH"')
    assert '/brewed /brewed/opt/icu4c/lib/pkgconfig\n' in mac.start('run').stdout


def test_packages_that_cannot_be_had_are_named(mac):
    run = mac.start('run', MISSING='boost', INSTALL_STATUS='1')
    assert (run.returncode, run.stderr) == (1, 'These packages could not be installed: boost\n')
    assert mac.calls('brew') == []


def test_without_homebrew_a_sentence_says_what_to_do(mac):
    (mac.commands.folder / 'brew').unlink()
    if shutil.which('brew') or Path('/opt/homebrew/bin/brew').exists():
        pytest.skip('this machine has Homebrew')
    run = mac.start('run')
    assert run.returncode == 1
    assert run.stderr.startswith('Homebrew is missing') and run.stderr.count('\n') == 1
    assert mac.calls() == []


@pytest.mark.parametrize('command', ['cmake', 'ninja'])
def test_a_build_that_fails_opens_nothing(mac, command):
    mac.commands.add(command, 'exit 1')
    run = mac.start('run')
    assert (run.returncode, run.stderr) == (1, 'Orvalen could not be built.\n')
    assert 'open' not in [call[0] for call in mac.calls()]


def test_a_second_build_waits_for_the_first_and_the_program_holds_no_lock(mac):
    lock = "import fcntl, sys\nfile = open(%r, 'a')\n" % str(mac.root / 'build/lock')
    free = lock + 'fcntl.flock(file, fcntl.LOCK_EX | fcntl.LOCK_NB)\nprint("free")'
    for name in ('ninja', 'open'):
        mac.commands.add(name, '%s -c \'%s\' 2>/dev/null || echo held' % (sys.executable, free.replace("'", '"')))
    assert mac.start('run').stdout.split() == 'held Starting Orvalen. Command+Q ends it. free'.split()


# ---- ./test

def test_test_checks_builds_and_counts(mac):
    run = mac.start('test', MISSING=' '.join(TEST_PACKAGES))
    assert (run.returncode, run.stderr) == (0, '')
    assert run.stdout.splitlines()[-1] == '6 passed, 0 failed'
    assert installed(mac) == [['--formula', *TEST_PACKAGES]]
    assert mac.calls('brew', 'sysctl') == [
        ['python3', '-m', 'venv', '--clear', 'ROOT/build/python'],
        ['python', '-c', 'import numpy, pytest, yaml'],
        ['python', '-m', 'pytest', '--rootdir', 'tests/checks', '-c', 'tests/checks/pytest.ini', '--junitxml',
         'ROOT/build/results/checks.xml', 'tests/checks'],
        ['cmake', '--preset', 'release', '-DORVALEN_BENCH=OFF', '-DORVALEN_TESTS=OFF',
         '-DCMAKE_COMPILE_WARNING_AS_ERROR=ON'],
        ['ninja', '-k', '0', '-C', 'build/release'],
        ['cmake', '--preset', 'release', '--fresh', '-B', 'build/rules', '-DORVALEN_RULES_ONLY=ON', '-DORVALEN_TESTS=ON'],
        ['ninja', '-k', '0', '-C', 'build/rules'],
        ['ctest', '--test-dir', 'build/rules', '--output-on-failure', '--no-tests=error', '-j8', '--output-junit',
         'ROOT/build/results/units.xml'],
        ['python', 'tests/checks/count.py', 'ROOT/build/results'],
    ]


def test_test_gets_the_modules_that_its_python_lacks(mac):
    mac.start('test', MODULES_STATUS='1')
    assert ['python', '-m', 'pip', 'install', '--quiet', 'numpy', 'pytest', 'pyyaml'] in mac.calls()


def test_a_failed_case_is_counted_and_the_status_says_so(mac):
    run = mac.start('test', FAILURE='<failure/>')
    assert run.returncode == 1
    assert run.stdout.splitlines()[-2:] == ['Failed: units: c.d', '5 passed, 1 failed']


def test_a_build_that_breaks_is_counted_and_its_tests_are_not_run(mac):
    mac.commands.add('ninja', '[ "${!#}" = build/release ]')
    run = mac.start('test')
    assert run.returncode == 1
    assert run.stdout.splitlines()[-2:] == ['Failed: build-rules (status 1)', '3 passed, 1 failed']
    assert 'ctest' not in [call[0] for call in mac.calls()]


def test_without_packages_the_last_line_counts_all_the_same(mac):
    run = mac.start('test', MISSING='qtbase', INSTALL_STATUS='1')
    assert run.returncode == 1 and run.stdout.splitlines()[-1] == '0 passed, 1 failed'


def test_a_step_that_takes_too_long_is_ended(mac):
    script = '. "%s"; limit=1 bounded sleep 30; echo $?' % (ROOT / 'packaging/macos.sh')
    run = mac.commands.run('bash', '-uc', 'root=/; ' + script)
    assert run.stdout.split()[-1] == '142'  # by its alarm


# ---- What bash 3.2 cannot do, in what is read on a Mac. ./run and ./test are read up to where they turn off.

NEWER = re.compile(r'''
    (?<!:)\bflock\b(?!\() | \b(mapfile|readarray|coproc|setpriv|timeout|nproc|setarch|renice|realpath|tac|stdbuf)\b |
    (declare|local|typeset)\s+-\w*[Agnlu] | wait\s+-n | \bexec\s+\{ | \$\{\w+(\[[^]]*\])?(,|\^|@[A-Z]) | &>> | \|& |
    \$\{\w+\[-\d | -v\s+\w+\s*\] | ;;?& | \{\d+\.\.\d+\.\.\d+\} | %\(.*\)T | readlink\s+-f | sed\s+-i | grep\s+-\w*P |
    \bEPOCH|\bBASHPID\b | \$\{[\w]+: \s*-\d | shopt\s+-s\s+(globstar|lastpipe) | read\s+[^|;]*-t\s*0?\.\d | =\(\)
''', re.VERBOSE)


def newer_words(text):
    code = re.sub(r'(^|\s)#.*', '', text, flags=re.MULTILINE)
    return [match.group() for match in NEWER.finditer(code)]


def read_on_a_mac(name):
    text = (ROOT / name).read_text()
    if name in ('run', 'test'):
        head, turn, _ = text.partition('\n    exit\nfi\n')
        assert turn and 'uname' in head
        return head
    if name == 'packaging/build.sh':  # of which a Mac calls this
        return re.search(r'^configurePreset\(\) \{.*?^\}', text, re.MULTILINE | re.DOTALL).group()
    return text


@pytest.mark.parametrize('name', ['run', 'test', 'packaging/build.sh', 'packaging/steps.sh', 'packaging/macos.sh',
                                  'packaging/macos/sign', 'packaging/macos/notarise'])
def test_what_a_mac_reads_its_bash_understands(name):
    assert newer_words(read_on_a_mac(name)) == []


@pytest.mark.parametrize('line', [
    'declare -A ages', 'local -n name=$1', 'mapfile -t lines', 'exec {lock}>file', 'echo "${name,,}" "${name^}"', 'wait -n 3',
    'make |& tee', 'make &>>log', 'jobs=$(nproc)', 'timeout 3 make', 'flock 9', 'missing=()', '[[ -v name ]]', 'echo "${a[-1]}"',
])
def test_what_it_does_not_understand_is_seen(line):
    assert newer_words('true\n%s\n' % line)


# ---- The hosted build

def workflow():
    yaml = pytest.importorskip('yaml')
    return yaml.safe_load((ROOT / '.github/workflows/ci.yml').read_text())


def commands_of(job):
    return [step['run'] for step in job['steps'] if 'run' in step]


def test_the_hosted_build_tests_both_systems_with_one_command():
    jobs = workflow()['jobs']
    assert set(jobs) == {'linux', 'macos'}
    assert jobs['linux']['container']['image'] == 'debian:12'
    assert jobs['macos']['runs-on'] == 'macos-15' and 'container' not in jobs['macos']
    for job in jobs.values():
        assert commands_of(job).count('./test') == 1
        assert 0 < job['timeout-minutes'] <= 120
        assert [step['uses'] for step in job['steps'] if 'uses' in step][0] == 'actions/checkout@v4'


def test_the_hosted_build_keeps_the_macs_bundle_signed_after_it_was_deployed():
    job = workflow()['jobs']['macos']
    commands = commands_of(job)
    order = [next(i for i, command in enumerate(commands) if command.startswith(word))
             for word in ('./test', 'cmake --install', 'packaging/macos/deploy', 'packaging/macos/sign', 'ditto')]
    assert order == sorted(order)
    assert job['steps'][-1]['with']['path'] == commands[order[-1]].split()[-1]
    for command in commands:
        if command.startswith('packaging/'):
            assert (ROOT / command.split()[0]).exists()


def test_the_hosted_build_may_only_read_and_replaces_its_older_self():
    content = workflow()
    assert content['permissions'] == {'contents': 'read'}
    assert all('permissions' not in job for job in content['jobs'].values())
    assert content['concurrency']['cancel-in-progress'] is True
    assert set(content[True]) == {'push', 'pull_request', 'workflow_dispatch'}  # "on" is a truth value in this language
