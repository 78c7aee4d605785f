"""The viewer page as a phone and a desktop computer show it."""
import re
import signal
import time

import pytest

import private_machine
from viewer import Screen, Server, wait_for

pytestmark = private_machine.needed

PHONE = {'width': 390, 'height': 844, 'phone': True}
DESKTOP = {'width': 1440, 'height': 900}
ON_BOTH = pytest.mark.parametrize('size', [PHONE, DESKTOP], ids=['phone', 'desktop'])

RED, BLUE, LIME, YELLOW = (255, 0, 0), (0, 0, 255), (0, 255, 0), (255, 255, 0)
MAGENTA, CYAN = (255, 0, 255), (0, 255, 255)
RECONNECT, FULL_SCREEN = '⚡ Reconnect', '⛶ Fullscreen'
FIRST, SECOND = '💻 Screen 1 (Retina)', '📱 Screen 2 (SideScreen)'
REFRESHED = re.compile(r'/stream\.mjpg\?d=(\d+)&t=(\d+)$')


def name(size):
    return 'viewer-%dx%d' % (size['width'], size['height'])


@ON_BOTH
def test_the_screen_is_there_and_moves(browser, server, size):
    browser.open(server.address, **size)
    assert browser.source() == '/stream.mjpg?d=1'
    wait_for(browser.has_picture, what='a picture')
    browser.wait_for_colors(RED, BLUE)
    browser.wait_for_motion()
    browser.screenshot(name(size) + '.png')
    assert browser.mishaps() == []
    assert server.said() == ''


@ON_BOTH
def test_the_tabs_switch_between_the_screens(browser, server, size):
    browser.open(server.address, **size)
    browser.wait_for_colors(RED, BLUE)

    def classes():
        return browser.ask('["tab1", "tab2"].map(id => document.getElementById(id).className)')

    assert classes() == ['tab active', 'tab']
    for text, display, active, left, right in ((SECOND, '2', ['tab', 'tab active'], LIME, YELLOW),
                                               (FIRST, '1', ['tab active', 'tab'], RED, BLUE)):
        before = time.time() * 1000
        browser.click(text)
        wait_for(lambda: classes() == active, what='the other tab')  # a link's script runs in its own time
        shown, moment = REFRESHED.match(browser.source()).groups()
        assert shown == display
        assert before - 1 <= int(moment) <= time.time() * 1000 + 1
        browser.wait_for_colors(left, right)
        browser.wait_for_motion()
        if display == '2':
            browser.screenshot(name(size) + '-second.png')
    assert browser.mishaps() == []


def test_the_page_reconnects_by_itself_when_the_server_was_away(browser, server, camera):
    browser.open(server.address, **PHONE)
    browser.wait_for_colors(RED, BLUE)
    server.stop(signal.SIGKILL)
    time.sleep(4)  # longer than the page takes to look after its picture
    camera.set('later')  # pictures that cannot be left from before
    server.start()
    browser.wait_for_colors(MAGENTA, CYAN, 15)
    browser.wait_for_motion()
    assert browser.ask('window.mishaps') == []


def test_the_page_waits_for_a_screen_that_may_not_be_captured_yet(browser, server, camera):
    camera.set('broken')
    browser.open(server.address, **PHONE)
    wait_for(lambda: REFRESHED.match(browser.source()), 10, 'another attempt')
    assert not browser.has_picture()
    browser.screenshot('viewer-390x844-nothing.png')
    camera.set('broken', False)
    browser.wait_for_colors(RED, BLUE, 15)


def test_the_button_reconnects_to_the_same_screen(browser, server):
    browser.open(server.address, **DESKTOP)
    browser.click(SECOND)
    browser.wait_for_colors(LIME, YELLOW)
    before = browser.source()
    browser.click(RECONNECT)
    assert browser.source() != before
    assert REFRESHED.match(browser.source()).group(1) == '2'
    browser.wait_for_colors(LIME, YELLOW)
    browser.wait_for_motion()
    assert browser.mishaps() == []


@ON_BOTH
def test_the_page_goes_full_screen_and_back(browser, server, size):
    browser.open(server.address, **size)
    browser.wait_for_colors(RED, BLUE)

    def is_full():
        return browser.ask('document.fullscreenElement === document.documentElement')

    assert not is_full()
    browser.click(FULL_SCREEN)
    wait_for(is_full, what='full screen')
    browser.click(FULL_SCREEN)
    wait_for(lambda: not is_full(), what='the page as before')
    assert browser.mishaps() == []


REFUSALS = {
    'for want of a gesture': '',
    'by a promise': 'Element.prototype.requestFullscreen = () => Promise.reject(new TypeError("no"));',
    'by an exception': 'Element.prototype.requestFullscreen = () => { throw new TypeError("no"); };',
    'for want of the function': 'delete Element.prototype.requestFullscreen;'
                                'delete Element.prototype.webkitRequestFullscreen;'
                                'delete Element.prototype.webkitRequestFullScreen;',
    'in silence': 'Element.prototype.requestFullscreen = () => {};',
}


