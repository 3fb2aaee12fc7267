"""The searches from the real process: what they find in an awkward network, how a post has to
arrive, and where the links of a result lead."""
import unittest

import fleet
from chart_text import read_charts
from event_file import STARTED
from search_network import (
    BASE, BLANKS, BY_PERCENT, CROWD, DISKS, FIRST_USER, KITCHEN, LAST_USER, LOGS, NAMELESS, OFFICE,
    OLD, PHYSICAL, PORTS, ROOT, SERVER, STACK, SYSTEM, TRUNK_USER, VIRTUAL, fill)
from search_pages import (
    ALIAS, ALL, DISK, LATIN, MAC, MOST_USED, NAME, STORED, UTF8, address_table, fields_of,
    port_link, port_table, post, result_of, speaking, storage_link, storage_table)
from site_pages import FOOTER, PAGE_END
from waiting import eventually

SEGMENT_PAUSE = 0.5  # seconds; what is sent before and after it arrives in two reads


def with_debug_mode(site):
    site.set("Settings_General", DebugMode=1)


SITE = fleet.declare(speaking(LATIN))
IN_UTF8 = fleet.declare(speaking(UTF8))
LOGGED = fleet.declare(speaking(LATIN), with_debug_mode)


def setUpModule():
    fleet.start()


def search(client, action, charset=LATIN, **fields):
    client.send(post(action, charset, **fields))
    return client.receive().body


class SearchTest(unittest.TestCase):
    maxDiff = None
    site = SITE

    def setUp(self):
        """A client of its own with the number 1, which the pages of a search bear."""
        self.site.wait_until_alone()
        self.client = self.site.connect()
        self.addCleanup(self.client.leave)

    def search(self, action, **fields):
        return search(self.client, action, self.site.charset, **fields)

    def assert_result(self, page, expected):
        self.assertEqual(result_of(page).decode(self.site.charset),
                         expected.decode(self.site.charset))

    def assert_ports(self, device, port, shown, ports, action=NAME):
        page = self.search(action, DeviceName=device, PortName=port)
        self.assert_result(page, port_table(self.site, action, shown, ports))
        self.assertEqual(fields_of(page, self.site.charset),
                         {"DeviceName": device or "*", "PortName": port or "*"})

    def assert_addresses(self, value, searched, shown, hits):
        page = self.search(MAC, MacIpName=value)
        self.assert_result(page, address_table(self.site, MAC, shown, hits))
        self.assertEqual(fields_of(page), {"MacIpName": searched})

    def assert_storages(self, device, disk, shown, storages, order=MOST_USED, **head):
        page = self.search(DISK, DeviceName=device, DiskName=disk, OrderBy=order)
        self.assert_result(page, storage_table(self.site, shown, storages, **head))
        self.assertEqual(fields_of(page, self.site.charset), {
            "DeviceName": device or "*", "DiskName": disk or "*", "OrderBy": order})


class Ports(SearchTest):
    def test_a_port_is_found_with_all_its_figures_and_its_user(self):
        self.assert_ports("büro*", "gi0/3*", "1 (1)", [OFFICE])

    def test_a_port_whose_figures_are_of_another_day_shows_none(self):
        self.assert_ports("Büro*", "*/4", "1 (1)", [OLD])

    def test_a_trunk_is_found_as_an_access_port_is(self):
        self.assert_ports("*blanks*", "* p *", "1 (1)", [BLANKS])

    def test_a_pattern_of_digits_and_dots_searches_addresses(self):
        self.assert_ports("10.0.0.10*", "*", "5 (5)", [OFFICE, OLD, BLANKS, KITCHEN, NAMELESS])
        self.assert_ports("*.0.104", "*", "1 (1)", [KITCHEN])
        self.assert_ports("10.0.0.x", "*", "0 (0)", [])
        self.assert_ports("104", "*", "0 (0)", [])

    def test_ten_are_shown_of_twelve(self):
        self.assert_ports("stapel", "", "10 (12)", STACK[:10])

    def test_an_alias_is_searched_in_its_own_column(self):
        self.assert_ports("", "Alias 1*", "4 (4)", [STACK[0], *STACK[9:]], ALIAS)
        self.assert_ports("*", "Port 1*", "0 (0)", [], ALIAS)
        self.assert_ports("*", "äußeres", "1 (1)", [KITCHEN], ALIAS)

    def test_a_port_without_an_alias_is_not_found_by_a_star(self):
        self.assert_ports("no alias", "*", "0 (0)", [], ALIAS)
        self.assert_ports("", "", "10 (17)", PORTS[:10], ALIAS)


