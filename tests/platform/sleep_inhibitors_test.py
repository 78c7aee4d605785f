#!/usr/bin/env python3
"""Keeps the machine awake by every service that can, on message buses of the test's own.

sleep_inhibitors_test.py HOLD_AWAKE    The built program that asks.
Desktop services are stand-ins (tests/support/sleep_services.py); logind is a mock and, for root, the real one.
Ends with status 77 (skipped) where the programs to test with are missing.
"""
import json
import os
import pathlib
import select
import shutil
import signal
import socket
import subprocess
import sys
import tempfile
import time
import unittest

SUPPORT = pathlib.Path(__file__).resolve().parents[1] / "support"
sys.path.append(str(SUPPORT))
import logind  # noqa: E402
from waiting import wait_for  # noqa: E402

PYTHON = "/usr/bin/python3"  # the one that Debian's modules belong to
STAND_IN = SUPPORT / "sleep_services.py"
PATIENCE = 30  # seconds; only a failing test waits them out
UNHURRIED = PATIENCE * 1000  # milliseconds that the program waits for answers that do come
HURRIED = 400  # for those that do not
BUSY = 3000  # for both, where some come and some do not
REASON = "Orvalen: Prevent System Sleep"

BUS = """<busconfig><type>session</type><listen>unix:path=%(address)s</listen><servicedir>%(services)s</servicedir>
<policy context='default'><allow send_destination='*' eavesdrop='true'/><allow eavesdrop='true'/><allow own='*'/></policy>
</busconfig>"""


class Talker:
    """A process that is spoken to and answers by lines. What it says to standard error is a mistake."""

    def __init__(self, test, *command, stdin=subprocess.PIPE):
        self.test = test
        self.errors = open(test.folder / ("errors-%d" % time.monotonic_ns()), "w+b")
        self.process = subprocess.Popen([str(part) for part in command], env=test.environment, stdin=stdin,
                                        stdout=subprocess.PIPE, stderr=self.errors)
        self.buffer = b""
        test.addCleanup(self.end)

    def end(self):
        if self.process.poll() is None:
            self.process.kill()
        self.process.wait()
        for stream in (self.process.stdin, self.process.stdout, self.errors):
            if stream and not stream.closed:
                stream.close()

    def line(self, seconds=PATIENCE):
        """The next line; None if none comes."""
        deadline = time.monotonic() + seconds
        while b"\n" not in self.buffer:
            ready, _, _ = select.select([self.process.stdout], [], [], max(0, deadline - time.monotonic()))
            data = os.read(self.process.stdout.fileno(), 65536) if ready else b""
            if not data:
                return None
            self.buffer += data
        line, self.buffer = self.buffer.split(b"\n", 1)
        return line.decode()

    def said_wrong(self):
        return pathlib.Path(self.errors.name).read_text()


class Service(Talker):
    """A stand-in for a service of the desktop."""

    def __init__(self, test, *arguments):
        super().__init__(test, PYTHON, STAND_IN, *arguments, stdin=subprocess.DEVNULL)
        word, self.address = self.next()
        test.assertEqual(word, "ready", self.said_wrong())

    def next(self):
        line = self.line()
        self.test.assertIsNotNone(line, "it heard nothing more. " + self.said_wrong())
        return json.loads(line)

    def heard(self):
        """What it was asked so far and has not been read yet."""
        marked = self.test.call("--user", self.address, "/mark", "com.quenmark.StandIn", "Mark")
        self.test.assertEqual(marked.returncode, 0, marked.stderr)
        return list(iter(self.next, "marked"))


class Program(Talker):
    """The program that is to be kept awake for."""

    def __init__(self, test, answer=UNHURRIED, start=UNHURRIED, response=UNHURRIED, together=UNHURRIED):
        super().__init__(test, HOLD_AWAKE, answer, start, response, together)

    def ask(self, *words):
        self.process.stdin.write((" ".join(map(str, words)) + "\n").encode())
        self.process.stdin.flush()
        answer = self.line(2 * PATIENCE)
        assert answer is not None, "the program hangs or is gone"
        return answer

    def create(self):
        """The identifier; None if it was refused."""
        answer = self.ask("create")
        return None if answer == "refused" else int(answer)

    def kill(self):
        self.process.kill()
        self.process.wait()


