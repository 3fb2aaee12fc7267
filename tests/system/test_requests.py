"""What a browser gets: the lists of the switch ports, the default page, stylesheet and icon;
and what counts as a request."""
import time
import unittest

import fleet
from client import request
from site_pages import FOOTER, LISTS, PAGE_END, listed_ports

SITE = fleet.declare()
EMPTY_SITE = fleet.declare(lambda site: site.remove("WebReports/Favicon.ico"),
                           lambda site: site.remove("WebReports/qws.css"))

SEGMENT_PAUSE = 0.5  # seconds; what is sent before and after it arrives in two reads


def setUpModule():
    fleet.start()


class SwitchLists(unittest.TestCase):
    def test_each_of_the_twelve_has_ten_ports_and_a_footer(self):
        pages = {SITE.get(name).body for name in LISTS}
        self.assertEqual(len(pages), 12)
        for page in pages:
            self.assertEqual(listed_ports(page), 10)
            self.assertIn(FOOTER, page)
            self.assertTrue(page.endswith(PAGE_END))

    def test_each_is_stored_without_footer_and_end(self):
        for name in LISTS:
            page, stored = SITE.get(name).body, SITE.stored_page(name)
            self.assertTrue(page.startswith(stored + FOOTER), name)
            self.assertNotIn(FOOTER, stored)

    def test_a_second_request_is_answered_from_the_stored_page(self):
        SITE.store_page("switch-access-port-top10-stored.htm", b"<html>stored")
        body = SITE.get("switch-access-port-top10-stored.htm").body
        self.assertTrue(body.startswith(b"<html>stored" + FOOTER))

    def test_the_selection_box_leads_to_the_same_page(self):
        for name in LISTS:
            self.assertEqual(SITE.get(f"select?report={name}").body, SITE.get(name).body)


class StoredPages(unittest.TestCase):
    def test_a_disk_list_that_nobody_has_made_is_answered_with_nothing(self):
        with SITE.connect() as client:
            client.send(request("disk-unix-top10-usedpercent-desc.htm"))
            self.assertTrue(client.hears_nothing_for(0.5))
            self.assertIn(PAGE_END, client.ask("").body)

    def test_one_that_is_stored_is_closed_and_sent(self):
        SITE.store_page("disk-windows-top10-trend14d-asc.htm", b"<html>disks")
        body = SITE.get("disk-windows-top10-trend14d-asc.htm").body
        self.assertTrue(body.startswith(b"<html>disks" + FOOTER))


class DefaultPage(unittest.TestCase):
    def test_the_head_has_five_lines_in_their_order(self):
        page = SITE.get("")
        self.assertEqual(page.head, [
            "HTTP/1.0 200 OK", "Content-Type: text/html", "Server: Hollin-QWS/1.0",
            "Connection: keep-alive", f"Content-Length: {len(page.body)}"])

    def test_it_has_the_selection_box_on_none_and_no_footer(self):
        body = SITE.get("").body
        self.assertIn(b"name='report'", body)
        self.assertIn(b"<option selected='selected' value='none'>", body)
        self.assertNotIn(FOOTER, body)
        self.assertTrue(body.endswith(PAGE_END))

    def test_every_unknown_url_gets_it(self):
        page = SITE.get("").body
        for url in ("index.html", "switch", "cgi-bin/login.cgi", "SWITCH-ACCESS-PORT-TOP10", "?a"):
            self.assertEqual(SITE.get(url).body, page, url)

    def test_it_is_not_stored(self):
        SITE.get("switch-of-no-list.htm")
        self.assertNotIn("switch-of-no-list.htm", SITE.names("WebReports/Cache"))


class StaticFiles(unittest.TestCase):
    def test_the_stylesheet_is_read_anew_for_each_request(self):
        for rules in (b"body {color: #123456}\r\n", b"\xff\x00"):
            SITE.write("WebReports/qws.css", rules)
            css = SITE.get("qws.css")
            self.assertEqual((css.content_type, css.body), ("text/css", rules))

    def test_the_icon_is_sent_byte_for_byte(self):
        icon = SITE.get("favicon.ico")
        self.assertEqual(icon.content_type, "image/x-icon")
        self.assertEqual(icon.body, SITE.read("WebReports/Favicon.ico"))

    def test_a_file_that_is_missing_is_an_empty_body(self):
        for name, content_type in (("qws.css", "text/css"), ("favicon.ico", "image/x-icon")):
            answer = EMPTY_SITE.get(name)
            self.assertEqual((answer.content_type, answer.body), (content_type, b""))


class Requests(unittest.TestCase):
    def test_a_connection_stays_for_further_requests(self):
        with SITE.connect() as client:
            pages = [client.ask(name).body for name in LISTS]
        self.assertEqual(pages, [SITE.get(name).body for name in LISTS])

    def test_two_in_one_segment_are_one_and_the_first_line_counts(self):
        with SITE.connect() as client:
            client.send(request(LISTS[0]) + request(LISTS[1]))
            self.assertEqual(client.receive().body, SITE.get(LISTS[0]).body)
            self.assertTrue(client.hears_nothing_for(0.5))

    def test_those_sent_ahead_are_answered_in_their_order(self):
        with SITE.connect() as client:
            for name in LISTS[:3]:
                client.send(request(name))
                time.sleep(SEGMENT_PAUSE)
            answers = [client.receive().body for _ in range(3)]
        self.assertEqual(answers, [SITE.get(name).body for name in LISTS[:3]])

    def test_a_request_is_its_first_line_whatever_its_method(self):
        for line in (b"GET / HTTP/1.0\r\n", b"HEAD / HTTP/1.1\r\n\r\n", b"Hello\r\n", b"\r\n"):
            with SITE.connect() as client:
                client.send(line)
                self.assertIn(PAGE_END, client.receive().body, line)

    def test_a_post_in_two_segments_is_two_requests(self):
        with SITE.connect() as client:
            client.send(b"POST /search-mac-ip HTTP/1.1\r\nContent-Length: 9\r\n\r\n")
            self.assertTrue(client.hears_nothing_for(SEGMENT_PAUSE))
            client.send(b"value=1\r\n")
            self.assertEqual(client.receive().body, SITE.get("").body)


class WithoutDebugMode(unittest.TestCase):
    def test_the_event_file_is_the_only_debug_file(self):
        SITE.get(LISTS[0])
        self.assertEqual(SITE.names("Debug"), ["AppEventWeb.txt"])


if __name__ == "__main__":
    unittest.main()
