"""What stands in for a Mac's headers has what Darwin has and no more, and the look over the objects sees what is wrong."""
import json
import os
import re
import shutil
import struct
import subprocess
import sys
from pathlib import Path

import pytest

import objects

ROOT = Path(__file__).resolve().parents[2]
TOOLCHAIN = ROOT / 'tests/platform/macos/toolchain.cmake'

INCLUDES = '''
#include <chrono>
#include <charconv>
#include <cstdint>
#include <filesystem>
#include <fcntl.h>
#include <netdb.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <pthread.h>
#include <sched.h>
#include <semaphore.h>
#include <signal.h>
#include <spawn.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/random.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>
'''

NOT_ON_MACOS = [
    'int ends[2]; pipe2(ends, 0);', 'dup3(1, 2, 0);', 'accept4(0, nullptr, nullptr, 0);', 'fdatasync(0);', 'gettid();',
    'execvpe("", nullptr, nullptr);', 'fexecve(0, nullptr, nullptr);', 'syscall(1);', 'getresuid(nullptr, nullptr, nullptr);',
    'copy_file_range(0, nullptr, 0, nullptr, 0, 0);', 'posix_fadvise(0, 0, 0, 0);', 'posix_fallocate(0, 0, 0);',
    'int a = O_TMPFILE;', 'int a = O_PATH;', 'int a = O_DIRECT;', 'int a = SOCK_CLOEXEC;', 'int a = SOCK_NONBLOCK;',
    'int a = MSG_NOSIGNAL;', 'int a = MSG_MORE;', 'int a = MSG_CMSG_CLOEXEC;', 'int a = SO_PEERCRED;', 'int a = AF_NETLINK;',
    'int a = TCP_CORK;', 'int a = TCP_USER_TIMEOUT;', 'int a = TCP_KEEPIDLE;', 'int a = TCP_INFO;', 'int a = SIOCOUTQ;',
    'struct stat s; auto t = s.st_mtim;', 'clock_nanosleep(CLOCK_MONOTONIC, 0, nullptr, nullptr);', 'auto a = CLOCK_BOOTTIME;',
    'clock_gettime(1, nullptr);', 'timer_gettime(nullptr, nullptr);', 'ppoll(nullptr, 0, nullptr, nullptr);', 'int a = POLLRDHUP;',
    'sem_timedwait(nullptr, nullptr);', 'sem_init(nullptr, 0, 0);', 'getrandom(nullptr, 0, 0);', 'memfd_create("", 0);',
    'mremap(nullptr, 0, 0, 0);', 'int a = MAP_POPULATE;', 'pthread_setname_np(pthread_self(), "");',
    'pthread_setaffinity_np(pthread_self(), 0, nullptr);', 'pthread_condattr_setclock(nullptr, CLOCK_MONOTONIC);',
    'pthread_mutex_timedlock(nullptr, nullptr);', 'pthread_spin_lock(nullptr);', 'sched_getaffinity(0, 0, nullptr);',
    'sched_getcpu();', 'sched_setscheduler(0, 0, nullptr);', 'sigtimedwait(nullptr, nullptr, nullptr);', 'int a = SIGRTMIN;',
    'int a = SIGPWR;', 'secure_getenv("");', 'quick_exit(0);', 'mempcpy(nullptr, nullptr, 0);', 'explicit_bzero(nullptr, 0);',
    'prlimit(0, RLIMIT_NOFILE, nullptr, nullptr);', 'int a = RUSAGE_THREAD;', 'auto a = environ;', 'int a = POSIX_SPAWN_USEVFORK;',
    'gethostbyname_r("", nullptr, nullptr, 0, nullptr, nullptr);', 'fopencookie(nullptr, "", {});',
    # Other types than on Linux
    'timeval t{0, 1L << 40};', 'std::int64_t *a = static_cast<long *>(nullptr);', 'mode_t a{0x10000};',
    # Newer than the oldest macOS that we run on
    'char text[99]; std::to_chars(text, text + 99, 1.5);',
]
HEADERS_NOT_ON_MACOS = [
    'sys/epoll.h', 'sys/eventfd.h', 'sys/signalfd.h', 'sys/timerfd.h', 'sys/inotify.h', 'sys/prctl.h', 'sys/sendfile.h',
    'sys/sysinfo.h', 'sys/sysmacros.h', 'sys/statfs.h', 'sys/auxv.h', 'malloc.h', 'byteswap.h', 'elf.h', 'link.h', 'threads.h',
    'linux/limits.h', 'asm/unistd.h', 'gnu/libc-version.h', 'X11/Xlib.h', 'xcb/xcb.h',
]
ON_MACOS = [
    'pthread_setname_np("name");', 'int a = SO_NOSIGPIPE + SO_NWRITE;', 'int a = POSIX_SPAWN_CLOEXEC_DEFAULT | POSIX_SPAWN_SETSID;',
    'struct stat s; auto t = s.st_mtimespec; auto u = s.st_mtime;', 'timespec t; clock_gettime(CLOCK_MONOTONIC_RAW, &t);',
    'int a = TCP_NOTSENT_LOWAT;', 'int a = F_FULLFSYNC;', 'std::int64_t *a = static_cast<long long *>(nullptr);', 'int a = O_CLOEXEC | O_NOFOLLOW;',
    'std::filesystem::path("/tmp").filename();', 'char text[99]; std::to_chars(text, text + 99, 15);',
    'pollfd p{}; poll(&p, 1, 0);', 'waitid(P_PID, 1, nullptr, WEXITED | WNOWAIT);',
]


