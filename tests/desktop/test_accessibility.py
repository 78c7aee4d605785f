"""A person who has the window read out, or who has a keyboard only."""
import re
import time

import private_machine
from privatedesktop import GREETING, Child, Later, wait_for

pytestmark = private_machine.needed

PROGRAM = 'orvalen-simulated'
TRIGGER = 'Trigger Prime Warmup Now'
START, STOP = '⚡ Start Offline Stream', 'Stop Offline Stream'
TABS = ['Dashboard', 'Screen Clone', 'Diagnostics', 'Power & Tools', 'Settings']
ADDRESS = re.compile(r'http://[\w.:-]+')
READING = re.compile(r'\d+\.\d°C')


class Line:
    """What is read out at one place. `group` is the card that it is on."""

    def __init__(self, role, name, about='', states='', group='', value=None, text=''):
        self.wanted = {'role': role, 'name': name, 'description': about, 'text': text, 'value': value}
        self.wanted['group'], self.wanted['states'] = group, sorted(states.split())

    def differs(self, heard):
        """What is wrong, in words; nothing if all is as wanted."""
        found = {**heard, 'group': (heard['groups'][1:] or [''])[-1],
                 'states': sorted(set(heard['states']) - {'enabled', 'sensitive', 'read only', 'focused'})}
        wrong = ['%s %r, not %r' % (key, found[key], wanted) for key, wanted in self.wanted.items()
                 if not (wanted.fullmatch(found[key]) if isinstance(wanted, re.Pattern) else wanted == found[key])]
        return '%s: %s' % (self.wanted['name'], '; '.join(wrong)) if wrong else None


def labels(group, *names):
    return [Line('label', name, group=group) for name in names]


def card(name, *lines):
    """A card and what is on it; a plain text is one that is read out."""
    on_it = [Line('label', line, group=name) if isinstance(line, str) else line for line in lines]
    for line in on_it:
        line.wanted['group'] = name
    return [Line('panel', name), *on_it]


def button(name, about='', group=''):
    return Line('push button', name, about, 'focusable', group)


def link(name, about='', group=''):
    return Line('link', name, about, 'focusable', group)


def switch(name, about, is_on):
    return Line('check box', name, about, 'focusable checked' if is_on else 'focusable')


def reading(value, about):
    return Line('label', value, about)


def address(name):
    return Line('text', name, ADDRESS, 'editable focusable', text=ADDRESS)


def offer(name, description, action, *lines):
    return card(name, *lines, description, link(action, name))


LEFT = [
    *labels('', 'QUENMARK NETWORK'),
    *card('Quenmark Harbor', 'HOSTING', 'Quenmark Harbor', 'Small servers, and a person on call who knows them by name.',
          link('See the plans', 'Quenmark Harbor')),
    *card('Quenmark Workshop', 'TOOLS', 'Quenmark Workshop',
          'Convert, sign and tidy files in a browser tab. Nothing to install.',
          link('Open the workshop', 'Quenmark Workshop')),
    *card('SPONSORED INFOTAINMENT', 'SPONSORED INFOTAINMENT', 'Boards, cables and second chances',
          link('Watch the channel', 'Boards, cables and second chances')),
]


def header(selected):
    return [
        *labels('', 'Orvalen'),
        link('Quenmark Technologies'),
        switch('Prevent sleep', '', False),
        *labels('', 'STANDBY'),
        Line('page tab list', ''),
        *[Line('page tab', name, '', 'focusable selectable' + (' selected' if name == selected else ''))
          for name in TABS],
    ]


SHIELD = 'Autonomous Thermal Shield', 'Auto-heats on wake, sleeps when away'
CHARGER = 'Auto-Warmup on Charger Plug-In', 'Immediately primes display when USB-C charger is connected.'
CHIMES = 'Audio Chimes & Sound Feedback', 'Plays audio signals when warmup starts and display is ready.'
TARGET = 'Target Bridge Temperature', \
    'Recommended: 39.5°C – 41.0°C. Safely bridges connection without excess heat.'
TIMEOUT = 'Idle Sleep Timeout', 'If no keyboard/mouse input is detected for this duration, ' \
    'Orvalen stands down to save battery.'


def tool(name, about):
    return card(name, name, about, link('Open ↗', name))


