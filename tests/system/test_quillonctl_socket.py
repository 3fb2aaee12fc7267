"""Whoever else comes to the socket file: noise, stalled and too many clients, other users, and
what stands in its way. The service goes on, for browsers and for operators."""
import os
import shutil
import subprocess
import sys
import unittest

import fleet
from console_socket import NAME, ConsoleSocket
from day_watch import DayWatch
from event_file import STARTED
from quillonctl import DONE, FAILED, ask, ctl, wait_until_idle
from site_pages import PAGE_END
from waiting import DEADLINE, eventually

LONGEST_LINE = 1024  # bytes, its end included
MOST_CLIENTS = 8
REQUEST_SECONDS = 10
STALLED = (b"", b"stat", b"import\t", b"\0\0\0", b"\xff\xfe", b"x" * (LONGEST_LINE - 1))
SILENT_CLIENTS = 1000
MEGABYTE = 1 << 20

# A user without any rights, and what he can do by himself.
NOBODY = 65534
AS_NOBODY = ("setpriv", "--reuid", str(NOBODY), "--regid", str(NOBODY), "--clear-groups")
ASK_THE_FILE = """
import socket, sys
client = socket.socket(socket.AF_UNIX)
try:
    client.connect(sys.argv[1])
    client.sendall(b"import\\n")
    print("heard", client.recv(100))
except OSError as failure:
    print(type(failure).__name__)
"""


def others_may_look_into(site):
    """Down to its files, which are closed to them by their own rights."""
    site.path.parent.chmod(0o711)
    site.path.chmod(0o755)


def leave_in_the_way(make):
    return fleet.declare(lambda site: make(site.path / NAME))


SITE = fleet.declare()
STALLED_SITE = fleet.declare()
SHARED = fleet.declare(others_may_look_into)
IN_THE_WAY = {
    "a file": leave_in_the_way(lambda path: path.write_bytes(b"an operator's own")),
    "a folder": leave_in_the_way(lambda path: path.mkdir()),
    "a link": leave_in_the_way(lambda path: path.symlink_to("Quillon.mdb")),
}


class StalledClients(DayWatch):
    """Each sends less than a line, and waits."""

    def work(self):
        self.descriptors_before = descriptors(STALLED_SITE)
        clients = [ConsoleSocket(STALLED_SITE) for _ in STALLED]
        for client, text in zip(clients, STALLED):
            client.send(text)
        self.status_meanwhile = ctl(STALLED_SITE, "status").status
        self.page_meanwhile = STALLED_SITE.get("").body
        self.seconds = [client.seconds_until_hung_up() for client in clients]
        for client in clients:
            client.leave()


STALL = StalledClients()
fleet.when_up(STALL.begin)


def setUpModule():
    fleet.start()


def descriptors(site):
    """How many files and sockets the service holds."""
    return len(os.listdir(f"/proc/{site.process.id}/fd"))


