"""The controller and the real stream server."""
import os
import stat
import time

import pytest

from machine import PORT_FILE, SCRIPT, SERVER, wait_for

PATTERN = 'orvalen_web_stream.py'
SOMEBODY_ELSE = 61234  # the number of no user


@pytest.fixture
def machine(machine):
    machine.add_interface('en0', '192.168.1.20/24')
    return machine


def servers(machine):
    return machine.processes(PATTERN)


def answers(machine, port):
    return machine.run('curl', '--silent', '--max-time', '10', '--output', '/dev/null', '--write-out', '%{http_code}',
                       'http://192.168.1.20:%d/' % port, check=False) == '200'


def picked_up(control):
    """After the one look at the port file."""
    time.sleep(0.5)
    return control.ask('state')


def test_a_started_server_serves_and_is_known_by_its_command_line(machine):
    control = machine.control()
    assert control.ask('start')['isRunning'] is True
    wait_for(lambda: answers(machine, 8999), what='the page')
    command = machine.path('/proc/%d/cmdline' % servers(machine)[0]).read_bytes()
    assert command.split(b'\0') == [str(SERVER).encode(), SCRIPT.encode(), b'']
    assert picked_up(control)['serverPort'] == 8999
    assert control.said == []


def test_nothing_is_started_before_it_is_asked_for(machine):
    control = machine.control()
    control.ask('refresh')
    assert servers(machine) == []
    assert not machine.path(SCRIPT).exists()


def test_the_port_that_the_server_could_have_is_picked_up(machine):
    machine.take_port(8999)
    control = machine.control()
    assert control.ask('start')['serverPort'] == 8999
    assert control.code() == 'http://192.168.1.20:8999'
    state = control.wait(serverPort=9000)
    assert state['primaryURL'] == 'http://192.168.1.20:9000'
    assert state['bonjourURL'] == 'http://%s:9000' % state['localHostName']
    assert control.code() == 'http://192.168.1.20:9000'
    assert answers(machine, 9000)


def test_the_link_over_usb_gets_the_port_too(machine):
    machine.add_interface('en5', '172.20.10.2/28')
    machine.take_port(8999)
    machine.take_port(9000)
    control = machine.control()
    control.ask('start')
    assert control.wait(serverPort=9001)['usbBridge']['connectionURL'] == 'http://172.20.10.2:9001'


def test_a_stop_leaves_no_server_and_no_port_file(machine):
    control = machine.control()
    control.ask('start')
    wait_for(machine.path(PORT_FILE).exists, what='the port file')
    assert control.ask('stop')['isRunning'] is False
    assert servers(machine) == []
    assert not machine.path(PORT_FILE).exists()
    assert not machine.has_zombies()


def test_toggled_twice_it_runs_and_stops(machine):
    control = machine.control()
    assert control.ask('toggle')['isRunning'] is True
    wait_for(lambda: answers(machine, 8999), what='the page')
    assert control.ask('toggle')['isRunning'] is False
    assert servers(machine) == []
    assert not machine.path(PORT_FILE).exists()


def test_a_second_start_is_a_restart_on_the_same_port(machine):
    control = machine.control()
    control.ask('start')
    wait_for(lambda: answers(machine, 8999), what='the page')
    first = servers(machine)
    assert control.ask('start')['isRunning'] is True
    wait_for(lambda: answers(machine, 8999), what='the page again')
    second = servers(machine)
    assert len(first) == len(second) == 1 and first != second
    assert picked_up(control)['serverPort'] == 8999


def test_the_server_outlives_the_program_and_ends_at_the_next_ones_start(machine):
    control = machine.control()
    control.ask('start')
    wait_for(lambda: answers(machine, 8999), what='the page')
    stale = servers(machine)
    control.quit()
    assert servers(machine) == stale and answers(machine, 8999)

    control = machine.control()
    assert control.state['isRunning'] is False
    control.ask('start')
    wait_for(lambda: answers(machine, 8999), what='the page again')
    assert len(servers(machine)) == 1 and servers(machine) != stale
    assert picked_up(control)['serverPort'] == 8999


def test_a_stop_ends_servers_that_others_left_too(machine):
    for name in ('first', 'second'):
        machine.start('bash', '-c', 'exec -a %s_%s sleep 600' % (name, PATTERN))
    wait_for(lambda: len(servers(machine)) == 2, what='two old servers')
    machine.control().ask('stop')
    assert servers(machine) == []