def method(number, name, badge, about, action, *more):
    return card(name, str(number), name, badge, about, button(action), *more)


CLONE_TITLE = labels(
    '', 'Multi-Screen Clone & Bypass Studio',
    'Multiple zero-downtime display mirroring methods for when screen blacks out.')
WEB = 'Zero-Install Web Mirror (Phone & Tablets)', \
    'Stream Mac screen directly to any iPhone, Android, or laptop browser with Screen 1 / Screen 2 tabs.'
OTHER_METHODS = [
    *method(2, 'Direct USB Tethering Mirror', '100% OFFLINE',
            'Connect phone with USB cable & turn on USB Tethering. Zero Wi-Fi or router needed.',
            'Refresh USB Status', 'Waiting for USB Connection:',
            '• Connect phone to Mac via USB-C / Lightning cable.',
            "• iPhone: Settings → Personal Hotspot → Enable 'Allow Others to Join'.",
            "• Android: Settings → Hotspot & Tethering → Turn on 'USB Tethering'.",
            ' (Bonjour works over USB cable)'),
    *method(3, 'Apple Sidecar / AirPlay USB Mirror', 'RETINA QUALITY',
            'Use iPad as a zero-latency secondary screen via USB-C or AirPlay to any TV/Mac.',
            'Open Displays Settings ↗'),
    *method(4, 'Blind Voice Assistant (When 100% Black)', 'KEYBOARD SHORTCUT',
            'Press ⌘ + ⌥ + M anytime. Mac will instantly start streaming and speak out the connection URL via '
            'speakers.', 'Test Hotkey Voice'),
]
IN_BROWSER, BY_NAME = 'Open in Phone / Tablet Browser:', 'Universal Bonjour (mDNS):'
WHILE_STREAMING = [
    *CLONE_TITLE,
    *method(1, WEB[0], 'ONLINE', WEB[1], 'Stop Stream', Line('image', 'QR code', ADDRESS), 'Scan with Phone',
            IN_BROWSER, address(IN_BROWSER), button('Copy', ADDRESS), button('Open', ADDRESS),
            BY_NAME, address(BY_NAME), button('Copy', ADDRESS)),
    *OTHER_METHODS,
]


CONTENT = {
    'Dashboard': [
        *card('DISPLAY BRIDGE TEMPERATURE', 'DISPLAY BRIDGE TEMPERATURE', reading(READING, 'DISPLAY BRIDGE TEMPERATURE'),
              'Target Optimal: 40.0°C • Hotkey: ⌘⌥W'),
        button(TRIGGER),
        *labels('', *SHIELD),
        switch(*SHIELD, False),
        *card('Gate Driver T-CON', 'Gate Driver T-CON', reading(READING, 'Gate Driver T-CON')),
        *card('Apple Silicon SoC', 'Apple Silicon SoC', reading(READING, 'Apple Silicon SoC')),
        *card('Power Source', 'Power Source', reading('AC Adapter', 'Power Source')),
        *card('Active State', 'Active State', reading('Active Workstation', 'Active State')),
    ],
    'Screen Clone': [
        *CLONE_TITLE,
        *method(1, WEB[0], 'NO APP NEEDED', WEB[1], 'Start Browser Cast'),
        *OTHER_METHODS,
    ],
    'Diagnostics': [
        *card('Service Shop Report', 'Service Shop Report',
              'Official proof for technicians that your M1 GPU is 100% healthy',
              button('Generate Technician Diagnostic Report')),
        *card('Hardware Integrity Check', 'Hardware Integrity Check', 'Apple M1 GPU: Normal & Rendering',
              'Internal Color LCD: Online in macOS', 'Flex/T-CON Connection: Thermal Sensitive'),
        *card('💡 1-Minute Flashlight Test', '💡 1-Minute Flashlight Test',
              'When the screen is black, shine your phone torch close to the glass at an angle:',
              '• Faint Desktop/Logo visible: LCD works! Issue is only Backlight power circuit.',
              '• Completely dark: T-CON / eDP display data line is open when cold.'),
        *card('⚠️ Safety Precaution', '⚠️ Safety Precaution',
              'Never use a hair dryer or external hot air directly on the glass. The polarizer melts at 65°C. '
              "Always use Orvalen's safe internal warm-up."),
    ],
    'Power & Tools': [
        *labels('', 'Quenmark Online Tools', 'Small helpers that run in your browser, free of charge.'),
        link('Visit Portal ↗', 'Quenmark Online Tools'),
        *tool('Paper Desk', 'Merge, sort and sign PDF documents.'),
        *tool('Picture Press', 'Crop, shrink and convert photos in one go.'),
        *tool('Bracket Bench', 'Format, compare and check JSON, XML and YAML.'),
        *tool('Quick Line', 'A chat room for an hour, without an account.'),
        *card('Is there something you want built?', 'Is there something you want built?',
              'Our engineers design, build and run software for small teams.',
              link('See our services ↗', 'Is there something you want built?')),
    ],
    'Settings': [
        *card('Automations & Feedback', 'Automations & Feedback', *CHARGER, switch(*CHARGER, True), *CHIMES,
              switch(*CHIMES, True)),
        *card('Emergency Blind Hotkey:', 'Emergency Blind Hotkey:',
              'Press anytime (even on a pitch-black screen) to trigger instant warm-up with audio chimes.',
              '⌘ + ⌥ + W'),
        *labels('', TARGET[0], '40.0 °C'),
        Line('slider', *TARGET, 'focusable', value=[40.0, 38.0, 44.0, 0.5]),
        *labels('', TARGET[1], TIMEOUT[0], '3 mins'),
        Line('slider', *TIMEOUT, 'focusable', value=[3.0, 1.0, 10.0, 1.0]),
        *labels('', TIMEOUT[1]),
        *card('Quenmark Technologies', 'Quenmark Technologies', 'Hardware & Software Intelligence',
              'Orvalen is crafted by Quenmark Technologies to solve Apple Silicon thermal bridge and display '
              'interconnect sensitivity.', link('quenmark.example ↗'), link('tools.quenmark.example ↗')),
    ],
}