class Buses(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        (self.folder / "services").mkdir()
        self.environment = {
            "PATH": os.environ["PATH"], "HOME": str(self.folder), "XDG_RUNTIME_DIR": str(self.folder),
            "DBUS_SESSION_BUS_ADDRESS": "unix:path=%s" % (self.folder / "session"),
            "DBUS_SYSTEM_BUS_ADDRESS": "unix:path=%s" % (self.folder / "system"),
        }

    def start_bus(self, name):
        config = self.folder / (name + ".conf")
        config.write_text(BUS % {"address": self.folder / name, "services": self.folder / "services"})
        daemon = Talker(self, "dbus-daemon", "--config-file=%s" % config, "--nofork", "--nopidfile", "--print-address")
        self.assertTrue(daemon.line(), daemon.said_wrong())
        return daemon

    def can_be_started(self, name, command):
        (self.folder / "services" / (name + ".service")).write_text(
            "[D-BUS Service]\nName=%s\nExec=%s\n" % (name, command))
        reload = self.call("--user", "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                           "ReloadConfig")
        self.assertEqual(reload.returncode, 0, reload.stderr)

    def call(self, bus, *method):
        return subprocess.run(["busctl", bus, "--json=short", "call", *method], env=self.environment,
                              capture_output=True, text=True, timeout=PATIENCE, check=False)

    def mock_logind(self):
        """A logind of which only the locks are true."""
        self.start_bus("system")
        Talker(self, *logind.MOCK)
        wait_for(lambda: self.locks() is not None, what="a mock of logind")

    def locks(self):
        """What `systemd-inhibit --list` shows, without process and user: [who, what, why, mode]; None without logind."""
        asked = self.call("--system", "org.freedesktop.login1", "/org/freedesktop/login1",
                          "org.freedesktop.login1.Manager", "ListInhibitors")
        if asked.returncode != 0:
            return None
        return [[who, what, why, mode] for what, who, why, mode, *_ in json.loads(asked.stdout)["data"][0]]

    def leave_process(self, program):
        pid = int(program.ask("leave"))
        self.addCleanup(os.kill, pid, signal.SIGKILL)
        self.assertGreater(pid, 0)


class DesktopServices(Buses):
    def setUp(self):
        super().setUp()
        self.start_bus("session")

    def held_and_given_back(self, service, asked, released):
        program = Program(self)
        identifier = program.create()
        self.assertTrue(identifier)
        self.assertEqual(service.next(), asked)
        self.assertEqual(service.heard(), [])
        program.ask("release", identifier)
        self.assertEqual(service.next(), released)
        self.assertEqual(service.next(), ["ended", "release"])
        self.assertEqual(program.said_wrong(), "")

    def dropped_with_the_program(self, service):
        program = Program(self)
        self.assertTrue(program.create())
        self.assertEqual(service.next()[0], "asked")
        self.leave_process(program)
        program.kill()
        self.assertEqual(service.next(), ["ended", "vanished"])

    def test_the_power_service(self):
        asked, released = ["asked", "Inhibit", ["Orvalen", REASON]], ["asked", "UnInhibit", [4711]]
        for names in (["org.freedesktop.PowerManagement"], ["org.freedesktop.PowerManagement.Inhibit"],
                      ["org.freedesktop.PowerManagement", "org.freedesktop.PowerManagement.Inhibit"]):
            with self.subTest(names):
                service = Service(self, "power", "grant", *names)
                self.held_and_given_back(service, asked, released)
                self.dropped_with_the_program(service)
                service.end()

    def test_the_session_manager(self):
        service = Service(self, "session")
        self.held_and_given_back(service, ["asked", "Inhibit", ["com.quenmark.Orvalen", 0, REASON, 4]],
                                 ["asked", "Uninhibit", [4711]])
        self.dropped_with_the_program(service)

    def test_the_portal(self):
        for manner in ("grant", "early"):
            with self.subTest(manner):
                service = Service(self, "portal", manner)
                self.held_and_given_back(service, ["asked", "Inhibit", ["", 4, {"reason": REASON}]],
                                         ["asked", "Close", []])
                self.dropped_with_the_program(service)
                service.end()

    def test_a_request_that_the_portal_refuses_is_closed(self):
        service = Service(self, "portal", "refuse")
        program = Program(self)
        self.assertIsNone(program.create())
        self.assertEqual([service.next()[1] for _ in range(2)], ["Inhibit", "Close"])

    def test_a_request_that_the_portal_does_not_respond_to_is_closed(self):
        for manner in ("mute", "late"):
            with self.subTest(manner):
                service = Service(self, "portal", manner)
                program = Program(self, response=HURRIED)
                for _ in range(2):  # a response that comes too late is for nobody
                    self.assertIsNone(program.create())
                    self.assertEqual(service.next()[1], "Inhibit")
                    self.assertEqual(service.next()[1], "Close")
                    self.assertEqual(service.next(), ["ended", "release"])
                self.assertEqual(program.said_wrong(), "")
                service.end()

    def test_a_portal_that_has_to_get_going_has_its_time_to_respond_all_the_same(self):
        Service(self, "portal", "slow")
        self.assertTrue(Program(self, response=2500).create())

    def test_they_are_asked_in_their_order_until_one_grants(self):
        self.mock_logind()
        services = {name: Service(self, name) for name in ("power", "session", "portal")}
        program = Program(self)
        for granting in ("power", "session", "portal", None):
            identifier = program.create()
            self.assertEqual(identifier is not None, granting is not None)
            heard = {name: service.heard() for name, service in services.items()}
            asked = ["power", "session", "portal"]
            if granting:
                asked = asked[:asked.index(granting) + 1]
            self.assertEqual([name for name in services if heard[name]], asked)
            for name in asked:
                refused = ["Close", "release"] if name == "portal" and not granting else []
                self.assertEqual([line[1] for line in heard[name]], ["Inhibit", *refused], name)
            self.assertEqual(self.locks(), [])
            if granting:
                program.ask("release", identifier)
                self.assertIn(services[granting].next()[1], ("UnInhibit", "Uninhibit", "Close"))
                services[granting].end()
                services[granting] = Service(self, granting, "refuse")

    def test_a_service_that_hangs_is_passed_over(self):
        power, session = Service(self, "power"), Service(self, "session")
        power.process.send_signal(signal.SIGSTOP)
        program = Program(self, answer=BUSY)
        self.assertTrue(program.create())
        self.assertEqual(session.next(), ["asked", "Inhibit", ["com.quenmark.Orvalen", 0, REASON, 4]])
        power.process.send_signal(signal.SIGCONT)
        self.assertEqual(power.next()[1], "Inhibit")
        self.assertEqual(power.next(), ["ended", "vanished"])  # nobody waits for that grant any more

    def test_where_all_of_them_hang_it_is_a_refusal(self):
        self.mock_logind()
        services = [Service(self, name) for name in ("power", "session", "portal")]
        for service in services:
            service.process.send_signal(signal.SIGSTOP)
        program = Program(self, BUSY, BUSY)
        self.assertIsNone(program.create())
        self.assertEqual(self.locks(), [])
        self.assertEqual(program.said_wrong(), "")
        for service in services:
            service.process.send_signal(signal.SIGCONT)
            self.assertEqual(service.next()[:2], ["asked", "Inhibit"])
            self.assertEqual(service.next(), ["ended", "vanished"])

    def test_a_service_that_hangs_does_not_hold_up_a_release(self):
        service = Service(self, "power")
        program = Program(self)
        identifier = program.create()
        self.assertEqual(service.next()[1], "Inhibit")
        service.process.send_signal(signal.SIGSTOP)
        self.assertEqual(program.ask("release", identifier), "released")
        service.process.send_signal(signal.SIGCONT)
        self.assertEqual(service.next()[1], "UnInhibit")
        self.assertEqual(service.next(), ["ended", "release"])

    def test_a_service_is_started_if_it_can_be(self):
        self.can_be_started("org.gnome.SessionManager", "%s %s session" % (PYTHON, STAND_IN))
        self.assertTrue(Program(self).create())

    def test_a_service_that_cannot_be_started_refuses(self):
        self.mock_logind()
        self.can_be_started("org.freedesktop.portal.Desktop", "/bin/false")
        program = Program(self)
        self.assertIsNone(program.create())
        self.assertEqual(self.locks(), [])  # a portal is there, if a bad one
        session = Service(self, "session")
        self.can_be_started("org.freedesktop.PowerManagement", "/bin/false")
        self.assertTrue(program.create())
        self.assertEqual(session.next()[1], "Inhibit")

    def test_what_a_service_took_along_is_not_released_at_its_successor(self):
        service = Service(self, "power")
        program = Program(self)
        identifier = program.create()
        service.end()
        successor = Service(self, "power")
        other = Program(self)
        self.assertTrue(other.create())  # has the number that ours had
        self.assertEqual(successor.next()[1], "Inhibit")
        self.assertEqual(program.ask("release", identifier), "released")
        self.assertEqual(successor.heard(), [])
        self.assertTrue(program.create())
        self.assertEqual(successor.next()[1], "Inhibit")

    def test_two_programs_do_not_disturb_each_other(self):
        service = Service(self, "session")
        one, other = Program(self), Program(self)
        first, _ = one.create(), other.create()
        self.assertEqual([service.next()[1] for _ in range(2)], ["Inhibit", "Inhibit"])
        one.ask("release", first)
        self.assertEqual(service.next(), ["asked", "Uninhibit", [4711]])
        self.assertEqual(service.next(), ["ended", "release"])
        self.assertEqual(service.heard(), [])

    def test_only_idle_sleep_is_known(self):
        service = Service(self, "power")
        self.assertEqual(Program(self).ask("create", "NoDisplaySleepAssertion"), "refused")
        self.assertEqual(service.heard(), [])


class Logind(Buses):
    """Where there is no desktop."""

    def real_logind(self):
        if reason := logind.why_no_real_one():
            self.skipTest(reason)
        self.start_bus("system")
        process = Talker(self, *logind.REAL).process
        wait_for(lambda: self.locks() is not None or process.poll() is not None, what="systemd-logind")
        if process.poll() is not None:
            self.skipTest("systemd-logind does not run here")

    def locked_and_unlocked(self):
        lock = [["Orvalen", "idle", REASON, "block"]]
        program = Program(self)
        self.assertEqual(self.locks(), [])
        identifier = program.create()
        self.assertTrue(identifier)
        self.assertEqual(self.locks(), lock)
        program.ask("release", identifier)
        wait_for(lambda: self.locks() == [], what="the lock's end")
        self.assertTrue(program.create())
        self.assertEqual(self.locks(), lock)
        self.leave_process(program)
        program.kill()
        wait_for(lambda: self.locks() == [], what="the lock's end with the program")
        self.assertEqual(program.said_wrong(), "")

    def test_a_lock_of_the_real_one(self):
        self.real_logind()
        self.start_bus("session")
        self.locked_and_unlocked()

    def test_a_lock_of_a_mock_without_a_session_bus(self):
        self.mock_logind()
        self.locked_and_unlocked()

    def test_one_that_hangs_is_not_waited_for(self):
        self.start_bus("session")
        self.start_bus("system")
        mock = Talker(self, *logind.MOCK)
        wait_for(lambda: self.locks() is not None, what="a mock of logind")
        mock.process.send_signal(signal.SIGSTOP)
        self.assertIsNone(Program(self, answer=BUSY).create())
        mock.process.send_signal(signal.SIGCONT)
        wait_for(lambda: " Inhibit " in mock.line(), what="the question, after all")

    def test_no_bus_at_all_is_a_refusal(self):
        program = Program(self)
        self.assertIsNone(program.create())
        self.assertIsNone(program.create())
        self.assertEqual(program.said_wrong(), "")

    def test_a_bus_that_hangs_is_not_waited_for(self):
        self.mock_logind()
        with socket.socket(socket.AF_UNIX) as bus:  # takes the connection and says nothing
            bus.bind(str(self.folder / "session"))
            bus.listen(64)
            program = Program(self, HURRIED, HURRIED)
            self.assertIsNone(program.create())
            self.assertEqual(self.locks(), [])  # there may be a desktop
            self.assertEqual(program.said_wrong(), "")

    def test_a_bus_that_stops_is_not_waited_for(self):
        daemon = self.start_bus("session")
        Service(self, "power")
        daemon.process.send_signal(signal.SIGSTOP)
        program = Program(self, HURRIED, HURRIED)
        self.assertIsNone(program.create())
        daemon.process.send_signal(signal.SIGCONT)
        wait_for(program.create, what="a grant")


if __name__ == "__main__":
    HOLD_AWAKE = sys.argv[1]
    missing = [name for name in ("dbus-daemon", "busctl") if not shutil.which(name)]
    if subprocess.run([PYTHON, "-c", "import dbusmock, gi"], capture_output=True, check=False).returncode != 0:
        missing += ["python3-dbusmock", "python3-gi"]
    if missing:
        print("skipped: not installed:", ", ".join(missing))
        sys.exit(77)
    unittest.main(argv=sys.argv[:1] + sys.argv[2:], verbosity=2)
