#!/usr/bin/python3
"""Compares every #include with the picture of the program: arrows point downwards only.

    app -> ui -> core system streaming mirroring report -> platform/*.h <- platform/<family>

include_rule.py [ROOT]    Prints "file:line: reason: the line" for every offence; status 1 if there is one.
"""
import os
import sys
from collections import namedtuple

from headers import library_of
from sources import directives, source_files

ALL = object()

# One room of the house: the folders of ours it may include from, and the libraries.
Room = namedtuple('Room', 'ours libraries')

RULES = {'standard', 'small'}
EVERYTHING = Room(ALL, ALL)
ALL_BUT_MACOS = Room(ALL, {'standard', 'small', 'posix', 'qt', 'boost', 'jpeg', 'linux', 'other'})
ROOMS = {
    # One file for each system names its adapters; the rest is built on all of them.
    'app/NativePlatformLinux': Room(ALL, {'standard', 'posix', 'qt', 'linux'}),
    'app/NativePlatformMacos': Room(ALL, {'standard', 'posix', 'qt', 'macos'}),
    'app': Room({'app', 'ui', 'core', 'core/AppDelegate', 'system', 'streaming', 'mirroring', 'report', 'platform',
                 'platform/posix', 'platform/qt', 'platform/simulated', 'assets'}, {'standard', 'qt'}),
    'tests/platform/macos': EVERYTHING,
    'tests': ALL_BUT_MACOS,
    'bench': ALL_BUT_MACOS,
    'ui': Room({'ui', 'core', 'core/AppDelegate', 'system', 'streaming', 'mirroring', 'report', 'platform', 'assets'},
               {'standard', 'qt'}),
    # What the window and the tray draw alike.
    'assets': Room(set(), {'standard', 'qt'}),
    # The start-up knows the rooms above; nothing else in core does.
    'core/AppDelegate': Room({'core', 'system', 'streaming', 'mirroring', 'report', 'platform'}, RULES),
    'core': Room({'platform'}, RULES),
    'streaming': Room({'core', 'platform'}, RULES),
    'mirroring': Room({'core', 'platform'}, RULES),
    'report': Room({'core', 'platform'}, RULES),
    'system': Room({'core', 'streaming', 'platform'}, RULES),
    # Programs of their own, without Qt.
    'streaming/server': Room({'platform/posix'}, {'standard', 'posix', 'boost', 'jpeg'}),
    'streaming/screencapture': Room({'platform/posix', 'platform/linux/X11Session'},
                                    {'standard', 'posix', 'jpeg', 'linux'}),
    'platform': Room(set(), {'standard'}),
    'platform/posix': Room({'platform'}, {'standard', 'posix'}),
    'platform/qt': Room({'platform', 'platform/posix', 'assets'}, {'standard', 'posix', 'qt'}),
    'platform/simulated': Room({'platform', 'platform/posix', 'platform/qt'}, {'standard', 'posix', 'qt'}),
    # What an X server says of its session, for the adapters and for the capture command.
    'platform/linux/X11Session': Room(set(), {'standard', 'linux'}),
    'platform/linux': Room({'platform', 'platform/posix', 'platform/qt', 'platform/linux/X11Session'},
                           {'standard', 'posix', 'qt', 'linux', 'small'}),
    'platform/macos': Room({'platform', 'platform/posix', 'platform/qt'},
                           {'standard', 'posix', 'qt', 'macos', 'small'}),
}

# These stand between a compiler and the headers of a C library.
STAND_INS = 'tests/platform/macos/libc/'

REASONS = {
    'qt': 'Qt does not belong here',
    'posix': 'a system header does not belong here',
    'linux': 'a header of Linux or its desktop does not belong here',
    'macos': 'a header of macOS does not belong here',
}


def room_of(path):
    """The room a file lies in: the longest prefix that names one; None for an unknown folder."""
    parts = os.path.splitext(path)[0].split('/')
    for length in range(len(parts), 0, -1):
        name = '/'.join(parts[:length])
        if name in ROOMS:
            # A new family of adapters has to be drawn into the picture first.
            return None if name == 'platform' and len(parts) > 2 else name
    return None


def offence(root, path, target):
    """Why `path` must not include `target`, which is written with its quotes or brackets; None if it may."""
    here = room_of(path)
    if here is None:
        return 'no rule knows this folder'
    room = ROOMS[here]
    if len(target) < 3 or (target[0], target[-1]) not in (('"', '"'), ('<', '>')):
        return 'an include must name its file'
    name = target[1:-1]
    exists = os.path.isfile(os.path.join(root, name))
    if target[0] == '"':
        if os.path.splitext(name)[1] == '.moc':
            return None if 'qt' in (room.libraries if room.libraries is not ALL else {'qt'}) else REASONS['qt']
        if '..' in name.split('/') or not exists:
            return 'quotes are for our own headers, named from the root of the tree'
    elif exists:
        return 'our own headers are included with quotes'
    if target[0] == '"':
        there = room_of(name)
        if there is None:
            return 'no rule knows that folder'
        if there == here or room.ours is ALL or there in room.ours:
            return None
        if there.startswith('platform/') and here.startswith('app'):
            return 'only app/NativePlatform names the adapters of one system'
        if there.startswith('platform/') and not here.startswith('platform'):
            return 'only app names the adapters'
        return '%s may not know %s' % (here, there)
    library = library_of(name)
    if room.libraries is ALL or library in room.libraries:
        return None
    return REASONS.get(library, '%s may not use this library' % here)


def offences(root):
    """Every offence of the tree as one printable line."""
    for path in source_files(root):
        if path.startswith(STAND_INS):
            continue
        for line, directive, rest in directives(os.path.join(root, path)):
            if directive not in ('include', 'include_next', 'import'):
                continue
            reason = offence(root, path, rest) if directive != 'include_next' else 'no second guessing of search paths'
            if reason:
                yield '%s:%d: %s: #%s %s' % (path, line, reason, directive, rest)


def main():
    root = sys.argv[1] if len(sys.argv) > 1 else os.path.join(os.path.dirname(os.path.abspath(__file__)), '..', '..')
    found = list(offences(root))
    print('\n'.join(found) if found else 'Every include follows the picture.')
    return 1 if found else 0


if __name__ == '__main__':
    sys.exit(main())