def right(stream):
    return [
        *labels('', '100% OFFLINE MIRROR', 'NO INTERNET',
                'Works completely offline without Wi-Fi, Router or Active Internet.'),
        *card('BLANK SCREEN HOTKEY:', 'BLANK SCREEN HOTKEY:', '⌘ + ⌥ + M'),
        stream,
        *card('USB CABLE (OFFLINE)', 'USB CABLE (OFFLINE)', 'Plug USB cable & turn on Hotspot/Tethering:'),
        *card('WI-FI / LOCAL MDNS', 'WI-FI / LOCAL MDNS', address('WI-FI / LOCAL MDNS'), button('Copy', ADDRESS)),
        *labels('', 'SYSTEM SETTINGS JUMP'),
        button('Displays & Mirroring'),
        button('Screen Recording Access'),
        *card('Servers and engineers, rented', 'Servers and engineers, rented',
              'Quenmark hosts what you build, and helps you build it.',
              link('Talk to us ↗', 'Servers and engineers, rented')),
    ]


RIGHT = right(button(START, 'The stream is off'))


class Listener(Child):
    """Hears those events of the accessibility bus."""

    def __init__(self, desktop, *events):
        super().__init__(desktop, 'listening_child.py', events)
        assert self.read(20) == 'ready', self.errors.read_text()

    def hear(self, pattern, seconds=30):
        """Waits for an event of something whose name is like that: the event."""
        heard, deadline = [], time.monotonic() + seconds
        while time.monotonic() < deadline:
            event = self.read(deadline - time.monotonic())
            if event and re.fullmatch(pattern, event['name']):
                return event
            heard.append(event)
        raise AssertionError('%r was not heard, but %s' % (pattern, heard))


def start(desktop, **settings):
    desktop.choose(PROGRAM, **{'smartModeEnabled': 'false', **settings})
    program = desktop.start(PROGRAM)
    desktop.controls.wait(TRIGGER, 30)
    return program


def read_out(desktop):
    """All that the window has to say, in its order."""
    return [line for line in desktop.controls.described() if line['groups'][:1] == ['Orvalen']]


def show(desktop, tab):
    """What is read out on that tab."""
    desktop.controls.press(tab)

    def is_there():
        lines = read_out(desktop)
        return any(line['name'] == tab and 'selected' in line['states'] for line in lines) and lines

    return wait_for(is_there, what='the tab "%s"' % tab)