@pytest.fixture(scope='module')
def compiler(tmp_path_factory):
    """Compiles lines, a function for each: the numbers of those with an error, and what was said."""
    if not shutil.which('clang++-19'):
        pytest.skip('only where a Mac is compiled for, and not on one')
    folder = tmp_path_factory.mktemp('macos')
    (folder / 'flags.cmake').write_text('include("%s")\nmessage("${CMAKE_CXX_FLAGS_INIT}")\n' % TOOLCHAIN)
    flags = subprocess.run(['cmake', '-P', 'flags.cmake'], cwd=folder, capture_output=True, text=True, check=True).stderr.split()

    def run(includes, lines):
        functions = ''.join('void f%d() { %s }\n' % (number, line) for number, line in enumerate(lines))
        (folder / 'some.cpp').write_text(includes + functions)
        command = ['clang++-19', '--target=arm64-apple-macos13', '-std=c++20', '-ferror-limit=0', '-Werror', '-Wno-unused',
                   '-fsyntax-only', *flags, 'some.cpp']
        said = subprocess.run(command, cwd=folder, capture_output=True, text=True, check=False).stderr
        first = includes.count('\n') + 1
        return {int(found) - first for found in re.findall(r'^some\.cpp:(\d+):\d+: error:', said, re.MULTILINE)}, said
    return run


def test_nothing_that_darwin_lacks_compiles(compiler):
    errors, said = compiler(INCLUDES, NOT_ON_MACOS)
    assert [line for number, line in enumerate(NOT_ON_MACOS) if number not in errors] == [], said


def test_what_darwin_has_compiles(compiler):
    errors, said = compiler(INCLUDES, ON_MACOS)
    assert errors == set() and 'error' not in said, said


def test_headers_that_a_mac_lacks_are_not_found(compiler):
    includes = ''.join('#if __has_include(<%s>)\n#error %s\n#endif\n' % (name, name) for name in HEADERS_NOT_ON_MACOS)
    assert compiler(includes, [])[1] == ''


# What a declaration gives a name to: a function, a constant, a method, a property.
DECLARED = [r'^(?!typedef|static|return|#)[A-Za-z][\w ]*[ *](\w+)\([^;{]*\)[^;{]*;', r'^ {4}(\w+)(?: ORVALEN\w+\([^)]*\))? = ', r'^[-+] \([^)]*\)(\w+)',
            r'^@property.*?\*?(\w+)(?: ORVALEN\w+\([^)]*\)| __attribute__.*)?;']
# The runtime's own, without which nothing would compile, and what has a day from which on it may, or may not, be called.
UNCOMPARED = {'alloc', 'new', 'init', 'dealloc', 'count', 'initWithObjects', 'countByEnumeratingWithState', 'activate',
              'activateIgnoringOtherApps', '__CFStringMakeConstantString'}


def test_the_contract_compares_all_that_our_declarations_say():
    contract = ''.join((ROOT / 'platform/macos' / name).read_text() for name in ('SystemContract.cpp', 'SystemContract.mm'))
    for header in sorted((ROOT / 'tests/platform/macos/declarations').rglob('*.h')):
        declared = {name for pattern in DECLARED for name in re.findall(pattern, header.read_text(), re.MULTILINE)}
        assert [name for name in sorted(declared - UNCOMPARED) if not re.search(r'\b%s\b' % name, contract)] == [], header


MACH_O = struct.pack('<IIII', objects.MACH_O_64, objects.ARM64, 0, objects.OBJECT)
ELF = b'\x7fELF' + bytes(12)
PLIST = '''<?xml version="1.0" encoding="UTF-8"?><plist version="1.0"><dict><key>CFBundleExecutable</key><string>Orvalen</string>
<key>CFBundleIconFile</key><string>i</string><key>CFBundleIdentifier</key><string>a.b</string>
<key>CFBundleShortVersionString</key><string>1</string><key>LSMinimumSystemVersion</key><string>13.0</string></dict></plist>'''
PLIST_PATH = 'build/bin/Orvalen.app/Contents/Info.plist'


