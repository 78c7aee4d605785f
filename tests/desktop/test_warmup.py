"""A person at the simulated laptop, which starts cold."""
import re
import signal
import time

from privatedesktop import GREETING, wait_for

PROGRAM = 'orvalen-simulated'
TRIGGER = 'Trigger Prime Warmup Now'
SHIELD = 'Autonomous Thermal Shield'
CAPTION = 'DISPLAY BRIDGE TEMPERATURE'
PULSE_LIMIT = 15  # seconds; a pulse that does not reach its target ends then


def start(desktop, **settings):
    """The program, which warms up by itself a few seconds after its start unless that is switched off."""
    desktop.choose(PROGRAM, **{'smartModeEnabled': 'false', **settings})
    program = desktop.start(PROGRAM)
    desktop.controls.wait(TRIGGER)
    return program


def shown(desktop):
    """All names and texts on the screen."""
    return [text for _, name, text in desktop.controls.names() for text in (name, text) if text]


def readout(texts):
    """The big number: the first temperature after its caption. None while it is not on the screen."""
    after = texts[texts.index(CAPTION) + 1:] if CAPTION in texts else []
    return next((text for text in after if re.fullmatch(r'\d+\.\d ?(°C)?', text)), None)


def percentages(texts):
    return [int(match.group(1)) for text in texts
            for match in [re.fullmatch(r'Optimizing Gate Drivers \((\d+)%\)\.\.\.', text)] if match]


def test_a_press_on_the_button_warms_the_display_up(desktop):
    program = start(desktop)
    desktop.controls.wait('STANDBY')

    desktop.controls.press(TRIGGER)
    desktop.controls.wait('WARMING UP')
    seen_readouts, seen_percentages = set(), set()

    def over():
        texts = shown(desktop)
        seen_readouts.add(readout(texts))
        seen_percentages.update(percentages(texts))
        return TRIGGER in texts

    wait_for(over, PULSE_LIMIT + 10, 'the end of the warm-up')
    assert len(seen_readouts - {None}) > 1, 'the temperature did not move'
    assert len(seen_percentages) > 1, 'the percentage did not move'
    assert all(0 <= percentage <= 100 for percentage in seen_percentages)
    texts = shown(desktop)
    assert 'WARMING UP' not in texts
    assert 'PROTECTED' in texts or 'STANDBY' in texts

    notification = desktop.notifications.next()
    assert notification['summary'] == 'Orvalen'
    assert re.fullmatch(r'Display Ready! Temperature: \d+\.\d°C', notification['body'])
    assert notification['app_name'] == 'Orvalen'

    assert program.poll() is None
    assert desktop.written() == GREETING


def test_left_alone_it_warms_up_without_a_word(desktop):
    start(desktop, smartModeEnabled='true')
    desktop.controls.wait('WARMING UP')
    desktop.controls.wait(TRIGGER, PULSE_LIMIT + 10)
    assert desktop.notifications.next(1) is None
    assert desktop.written() == GREETING


def test_a_switch_is_in_the_settings_at_once_and_after_the_next_start(desktop):
    program = start(desktop)
    file = desktop.settings_file(PROGRAM)
    assert 'smartModeEnabled=false' in file.read_text()
    assert desktop.controls.is_checked(SHIELD) is False

    desktop.controls.press(SHIELD)
    wait_for(lambda: 'smartModeEnabled=true' in file.read_text(), what='the setting in its file')
    desktop.activate('Orvalen')
    desktop.keys('ctrl+q')
    assert program.wait(10) == 0

    desktop.start(PROGRAM)
    desktop.controls.wait(SHIELD)
    assert desktop.controls.is_checked(SHIELD) is True


def test_closing_the_window_leaves_the_program_at_work(desktop):
    program = start(desktop)
    desktop.close('Orvalen')
    time.sleep(2)  # "goes on" has no condition to wait for
    assert program.poll() is None
    assert desktop.written() == GREETING


def test_control_q_ends_it_in_order(desktop):
    program = start(desktop)
    desktop.activate('Orvalen')
    desktop.keys('ctrl+q')
    assert program.wait(10) == 0
    assert desktop.written() == GREETING


def test_control_q_in_mid_pulse_does_not_wait_for_its_end(desktop):
    program = start(desktop)
    desktop.controls.press(TRIGGER)
    desktop.controls.wait('WARMING UP')
    desktop.activate('Orvalen')
    desktop.keys('ctrl+q')
    assert program.wait(5) == 0  # and with it every thread that heats
    assert desktop.written() == GREETING


def test_a_program_stopped_in_mid_pulse_ends_the_pulse_when_it_goes_on(desktop):
    program = start(desktop)
    desktop.controls.press(TRIGGER)
    desktop.controls.wait('WARMING UP')
    program.send_signal(signal.SIGSTOP)
    time.sleep(PULSE_LIMIT + 1)  # the very thing: time passes while it cannot look
    program.send_signal(signal.SIGCONT)
    desktop.controls.wait(TRIGGER, 3)
    notification = desktop.notifications.next()
    assert notification['body'].startswith('Display Ready!')
    assert desktop.notifications.next(1) is None, 'completed twice'


def test_a_termination_signal_ends_it_in_order(desktop):
    program = start(desktop)
    program.terminate()
    assert program.wait(10) == 0
    assert desktop.written() == GREETING
