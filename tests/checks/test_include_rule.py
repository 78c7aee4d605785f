"""The include check sees what it is there to see, and our own tree passes."""
import subprocess
import sys
from pathlib import Path

import pytest

import include_rule

ROOT = Path(__file__).resolve().parents[2]

# A small house with nothing wrong in it.
GOOD = {
    'platform/Clock.h': '#include <chrono>\n',
    'platform/Platform.h': '#include "platform/Clock.h"\n',
    'platform/posix/ClockPosix.h': '#include "platform/Clock.h"\n#include <unistd.h>\n',
    'platform/qt/DispatchQt.h': '#include "platform/Clock.h"\n#include "assets/SymbolPicture.h"\n#include <QObject>\n',
    'assets/SymbolPicture.h': '#include <QImage>\n',
    'platform/linux/Sensors.cpp': '#include "platform/Clock.h"\n#include "platform/qt/DispatchQt.h"\n#include <sys/epoll.h>\n',
    'platform/simulated/Laptop.h': '#include "platform/Clock.h"\n#include "platform/qt/DispatchQt.h"\n',
    'core/AppState.h': '#include "platform/Clock.h"\n#include <memory>\n',
    'core/AppDelegate.cpp': '#include "core/AppState.h"\n#include "system/HotKeyManager.h"\n',
    'core/AppDelegate.h': '',
    'system/HotKeyManager.h': '#include "core/AppState.h"\n#include "streaming/WebScreenServer.h"\n',
    'streaming/WebScreenServer.h': '#include "core/AppState.h"\n#include <nlohmann/json.hpp>\n',
    'streaming/server/main.cpp': '#include <boost/asio.hpp>\n#include <sys/socket.h>\n',
    'streaming/screencapture/main.cpp':
        '#include <xcb/xcb.h>\n#include <turbojpeg.h>\n#include "platform/linux/X11Session.h"\n',
    'platform/linux/X11Session.h': '#include <xcb/xcb.h>\n',
    'mirroring/USBMirrorManager.h': '#include <vector>\n',
    'report/ReportGenerator.h': '#include "core/AppState.h"\n#include <unicode/datefmt.h>\n',
    'ui/MainView.h': '#include "core/AppState.h"\n#include "ui/kit/Card.h"\n#include <QWidget>\n',
    'ui/MainView.cpp': '#include "MainView.moc"\n',
    'ui/kit/Card.h': '#include "assets/SymbolPicture.h"\n#include <QFrame>\n',
    'app/main.cpp': '#include "platform/simulated/Laptop.h"\n#include "ui/MainView.h"\n#include <QApplication>\n',
    'app/NativePlatformLinux.cpp': '#include "platform/linux/Sensors.h"\n#include <QDBusConnection>\n#include <X11/Xlib.h>\n',
    'app/NativePlatformMacos.cpp': '#include "platform/macos/Bar.h"\n#include <QString>\n#include <CoreFoundation/CoreFoundation.h>\n',
    'platform/macos/Bar.h': '#include "platform/Clock.h"\n#include <sys/sysctl.h>\n',
    'platform/macos/Bar.mm': '#include "platform/macos/Bar.h"\n#import <AppKit/AppKit.h>\n#include <pthread/qos.h>\n',
    'tests/platform/macos/BarTest.mm': '#include "platform/macos/Bar.h"\n#import <AppKit/AppKit.h>\n#include <gtest/gtest.h>\n',
    'tests/platform/macos/libc/fcntl.h': '#include_next <fcntl.h>\n',
    'platform/linux/Sensors.h': '',
    'tests/core/AppStateTest.cpp': '#include "platform/simulated/Laptop.h"\n#include <gtest/gtest.h>\n',
}