@pytest.fixture
def tree(tmp_path):
    """A small tree with nothing wrong in it, and a way to write into it."""
    def write(name, content=''):
        path = tmp_path / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(content if isinstance(content, bytes) else content.encode())

    def compiled(*sources, flags=' '.join(objects.FLAGS)):
        write('build/compile_commands.json', json.dumps([
            {'directory': str(tmp_path / 'build'), 'file': str(tmp_path / source),
             'command': 'clang++ %s -o %s.o -c %s' % (flags, source, source)} for source in sources]))
    write.compiled = compiled
    write.offences = lambda: list(objects.offences(str(tmp_path / 'build'), str(tmp_path)))

    for name in objects.LINUX_ONLY:
        write(name + 'Some.cpp' if name.endswith('/') else name)
    for source in ('core/A.cpp', 'platform/macos/B.mm'):
        write(source)
        write('build/%s.o' % source, MACH_O)
    compiled('core/A.cpp', 'platform/macos/B.mm')
    write(PLIST_PATH, PLIST)
    return write


def test_a_tree_that_is_compiled_whole_has_no_offence(tree):
    assert tree.offences() == []


def test_a_source_that_a_mac_does_not_build_is_named(tree):
    tree('ui/Forgotten.cpp')
    tree('platform/macos/Forgotten.mm')
    tree('tests/ui/NoneOfAMac.cpp')
    assert tree.offences() == ['platform/macos/Forgotten.mm: a Mac does not build it', 'ui/Forgotten.cpp: a Mac does not build it']


@pytest.mark.parametrize('content, reason', [
    (ELF, 'is no Mach-O file'), (b'', 'is no Mach-O file'),
    (struct.pack('<IIII', objects.MACH_O_64, 0x01000007, 0, objects.OBJECT), 'is for another processor'),
    (struct.pack('<IIII', objects.MACH_O_64, objects.ARM64, 0, 2), 'is no object'),
])
def test_an_object_that_is_none_for_a_mac_is_named(tree, content, reason):
    tree('build/core/A.cpp.o', content)
    assert tree.offences() == ['core/A.cpp: ' + reason]


def test_a_source_that_was_not_compiled_is_named(tree, tmp_path):
    (tmp_path / 'build/core/A.cpp.o').unlink()
    assert tree.offences() == ['core/A.cpp: was not compiled']


def test_a_compilation_that_is_lenient_is_named(tree):
    tree.compiled('core/A.cpp', 'platform/macos/B.mm', flags=' '.join(set(objects.FLAGS) - {'-Wunguarded-availability'}))
    assert tree.offences() == ['%s: was compiled without -Wunguarded-availability' % source
                               for source in ('core/A.cpp', 'platform/macos/B.mm')]


def test_the_list_of_what_is_for_linux_alone_stays_true(tree, tmp_path):
    tree.compiled('core/A.cpp', 'platform/macos/B.mm', 'platform/linux/Some.cpp')
    tree('build/platform/linux/Some.cpp.o', MACH_O)
    (tmp_path / 'platform/qt/StatusIcon.cpp').unlink()
    assert tree.offences() == ['platform/linux/Some.cpp: is for Linux alone',
                               'platform/qt/StatusIcon.cpp: is said to be for Linux alone, and is not there']


@pytest.mark.parametrize('before, after, reason', [
    ('a.b', '${ORVALEN_APPLICATION_ID}', 'a variable was not replaced'), ('a.b', '@ORVALEN_APPLICATION_ID@', 'a variable was not replaced'),
    ('a.b', '', 'CFBundleIdentifier is missing'), ('<string>Orvalen', '<string>orvalen', 'the program is called Orvalen'),
])
def test_a_bundle_that_would_not_start_is_named(tree, before, after, reason):
    tree(PLIST_PATH, PLIST.replace(before, after))
    assert tree.offences() == ['Info.plist: ' + reason]


def test_a_broken_plist_is_named(tree):
    tree(PLIST_PATH, PLIST[:-9])
    assert len(tree.offences()) == 1


def test_these_are_left_out_where_nothing_makes_objects_for_a_mac(tmp_path):
    run = subprocess.run([sys.executable, '-m', 'pytest', '-q', '-p', 'no:cacheprovider', __file__, '-k', 'compiles or lacks'],
                         env={**os.environ, 'PATH': str(tmp_path)}, capture_output=True, text=True, check=False)
    assert run.returncode == 0 and re.search(r'^3 skipped', run.stdout, re.MULTILINE), run.stdout
