"""What makes the program an application of a Mac: its list of properties, its icon, and what packs and signs the bundle."""
import importlib.machinery
import importlib.util
import json
import plistlib
import shutil
import stat
import struct
import subprocess
import sys
import xml.etree.ElementTree
from pathlib import Path

import pytest

from commands import Commands

ROOT = Path(__file__).resolve().parents[2]
MACOS = ROOT / 'packaging/macos'

REASON = 'Orvalen shows your screen to the phone or tablet that you choose, on your own network.'


# ---- The list of properties

def configured(folder, **variables):
    """Info.plist as the build makes it."""
    script = folder / 'configure.cmake'
    script.write_text('configure_file("%s" "%s" @ONLY)\n' % (MACOS / 'Info.plist.in', folder / 'Info.plist'))
    subprocess.run(['cmake', *('-D%s=%s' % item for item in variables.items()), '-P', str(script)], check=True)
    return plistlib.loads((folder / 'Info.plist').read_bytes())


def test_the_properties_say_who_the_program_is_and_what_it_needs(tmp_path):
    assert configured(tmp_path, ORVALEN_APPLICATION_ID='org.some.Thing', PROJECT_VERSION='4.5.6',
                      CMAKE_OSX_DEPLOYMENT_TARGET='13.7') == {
        'CFBundleDevelopmentRegion': 'en',
        'CFBundleExecutable': 'Orvalen',
        'CFBundleIconFile': 'Orvalen.icns',
        'CFBundleIdentifier': 'org.some.Thing',
        'CFBundleInfoDictionaryVersion': '6.0',
        'CFBundleName': 'Orvalen',
        'CFBundlePackageType': 'APPL',
        'CFBundleShortVersionString': '4.5.6',
        'CFBundleVersion': '4.5.6',
        'LSApplicationCategoryType': 'public.app-category.utilities',
        'LSMinimumSystemVersion': '13.7',
        'NSHighResolutionCapable': True,
        'NSHumanReadableCopyright': 'Copyright © 2026 Quenmark Technologies',
        'NSLocalNetworkUsageDescription': REASON,
        'NSPrincipalClass': 'NSApplication',
        'NSScreenCaptureUsageDescription': REASON,
        'NSSupportsAutomaticGraphicsSwitching': True,
    }


# A program with LSUIElement has no icon in the Dock; by the test above there is none, and here is why it matters.
def test_the_program_has_an_icon_in_the_dock():
    assert 'LSUIElement' not in (MACOS / 'Info.plist.in').read_text()


# ---- The icon

def make_icon():
    loader = importlib.machinery.SourceFileLoader('make_icon', str(MACOS / 'make-icon'))
    module = importlib.util.module_from_spec(importlib.util.spec_from_loader('make_icon', loader))
    loader.exec_module(module)
    return module


def entries(data):
    """(type, data) of each entry of an icon file; every length adds up."""
    magic, length = struct.unpack_from('>4sI', data)
    assert magic == b'icns' and length == len(data)
    found, at = [], 8
    while at < length:
        kind, size = struct.unpack_from('>4sI', data, at)
        assert size > 8 and at + size <= length
        found.append((kind.decode(), data[at + 8:at + size]))
        at += size
    return found


ICON = entries((MACOS / 'Orvalen.icns').read_bytes())


def test_the_icon_has_every_size():
    assert {kind: struct.unpack_from('>8s4x4sII', png) for kind, png in ICON} == {
        kind: (b'\x89PNG\r\n\x1a\n', b'IHDR', pixels, pixels) for kind, pixels in (
            ('ic07', 128), ('ic08', 256), ('ic09', 512),
            ('ic11', 32), ('ic12', 64), ('ic13', 256), ('ic14', 512), ('ic10', 1024))}
    assert len(ICON) == 8


def difference(one, other):
    """The mean difference of two PNGs' channels, alpha included, of 255."""
    numpy = pytest.importorskip('numpy')
    pixels = [numpy.frombuffer(subprocess.run(['convert', 'png:-', '-depth', '8', 'rgba:-'], input=png, check=True,
                                              stdout=subprocess.PIPE).stdout, numpy.uint8).astype(int)
              for png in (one, other)]
    return abs(pixels[0] - pixels[1]).mean()


NEEDS_A_PAINTER = pytest.mark.skipif(not shutil.which('rsvg-convert') or not shutil.which('convert'),
                                     reason='rsvg-convert or ImageMagick is missing')


@NEEDS_A_PAINTER
@pytest.mark.parametrize('kind', ['ic11', 'ic12', 'ic07', 'ic08', 'ic14'])
def test_the_icon_shows_the_present_drawing(kind):
    module = make_icon()
    assert difference(dict(ICON)[kind], module.picture(module.ENTRIES[kind])) < 0.5