class Addresses(SearchTest):
    def test_every_form_of_a_mac_address_finds_its_port(self):
        for value in ("02:1B:2C:3D:4E:5F", "02-1b-2c-3d-4e-5f", "021B.2C3D.4E5F",
                      "02 1B 2C 3D 4E 5F", "02+1B+2C+3D+4E+5F"):
            searched = "02 1b 2c 3d 4e 5f" if "1b" in value else "02 1B 2C 3D 4E 5F"
            self.assert_addresses(value, searched, "1 (1)", [(OFFICE, FIRST_USER)])

    def test_a_form_that_is_none_is_searched_as_it_came(self):
        for value in ("021B.2C3D.4E*", "021B2C3D4E5F", "*:2C"):
            self.assert_addresses(value, value, "0 (0)", [])

    def test_the_last_one_seen_comes_first_and_one_without_a_port_is_left_out(self):
        hits = [(OFFICE, LAST_USER), (BLANKS, TRUNK_USER), (OFFICE, FIRST_USER)]
        self.assert_addresses("02-1B-*", "02 1B *", "3 (4)", hits)
        self.assert_addresses("10.1.0.*", "10.1.0.*", "3 (4)", hits)

    def test_the_newest_hundred_of_a_crowd_are_looked_at(self):
        self.assert_addresses("10.6.*", "10.6.*", "1 (150)", [(KITCHEN, CROWD[99])])

    def test_an_empty_value_searches_for_all(self):
        # Two others push the one in the kitchen out of the newest hundred.
        self.assert_addresses("", "*", "1 (154)", [(OFFICE, LAST_USER)])


class Storages(SearchTest):
    def test_the_first_ten_of_all_kinds_in_their_order(self):
        self.assert_storages("", "", "10 (13)", BY_PERCENT[:10])
        self.assert_storages("*", "*", "10 (13)", BY_PERCENT[:2:-1], "usedpercent-asc",
                             head="Lowest Used Percent")

    def test_a_quote_and_letters_find_their_server(self):
        self.assert_storages(SERVER, "*", "3 (13)", [SYSTEM, PHYSICAL, VIRTUAL])
        self.assert_storages("büro 'öst' <srv>", "p*", "1 (13)", [PHYSICAL])

    def test_wildcards_stand_for_one_character_for_digits_and_for_lists(self):
        self.assert_storages("data?base [[]#][*]", "/", "1 (13)", [ROOT])
        self.assert_storages("DATA?BASE*", "*[!a-f]og", "1 (13)", [LOGS])
        self.assert_storages(BASE.replace("+", "?"), "*", "0 (13)", [])
        self.assert_storages("farm", "disk [2-4]", "3 (13)", DISKS[3:0:-1])
        self.assert_storages("farm", "disk ##", "0 (13)", [])

    def test_the_largest_come_first_whatever_their_kind(self):
        self.assert_storages("[!f]*", "", "5 (13)", [LOGS, SYSTEM, PHYSICAL, ROOT, VIRTUAL],
                             "totalbytes-desc", head="Largest Total Size")


class Forms(SearchTest):
    def test_an_empty_form_has_no_footer_and_is_not_stored(self):
        empty = {MAC: {"MacIpName": ""}, NAME: {"DeviceName": "", "PortName": ""},
                 ALIAS: {"DeviceName": "", "PortName": ""},
                 DISK: {"DeviceName": "", "DiskName": "", "OrderBy": MOST_USED}}
        for action, fields in empty.items():
            self.site.remove(f"WebReports/Cache/{STORED[action]}")
            page = self.client.ask(f"select?report={action}").body
            self.assertEqual(fields_of(page), fields)
            self.assertNotIn(FOOTER, page)
            self.assertTrue(page.endswith(b"<br>\r\n" + PAGE_END))
            self.assertNotIn(STORED[action], self.site.names("WebReports/Cache"))

    def test_a_result_is_stored_without_its_footer(self):
        for action, fields in ALL.items():
            page = self.search(action, **fields)
            self.assertEqual(page.partition(FOOTER)[0], self.site.stored_page(STORED[action]))
            self.assertTrue(page.endswith(PAGE_END))

    def test_every_connection_has_its_own_result(self):
        with self.site.connect() as other:
            mine = self.search(NAME, DeviceName="Stapel", PortName="Port 1")
            theirs = search(other, NAME, DeviceName="Stapel", PortName="Port 2")
            url = port_link(STACK[0], NAME)
            self.assertIn(f"<a href={url}>".encode(), mine)
            their_url = port_link(STACK[1], NAME).replace("-1.htm", "-2.htm")
            self.assertIn(f"<a href={their_url}>".encode(), theirs)
            self.assertTrue(other.ask(their_url).body.startswith(theirs.partition(FOOTER)[0]))
            self.assertTrue(self.client.ask(url).body.startswith(mine.partition(FOOTER)[0]))