# One bad line per rule: the file, the line that is added as its last one, and a word of the reason.
BAD = [
    ('core/AppState.h', '#include "ui/MainView.h"', 'core may not know ui'),
    ('core/AppState.h', '#include "app/main.cpp"', 'core may not know app'),
    ('core/AppState.h', '#include "system/HotKeyManager.h"', 'core may not know system'),
    ('core/AppState.h', '#include "streaming/WebScreenServer.h"', 'core may not know streaming'),
    ('core/AppState.h', '#include "core/AppDelegate.h"', 'core may not know core/AppDelegate'),
    ('core/AppDelegate.cpp', '#include "ui/MainView.h"', 'may not know ui'),
    ('core/AppState.h', '#include "platform/linux/Sensors.h"', 'only app names the adapters'),
    ('core/AppState.h', '#include "tests/core/AppStateTest.cpp"', 'may not know tests'),
    ('streaming/screencapture/main.cpp', '#include "platform/linux/Sensors.h"', 'only app names the adapters'),
    ('platform/linux/X11Session.h', '#include <QString>', 'Qt does not belong here'),
    ('core/AppState.h', '#include <QString>', 'Qt does not belong here'),
    ('core/AppState.h', '#include <QtCore/QString>', 'Qt does not belong here'),
    ('core/AppState.h', '#include <unistd.h>', 'a system header'),
    ('core/AppState.h', '#include <sys/epoll.h>', 'a header of Linux'),
    ('core/AppState.h', '#include <IOKit/IOKitLib.h>', 'a header of macOS'),
    ('core/AppState.h', '#include <boost/asio.hpp>', 'may not use this library'),
    ('core/AppState.h', '#include <stdint.h>', 'a system header'),
    ('core/AppState.h', '#include "Published.h"', 'named from the root'),
    ('core/AppState.h', '#include "core/../platform/Clock.h"', 'named from the root'),
    ('core/AppState.h', '#include <platform/Clock.h>', 'with quotes'),
    ('core/AppState.h', '#include HEADER', 'must name its file'),
    ('core/AppState.h', '#include_next <memory>', 'second guessing'),
    ('core/AppState.h', '  #  include\t<QString>', 'Qt does not belong here'),
    ('core/AppState.h', '/* a */ #include <QString>', 'Qt does not belong here'),
    ('core/AppState.h', '#include "AppState.moc"', 'Qt does not belong here'),
    ('mirroring/USBMirrorManager.h', '#include "system/HotKeyManager.h"', 'mirroring may not know system'),
    ('report/ReportGenerator.h', '#include <QFile>', 'Qt does not belong here'),
    ('streaming/WebScreenServer.h', '#include "system/HotKeyManager.h"', 'streaming may not know system'),
    ('streaming/server/main.cpp', '#include <QTcpServer>', 'Qt does not belong here'),
    ('streaming/server/main.cpp', '#include <sys/epoll.h>', 'a header of Linux'),
    ('streaming/server/main.cpp', '#include "core/AppState.h"', 'may not know core'),
    ('streaming/screencapture/main.cpp', '#include <QImage>', 'Qt does not belong here'),
    ('streaming/server/main.cpp', '#include <malloc.h>', 'a header of Linux'),
    ('streaming/server/main.cpp', '#include <sys/event.h>', 'a header of macOS'),
    ('app/main.cpp', '#include "platform/linux/Sensors.h"', 'only app/NativePlatform'),
    ('app/main.cpp', '#include "platform/macos/Bar.h"', 'only app/NativePlatform'),
    ('app/main.cpp', '#include <X11/Xlib.h>', 'a header of Linux'),
    ('app/main.cpp', '#include <AppKit/AppKit.h>', 'a header of macOS'),
    ('app/NativePlatformLinux.cpp', '#include <sys/sysctl.h>', 'a header of macOS'),
    ('app/NativePlatformMacos.cpp', '#include <sys/prctl.h>', 'a header of Linux'),
    ('ui/MainView.mm', '#import <AppKit/AppKit.h>', 'a header of macOS'),
    ('core/Bar.mm', '#import <Foundation/Foundation.h>', 'a header of macOS'),
    ('tests/core/AppStateTest.cpp', '#include <CoreFoundation/CoreFoundation.h>', 'a header of macOS'),
    ('bench/bar_bench.mm', '#import <Metal/Metal.h>', 'a header of macOS'),
    ('ui/MainView.h', '#include "platform/linux/Sensors.h"', 'only app names the adapters'),
    ('ui/MainView.h', '#include "platform/simulated/Laptop.h"', 'only app names the adapters'),
    ('ui/MainView.h', '#include "app/main.cpp"', 'ui may not know app'),
    ('ui/MainView.h', '#include <xcb/xcb.h>', 'a header of Linux'),
    ('ui/MainView.h', '#include <unistd.h>', 'a system header'),
    ('platform/Clock.h', '#include "core/AppState.h"', 'platform may not know core'),
    ('platform/Clock.h', '#include "platform/qt/DispatchQt.h"', 'platform may not know platform/qt'),
    ('platform/Clock.h', '#include <time.h>', 'a system header'),
    ('platform/Clock.h', '#include <QObject>', 'Qt does not belong here'),
    ('assets/SymbolPicture.h', '#include "platform/Clock.h"', 'assets may not know platform'),
    ('assets/SymbolPicture.h', '#include <unistd.h>', 'a system header'),
    ('core/AppState.h', '#include "assets/SymbolPicture.h"', 'core may not know assets'),
    ('platform/posix/ClockPosix.h', '#include <sys/timerfd.h>', 'a header of Linux'),
    ('platform/posix/ClockPosix.h', '#include <sys/epoll.h>', 'a header of Linux'),
    ('platform/posix/ClockPosix.h', '#include <linux/limits.h>', 'a header of Linux'),
    ('platform/posix/ClockPosix.h', '#include <sys/sysctl.h>', 'a header of macOS'),
    ('platform/posix/ClockPosix.h', '#include <QObject>', 'Qt does not belong here'),
    ('platform/qt/DispatchQt.h', '#include <pthread/qos.h>', 'a header of macOS'),
    ('platform/simulated/Laptop.h', '#include <sys/timerfd.h>', 'a header of Linux'),
    ('platform/simulated/Laptop.h', '#include <mach/mach_time.h>', 'a header of macOS'),
    ('platform/macos/Bar.mm', '#include <sys/epoll.h>', 'a header of Linux'),
    ('platform/macos/Bar.h', '#include <X11/Xlib.h>', 'a header of Linux'),
    ('platform/macos/Bar.h', '#include "platform/linux/Sensors.h"', 'may not know platform/linux'),
    ('platform/macos/Bar.mm', '#import "core/AppState.h"', 'may not know core'),
    ('platform/qt/DispatchQt.h', '#include "platform/linux/Sensors.h"', 'platform/qt may not know platform/linux'),
    ('platform/qt/DispatchQt.h', '#include <xcb/xcb.h>', 'a header of Linux'),
    ('platform/linux/Sensors.cpp', '#include "core/AppState.h"', 'platform/linux may not know core'),
    ('platform/linux/Sensors.cpp', '#include "ui/MainView.h"', 'platform/linux may not know ui'),
    ('platform/linux/Sensors.cpp', '#include "platform/simulated/Laptop.h"', 'may not know platform/simulated'),
    ('platform/linux/Sensors.cpp', '#include <IOKit/IOKitLib.h>', 'a header of macOS'),
    ('platform/simulated/Laptop.h', '#include "platform/linux/Sensors.h"', 'may not know platform/linux'),
    ('platform/simulated/Laptop.h', '#include "core/AppState.h"', 'may not know core'),
    ('platform/haiku/Sensors.h', '#include <memory>', 'no rule knows this folder'),
    ('helpers/Strings.h', '#include <memory>', 'no rule knows this folder'),
]