@NEEDS_A_PAINTER
def test_entries_of_one_size_are_one_picture_and_a_changed_drawing_is_seen(tmp_path):
    module = make_icon()
    icon = dict(ICON)
    assert icon['ic08'] == icon['ic13'] and icon['ic09'] == icon['ic14']
    for name in ('Orvalen.svg', 'Orvalen-small.svg'):
        (tmp_path / name).write_text((MACOS / name).read_text().replace('#FFD60A', '#FFFFFF'))
    assert difference(icon['ic07'], module.picture(128, tmp_path)) > 0.5
    assert difference(icon['ic11'], module.picture(32, tmp_path)) > 0.5


# ---- Signing

@pytest.fixture
def commands(tmp_path):
    return Commands(tmp_path / 'commands')


@pytest.fixture
def app(tmp_path):
    """A bundle with a bit of everything, under a name that wants quoting."""
    contents = tmp_path / 'an "app" of $mine/Orvalen.app/Contents'
    for name in ('MacOS/Orvalen', 'Resources/orvalen-stream-server', 'Frameworks/libqrencode.4.dylib',
                 'Frameworks/QtCore.framework/Versions/A/QtCore', 'Frameworks/QtCore.framework/Versions/A/libs/libinner.dylib',
                 'PlugIns/platforms/libqcocoa.dylib'):
        (contents / name).parent.mkdir(parents=True, exist_ok=True)
        (contents / name).write_bytes(b'')
        (contents / name).chmod(0o755)
    (contents / 'Resources/Orvalen.icns').write_bytes(b'')
    (contents / 'Info.plist').write_bytes(plistlib.dumps({}))
    return contents.parent


# What is inside comes before what holds it.
SIGNED = ('Contents/Frameworks/QtCore.framework/Versions/A/libs/libinner.dylib', 'Contents/Frameworks/libqrencode.4.dylib',
          'Contents/Frameworks/QtCore.framework', 'Contents/PlugIns/platforms/libqcocoa.dylib',
          'Contents/Resources/orvalen-stream-server', '')


def signed(commands):
    """What was signed with which words, and the call after the last of it."""
    calls = commands.called()
    assert all(call[0] == 'codesign' for call in calls)
    return {call[-1]: call[1:-1] for call in calls[:-1]}, calls[-1]


def in_order(paths, app):
    names = [str(Path(path).relative_to(app)) for path in paths]
    return ['' if name == '.' else name for name in names]


@pytest.mark.parametrize('identity', [(), ('-',)])
def test_signing_without_an_identity_is_ad_hoc_and_not_hardened(commands, app, identity):
    commands.add('codesign')
    assert commands.run(MACOS / 'sign', str(app) + '/', *identity).returncode == 0
    words, last = signed(commands)
    assert sorted(in_order(words, app)[:2]) == sorted(SIGNED[:2])
    assert in_order(words, app)[2:] == list(SIGNED[2:])
    assert set(map(tuple, words.values())) == {('--force', '--sign', '-')}
    assert last == ['codesign', '--verify', '--deep', '--strict', str(app)]


def test_signing_with_an_identity_hardens_stamps_and_gives_the_program_its_entitlements(commands, app):
    commands.add('codesign')
    identity = 'Developer ID Application: Quenmark "Technologies" (ABCDE12345)'
    assert commands.run(MACOS / 'sign', app, identity).returncode == 0
    words, last = signed(commands)
    assert sorted(in_order(words, app)[:2]) == sorted(SIGNED[:2])
    assert in_order(words, app)[2:] == list(SIGNED[2:])
    program = words.pop(str(app))
    common = ['--force', '--sign', identity, '--options', 'runtime', '--timestamp']
    assert all(options == common for options in words.values())
    assert program == common + ['--entitlements', str(MACOS / 'Orvalen.entitlements')]
    assert last == ['codesign', '--verify', '--deep', '--strict', str(app)]


def test_a_part_that_cannot_be_signed_ends_the_signing(commands, app):
    commands.add('codesign', 'case ${!#} in *libqcocoa*) exit 3 ;; esac')
    assert commands.run(MACOS / 'sign', app).returncode != 0
    assert [Path(call[-1]).name for call in commands.called()][-1] == 'libqcocoa.dylib'


def test_a_bundle_that_does_not_verify_is_a_failure(commands, app):
    commands.add('codesign', '[ "$1" != --verify ]')
    assert commands.run(MACOS / 'sign', app).returncode != 0


