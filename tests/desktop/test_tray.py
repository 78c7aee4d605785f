"""The status item in real trays: what is seen there, and what a click does."""
import re

import pytest

from privatedesktop import wait_for
from trays import EmbeddingTray, Panel, symbol_of

PROGRAM = 'orvalen-simulated'
TITLE = 'Orvalen'
TRIGGER = 'Trigger Prime Warmup Now'


@pytest.fixture(params=[Panel, EmbeddingTray], ids=['panel', 'embedding'])
def tray(request, desktop):
    return request.param(desktop)


def start(desktop, **settings):
    """The program, quiet unless asked."""
    desktop.choose(PROGRAM, **{'smartModeEnabled': 'false', 'soundFeedbackEnabled': 'false', **settings})
    program = desktop.start(PROGRAM)
    wait_for(lambda: desktop.windows(TITLE), 30, 'the window')
    return program


def stacking(desktop):
    """The managed windows, the topmost last."""
    text = desktop.output(['xprop', '-root', '_NET_CLIENT_LIST_STACKING'])
    return [int(id, 16) for id in re.findall(r'0x[0-9a-f]+', text)]


def top(desktop):
    """The title of the topmost window that is not the tray's."""
    titles = [desktop.output(['xdotool', 'getwindowname', str(window)]).strip() for window in stacking(desktop)]
    return [title for title in titles if title not in ('LXQt Panel', 'panel', '')][-1]


def test_the_icon_comes_with_the_tray_and_returns_with_it(desktop, tray):
    program = start(desktop)
    wait_for(lambda: 'registered' in desktop.written(), what='the start-up, which then looks for a tray in vain')
    tray.start()
    tray.wait_for_icon()
    tray.end()
    tray.start()
    tray.wait_for_icon()
    assert desktop.windows(TITLE)
    assert program.poll() is None


def test_a_flame_shows_while_the_display_is_warmed(desktop, tray):
    tray.start()
    start(desktop, targetTemp='25')
    tray.wait_for_icon()
    assert tray.symbol() == 'shield'
    desktop.controls.press(TRIGGER)
    wait_for(lambda: tray.symbol() == 'flame', what='the flame')
    wait_for(lambda: tray.symbol() == 'shield', 30, 'the shield again')


def test_a_click_raises_the_window_that_is_behind_another_or_minimised(desktop, tray):
    tray.start()
    start(desktop)
    tray.wait_for_icon()
    desktop.another_program()
    wait_for(lambda: top(desktop) == 'Other', what='the other window in front')
    desktop.keys('x')  # and the user is at work there
    tray.click()
    wait_for(lambda: desktop.active() == TITLE and top(desktop) == TITLE, what='our window in front')

    desktop.output(['xdotool', 'windowminimize', '--sync', desktop.windows(TITLE)[-1]])
    desktop.activate('Other')
    tray.click()
    wait_for(lambda: desktop.active() == TITLE and top(desktop) == TITLE, what='our window back from the task bar')


def test_a_panel_is_told_text_and_pictures(desktop):
    panel = Panel(desktop)
    panel.start()
    start(desktop)
    panel.wait_for_icon()
    shown = wait_for(lambda: panel.ask('tooltip'), what='a tooltip')
    assert re.fullmatch(r'Orvalen \d+°', shown)
    assert panel.ask('status') == 'Active'
    pictures = {int(side): rows for side, rows in panel.ask('pictures').items()}
    assert sorted(pictures) == [16, 22, 24, 32, 44, 48, 64]
    for side, rows in pictures.items():
        assert len(rows) == side and all(len(row) == side for row in rows)
        inked = [[alpha > 128 for alpha, *_ in row] for row in rows]
        rows_with_ink = [row for row in inked if any(row)]
        columns = [any(row[x] for row in inked) for x in range(side)]
        first, last = columns.index(True), side - columns[::-1].index(True)
        assert symbol_of([row[first:last] for row in rows_with_ink]) == 'shield', side


def test_a_click_with_the_window_closed_opens_none(desktop):
    panel = Panel(desktop)
    panel.start()
    program = desktop.start('orvalen')
    wait_for(lambda: desktop.windows(TITLE), 30, 'the window')
    panel.wait_for_icon()
    desktop.close(TITLE)
    panel.click()
    assert panel.ask('activate'), 'the item does not answer'  # after the click, so that is over, too
    assert not desktop.windows(TITLE)
    assert program.poll() is None
    assert panel.has_icon()


def test_without_any_tray_the_window_is_there_and_closing_it_does_not_end_the_program(desktop):
    program = desktop.start('orvalen')
    wait_for(lambda: desktop.windows(TITLE), 30, 'the window')
    desktop.close(TITLE)
    assert program.poll() is None