def test_every_tab_is_read_out_in_its_order(desktop):
    start(desktop)
    for tab in TABS:
        wanted, heard = LEFT + header(tab) + CONTENT[tab] + RIGHT, show(desktop, tab)
        wrong = list(filter(None, map(Line.differs, wanted, heard)))
        assert not wrong, '%s: %s' % (tab, '\n'.join(wrong))
        assert len(heard) == len(wanted), tab
        for line in heard:
            small = 'focusable' in line['states'] and line['role'] != 'text' and min(line['place'][2:]) < 24
            assert not small, line
    assert ['frame', 'Orvalen', ''] in desktop.controls.names()
    assert desktop.written() == GREETING


def test_the_stream_is_read_out_with_its_addresses_while_it_runs(desktop, network):
    start(desktop)
    desktop.controls.press(START)
    desktop.controls.wait(STOP, 30)
    wanted = LEFT + header('Screen Clone') + WHILE_STREAMING + right(button(STOP, 'The stream is on'))

    def wrong():
        heard = show(desktop, 'Screen Clone')
        return [*filter(None, map(Line.differs, wanted, heard)), *['not so long'] * (len(heard) != len(wanted))]

    wait_for(lambda: not wrong(), what=Later(lambda: '\n'.join(wrong())))  # what is there: addresses come by and by
    desktop.controls.press(STOP)
    desktop.controls.wait(START, 30)
    assert desktop.written() == GREETING


def test_what_is_pressed_by_a_reader_is_pressed(desktop):
    start(desktop)
    file = desktop.settings_file(PROGRAM)
    desktop.controls.press('Settings')
    for name, key in ((CHARGER[0], 'autoWarmupOnCharger'), (CHIMES[0], 'soundFeedbackEnabled')):
        desktop.controls.press(name)
        wait_for(lambda: '%s=false' % key in file.read_text(), what='"%s" in the settings' % key)
        wait_for(lambda: desktop.controls.is_checked(name) is False, what='"%s" to be read out as off' % name)

    for (name, _), key, value, kept in ((TARGET, 'targetTemp', 42.6, '42.5'), (TARGET, 'targetTemp', 99, '44'),
                                        (TIMEOUT, 'idleTimeoutMinutes', 7, '7')):
        desktop.controls.set(name, value)
        wait_for(lambda: '%s=%s\n' % (key, kept) in file.read_text(), what='%s=%s in the settings' % (key, kept))
        wait_for(lambda: [line['value'][0] for line in read_out(desktop)
                          if line['role'] == 'slider' and line['name'] == name] == [float(kept)],
                 what='"%s" to be read out as %s' % (name, kept))


def test_what_changes_is_said(desktop):
    (desktop.folder / 'home/Desktop').mkdir()  # for the report
    start(desktop, targetTemp='44')
    names = Listener(desktop, 'object:property-change:accessible-name')
    desktop.controls.press(TRIGGER)
    assert names.hear('WARMING UP')['role'] == 'label'
    assert names.hear(r'Optimizing Gate Drivers \(\d+%\)\.\.\.')['role'] == 'push button'

    desktop.controls.press('Diagnostics')
    desktop.controls.press('Generate Technician Diagnostic Report')
    assert names.hear('Saved to Desktop & Opened in Safari!')['role'] == 'label'

    desktop.controls.press('Dashboard')
    assert names.hear(TRIGGER, 60)['role'] == 'push button'  # it has ended


def test_the_tab_key_goes_the_way_of_reading(desktop):
    start(desktop)
    listener = Listener(desktop, 'object:state-changed:focused')
    desktop.activate('Orvalen')

    def goes(key, order):
        desktop.keys(*[key] * len(order))
        heard = []
        while len(heard) < len(order):
            event = listener.read(20)
            assert event, 'silence after %s' % heard
            if event['detail'] == 1 and event['role'] != 'frame':
                heard.append(event['name'])
        assert heard == order

    goes('Tab', ['See the plans'])
    for tab in TABS:
        way = [line['name'] for line in show(desktop, tab) if 'focusable' in line['states'] and line['role'] != 'text']
        assert len(way) > 10
        goes('Tab', way[1:] + way[:1])
        goes('shift+Tab', way[::-1])