# The system's reader of entitlements stumbles over some of what XML allows in a comment, and so nothing here has one.
def test_the_entitlements_are_empty_and_plain():
    path = MACOS / 'Orvalen.entitlements'
    assert plistlib.loads(path.read_bytes()) == {}
    assert '<!--' not in path.read_text()
    assert [child.tag for child in xml.etree.ElementTree.parse(path).getroot()] == ['dict']


@pytest.mark.parametrize('script, words', [
    ('sign', []), ('sign', ['a', 'b', 'c']), ('sign', ['']), ('notarise', []), ('notarise', ['a']), ('notarise', ['a', '']),
    ('notarise', ['a', 'b', 'c']), ('deploy', []), ('deploy', ['a', 'b']), ('deploy', ['--help']), ('make-icon', ['a']),
])
def test_wrong_arguments_are_told_the_right_ones(commands, script, words):
    for name in ('codesign', 'xcrun', 'ditto', 'spctl', 'macdeployqt', 'rsvg-convert'):
        commands.add(name)
    run = commands.run(MACOS / script, *words)
    assert run.returncode != 0 and run.stderr.startswith('usage: %s' % script)
    assert commands.called() == []


@pytest.mark.parametrize('script, words', [('sign', []), ('notarise', ['profile']), ('deploy', [])])
def test_what_is_no_bundle_is_left_alone(commands, tmp_path, script, words):
    for name in ('codesign', 'xcrun', 'ditto', 'spctl', 'macdeployqt'):
        commands.add(name)
    run = commands.run(MACOS / script, tmp_path / 'No.app', *words)
    assert run.returncode != 0 and run.stderr == '%s is not an application bundle.\n' % (tmp_path / 'No.app')
    assert commands.called() == []


# ---- Notarisation

ANSWER = '''[ "$2" != submit ] || printf 'Current status: In Progress...\\nProcessing complete\\n  id: 1\\n  status: %s\\n' '''


@pytest.fixture
def notary(commands):
    for name in ('ditto', 'xcrun', 'spctl'):
        commands.add(name)
    return commands


def test_a_notarised_bundle_gets_its_ticket_and_is_assessed(notary, app):
    notary.add('xcrun', ANSWER + 'Accepted')
    assert notary.run(MACOS / 'notarise', str(app) + '/', 'my profile').returncode == 0
    calls = notary.called()
    zipped = calls[0][-1]
    assert calls == [
        ['ditto', '-c', '-k', '--keepParent', str(app), zipped],
        ['xcrun', 'notarytool', 'submit', zipped, '--keychain-profile', 'my profile', '--wait'],
        ['xcrun', 'stapler', 'staple', str(app)],
        ['xcrun', 'stapler', 'validate', str(app)],
        ['spctl', '-a', '-vv', str(app)],
    ]
    assert zipped.endswith('/Orvalen.zip') and not Path(zipped).parent.exists()


def test_a_refusal_is_a_failure_though_the_tool_ends_well(notary, app):
    notary.add('xcrun', ANSWER + 'Invalid')
    run = notary.run(MACOS / 'notarise', app, 'profile')
    assert run.returncode != 0 and 'Not accepted' in run.stderr
    assert [call[:2] for call in notary.called()[1:]] == [['xcrun', 'notarytool']]


@pytest.mark.parametrize('word, calls', [('submit', 2), ('staple', 3), ('validate', 4)])
def test_each_step_that_fails_ends_the_notarisation(notary, app, word, calls):
    notary.add('xcrun', ANSWER + 'Accepted\n[ "$2" != %s ]' % word)
    assert notary.run(MACOS / 'notarise', app, 'profile').returncode != 0
    assert len(notary.called()) == calls


# ---- Deployment, over stand-ins for programs: what a Mac's programs say of themselves stands in them as JSON.

OTOOL = '''#!%(python)s -IS
import json, sys
kind, path = sys.argv[1:]
about = json.loads(open(path, 'rb').read()[4:])
print(path + ':')
if kind == '-D' and about.get('id'):
    print(about['id'])
if kind == '-L':
    for name in ([about['id']] if about.get('id') else []) + about['loads'] + ['/usr/lib/libSystem.B.dylib']:
        print('\\t%%s (compatibility version 1.0.0, current version 1.0.0)' %% name)
if kind == '-l':
    print('Load command 9\\n      cmd LC_BUILD_VERSION\\n  cmdsize 32\\n platform 1\\n    minos %%s\\n      sdk 26.0\\n'
          '   ntools 1\\n     tool 3\\n  version 1115.7' %% about['minos'])
    for folder in about['rpaths']:
        print('Load command 12\\n          cmd LC_RPATH\\n      cmdsize 32\\n         path %%s (offset 12)' %% folder)
'''