def test_the_text_at_the_script_path_can_be_run_by_hand(machine):
    control = machine.control()
    control.ask('start')
    control.ask('stop')
    file = machine.path(SCRIPT)
    assert stat.S_IMODE(file.stat().st_mode) == 0o700
    assert file.read_text().startswith('#!%s\n#' % SERVER)
    machine.start(SCRIPT)
    wait_for(lambda: answers(machine, 8999), what='the page')
    assert len(servers(machine)) == 1
    control.ask('stop')
    assert servers(machine) == [] and not answers(machine, 8999)


def test_a_link_at_the_script_path_is_replaced_and_not_followed(machine):
    machine.path('/tmp/precious').write_text('precious')
    machine.run('ln', '-s', '/tmp/precious', SCRIPT)
    control = machine.control()
    assert control.ask('start')['isRunning'] is True
    wait_for(lambda: answers(machine, 8999), what='the page')
    assert machine.path('/tmp/precious').read_text() == 'precious'
    assert not machine.path(SCRIPT).is_symlink()


def test_somebody_elses_program_at_the_script_path_is_left_alone_and_never_run(machine):
    file = machine.path(SCRIPT)
    file.write_text('#!/bin/sh\ntouch /tmp/was-run\n')
    file.chmod(0o755)
    try:
        os.chown(file, SOMEBODY_ELSE, SOMEBODY_ELSE)
    except OSError:
        pytest.skip('only root can give files away')
    control = machine.control()
    assert control.ask('start')['isRunning'] is True
    wait_for(lambda: answers(machine, 8999), what='the page')
    assert file.read_text() == '#!/bin/sh\ntouch /tmp/was-run\n'
    assert not machine.path('/tmp/was-run').exists()
    control.ask('stop')
    assert servers(machine) == []


def test_a_folder_at_the_script_path_does_not_keep_the_server_from_running(machine):
    machine.run('mkdir', SCRIPT)
    control = machine.control()
    control.ask('start')
    wait_for(lambda: answers(machine, 8999), what='the page')


def test_somebody_elses_port_file_is_not_believed(machine):
    file = machine.path(PORT_FILE)
    file.write_text('6666')
    try:
        os.chown(file, SOMEBODY_ELSE, SOMEBODY_ELSE)
    except OSError:
        pytest.skip('only root can give files away')
    control = machine.control()
    control.ask('start')
    assert picked_up(control)['serverPort'] == 8999
    assert file.read_text() == '6666'


def test_a_server_that_finds_no_port_still_counts_as_running_until_the_stop(machine):
    for port in (8999, 9000, 9001, 8088):
        machine.take_port(port)
    control = machine.control()
    control.ask('start')
    wait_for(lambda: servers(machine) == [], what='the server to give up')
    state = picked_up(control)
    assert (state['isRunning'], state['serverPort']) == (True, 8999)
    assert not machine.path(PORT_FILE).exists()
    assert not machine.has_zombies()
    assert control.ask('stop')['isRunning'] is False


def test_a_server_that_was_killed_leaves_nothing_behind(machine):
    control = machine.control()
    control.ask('start')
    wait_for(lambda: answers(machine, 8999), what='the page')
    machine.run('kill', '-KILL', servers(machine)[0])
    wait_for(lambda: servers(machine) == [] and not machine.has_zombies(), what='its end')
    assert control.ask('state')['isRunning'] is True
    control.ask('start')
    wait_for(lambda: answers(machine, 8999), what='the page again')


def test_a_missing_server_is_said_on_the_console_and_nothing_runs(machine):
    control = machine.control(server='/nonexistent/server')
    assert control.ask('start')['isRunning'] is False
    assert control.said == ['Failed to run WebScreenServer process: /nonexistent/server: No such file or directory']
    assert picked_up(control)['isRunning'] is False


def test_a_server_that_will_not_end_is_ended(machine):
    """And does not hold the window up for longer than a bounded time."""
    stubborn = machine.path('/tmp/stubborn')
    stubborn.write_text('#!/bin/sh\ntrap "" TERM\necho >/tmp/ready\nexec sleep 600\n')
    stubborn.chmod(0o755)
    control = machine.control(server='/tmp/stubborn')
    control.ask('start')
    wait_for(machine.path('/tmp/ready').exists, what='the stubborn server')
    assert machine.processes('sleep 600') != []
    assert control.ask('stop')['isRunning'] is False
    assert machine.processes('sleep 600') == []
