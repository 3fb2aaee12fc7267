"""The debug files: what the start leaves of old ones, and the logs of connections, requests
and reports."""
import re
import unittest

import fleet
from client import request
from event_file import FAILURE, STARTED
from local_time import local_now
from waiting import eventually

OLD_EVENT = f"{local_now():%Y-%m-%d} 00:00:01\t3\tmodAny_Any\told"
CLEARED = ("WebConnection-7.txt", "WebConnections.txt", "WebServices.txt", "WebSqlOld.txt",
           "SendMailSMTP.txt", "qws.css")
LIST = "switch-trunk-port-top10-involume.htm"

STAMP = r"\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\.\d{3}"
TICKS = r"\(tick=\d{1,3}( \d{3})*\.\d{3}\)"
CONNECTION = "\r\n\r\n\r\n\r\n########## TCP Server Connection ##########\r\n"


def with_debug_mode(site):
    site.set("Settings_General", DebugMode=1)


def leave_old_files(site):
    for name in CLEARED:
        site.write(f"Debug/{name}", b"old")
    site.write("Debug/notes.txt", b"an operator's own")
    site.write("Debug/AppEventWeb.txt", OLD_EVENT.encode() + b"\r\n")


SITE = fleet.declare(with_debug_mode, leave_old_files)
CROWD = fleet.declare(with_debug_mode)


def setUpModule():
    fleet.start()


def log(site, name):
    return site.read(f"Debug/{name}").decode("latin-1")


def wait_for_log(site, name, words):
    """The log is written a little after the client sees what it tells."""
    eventually(lambda: words in log(site, name), f"{words} in {name}")


class Start(unittest.TestCase):
    def test_old_debug_files_are_gone(self):
        left = set(SITE.names("Debug")) & {"WebConnection-7.txt", "WebSqlOld.txt",
                                           "SendMailSMTP.txt"}
        self.assertEqual(left, set())
        self.assertNotIn("old", log(SITE, "WebServices.txt"))

    def test_events_and_files_of_others_stay(self):
        self.assertEqual(SITE.event_texts()[:2], ["old", STARTED])
        self.assertEqual(log(SITE, "notes.txt"), "an operator's own")

    def test_words_and_help_text_are_copied(self):
        self.assertEqual(SITE.read("Debug/HelpText.txt"), SITE.read("WebReports/HelpText.txt"))
        for line in log(SITE, "Language.ini").splitlines():
            self.assertRegex(line, r"^\d{1,3}\t[^\t]")

    def test_the_opening_of_the_listener_is_logged_with_its_status(self):
        _, status = SITE.listener_row()
        block = f"########### Web Server Started ############\r\n{status}\r\n\r\n"
        self.assertTrue(log(SITE, "WebServices.txt").endswith(block))


class Connections(unittest.TestCase):
    def setUp(self):
        SITE.wait_until_alone()
        for name in ("WebConnections.txt", "WebSqlTop10.txt"):
            SITE.remove(f"Debug/{name}")

    def visit(self, url):
        """One request on a connection of its own, with a log of its own: the peer's name, and
        the answer as it came."""
        SITE.remove("Debug/WebConnection-1.txt")
        with SITE.connect() as client:
            answer = client.ask(url)
            peer = f"127.0.0.1:{client.local_port}"
        wait_for_log(SITE, "WebConnection-1.txt", "TCP Server Disconnection")
        return peer, "\r\n".join([*answer.head, "", answer.body.decode("latin-1")])

    def assert_log(self, name, *pieces):
        """The log is these patterns, one behind the other."""
        self.assertRegex(log(SITE, name), re.compile("".join(pieces) + r"\Z"))

    def test_a_connection_is_logged_from_its_begin_to_its_end(self):
        peer, answer = self.visit(LIST)
        host, port = peer.split(":")
        text = request(LIST).decode()
        self.assert_log(
            "WebConnection-1.txt",
            re.escape(CONNECTION), rf"\[1\] {STAMP} --- Connected with {host} on port {port}",
            "\r\n\r\n", rf"\[1\] {STAMP} <-- {peer}", "\r\n", re.escape(text), "\r\n\r\n",
            rf"\[1\] {STAMP} --> ", "\r\n", re.escape(answer), "\r\n\r\n",
            "########## TCP Server Disconnection ##########\r\n",
            rf"\[1\] {STAMP}     [^\r\n]+", "\r\n\r\n")

    def test_requests_are_logged_in_brief_with_their_cost(self):
        peer, _ = self.visit(LIST)
        self.assert_log(
            "WebConnections.txt",
            rf"\[1\] {STAMP} {TICKS} <-- {peer}", "\r\n",
            rf"\[1\] httpQuery: GET /{re.escape(LIST)} HTTP/1.1", "\r\n",
            r"\[1\] Table From Cache: (True|False)", "\r\n",
            r"\[1\] Chart From Cache: False", "\r\n", r"\[1\] Total Time: \d+ ms", "\r\n",
            rf"\[1\] {STAMP} {TICKS} --> {peer}", "\r\n\r\n")

    def test_the_log_tells_whether_a_table_came_from_the_cache(self):
        SITE.remove(f"WebReports/Cache/{LIST}")
        for word in ("False", "True"):
            self.visit(LIST)
            self.assertIn(f"Table From Cache: {word}", log(SITE, "WebConnections.txt"))

    def test_a_query_is_dumped_and_a_page_from_the_cache_is_none(self):
        SITE.remove(f"WebReports/Cache/{LIST}")
        for _ in range(2):
            self.visit(LIST)
        dump = log(SITE, "WebSqlTop10.txt")
        self.assertEqual(dump.count("Top10 Field=InHCOctetsMb24H\r\nTrunk=True\r\n"), 1)

    def test_a_stylesheet_is_copied_as_it_is_sent(self):
        SITE.write("WebReports/qws.css", b"body {margin: 0}")
        self.visit("qws.css")
        self.assertEqual(log(SITE, "qws.css"), "body {margin: 0}")

    def test_a_scanner_is_reported_and_dropped(self):
        SITE.remove("Debug/WebConnection-1.txt")
        with SITE.connect() as client:
            client.send(request("cgi-bin/login.cgi"))
            self.assertTrue(client.is_dropped())
        wait_for_log(SITE, "WebConnection-1.txt", "TCP Server Disconnection")
        event = SITE.events_of("frmQuillonWeb_tcpServer_DataIn")[-1]
        self.assertEqual((event.type, event.text), (FAILURE, "Spam: 127.0.0.1"))


class Reset(unittest.TestCase):
    def test_the_twentieth_connection_logs_the_reset(self):
        clients = [CROWD.connect() for _ in range(20)]
        for client in clients:
            self.addCleanup(client.leave)
            self.assertTrue(client.is_dropped())
        wait_for_log(CROWD, "WebConnection-20.txt", "All Connections Resetted")
        self.assertRegex(log(CROWD, "WebConnection-20.txt"), re.compile(
            rf"{re.escape(CONNECTION)}\[20\] {STAMP} --- Connected with .*\r\n\r\n"
            rf"{re.escape(CONNECTION)}\[20\] {STAMP} --- All Connections Resetted\r\n\r\n"))


if __name__ == "__main__":
    unittest.main()