class Posts(SearchTest):
    def test_a_post_in_one_segment_is_answered_also_without_its_last_line_end(self):
        for action, fields in ALL.items():
            whole = self.search(action, **fields)
            self.client.send(post(action, **fields)[:-2])
            self.assertEqual(self.client.receive().body, whole)

    def test_a_body_in_a_second_segment_is_a_request_of_its_own(self):
        default = self.site.get("").body
        for action, fields in ALL.items():
            head, _, body = post(action, **fields).partition(b"\r\n\r\n")
            self.client.send(head + b"\r\n\r\n")
            self.assertTrue(self.client.hears_nothing_for(SEGMENT_PAUSE))
            self.client.send(body)
            self.assertEqual(self.client.receive().body, default)

    def test_a_post_that_is_torn_inside_its_body_gives_up_where_a_field_is_missing(self):
        data = post(NAME, DeviceName="Stapel", PortName="*")
        place = data.index(b"PortName")
        self.client.send(data[:place])
        self.assertTrue(self.client.hears_nothing_for(SEGMENT_PAUSE))
        self.assertIn(PAGE_END, self.client.ask("").body)

    def test_one_that_is_torn_inside_its_last_field_searches_for_what_has_come(self):
        data = post(NAME, DeviceName="Stapel", PortName="Port 12")
        self.client.send(data[:data.index(b"12\r\n")])
        page = self.client.receive().body
        self.assertEqual(fields_of(page), {"DeviceName": "Stapel", "PortName": "Port"})
        self.client.send(b"12\r\n")
        self.assertEqual(self.client.receive().body, self.site.get("").body)

    def test_nothing_fails(self):
        for action, fields in ALL.items():
            self.search(action, **fields)
        self.assertEqual(self.site.event_texts(), [STARTED])


class Charts(SearchTest):
    def test_the_link_of_a_port_leads_to_its_charts_below_the_result(self):
        for action, port in ((NAME, KITCHEN), (ALIAS, KITCHEN), (MAC, KITCHEN)):
            fields = {"MacIpName": "10.6.*"} if action == MAC else {
                "DeviceName": "k*", "PortName": "*"}
            result = self.search(action, **fields).partition(FOOTER)[0]
            url = port_link(port, action)
            self.assertIn(f"<a href={url}>".encode(), result)
            page = self.client.ask(url).body
            self.assertTrue(page.startswith(result))
            charts = read_charts(page.removeprefix(result).partition(FOOTER)[0], LATIN)
            self.assertEqual([chart.names for chart in charts],
                             3 * [("Device:", port.name, "Port:", port.port)])

    def test_the_link_of_a_disk_leads_to_its_chart_once_there_is_one(self):
        result = self.search(DISK, **ALL[DISK]).partition(FOOTER)[0]
        for storage in (LOGS, PHYSICAL, DISKS[7]):
            link = storage_link(storage)
            self.assertIn(f"<a href={link}>".encode(), result)
            alone = self.client.ask(link).body
            self.assertEqual(alone.partition(FOOTER)[0], result)
            self.site.store_page(f"histdisk45-{storage.device}-{storage.word}.htm", b"<b>chart</b>")
            below = self.client.ask(link).body
            self.assertEqual(below.partition(FOOTER)[0], result + b"<b>chart</b>")