class Stalled(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.stall = STALL.result()

    def test_they_are_hung_up_on_when_their_time_is_over(self):
        for text, seconds in zip(STALLED, self.stall.seconds):
            self.assertGreater(seconds, REQUEST_SECONDS - 0.5, text)
            self.assertLess(seconds, REQUEST_SECONDS + 10, text)

    def test_operators_and_browsers_are_answered_meanwhile(self):
        self.assertEqual(self.stall.status_meanwhile, DONE)
        self.assertTrue(self.stall.page_meanwhile.endswith(PAGE_END))

    def test_nothing_is_left_of_them(self):
        before = self.stall.descriptors_before
        eventually(lambda: descriptors(STALLED_SITE) == before, "the descriptors of before")
        self.assertEqual(STALLED_SITE.event_texts(), [STARTED])


class Hostile(unittest.TestCase):
    def setUp(self):
        wait_until_idle(SITE)
        SITE.wait_until_alone()
        self.descriptors = descriptors(SITE)

    def tearDown(self):
        """Whatever came: the service is as it was."""
        eventually(lambda: descriptors(SITE) == self.descriptors, "the descriptors of before")
        self.assertEqual(ask(SITE, "status").fields()["activity"], "idle")
        self.assertTrue(SITE.get("").body.endswith(PAGE_END))
        self.assertEqual(SITE.event_texts(), [STARTED])
        self.assertEqual(SITE.process.said(), "")

    def answer_to(self, data):
        with ConsoleSocket(SITE) as client:
            client.send(data)
            return client.lines()

    def assert_refused(self, data):
        (line,) = self.answer_to(data)
        self.assertTrue(line.startswith("refused\tno such request"), data)

    def test_a_line_that_is_no_request_is_refused(self):
        for line in (b"", b"\0", b"\0status", b"STATUS", b" status", b"status ", b"\tstatus",
                     b"import\0", b"status\r", b"\xff\xfe", b"' OR 1=1 --", b"../status",
                     b"x" * (LONGEST_LINE - 1)):
            self.assert_refused(line + b"\n")

    def test_a_line_that_is_too_long_gets_no_answer(self):
        for length in (LONGEST_LINE, LONGEST_LINE + 1, 100 * LONGEST_LINE):
            self.assertEqual(self.answer_to(b"x" * length + b"\n"), [], length)

    def test_noise_gets_no_answer(self):
        for noise in (b"\0", b"x", b"\xff"):
            self.assertEqual(self.answer_to(noise * MEGABYTE), [])
        self.assertLessEqual(len(self.answer_to(os.urandom(MEGABYTE))), 1)

    def test_of_two_requests_the_first_is_carried_out(self):
        lines = self.answer_to(b"status\nset-rep-date\t2014-11-07\n")
        self.assertEqual([line for line in lines if line.startswith("done")], ["done\t"])

    def test_a_request_in_pieces_is_one(self):
        with ConsoleSocket(SITE) as client:
            for byte in b"status\n":
                client.send(bytes([byte]))
            self.assertEqual(client.lines()[-1], "done\t")

    def test_the_ninth_client_is_hung_up_on_and_those_before_him_are_not(self):
        clients = [ConsoleSocket(SITE) for _ in range(MOST_CLIENTS)]
        with ConsoleSocket(SITE) as ninth:
            self.assertLess(ninth.seconds_until_hung_up(), REQUEST_SECONDS - 2)
        for client in clients:
            self.assertEqual(client.ask(b"status")[-1], "done\t")
            client.leave()

    def test_the_console_says_that_it_was_hung_up_on(self):
        clients = [ConsoleSocket(SITE) for _ in range(MOST_CLIENTS)]
        result = ctl(SITE, "status")
        for client in clients:
            client.leave()
        self.assertEqual((result.status, result.out), (FAILED, ""))
        self.assertIn("hung up", result.errors)

    def test_clients_who_say_nothing_and_leave_are_forgotten(self):
        for _ in range(SILENT_CLIENTS):
            ConsoleSocket(SITE).leave()

    def test_clients_who_do_not_hear_the_answer_are_forgotten(self):
        for _ in range(100):
            with ConsoleSocket(SITE) as client:
                client.send(b"status\n")


@unittest.skipUnless(os.geteuid() == 0 and shutil.which("setpriv"), "needs root and setpriv")
class OtherUser(unittest.TestCase):
    def setUp(self):
        wait_until_idle(SHARED)
        self.marks = SHARED.sql("History.mdb", "SELECT * FROM General_Info")

    def tearDown(self):
        self.assertEqual(SHARED.sql("History.mdb", "SELECT * FROM General_Info"), self.marks)
        self.assertEqual(SHARED.event_texts(), [STARTED])

    def ask_the_file(self):
        run = subprocess.run(
            [*AS_NOBODY, sys.executable, "-c", ASK_THE_FILE, SHARED.path / NAME],
            capture_output=True, text=True, timeout=DEADLINE, cwd="/")
        return run.stdout.strip()

    def test_the_console_tells_him_whose_the_service_is(self):
        for words in (("import",), ("auto-create",), ("mail-create",)):
            result = ctl(SHARED, *words, inside=AS_NOBODY)
            self.assertEqual((result.status, result.out), (FAILED, ""))
            self.assertIn("belongs to another user", result.errors)

    def test_the_databases_are_closed_to_him(self):
        for words in (("read",), ("save", "--port", "80"), ("status",), ("receivers",), ("smtp",),
                      ("snmp", "set", "--enabled", "no"), ("report", "access")):
            result = ctl(SHARED, *words, inside=AS_NOBODY)
            self.assertEqual((result.status, result.out), (FAILED, ""), words)
            self.assertRegex(result.errors, r"\Aquillonctl: \S+.*\n\Z", words)
        self.assertEqual(ask(SHARED, "read").fields()["port"], str(SHARED.port))

    def test_the_socket_file_is_closed_to_him(self):
        self.assertEqual((SHARED.path / NAME).stat().st_mode & 0o777, 0o600)
        self.assertEqual(self.ask_the_file(), "PermissionError")

    def test_the_service_hangs_up_on_him_where_the_file_has_been_opened_to_all(self):
        (SHARED.path / NAME).chmod(0o666)
        self.addCleanup((SHARED.path / NAME).chmod, 0o600)
        self.assertIn(self.ask_the_file(), ("heard b''", "BrokenPipeError", "ConnectionResetError"))


class InTheWay(unittest.TestCase):
    def test_the_service_starts_all_the_same_and_says_so(self):
        for what, site in IN_THE_WAY.items():
            self.assertTrue(site.get("").body.endswith(PAGE_END), what)
            self.assertEqual(site.event_texts(), [STARTED], what)
            self.assertEqual(site.process.said().strip(), (
                f"no operator's console: cannot make {site.path / NAME}:"
                " something else has that name"), what)

    def test_it_leaves_what_is_there(self):
        self.assertEqual(IN_THE_WAY["a file"].read(NAME), b"an operator's own")
        self.assertTrue((IN_THE_WAY["a folder"].path / NAME).is_dir())
        self.assertEqual(os.readlink(IN_THE_WAY["a link"].path / NAME), "Quillon.mdb")

    def test_the_console_finds_no_service(self):
        for what, site in IN_THE_WAY.items():
            result = ctl(site, "import")
            self.assertEqual((result.status, result.out), (FAILED, ""), what)
            self.assertIn(f"{site.path}", result.errors)


if __name__ == "__main__":
    unittest.main()