INSTALL_NAME_TOOL = '''#!%(python)s -IS
import json, sys
path = sys.argv[-1]
data = open(path, 'rb').read()
about = json.loads(data[4:])
kind, words = sys.argv[1], sys.argv[2:-1]
if kind == '-id':
    about['id'], = words
elif kind == '-change':
    about['loads'] = [words[1] if name == words[0] else name for name in about['loads']]
elif kind == '-add_rpath':
    about['rpaths'].append(*words)
elif kind == '-delete_rpath':
    about['rpaths'].remove(*words)
open(path, 'wb').write(data[:4] + json.dumps(about).encode())
'''

# Does what the real one does to such a bundle, half of it.
MACDEPLOYQT = r'''
program=$1/Contents/MacOS/Orvalen
for name in $(otool -L "$program" | sed -n 's|^\t@rpath/\([^ /]*[.]framework\)/.*|\1|p'); do
    otool -l "$program" | sed -n 's/^ *path \(.*\) (offset.*/\1/p' | while read -r folder; do
        [ -d "$folder/$name" ] && cp -R "$folder/$name" "$1/Contents/Frameworks/" && break
    done
done
cp "$BREW/opt/icu4c/lib/libicuuc.78.dylib" "$1/Contents/Frameworks/"
install_name_tool -id @executable_path/../Frameworks/libicuuc.78.dylib "$1/Contents/Frameworks/libicuuc.78.dylib"
install_name_tool -change "$BREW/opt/icu4c/lib/libicuuc.78.dylib" @executable_path/../Frameworks/libicuuc.78.dylib \
    "$1/Contents/MacOS/Orvalen"
'''


def binary(path, loads=(), rpaths=(), name=None, minos='13.0'):
    path.parent.mkdir(parents=True, exist_ok=True)
    path.write_bytes(b'\xcf\xfa\xed\xfe' + json.dumps(
        {'loads': list(loads), 'rpaths': list(rpaths), 'id': name, 'minos': minos}).encode())


def about(path):
    return json.loads(path.read_bytes()[4:])


class Mac:
    """A machine with libraries, and a bundle as a build leaves it."""

    def __init__(self, folder, commands):
        self.commands = commands
        self.brew = folder / 'brew'
        self.app = folder / 'some where/Orvalen.app'
        contents = self.app / 'Contents'
        (contents / 'Frameworks').mkdir(parents=True)
        (contents / 'Info.plist').write_bytes(plistlib.dumps(
            {'CFBundleExecutable': 'Orvalen', 'LSMinimumSystemVersion': '13.0'}))
        icu = self.brew / 'opt/icu4c/lib'
        core = '@rpath/QtCore.framework/Versions/A/QtCore'
        svg = '@rpath/QtSvg.framework/Versions/A/QtSvg'  # of a package of its own
        binary(contents / 'MacOS/Orvalen', [core, svg, '%s/libicuuc.78.dylib' % icu, '/System/Library/Frameworks/AppKit'])
        binary(contents / 'Resources/orvalen-stream-server')
        binary(self.brew / 'opt/qtbase/lib/QtCore.framework/Versions/A/QtCore', name=core, minos='14.0')
        binary(self.brew / 'lib/QtSvg.framework/Versions/A/QtSvg', [core], name=svg)
        binary(icu / 'libicuuc.78.dylib', ['@loader_path/libicudata.78.dylib'], name='%s/libicuuc.78.dylib' % icu)
        binary(icu / 'libicudata.78.dylib', name='%s/libicudata.78.dylib' % icu)
        (icu / 'libicudata.78.dylib').chmod(0o444)
        for plugin in ('platforms/libqcocoa.dylib', 'styles/libqmacstyle.dylib', 'imageformats/libqpdf.dylib'):
            binary(self.brew / 'share/qt/plugins' / plugin, [core], ['@loader_path/../../../../lib'],
                   Path(plugin).name)  # the name of its own is nothing that it needs
        commands.environment['BREW'] = str(self.brew)
        for name, text in (('otool', OTOOL), ('install_name_tool', INSTALL_NAME_TOOL)):
            commands.write(name, text % {'python': sys.executable})
        commands.add('macdeployqt', MACDEPLOYQT)
        commands.write('brew', '#!/bin/sh\necho "$BREW"\n')
        commands.write('qtpaths', '#!/bin/sh\n[ "$1" = --query ] || exit 1\ncase $2 in\n'
                       'QT_INSTALL_PLUGINS) echo "$BREW/share/qt/plugins" ;;\nQT_INSTALL_LIBS) echo "$BREW/opt/qtbase/lib" ;;\nesac\n')

    def deploy(self):
        return self.commands.run(MACOS / 'deploy', self.app)