class Devices(SearchTest):
    def ask(self, number):
        return self.client.ask(f"DeviceId={number}").body

    def test_a_switch_lands_on_its_ports(self):
        for number in ("110", "0110", " 110 ", "1.1e2", "109.5"):
            page = self.ask(number)
            self.assert_result(page, port_table(self.site, NAME, "10 (12)", STACK[:10]))
            self.assertEqual(fields_of(page), {"DeviceName": "Stapel", "PortName": "*"})

    def test_a_server_lands_on_its_disks(self):
        page = self.ask(900)
        self.assert_result(page, storage_table(self.site, "3 (13)", [SYSTEM, PHYSICAL, VIRTUAL]))
        self.assertEqual(fields_of(page), {
            "DeviceName": SERVER, "DiskName": "*", "OrderBy": MOST_USED})

    def test_one_that_is_both_is_a_switch(self):
        self.assert_result(self.ask(104), port_table(self.site, NAME, "1 (1)", [KITCHEN]))

    def test_the_page_is_that_of_the_post(self):
        self.assertEqual(self.ask(110), self.search(NAME, DeviceName="Stapel", PortName="*"))
        self.assertEqual(self.ask(902), self.search(DISK, DeviceName="Farm", DiskName="*",
                                                    OrderBy=MOST_USED))

    def test_one_that_nobody_knows_and_a_text_get_the_default_page(self):
        default = self.site.get("").body
        for number in ("12345", "0", "-110", "", "x", "110x", "1,000", "%31", "110;"):
            self.assertEqual(self.ask(number), default, number)


class Utf8(SearchTest):
    site = IN_UTF8

    def test_letters_outside_ascii_are_found_and_shown(self):
        self.assert_ports("BÜRO*Ж*", "*3 & \"X\"", "1 (1)", [OFFICE])
        self.assert_ports("*", "ж Ünit", "1 (1)", [OFFICE], ALIAS)
        self.assert_storages("büro*", "*ж*", "1 (13)", [SYSTEM])

    def test_bytes_of_another_charset_find_nothing_and_come_back_as_they_were(self):
        for action, fields, value in ((NAME, {"PortName": "*"}, "Küche*"), (DISK, {
                "DiskName": "*", "OrderBy": MOST_USED}, "Büro*")):
            page = search(self.client, action, LATIN, DeviceName=value, **fields)
            self.assertNotIn(b"<a href=hist", page)
            self.assertEqual(fields_of(page, LATIN)["DeviceName"], value)
        self.assertEqual(self.site.event_texts(), [STARTED])


class Latin(SearchTest):
    def test_bytes_of_another_charset_find_nothing_and_come_back_as_they_were(self):
        for action, fields, value in ((NAME, {"PortName": "*"}, "Küche*"), (DISK, {
                "DiskName": "*", "OrderBy": MOST_USED}, "Büro*")):
            page = search(self.client, action, UTF8, DeviceName=value, **fields)
            self.assertNotIn(b"<a href=hist", page)
            self.assertEqual(fields_of(page, UTF8)["DeviceName"], value)

    def test_a_letter_that_the_charset_lacks_shows_as_a_question_mark(self):
        self.assert_ports("Büro*?*", "*", "0 (0)", [])
        self.assert_storages("*", "*\"?\"", "1 (13)", [SYSTEM])  # any one character


class Logs(SearchTest):
    site = LOGGED

    def test_a_link_to_a_device_is_logged_as_the_search_that_it_becomes(self):
        for name in ("WebConnection-1.txt", "WebConnections.txt"):
            self.site.remove(f"Debug/{name}")
        page = self.client.ask("DeviceId=110").body
        post_text = "POST /search-device-port-name\r\nDeviceName=Stapel\r\nPortName=*\r\n\r\n[1] "
        eventually(lambda: "Total Time: " in self.log("WebConnections.txt"), "the response")
        self.assertIn(f" <-- 127.0.0.1:{self.client.local_port}\r\n{post_text}",
                      self.log("WebConnection-1.txt"))
        self.assertIn(page.decode("latin-1"), self.log("WebConnection-1.txt"))
        self.assertIn("[1] httpQuery: POST /search-device-port-name\r\n",
                      self.log("WebConnections.txt"))

    def test_every_search_is_dumped_in_its_own_file(self):
        dumps = {MAC: "WebSqlSearchMacIp.txt", NAME: "WebSqlSearchDevicePort.txt",
                 DISK: "WebSqlSearchDeviceDisk.txt"}
        for action, name in dumps.items():
            self.site.remove(f"Debug/{name}")
            self.search(action, **ALL[action])
            self.assertEqual(self.log(name).count("Exec Time="), 1)
            self.assertEqual(self.log(name).count("TableCriteria="), 1)

    def log(self, name):
        return self.site.read(f"Debug/{name}").decode("latin-1")


if __name__ == "__main__":
    unittest.main()
