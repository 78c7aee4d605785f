"""The tab "Settings": sliders under a real pointer, real keys and a real wheel, and what is on disk meanwhile."""
import configparser

from privatedesktop import GREETING, wait_for

PROGRAM = 'orvalen-simulated'
TARGET = 'Target Bridge Temperature'
IDLE = 'Idle Sleep Timeout'
RANGES = {TARGET: (38.0, 44.0), IDLE: (1.0, 10.0)}
KNOB = 18  # px wide


class SettingsTab:
    """The tab of the program, opened by a click."""

    def __init__(self, desktop, **settings):
        """With settings made before the start; as they were left if none are given."""
        self.desktop = desktop
        if settings:
            desktop.choose(PROGRAM, smartModeEnabled='false', **settings)
        self.file = desktop.settings_file(PROGRAM)
        self.before = self.stored()
        self.program = desktop.start(PROGRAM)
        desktop.controls.wait('Trigger Prime Warmup Now', 30)
        desktop.activate('Orvalen')
        wait_for(self.open, what='the tab')

    def open(self):
        """Clicks on its tab; whether it is there now."""
        self.click(self.middle('page tab', 'Settings'))
        return self.desktop.controls.shows(TARGET)

    def place(self, role, name):
        return wait_for(lambda: self.desktop.controls.place(role, name), 20, 'the %s "%s"' % (role, name))

    def middle(self, role, name):
        x, y, width, height = self.place(role, name)
        return x + width // 2, y + height // 2

    def knob(self, slider, value):
        """Where the knob of that slider is at that value."""
        x, y, width, height = self.place('slider', slider)
        lowest, highest = RANGES[slider]
        return x + KNOB // 2 + round((value - lowest) / (highest - lowest) * (width - KNOB)), y + height // 2

    def resize(self, width, height):
        window = self.desktop.windows('Orvalen')[-1]
        self.desktop.output(['xdotool', 'windowsize', window, str(width), str(height)])
        size = 'Geometry: %dx%d' % (width, height)
        wait_for(lambda: size in self.desktop.output(['xdotool', 'getwindowgeometry', window]), what=size)

    def pointer(self, *what):
        self.desktop.output(['xdotool', *map(str, what)])

    def click(self, point):
        self.pointer('mousemove', *point, 'click', 1)

    def drag(self, start, end):
        """Holds, moves in some steps, and leaves the button down."""
        self.pointer('mousemove', *start, 'mousedown', 1)
        for part in range(1, 5):
            self.pointer('mousemove', *(a + (b - a) * part // 4 for a, b in zip(start, end)))

    def release(self):
        self.pointer('mouseup', 1)

    def turn_wheel_over(self, point, notches=1):
        """Towards the person."""
        self.pointer('mousemove', *point, 'click', '--repeat', notches, 5)

    def stored(self):
        """What is on disk, and since when."""
        return self.file.read_bytes(), self.file.stat().st_mtime_ns

    def kept(self, key):
        """The setting on disk; None if there is none."""
        parser = configparser.ConfigParser()
        parser.optionxform = str
        parser.read(self.file)
        text = parser.get('General', key, fallback=None)
        return None if text is None else float(text)

    def expect(self, shown, **kept):
        """That is shown, and these are the settings on disk by then."""
        self.desktop.controls.wait(shown, 30)
        assert {key: self.kept(key) for key in kept} == kept

    def quit(self):
        self.desktop.activate('Orvalen')
        self.desktop.keys('ctrl+q')
        assert self.program.wait(30) == 0
        assert self.desktop.written() == GREETING


def test_every_way_to_move_a_slider_is_on_disk_at_once_and_there_after_a_restart(desktop):
    tab = SettingsTab(desktop, targetTemp='40', idleTimeoutMinutes='3')
    tab.expect('40.0 °C', targetTemp=40.0)

    tab.drag(tab.knob(TARGET, 40.0), tab.knob(TARGET, 42.5))
    tab.expect('42.5 °C', targetTemp=42.5)  # while it is still held
    tab.release()
    tab.click(tab.knob(TARGET, 39.0))
    tab.expect('39.0 °C', targetTemp=39.0)
    desktop.keys('Right')  # the click has given it the keyboard
    tab.expect('39.5 °C', targetTemp=39.5)
    desktop.keys('End')
    tab.expect('44.0 °C', targetTemp=44.0)
    desktop.keys('Down', 'Down', 'Page_Down')
    tab.expect('42.0 °C', targetTemp=42.0)
    tab.turn_wheel_over(tab.middle('slider', TARGET), 2)
    tab.expect('41.0 °C', targetTemp=41.0, idleTimeoutMinutes=3.0)

    desktop.keys('Tab', 'Home')  # on to the next slider
    tab.expect('1 mins', idleTimeoutMinutes=1.0)
    tab.click(tab.knob(IDLE, 8.0))
    tab.expect('8 mins', idleTimeoutMinutes=8.0, targetTemp=41.0)

    tab.quit()
    again = SettingsTab(desktop)
    again.expect('41.0 °C', targetTemp=41.0)
    again.expect('8 mins', idleTimeoutMinutes=8.0)
    again.quit()


def test_what_was_stored_elsewhere_is_shown_and_stays_to_the_byte(desktop):
    tab = SettingsTab(desktop, targetTemp='45.3', idleTimeoutMinutes='9.9')
    controls = desktop.controls
    controls.wait('45.3 °C', 30)
    controls.wait('9 mins', 30)

    tab.resize(900, 640)
    tab.resize(815, 560)
    height = tab.place('slider', TARGET)[1]

    def scrolled():  # the keyboard is elsewhere
        tab.turn_wheel_over(tab.middle('slider', TARGET))
        return tab.place('slider', TARGET)[1] < height

    wait_for(scrolled, what='the tab to scroll')
    desktop.keys('Tab', 'Tab', 'Tab', 'Tab')  # over both sliders
    controls.press('Dashboard')
    controls.wait('Trigger Prime Warmup Now', 30)
    controls.press('Settings')
    controls.wait('45.3 °C', 30)
    controls.wait('9 mins', 30)
    tab.quit()
    assert tab.stored() == tab.before  # as it was before the program was started
