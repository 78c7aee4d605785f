#!/usr/bin/python3
"""Looks for code that asks at compile time which system it is on: only adapters and build files may.

system_conditions.py [ROOT]    Prints "file:line: reason: the line" for every offence; status 1 if there is one.
"""
import os
import re
import sys

from sources import directives, source_files

SYSTEM = re.compile(
    r'\b(_*linux_*|_*gnu_linux_*|__ANDROID__|__APPLE__|__MACH__|_WIN32|_WIN64|WIN32|__CYGWIN__|__MINGW32__|_*unix_*|'
    r'__FreeBSD__|__NetBSD__|__OpenBSD__|__sun|Q_OS_\w+|TARGET_OS_\w+|BOOST_OS_\w+|__has_include|__has_include_next)\b')


def offences(root):
    for path in source_files(root):
        if path.startswith('platform/'):
            continue
        for line, directive, rest in directives(os.path.join(root, path)):
            if directive in ('if', 'ifdef', 'ifndef', 'elif', 'elifdef', 'elifndef') and SYSTEM.search(rest):
                yield '%s:%d: the system is a matter of platform/: #%s %s' % (path, line, directive, rest)


def main():
    root = sys.argv[1] if len(sys.argv) > 1 else os.path.join(os.path.dirname(os.path.abspath(__file__)), '..', '..')
    found = list(offences(root))
    print('\n'.join(found) if found else 'Nobody outside platform/ asks for the system.')
    return 1 if found else 0


if __name__ == '__main__':
    sys.exit(main())