@pytest.mark.parametrize('refusal', REFUSALS.values(), ids=REFUSALS.keys())
def test_a_refused_full_screen_is_no_error(browser, server, refusal):
    browser.open(server.address, **PHONE)
    browser.wait_for_colors(RED, BLUE)
    browser.command('Runtime.evaluate', expression=refusal + 'toggleFullScreen()', userGesture=False)
    browser.wait_for_motion()
    assert browser.ask('document.fullscreenElement') is None
    assert browser.mishaps() == []


def test_the_picture_is_fetched_anew_when_the_page_is_seen_again(browser, server):
    browser.open(server.address, **PHONE)
    browser.wait_for_colors(RED, BLUE)
    page = browser.driver.current_window_handle
    before = browser.source()
    browser.driver.switch_to.new_window('tab')
    try:
        other = browser.driver.current_window_handle
        browser.driver.switch_to.window(page)
        wait_for(lambda: REFRESHED.match(browser.source()), what='a fresh picture')
    finally:
        browser.driver.switch_to.window(other)
        browser.driver.close()
        browser.driver.switch_to.window(page)
    assert browser.source() != before
    browser.wait_for_motion()
    assert browser.mishaps() == []


SIZES = [PHONE, DESKTOP, {'width': 844, 'height': 390, 'phone': True}, {'width': 320, 'height': 568, 'phone': True},
         {'width': 768, 'height': 1024, 'phone': True}]


@pytest.mark.parametrize('size', SIZES, ids=name)
def test_everything_is_in_view_and_nothing_overlaps(browser, server, size):
    browser.open(server.address, **size)
    browser.wait_for_colors(RED, BLUE)
    browser.screenshot(name(size) + '.png')
    page = browser.driver.execute_script('''
        const place = element => {
            const box = element.getBoundingClientRect();
            return {name: element.id || element.className || element.textContent, left: box.left, top: box.top,
                    right: box.right, bottom: box.bottom,
                    cut: element.scrollWidth > element.clientWidth + 1 && getComputedStyle(element).display != 'inline'};
        };
        const all = selector => Array.from(document.querySelectorAll(selector), place);
        const root = document.scrollingElement;
        return {width: innerWidth, height: innerHeight, scrollWidth: root.scrollWidth, scrollHeight: root.scrollHeight,
                header: all('header > *'), tabs: all('header a'), footer: all('footer > *'), buttons: all('button'),
                parts: [...all('header'), ...all('footer')], screen: place(document.getElementById('screen'))};
    ''')
    assert (page['width'], page['height']) == (size['width'], size['height'])
    assert page['scrollWidth'] <= page['width'] and page['scrollHeight'] <= page['height']

    def overlap(a, b):
        return (min(a['right'], b['right']) - max(a['left'], b['left']) > 0.5 and
                min(a['bottom'], b['bottom']) - max(a['top'], b['top']) > 0.5)

    for group in ('header', 'tabs', 'footer', 'buttons'):
        assert page[group]
        for i, one in enumerate(page[group]):
            assert not one['cut'], one
            assert one['left'] >= 0 and one['right'] <= page['width'] + 0.5, one
            assert one['top'] >= 0 and one['bottom'] <= page['height'] + 0.5, one
            assert not [other for other in page[group][:i] if overlap(one, other)], one
    for control in page['tabs'] + page['buttons']:
        assert min(control['right'] - control['left'], control['bottom'] - control['top']) >= 24, control

    screen = page['screen']  # as large as it can be between header and footer, and nowhere under them
    assert not [part for part in page['parts'] if overlap(part, screen)]
    width, height = screen['right'] - screen['left'], screen['bottom'] - screen['top']
    free = page['height'] - sum(part['bottom'] - part['top'] for part in page['parts'])
    assert width <= page['width'] + 0.5 and height <= free + 0.5


def test_a_real_screen_is_shown_as_it_is(browser, tmp_path):
    with Screen(tmp_path, 1440, 900) as screen, \
            Server(tmp_path, {'PATH': '/usr/bin:/bin', 'DISPLAY': screen.display}) as server:
        screen.paint(RED, BLUE)
        browser.open(server.address, **DESKTOP)
        browser.wait_for_colors(RED, BLUE)
        assert browser.ask('[document.getElementById("screen").naturalWidth,'
                           ' document.getElementById("screen").naturalHeight]') == [1440, 900]
        browser.screenshot('viewer-real-1440x900.png')
        screen.paint(LIME, YELLOW)
        browser.wait_for_colors(LIME, YELLOW)
        assert browser.mishaps() == []
        assert server.said() == ''
