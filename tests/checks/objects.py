#!/usr/bin/python3
"""Looks over what was compiled for a Mac: everything that a Mac builds, and really for a Mac.

objects.py BUILD [ROOT]    BUILD: a build folder of the preset macos-objects, its target objects built. Prints a line for
                           every source that was left out, every object that is none for an Apple-silicon Mac, and what is
                           wrong with the bundle's Info.plist; status 1 if there is one.
"""
import json
import os
import plistlib
import re
import struct
import sys
from xml.parsers.expat import ExpatError

from sources import source_files

BUILT = ('app/', 'assets/', 'core/', 'mirroring/', 'platform/', 'report/', 'streaming/', 'system/', 'ui/')
SUFFIXES = ('.cpp', '.mm')

# What a Mac has no use for. A folder ends with a slash.
LINUX_ONLY = (
    'app/NativePlatformLinux.cpp',
    'platform/linux/',
    'platform/qt/ApplicationQt.cpp',
    'platform/qt/ColorSchemePortal.cpp',
    'platform/qt/SettingsStoreQt.cpp',
    'platform/qt/StatusBarQt.cpp',
    'platform/qt/StatusIcon.cpp',
    'platform/qt/StatusItemQt.cpp',
    'streaming/screencapture/',
)
FLAGS = ('--target=arm64-apple-macos13', '-arch arm64', '-Wall', '-Wextra', '-Wpedantic', '-Wunguarded-availability', '-Werror')

MACH_O_64 = 0xfeedfacf
ARM64 = 0x0100000c
OBJECT = 1


def is_linux_only(source):
    return any(source.startswith(name) if name.endswith('/') else source == name for name in LINUX_ONLY)


def wrong_with_object(path):
    """What is wrong with an object file; None if nothing is."""
    try:
        with open(path, 'rb') as file:
            header = file.read(16)
    except OSError:
        return 'was not compiled'
    if len(header) < 16 or struct.unpack('<I', header[:4])[0] != MACH_O_64:
        return 'is no Mach-O file'
    _, processor, _, kind = struct.unpack('<IIII', header)
    if processor != ARM64:
        return 'is for another processor'
    return None if kind == OBJECT else 'is no object'


def wrong_with_command(command):
    missing = [flag for flag in FLAGS if not re.search(r'(^|\s)%s(\s|$)' % re.escape(flag), command)]
    return 'was compiled without ' + ', '.join(missing) if missing else None


def wrong_with_bundle(build):
    path = os.path.join(build, 'bin/Orvalen.app/Contents/Info.plist')
    try:
        with open(path, 'rb') as file:
            content = file.read()
        plist = plistlib.loads(content)
    except (OSError, plistlib.InvalidFileException, ValueError, ExpatError) as error:
        yield 'Info.plist: %s' % error
        return
    if b'${' in content or re.search(rb'@\w+@', content):
        yield 'Info.plist: a variable was not replaced'
    for key in ('CFBundleExecutable', 'CFBundleIconFile', 'CFBundleIdentifier', 'CFBundleShortVersionString',
                'LSMinimumSystemVersion'):
        if not plist.get(key):
            yield 'Info.plist: %s is missing' % key
    if plist.get('CFBundleExecutable') not in (None, 'Orvalen'):
        yield 'Info.plist: the program is called Orvalen'


def offences(build, root):
    with open(os.path.join(build, 'compile_commands.json'), encoding='utf-8') as file:
        commands = json.load(file)
    compiled = set()
    for entry in commands:
        source = os.path.relpath(os.path.join(entry['directory'], entry['file']), root).replace(os.sep, '/')
        compiled.add(source)
        found = re.search(r'\s-o (\S+)', entry['command'])
        if os.path.basename(source).startswith('cmake_pch'):
            continue
        for wrong in (wrong_with_object(os.path.join(entry['directory'], found.group(1))) if found else 'has no object',
                      wrong_with_command(entry['command']) if source.startswith(BUILT) else None,
                      'is for Linux alone' if is_linux_only(source) else None):
            if wrong:
                yield '%s: %s' % (source, wrong)
    for source in source_files(root):
        if source.startswith(BUILT) and source.endswith(SUFFIXES) and not is_linux_only(source) and source not in compiled:
            yield '%s: a Mac does not build it' % source
    for name in LINUX_ONLY:
        if not os.path.exists(os.path.join(root, name)):
            yield '%s: is said to be for Linux alone, and is not there' % name
    yield from wrong_with_bundle(build)


def main():
    build = os.path.abspath(sys.argv[1])
    root = sys.argv[2] if len(sys.argv) > 2 else os.path.join(os.path.dirname(os.path.abspath(__file__)), '..', '..')
    found = list(offences(build, os.path.abspath(root)))
    print('\n'.join(found) if found else 'All that a Mac builds has been compiled for one.')
    return 1 if found else 0


if __name__ == '__main__':
    sys.exit(main())
