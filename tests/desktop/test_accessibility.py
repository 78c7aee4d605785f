"""A person who has the window read out, or who has a keyboard only."""
import re

import pytest

import private_machine
from privatedesktop import GREETING, Child, wait_for

pytestmark = private_machine.needed

PROGRAM = 'orvalen-simulated'
TRIGGER = 'Trigger Prime Warmup Now'
TABS = ['Dashboard', 'Screen Clone', 'Diagnostics', 'Power & Tools', 'Settings']
ADDRESS = r'http://[\w.:-]+'


class Line:
    """What is read out at one place. Names and descriptions in slashes are patterns."""

    def __init__(self, role, name, about='', states='', value=None, text='', group=None):
        self.role, self.name, self.about, self.text, self.group = role, name, about, text, group
        self.states, self.value = set(states.split()), value

    @staticmethod
    def fits(wanted, heard):
        if wanted.startswith('/'):
            return re.fullmatch(wanted.strip('/'), heard) is not None
        return wanted == heard

    def differs(self, heard):
        """What is wrong, in words; none if nothing is."""
        wrong = []
        for key, wanted in (('role', self.role), ('name', self.name), ('description', self.about), ('text', self.text)):
            if not self.fits(wanted, heard[key]):
                wrong.append('%s %r, not %r' % (key, heard[key], wanted))
        states = {state.replace(' ', '-') for state in heard['states']} - {'enabled', 'sensitive', 'focused'}
        if states != self.states:
            wrong.append('%s, not %s' % (sorted(states), sorted(self.states)))
        if heard['value'] != self.value:
            wrong.append('value %s, not %s' % (heard['value'], self.value))
        if self.group is not None and self.group != heard['groups'][1:]:
            wrong.append('in %s, not in %s' % (heard['groups'][1:], self.group))
        return '%s: %s' % (self.name, '; '.join(wrong)) if wrong else None


def label(name, about=''):
    return Line('label', name, about)


def panel(name):
    return Line('panel', name)


def button(name, about='', *group):
    return Line('push button', name, about, 'focusable', group=list(group))


def link(name, about='', *group):
    return Line('link', name, about, 'focusable', group=list(group))


def switch(name, about, is_on, *group):
    return Line('check box', name, about, 'focusable checkable' + (' checked' if is_on else ''), group=list(group))


def slider(name, about, *value):
    return Line('slider', name, about, 'focusable', value=list(value), group=[])


def address(name):
    return Line('text', name, '/%s/' % ADDRESS, 'focusable read-only selectable-text', text='/%s/' % ADDRESS)


def header(selected):
    tabs = [Line('page tab', name, '', 'focusable selectable' + (' selected' if name == selected else ''), group=[])
            for name in TABS]
    return [
        label('Orvalen'),
        link('Quenmark Technologies'),
        switch('Prevent sleep', '', False),
        label('/STANDBY|PROTECTED/'),
        Line('page tab list', ''),
        *tabs,
    ]


LEFT = [
    label('QUENMARK NETWORK'),
    panel('Quenmark Harbor'),
    label('HOSTING'),
    label('Quenmark Harbor'),
    label('Small servers, and a person on call who knows them by name.'),
    link('See the plans', 'Quenmark Harbor', 'Quenmark Harbor'),
    panel('Quenmark Workshop'),
    label('TOOLS'),
    label('Quenmark Workshop'),
    label('Convert, sign and tidy files in a browser tab. Nothing to install.'),
    link('Open the workshop', 'Quenmark Workshop', 'Quenmark Workshop'),
    panel('SPONSORED INFOTAINMENT'),
    label('SPONSORED INFOTAINMENT'),
    label('Boards, cables and second chances'),
    link('Watch the channel', 'Boards, cables and second chances', 'SPONSORED INFOTAINMENT'),
]


class Listener(Child):
    """Hears those events of the accessibility bus."""

    def __init__(self, desktop, *events):
        super().__init__(desktop, 'listening_child.py', events)
        assert self.read(20) == 'ready', self.errors.read_text()

    def hear(self, name, seconds=20):
        """Waits for an event of something of that name: the event."""
        heard = []
        while line := self.read(seconds):
            heard.append(line)
            if line[2] == name:
                return line
        raise AssertionError('%r was not heard, but %s' % (name, heard))


def start(desktop, **settings):
    desktop.choose(PROGRAM, **{'smartModeEnabled': 'false', **settings})
    program = desktop.start(PROGRAM)
    desktop.controls.wait(TRIGGER)
    return program


def read_out(desktop):
    """All that the window has to say, in its order."""
    return [line for line in desktop.controls.described() if line['groups'][:1] == ['Orvalen']]


def test_dump(desktop):
    start(desktop)
    for tab in TABS:
        desktop.controls.press(tab)
        print('==', tab)
        for line in read_out(desktop):
            print(line)
    assert 0