@pytest.fixture
def mac(tmp_path, commands):
    return Mac(tmp_path, commands)


@pytest.fixture(scope='module')
def deployed(tmp_path_factory):
    """A deployment with a bit of everything, once for all who look at it."""
    folder = tmp_path_factory.mktemp('deployed')
    mac = Mac(folder, Commands(folder / 'commands'))
    source = mac.brew / 'opt/qrencode/lib/libqrencode.4.dylib'
    binary(source, name=str(source))
    program = mac.app / 'Contents/MacOS/Orvalen'
    binary(program, [*about(program)['loads'], str(source)], about(program)['rpaths'])
    mac.outcome = mac.deploy()
    return mac


def test_a_deployed_bundle_looks_for_nothing_elsewhere(deployed):
    assert (deployed.outcome.returncode, deployed.outcome.stderr) == (0, '')
    contents = deployed.app / 'Contents'
    assert about(contents / 'MacOS/Orvalen') == {
        'loads': ['@rpath/QtCore.framework/Versions/A/QtCore', '@rpath/QtSvg.framework/Versions/A/QtSvg',
                  '@executable_path/../Frameworks/libicuuc.78.dylib',
                  '/System/Library/Frameworks/AppKit', '@executable_path/../Frameworks/libqrencode.4.dylib'],
        'rpaths': ['@executable_path/../Frameworks'], 'id': None, 'minos': '13.0'}
    assert about(contents / 'PlugIns/platforms/libqcocoa.dylib')['rpaths'] == []
    for path in deployed.app.rglob('*.dylib'):
        assert str(deployed.brew) not in path.read_bytes().decode('latin1')


def test_a_library_that_macdeployqt_passes_over_is_fetched(deployed):
    fetched = deployed.app / 'Contents/Frameworks/libicudata.78.dylib'
    assert about(fetched)['id'] == '@executable_path/../Frameworks/libicudata.78.dylib'
    assert fetched.stat().st_mode & stat.S_IWUSR


def test_the_two_plugins_that_are_needed_come_along_and_are_looked_for_in_the_bundle(deployed):
    plugins = deployed.app / 'Contents/PlugIns'
    assert sorted(str(path.relative_to(plugins)) for path in plugins.rglob('*.dylib')) == [
        'platforms/libqcocoa.dylib', 'styles/libqmacstyle.dylib']
    assert (deployed.app / 'Contents/Resources/qt.conf').read_text() == '[Paths]\nPlugins = PlugIns\n'
    assert deployed.commands.called() == [
        ['macdeployqt', str(deployed.app), '-no-plugins',
         '-executable=%s/Contents/Resources/orvalen-stream-server' % deployed.app,
         '-libpath=%s/opt/qtbase/lib' % deployed.brew, '-libpath=%s/lib' % deployed.brew]]


def test_libraries_for_a_newer_system_raise_what_the_bundle_asks_for(deployed):
    assert deployed.outcome.stdout == 'This bundle needs macOS 14.0, for which QtCore was built.\n'
    assert plistlib.loads((deployed.app / 'Contents/Info.plist').read_bytes()) == {
        'CFBundleExecutable': 'Orvalen', 'LSMinimumSystemVersion': '14.0'}


def test_what_cannot_be_found_is_named_and_a_failure(mac):
    binary(mac.brew / 'share/qt/plugins/platforms/libqcocoa.dylib', ['@rpath/QtDBus.framework/Versions/A/QtDBus'])
    binary(mac.app / 'Contents/Resources/orvalen-stream-server', ['/elsewhere/libgone.1.dylib'])
    run = mac.deploy()
    assert run.returncode == 1
    assert sorted(run.stderr.splitlines()) == [
        'Contents/PlugIns/platforms/libqcocoa.dylib needs @rpath/QtDBus.framework/Versions/A/QtDBus, which is not in the bundle.',
        'Contents/Resources/orvalen-stream-server needs /elsewhere/libgone.1.dylib, which is not in the bundle.']


def test_libraries_for_the_oldest_system_leave_the_properties_as_they_are(mac):
    binary(mac.brew / 'opt/qtbase/lib/QtCore.framework/Versions/A/QtCore', minos='12.0')
    before = (mac.app / 'Contents/Info.plist').read_bytes()
    assert (mac.deploy().stdout, (mac.app / 'Contents/Info.plist').read_bytes()) == ('', before)