def build(folder, files):
    for name, text in files.items():
        path = folder / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text)
    return folder


def test_a_tree_that_follows_the_picture_has_no_offence(tmp_path):
    assert list(include_rule.offences(build(tmp_path, GOOD))) == []


@pytest.mark.parametrize('file, line, reason', BAD, ids=['%s %s' % (file, line.strip()) for file, line, _ in BAD])
def test_the_offending_line_is_named(tmp_path, file, line, reason):
    before = GOOD.get(file, '')
    root = build(tmp_path, {**GOOD, file: before + line + '\n'})
    found = list(include_rule.offences(root))
    assert len(found) == 1
    assert found[0].startswith('%s:%d: ' % (file, before.count('\n') + 1))
    assert reason in found[0]
    assert line.split()[-1] in found[0]


def test_what_a_comment_or_a_text_includes_counts_for_nothing(tmp_path):
    text = '// #include <QString>\n/*\n#include <QString>\n*/\nauto s = R"(\n#include <QString>\n)";\nint i = 1\'000;\n'
    assert list(include_rule.offences(build(tmp_path, {**GOOD, 'core/Text.cpp': text}))) == []


def test_a_line_number_survives_comments_and_continued_lines(tmp_path):
    text = '/* one\n two */\n#define A \\\n  B\n#include \\\n  <QString>\n'
    found = list(include_rule.offences(build(tmp_path, {**GOOD, 'core/Text.cpp': text})))
    assert [line.split(': ')[0] for line in found] == ['core/Text.cpp:5']


def test_the_command_fails_on_an_offence(tmp_path):
    build(tmp_path, {**GOOD, 'core/AppState.h': '#include <QString>\n'})
    run = subprocess.run([sys.executable, include_rule.__file__, str(tmp_path)], capture_output=True, text=True)
    assert run.returncode == 1
    assert run.stdout == 'core/AppState.h:1: Qt does not belong here: #include <QString>\n'


def test_our_own_tree_follows_the_picture():
    assert list(include_rule.offences(ROOT)) == []
